// The start-up sequence.
#pragma once

class CRuntimeData;

// Brings `runtime` from constructed to ready for the main loop, printing the banner on the way. Ends the
// process with exit status 0 when a database that it needs cannot be opened or memory runs out.
void StartUp(CRuntimeData& runtime);
