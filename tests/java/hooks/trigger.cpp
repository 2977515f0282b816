// Test-only natives of the class ztest.Trigger: they raise the events that the widget,
// window and surface code will raise, by calling the callbacks stored in the calling
// thread's CallbackState, on that thread or on a new native thread unknown to the virtual
// machine. Linked with the binding's own objects into a test variant of libzorjava, so
// that the callbacks are the very ones that the natives of zorvel.Zorvel hand over.

#include <jni.h>

#include <thread>

#include "core/callbacks.h"
#include "core/global_block.h"
#include "core/process.h"
#include "jni/callbacks.h"

namespace {

// A copy of the calling thread's callbacks (none before its first routine).
zorvel::CallbackState callbacks() {
  const zorvel::GlobalBlock* g = zorvel::find_block();
  return g != nullptr ? g->callbacks : zorvel::CallbackState{};
}

template <typename F>
void run(jboolean on_new_thread, F f) {
  if (on_new_thread == JNI_TRUE) {
    std::thread t(f);
    t.join();
  } else {
    f();
  }
}

}  // namespace

extern "C" {

// A widget event of kind 1 (swgcbk), 2 (swgcb2) or 3 (swgcb3): the widget's callback of
// that kind, when it has one.
JNIEXPORT void JNICALL Java_ztest_Trigger_widget(JNIEnv*, jclass, jint kind, jint id, jint a,
                                                 jint b, jboolean on_new_thread) {
  const zorvel::CallbackState s = callbacks();
  const zorvel::WidgetCallback* w = zorvel::find_widget_callback(s, id);
  if (w == nullptr) {
    return;
  }
  if (kind == 1 && w->on_event != nullptr) {
    run(on_new_thread, [f = w->on_event, id] { f(id); });
  } else if (kind == 2 && w->on_cell != nullptr) {
    run(on_new_thread, [f = w->on_cell, id, a, b] { f(id, a, b); });
  } else if (kind == 3 && w->on_value != nullptr) {
    run(on_new_thread, [f = w->on_value, id, a] { f(id, a); });
  }
}

JNIEXPORT void JNICALL Java_ztest_Trigger_window(JNIEnv*, jclass, jint a, jint b, jint c, jint d,
                                                 jint e) {
  if (zorvel_window_cb f = callbacks().window) {
    run(JNI_TRUE, [=] { f(a, b, c, d, e); });
  }
}

// Calls the surface function for x = 0..n-1 on one native thread (attached once) and
// returns the sum of the results.
JNIEXPORT jdouble JNICALL Java_ztest_Trigger_surface(JNIEnv*, jclass, jint n, jdouble y) {
  double sum = 0.0;
  if (zorvel_surface_fn f = callbacks().surface) {
    run(JNI_TRUE, [&sum, f, n, y] {
      for (int i = 0; i < n; ++i) {
        sum += f(i, y);
      }
    });
  }
  return sum;
}

// Forgets every callback, in the library and in the binding's registries.
JNIEXPORT void JNICALL Java_ztest_Trigger_clear(JNIEnv*, jclass) {
  if (zorvel::GlobalBlock* g = zorvel::find_block()) {
    g->callbacks = zorvel::CallbackState{};
  }
  zorvel::jni::clear_callbacks();
}

}  // extern "C"
