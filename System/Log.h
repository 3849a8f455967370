// The log: standard output and standard error, which whoever started the process reads, or does not read.
#pragma once

// Puts streams in the place of `stdout` and `stderr` that never wait for their reader, whether that is a
// pipe, a socket, a terminal or a file. What cannot be written at once is left out, by whole records on
// standard output (what stands between two flushes: a line with its dump) and by whole lines on standard
// error; when writing goes on, one line says how many lines are missing. For the rest of the process's life.
void LogWithoutWaiting();
