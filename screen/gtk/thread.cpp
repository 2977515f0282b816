// The screen thread: GTK is initialised on it and its main loop runs there for the rest
// of the process. Work from other threads arrives as idle sources of the main context.

#include "screen/gtk/thread.h"

#include <gtk/gtk.h>

#include <atomic>
#include <cstdlib>
#include <thread>

namespace zorvel::gtk {
namespace {

struct ScreenThread {
  std::mutex start_lock;
  bool started = false;
  bool ok = false;
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
  std::mutex m;
  std::condition_variable cv;
  int state = 0;  // 1 running, 2 failed
  std::thread t([&s, &m, &cv, &state] {
    // GTK warnings about the session bus and the like are not the program's business.
    g_setenv("NO_AT_BRIDGE", "1", FALSE);
    gdk_set_allowed_backends("x11");
    const bool ok = gtk_init_check(nullptr, nullptr) != FALSE;
    {
      std::lock_guard<std::mutex> lg(m);
      state = ok ? 1 : 2;
      s.id = std::this_thread::get_id();
    }
    cv.notify_one();
    if (ok) {
      while (!s.quit.load(std::memory_order_acquire)) {
        g_main_context_iteration(nullptr, TRUE);
      }
    }
  });
  {
    std::unique_lock<std::mutex> lg(m);
    cv.wait(lg, [&state] { return state != 0; });
  }
  s.ok = state == 1;
  t.detach();
  if (s.ok) {
    // At exit the screen thread stops between two events, so that it is not drawing
    // (in the GL driver, say) while the exit handlers tear the libraries down.
    std::atexit([] {
      run([] { screen().quit.store(true, std::memory_order_release); });
    });
  }
  return s.ok;
}

bool on_screen_thread() { return screen().ok && std::this_thread::get_id() == screen().id; }

void run(const std::function<void()>& fn) {
  ScreenThread& s = screen();
  if (!s.ok || s.quit.load(std::memory_order_acquire)) {
    return;
  }
  if (std::this_thread::get_id() == s.id) {
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
