#pragma once
// Entry checks of the public routines: fetch the calling thread's GlobalBlock, record
// the routine's name and check the life-cycle level.

namespace zorvel {

struct GlobalBlock;

// The block, or null after warning 3 "Incorrect level" when the level is not in lo..hi.
GlobalBlock* enter(int lo, int hi, const char* name);

// Relaxed check for setting routines: the block always comes back; at level 0 warning 3
// is issued first and the setting applies all the same.
GlobalBlock* enter_relaxed(const char* name);

// A null pointer for an array or output argument: warning 2 naming the argument.
void null_argument(GlobalBlock& g, const char* argument);

// An exception reached the C boundary (only allocation can throw): warning 53.
void internal_failure(GlobalBlock* g) noexcept;

}  // namespace zorvel
