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

// Starts the thread and opens the display on the first call; false when the display
// cannot be opened (then and on every later call).
bool start();

// True on the screen thread.
bool on_screen_thread();

// Runs fn on the screen thread and returns when it has run (at once on the screen
// thread itself). Does nothing when the display is not open.
void run(const std::function<void()>& fn);

// The lock of everything that waiting threads read: window states, input queues,
// widget results. The screen thread takes it to change them and then calls notify().
std::mutex& state_lock();
void notify();
// Waits (holding `lock` of state_lock()) until ready() is true; ready() runs under the lock.
void wait(std::unique_lock<std::mutex>& lock, const std::function<bool()>& ready);

}  // namespace zorvel::gtk
