#pragma once
// Callbacks from the library into Java: the registry of widget callbacks (swgcbk,
// swgcb2, swgcb3), the window callback (wincbk) and the user function of surfun. The
// Java program names a static method as "class.method" ("Plot.onButton", or with a
// package "org.example.Plot.onButton": the text splits at its last point).
//
// Registration happens on a Java thread (the natives below). Events come from the
// library's screen and surface code on whatever thread raises them: the dispatch
// functions get that thread's own JNIEnv from the JavaVM kept at load time, attaching
// the thread (as a daemon, detached when the thread ends) when the virtual machine does
// not know it yet. A name whose class or method cannot be found, or that holds no point,
// makes the event do nothing, silently. An exception thrown by the Java method is
// printed and cleared, so that the library continues.

#include <jni.h>

namespace zorvel::jni {

// Capacity of the widget registry; later registrations are ignored.
inline constexpr int kMaxWidgetCallbacks = 100;

// The three kinds of widget callback and the signature of their Java methods.
enum class WidgetKind {
  Single,  // swgcbk: "(I)V" with the widget id
  Triple,  // swgcb2: "(III)V" with the widget id and two values (row, column)
  Pair,    // swgcb3: "(II)V" with the widget id and one value
};

// Remembers the virtual machine for callbacks on other threads (JNI_OnLoad).
void remember_vm(JavaVM* vm);

// Registration
// ============

// Appends (id, name) while fewer than kMaxWidgetCallbacks entries exist; false when the
// registry is full or the name cannot be read (null, or no memory).
bool register_widget_callback(JNIEnv* env, jint id, jstring name);
// Keeps the name of the window callback (replacing the earlier one).
bool register_window_callback(JNIEnv* env, jstring name);
// Resolves "class.method" with the signature "(FF)F" at once; on success it becomes the
// user function. False, with the earlier function kept, when either cannot be found.
bool register_user_function(JNIEnv* env, jstring name);

// Events (any thread)
// ===================

// Calls the method registered for widget `id` (the first entry with that id, else the
// first entry) with the signature of `kind`: (id), (id, a, b) or (id, a).
void dispatch_widget_event(WidgetKind kind, int id, int a, int b);
// Calls the window callback with the five integers of a window event.
void dispatch_window_event(int a, int b, int c, int d, int e);
// Calls the user function with x and y narrowed to float; 0 when there is none or it
// throws.
double call_user_function(double x, double y);

// Empties the registry and forgets both single slots (for tests and unloading).
void clear_callbacks();

}  // namespace zorvel::jni
