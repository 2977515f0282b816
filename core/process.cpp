// Everything that is shared between threads lives in this file: the single-thread
// block, the thread table of thrini and the one critical section.
//
// Thread mode: a slot is claimed under the lock (id stored, then the in-use flag set
// with release ordering); an existing slot is found without the lock by scanning the
// flags (acquire) and ids. All fields are atomics, so the lock-free scan is free of
// data races. Only the owning thread ever looks for its own id, so the block pointer
// stored after the claim is read back by the thread that stored it.

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <new>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/process.h"

namespace zorvel {
namespace {

struct Slot {
  std::atomic<std::uint32_t> id{0};
  std::atomic<int> in_use{0};
  std::atomic<GlobalBlock*> block{nullptr};
};

struct ThreadTable {
  std::atomic<bool> thread_mode{false};
  int count = 0;
  Slot* slots = nullptr;
  std::recursive_mutex lock;  // recursive: the summary writes under it and may open the message file
  GlobalBlock* single = nullptr;  // the block of single-thread mode
};

ThreadTable& table() {
  // Never destroyed: blocks may still be used while the process exits.
  static ThreadTable* t = new ThreadTable;
  return *t;
}

// A 32-bit id per thread, never 0 and never reused within the process.
std::uint32_t thread_id() {
  static std::atomic<std::uint32_t> next{1};
  thread_local const std::uint32_t id = next.fetch_add(1, std::memory_order_relaxed);
  return id;
}

// Console texts of the thread table are no warnings: printed as they are.
void console(const char* text) {
  std::fputs(text, stdout);
  std::fflush(stdout);
}

[[noreturn]] void die(const char* text, int status) {
  console(text);
  std::exit(status);
}

GlobalBlock* new_block() {
  GlobalBlock* b = new (std::nothrow) GlobalBlock;
  if (b == nullptr) {
    die("Not enough memory for global variables!\n", 1);
  }
  return b;
}

Slot* find_slot(ThreadTable& t, std::uint32_t id) {
  for (int i = 0; i < t.count; ++i) {
    Slot& s = t.slots[i];
    if (s.in_use.load(std::memory_order_acquire) == 1 &&
        s.id.load(std::memory_order_relaxed) == id) {
      return &s;
    }
  }
  return nullptr;
}

// A block freed with its plot still open: the plot is finished as zorfin would finish
// it, with warning 184 in the name of the routine that frees it, so that nothing drawn
// is lost.
void finish_open_plot(GlobalBlock* b, const char* routine) {
  if (b == nullptr || b->core.level == 0) {
    return;
  }
  b->msg.routine = routine;
  warn(*b, 184);
  api::zorfin(*b);
}

}  // namespace

MessageHook& message_hook() {
  static MessageHook hook;  // trivially destructible: usable while the process exits
  return hook;
}

GlobalBlock::~GlobalBlock() {
  finish_open_plot(this, "delglb");
  close_message_file(*this);
}

namespace {
thread_local GlobalBlock* lent = nullptr;  // the block a BlockLoan lends this thread
}  // namespace

BlockLoan::BlockLoan(GlobalBlock* g) : previous_(lent) { lent = g; }
BlockLoan::~BlockLoan() { lent = previous_; }

GlobalBlock* fetch_or_create(bool& created) {
  ThreadTable& t = table();
  created = false;
  if (lent != nullptr) {
    return lent;
  }
  if (!t.thread_mode.load(std::memory_order_acquire)) {
    if (t.single == nullptr) {
      t.single = new_block();
      created = true;
    }
    return t.single;
  }
  const std::uint32_t id = thread_id();
  if (Slot* s = find_slot(t, id)) {
    if (GlobalBlock* b = s->block.load(std::memory_order_relaxed)) {
      return b;
    }
  }
  Slot* claimed = nullptr;
  {
    std::lock_guard<std::recursive_mutex> guard(t.lock);
    for (int i = 0; i < t.count; ++i) {
      Slot& s = t.slots[i];
      if (s.in_use.load(std::memory_order_relaxed) == 0) {
        s.id.store(id, std::memory_order_relaxed);
        s.in_use.store(1, std::memory_order_release);
        claimed = &s;
        break;
      }
    }
  }
  if (claimed == nullptr) {
    die(">>>> Too many threads!\n", 1);
  }
  GlobalBlock* b = new_block();
  claimed->block.store(b, std::memory_order_release);
  created = true;
  return b;
}

GlobalBlock* find_block() {
  ThreadTable& t = table();
  if (lent != nullptr) {
    return lent;
  }
  if (!t.thread_mode.load(std::memory_order_acquire)) {
    return t.single;
  }
  Slot* s = find_slot(t, thread_id());
  return s != nullptr ? s->block.load(std::memory_order_acquire) : nullptr;
}

ProcessLock::ProcessLock() {
  ThreadTable& t = table();
  if (t.thread_mode.load(std::memory_order_acquire)) {
    t.lock.lock();
    locked_ = true;
  }
}

ProcessLock::~ProcessLock() {
  if (locked_) {
    table().lock.unlock();
  }
}

namespace api {

void thrini(int n) {
  ThreadTable& t = table();
  if (t.thread_mode.load(std::memory_order_acquire)) {
    console(">>>> thrini is already called before!\n");
    return;
  }
  if (n < 1) {
    console(">>>> Invalid parameter in thrini!\n");
    return;
  }
  Slot* slots = new (std::nothrow) Slot[static_cast<std::size_t>(n)];
  if (slots == nullptr) {
    die(">>>> Not enough memory in thrini!\n", 0);
  }
  t.slots = slots;
  t.count = n;
  t.thread_mode.store(true, std::memory_order_release);
  if (t.single != nullptr) {
    // That block is no longer used; it is freed by thrfin.
    console(">>>> A ZORVEL routine is called before thrini!\n");
  }
}

void thrfin() {
  ThreadTable& t = table();
  if (!t.thread_mode.load(std::memory_order_acquire)) {
    console(">>>> thrini is not called before!\n");
    return;
  }
  {
    std::lock_guard<std::recursive_mutex> guard(t.lock);
    for (int i = 0; i < t.count; ++i) {
      Slot& s = t.slots[i];
      if (s.in_use.load(std::memory_order_relaxed) == 1) {
        GlobalBlock* b = s.block.exchange(nullptr, std::memory_order_acq_rel);
        finish_open_plot(b, "thrfin");
        delete b;
        s.in_use.store(0, std::memory_order_release);
      }
    }
    t.thread_mode.store(false, std::memory_order_release);
    delete[] t.slots;
    t.slots = nullptr;
    t.count = 0;
  }
  finish_open_plot(t.single, "thrfin");
  delete t.single;
  t.single = nullptr;
}

void delglb() {
  ThreadTable& t = table();
  if (!t.thread_mode.load(std::memory_order_acquire)) {
    finish_open_plot(t.single, "delglb");
    delete t.single;
    t.single = nullptr;
    return;
  }
  Slot* s = find_slot(t, thread_id());
  if (s == nullptr) {
    return;
  }
  finish_open_plot(s->block.load(std::memory_order_acquire), "delglb");
  std::lock_guard<std::recursive_mutex> guard(t.lock);
  delete s->block.exchange(nullptr, std::memory_order_acq_rel);
  s->in_use.store(0, std::memory_order_release);
}

}  // namespace api
}  // namespace zorvel
