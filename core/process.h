#pragma once
// Process-wide state: the thread table of thrini/thrfin, the single-thread block, the one
// critical section and the message callback of msgcbk. Nothing else is shared between
// threads.

#include <atomic>
#include <mutex>

#include "api_decl.h"

namespace zorvel {

struct GlobalBlock;

// The calling thread's block, created (with its defaults) when it has none; `created`
// tells which. Ends the process when the thread table is full or memory is exhausted.
GlobalBlock* fetch_or_create(bool& created);

// The calling thread's block, or null; never creates one.
GlobalBlock* find_block();

// A callback of the program running on the screen thread uses the block of the thread
// that waits for the screen (in zorfin, a cursor routine or wgfin): while a loan is
// alive, the routines called on this thread find that block.
class BlockLoan {
 public:
  explicit BlockLoan(GlobalBlock* g);
  ~BlockLoan();
  BlockLoan(const BlockLoan&) = delete;
  BlockLoan& operator=(const BlockLoan&) = delete;

 private:
  GlobalBlock* previous_;
};

// The message callback of msgcbk, one for every thread: the function (null: none) and
// whether warning lines go to it alone or to the message device as well.
struct MessageHook {
  std::atomic<zorvel_message_cb> callback{nullptr};
  std::atomic<bool> only{false};
};
MessageHook& message_hook();

// The process-wide lock, taken around opening files and printing summaries. A no-op in
// single-thread mode.
class ProcessLock {
 public:
  ProcessLock();
  ~ProcessLock();
  ProcessLock(const ProcessLock&) = delete;
  ProcessLock& operator=(const ProcessLock&) = delete;

 private:
  bool locked_ = false;
};

}  // namespace zorvel
