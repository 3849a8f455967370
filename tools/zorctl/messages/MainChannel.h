// zor_main's end of the System V queue.
#pragma once

#include <chrono>
#include <csignal>
#include <cstddef>

#include "ipc/Frame.h"
#include "tools/zorctl/messages/QueueCopy.h"
#include "tools/zorctl/text/Output.h"

// A point in time to wait until.
using CDeadline = std::chrono::steady_clock::time_point;
inline constexpr CDeadline kNever = CDeadline::max();
// `seconds` from now; a negative number never comes.
CDeadline DeadlineIn(double seconds);
bool HasPassed(CDeadline deadline);

// While it lives, Ctrl-C, SIGTERM and SIGHUP do not kill the process but end its waits, so that it can leave
// in order.
class CStopSignals {
  public:
    CStopSignals();
    ~CStopSignals();
    CStopSignals(const CStopSignals&) = delete;
    CStopSignals& operator=(const CStopSignals&) = delete;

    // Waits a moment. True when a signal asked to stop, now or earlier.
    bool Pause(long nanoseconds = 10'000'000);
    // Whether it was that there is no terminal any more.
    bool HungUp() const { return m_stoppedBy == SIGHUP; }

  private:
    sigset_t m_signals{};
    sigset_t m_before{};
    int m_stoppedBy = 0;  // signal
};

// The queue belongs to zor_runtime: it is used here when it is there, and never created or removed.
class CMainChannel {
  public:
    // Receives and peeks at messages of `type`.
    explicit CMainChannel(long type = kTypeToMain) : m_type(type), m_follower(type) {}

    // Finds the queue, waiting for it until `deadline`, and says on standard error that it waits. False with
    // one more line when there is none in the end.
    bool Open(CDeadline deadline, CStopSignals& stop);

    // Takes the oldest message of its type without waiting: 1 with its text length in `length`, 0 when there
    // is none, -1 with a line on standard error when the queue cannot be read.
    int Receive(SysVMessage& message, std::size_t& length);

    // The same with the next message that was not there before, which stays where it is.
    int Peek(SysVMessage& message, std::size_t& length);

    // Sends a message with `length` bytes of text, waiting for room until `deadline`. False with a line on
    // standard error.
    bool Send(const SysVMessage& message, std::size_t length, CDeadline deadline, CStopSignals& stop);
    // Sends `frame` as zor_main does.
    bool Send(const Frame& frame, CDeadline deadline, CStopSignals& stop);

  private:
    int Failed(int error) const;

    int m_queue = -1;
    long m_type;
    CQueueFollower m_follower;
};

// `frame`, at most kFrameCapacity bytes, in a message from this process as zor_main sends it.
SysVMessage MessageWith(const std::uint8_t* frame, std::size_t length);

// Sends one command as zor_main, waiting up to `wait` seconds for the queue and for room in it; or any
// message with `length` bytes of text.
EExit SendCommand(const Frame& frame, double wait);
EExit SendCommand(const SysVMessage& message, std::size_t length, double wait);
