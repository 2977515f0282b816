// The screen thread: GTK is initialised on it and its main loop runs there for the rest
// of the process. Work from other threads arrives as idle sources of the main context.

#include "screen/gtk/thread.h"

#include <xcb/xcb.h>
#include <gtk/gtk.h>

#include <atomic>
#include <cstdlib>
#include <thread>

namespace zorvel::gtk {
namespace {

struct ScreenThread {
  std::mutex start_lock;
  std::condition_variable start_cv;
  bool started = false;
  int state = 0;  // 0 starting, 1 running, 2 the toolkit failed
  bool ok = false;  // the display could be opened
  std::thread::id id;
  std::mutex lock;  // state_lock()
  std::condition_variable changed;
  std::atomic<bool> quit{false};  // the process ends: the loop stops
};

ScreenThread& screen() {
  static ScreenThread* s = new ScreenThread;  // never destroyed: the thread outlives main
  return *s;
}

struct Job {
  const std::function<void()>* fn = nullptr;
  std::mutex lock;
  std::condition_variable done_cv;
  bool done = false;
};

gboolean run_job(gpointer data) {
  Job* job = static_cast<Job*>(data);
  (*job->fn)();
  {
    std::lock_guard<std::mutex> guard(job->lock);
    job->done = true;
  }
  job->done_cv.notify_one();
  return G_SOURCE_REMOVE;
}

}  // namespace

bool start() {
  ScreenThread& s = screen();
  std::unique_lock<std::mutex> guard(s.start_lock);
  if (s.started) {
    return s.ok;
  }
  s.started = true;
  // The display answers at once or not at all; the toolkit's own start (themes,
  // settings, tens of milliseconds) then goes on beside the program's drawing.
  // The probe stays connected until the toolkit is: an X server whose last client
  // leaves resets itself, which the toolkit would wait for.
  xcb_connection_t* probe = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(probe) != 0) {
    xcb_disconnect(probe);
    return false;
  }
  s.ok = true;
  std::thread t([&s, probe] {
    // GTK warnings about the session bus and the like are not the program's business.
    g_setenv("NO_AT_BRIDGE", "1", FALSE);
    gdk_set_allowed_backends("x11");
    {
      std::lock_guard<std::mutex> lg(s.start_lock);
      s.id = std::this_thread::get_id();
    }
    const bool ok = gtk_init_check(nullptr, nullptr) != FALSE;
    xcb_disconnect(probe);
    {
      std::lock_guard<std::mutex> lg(s.start_lock);
      s.state = ok ? 1 : 2;
    }
    s.start_cv.notify_all();
    if (ok) {
      while (!s.quit.load(std::memory_order_acquire)) {
        g_main_context_iteration(nullptr, TRUE);
      }
    }
  });
  t.detach();
  // At exit the screen thread stops between two events, so that it is not drawing (in
  // the GL driver, say) while the exit handlers tear the libraries down.
  std::atexit([] { run([] { screen().quit.store(true, std::memory_order_release); }); });
  return true;
}

namespace {

// Waits until the toolkit has started; false when it failed.
bool started(ScreenThread& s) {
  std::unique_lock<std::mutex> guard(s.start_lock);
  s.start_cv.wait(guard, [&s] { return s.state != 0; });
  return s.state == 1;
}

}  // namespace

bool on_screen_thread() {
  ScreenThread& s = screen();
  std::lock_guard<std::mutex> guard(s.start_lock);
  return s.ok && std::this_thread::get_id() == s.id;
}

void run_async(std::function<void()> fn) {
  ScreenThread& s = screen();
  if (!s.ok || s.quit.load(std::memory_order_acquire)) {
    return;
  }
  if (on_screen_thread()) {
    fn();  // in order with what run() does at once here
    return;
  }
  auto* job = new std::function<void()>(std::move(fn));
  GSource* source = g_idle_source_new();
  g_source_set_priority(source, G_PRIORITY_DEFAULT);
  g_source_set_callback(
      source,
      [](gpointer data) -> gboolean {
        (*static_cast<std::function<void()>*>(data))();
        return G_SOURCE_REMOVE;
      },
      job, [](gpointer data) { delete static_cast<std::function<void()>*>(data); });
  g_source_attach(source, nullptr);
  g_source_unref(source);
}

void run(const std::function<void()>& fn) {
  ScreenThread& s = screen();
  if (!s.ok || s.quit.load(std::memory_order_acquire)) {
    return;
  }
  if (!started(s)) {
    return;
  }
  if (on_screen_thread()) {
    fn();
    return;
  }
  Job job;
  job.fn = &fn;
  // An explicit source: g_main_context_invoke would run fn here when this thread
  // happened to acquire the context.
  GSource* source = g_idle_source_new();
  g_source_set_priority(source, G_PRIORITY_DEFAULT);
  g_source_set_callback(source, &run_job, &job, nullptr);
  g_source_attach(source, nullptr);
  g_source_unref(source);
  std::unique_lock<std::mutex> guard(job.lock);
  job.done_cv.wait(guard, [&job] { return job.done; });
}

std::mutex& state_lock() { return screen().lock; }

void notify() { screen().changed.notify_all(); }

void wait(std::unique_lock<std::mutex>& lock, const std::function<bool()>& ready) {
  screen().changed.wait(lock, ready);
}

}  // namespace zorvel::gtk
