#pragma once
// Callbacks from the library into Java. A Java program names a static method as
// "class.method" ("Plot.onButton", or with a package "org.example.Plot.onButton": the
// text splits at its last point). The natives that tools/gen_java.py generates keep these
// names in the registries below and hand the library a generated C function of the
// callback type (a trampoline); when the library calls it, the trampoline finds the Java
// method through the registry (JavaCallback) and calls it.
//
// A registry is a small number that the generator gives each callback type; it holds
//   - handlers: names kept for later events, looked up at each call (a name whose class
//     or method cannot be found, or that holds no point, does nothing, silently). A
//     registry keeps up to kMaxKeyedCallbacks names, one per key (the handlers of the
//     widgets share one, keyed by the widget id); a key without a name of its own takes
//     the first name kept. A handler without a key always uses the key 0.
//   - or a function: a method looked up when it is registered, and kept.
//
// Registration happens on Java threads (the natives). Calls come from the library's code
// on whatever thread raises them: JavaCallback gets that thread's own JNIEnv from the
// JavaVM kept at load time, attaching the thread (as a daemon, detached when the thread
// ends) when the virtual machine does not know it yet. An exception thrown by the Java
// method is printed and cleared, so that the library continues.

#include <jni.h>

namespace zorvel::jni {

inline constexpr int kMaxRegistries = 16;
// As many names as the library keeps widget callbacks (kMaxWidgetCallbacks), so that both
// keep the same ones.
inline constexpr int kMaxKeyedCallbacks = 100;

// Remembers the virtual machine for callbacks on other threads (JNI_OnLoad).
void remember_vm(JavaVM* vm);

// Registration (the natives)
// ==========================
// Both give warning 2 naming `argument` in the name of `routine` for a null name, and
// warning 302 when memory is exhausted; they return false then, and the routine is not
// called.

// Keeps `name` for `key`: replaces the name of that key, else adds one while fewer than
// kMaxKeyedCallbacks are kept (a full registry keeps what it has, and returns true).
bool keep_handler(JNIEnv* env, int registry, int key, jstring name, const char* routine,
                  const char* argument) noexcept;

// Looks the method up with `signature` (a JVM descriptor such as "(FF)F") and keeps it.
// False, with the earlier method kept, also when it cannot be found.
bool keep_function(JNIEnv* env, int registry, jstring name, const char* signature,
                   const char* routine, const char* argument) noexcept;

// Calls (any thread)
// ==================

// The Java method of a registry for one call: bool tells whether it was found; the
// caller makes the call through env(), cls() and method(). The destructor prints and
// clears an exception that the method threw.
class JavaCallback {
 public:
  // The handler kept for `key` (else the first one kept), looked up with `signature`.
  JavaCallback(int registry, int key, const char* signature) noexcept;
  // The function of the registry.
  explicit JavaCallback(int registry) noexcept;
  ~JavaCallback();
  JavaCallback(const JavaCallback&) = delete;
  JavaCallback& operator=(const JavaCallback&) = delete;

  explicit operator bool() const { return cls_ != nullptr; }
  JNIEnv* env() const { return env_; }
  jclass cls() const { return cls_; }
  jmethodID method() const { return method_; }
  // After the call: whether the method threw (the exception is printed and cleared).
  bool threw() noexcept;

 private:
  JNIEnv* env_ = nullptr;
  jclass cls_ = nullptr;  // local reference
  jmethodID method_ = nullptr;
};

// Empties every registry (for tests and unloading).
void clear_callbacks();

}  // namespace zorvel::jni
