#pragma once
// The screen thread of the module: it opens the display, runs GTK's main loop and does
// everything that touches the toolkit. Other threads hand it work through run() and
// wait; whatever waits for the user (clicks, keys, a widget window) waits on the
// module's condition variable, which the screen thread notifies after every event it
// has handled.

#include <condition_variable>
#include <functional>
#include <mutex>

namespace zorvel::gtk {

// Starts the thread on the first call and has it open the display and initialise the
// toolkit, which goes on while the program draws; false when the display cannot be
// opened (then and on every later call). Work handed over waits for the start.
bool start();

// True on the screen thread.
bool on_screen_thread();

// Runs fn on the screen thread and returns when it has run (at once on the screen
// thread itself). Does nothing when the display is not open.
void run(const std::function<void()>& fn);

// Runs fn on the screen thread later, in the order of all work handed over; returns at
// once (the display may still be opening). On the screen thread it runs at once.
void run_async(std::function<void()> fn);

// The lock of everything that waiting threads read: window states, input queues,
// widget results. The screen thread takes it to change them and then calls notify().
std::mutex& state_lock();
void notify();
// Waits (holding `lock` of state_lock()) until ready() is true; ready() runs under the lock.
void wait(std::unique_lock<std::mutex>& lock, const std::function<bool()>& ready);

}  // namespace zorvel::gtk
