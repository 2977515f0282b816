// Test-only natives of the class ztest.Trigger: they raise the events that the widget,
// window and surface subsystems will raise, on the calling thread or on a new native
// thread unknown to the virtual machine. Linked with the binding's own objects into a
// test variant of libzorjava, so that the events reach the registry that the natives of
// zorvel.Zorvel fill.

#include <jni.h>

#include <thread>

#include "jni/callbacks.h"

namespace {

using zorvel::jni::WidgetKind;

WidgetKind kind_of(jint kind) {
  return kind == 2 ? WidgetKind::Triple : kind == 3 ? WidgetKind::Pair : WidgetKind::Single;
}

}  // namespace

extern "C" {

JNIEXPORT void JNICALL Java_ztest_Trigger_widget(JNIEnv*, jclass, jint kind, jint id, jint a,
                                                 jint b, jboolean on_new_thread) {
  if (on_new_thread == JNI_TRUE) {
    std::thread t(zorvel::jni::dispatch_widget_event, kind_of(kind), id, a, b);
    t.join();
  } else {
    zorvel::jni::dispatch_widget_event(kind_of(kind), id, a, b);
  }
}

JNIEXPORT void JNICALL Java_ztest_Trigger_window(JNIEnv*, jclass, jint a, jint b, jint c, jint d,
                                                 jint e) {
  std::thread t(zorvel::jni::dispatch_window_event, a, b, c, d, e);
  t.join();
}

// Calls the user function for x = 0..n-1 on one native thread (attached once) and
// returns the sum of the results.
JNIEXPORT jdouble JNICALL Java_ztest_Trigger_surface(JNIEnv*, jclass, jint n, jdouble y) {
  double sum = 0.0;
  std::thread t([&sum, n, y] {
    for (int i = 0; i < n; ++i) {
      sum += zorvel::jni::call_user_function(i, y);
    }
  });
  t.join();
  return sum;
}

JNIEXPORT void JNICALL Java_ztest_Trigger_clear(JNIEnv*, jclass) { zorvel::jni::clear_callbacks(); }

}  // extern "C"
