#pragma once
// Process-wide state: the thread table of thrini/thrfin, the single-thread block and the
// one critical section. Nothing else is shared between threads.

#include <mutex>

namespace zorvel {

struct GlobalBlock;

// The calling thread's block, created (with its defaults) when it has none; `created`
// tells which. Ends the process when the thread table is full or memory is exhausted.
GlobalBlock* fetch_or_create(bool& created);

// The calling thread's block, or null; never creates one.
GlobalBlock* find_block();

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
