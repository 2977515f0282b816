// Everything of the Java binding that is shared by the whole process lives in this file:
// the JavaVM, the widget callback registry, the window callback and the user function of
// surfun, and the one mutex that guards them. The library's threads read the registry
// while Java threads may register, so every access takes the mutex; Java is never called
// with the mutex held (a callback may register further callbacks).
//
// The natives of swgcbk, swgcb2, swgcb3, wincbk and surfun are written here by hand:
// their C counterparts take function pointers, which Java cannot give. Until the widget
// and surface subsystems exist they fill the registry only; those subsystems will call
// dispatch_widget_event, dispatch_window_event and call_user_function from the native
// callbacks that these natives hand to the library.

#include "jni/callbacks.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <mutex>
#include <string>

#include "core/messages.h"
#include "jni/marshal.h"

namespace zorvel::jni {
namespace {

struct WidgetEntry {
  int id = 0;
  std::string name;  // "class.method" in the JVM's modified UTF-8, as FindClass wants it
};

struct Callbacks {
  std::atomic<JavaVM*> vm{nullptr};
  std::mutex lock;
  std::array<WidgetEntry, kMaxWidgetCallbacks> widgets;
  int count = 0;
  std::string window_name;
  jclass user_class = nullptr;  // global reference
  jmethodID user_method = nullptr;
};

Callbacks& state() {
  // Never destroyed: library threads may raise events while the process exits.
  static Callbacks* c = new Callbacks;
  return *c;
}

// The calling thread's JNIEnv. A thread unknown to the virtual machine is attached as a
// daemon (so that it never keeps the VM from ending) and detached when it ends.
class Attachment {
 public:
  ~Attachment() {
    if (vm_ != nullptr) {
      vm_->DetachCurrentThread();
    }
  }
  void attached(JavaVM* vm) { vm_ = vm; }

 private:
  JavaVM* vm_ = nullptr;
};

JNIEnv* thread_env() {
  JavaVM* vm = state().vm.load(std::memory_order_acquire);
  if (vm == nullptr) {
    return nullptr;
  }
  JNIEnv* env = nullptr;
  const jint r = vm->GetEnv(reinterpret_cast<void**>(&env), JNI_VERSION_1_6);
  if (r == JNI_OK) {
    return env;
  }
  if (r != JNI_EDETACHED) {
    return nullptr;
  }
  char thread_name[] = "zorvel callback";
  JavaVMAttachArgs args{JNI_VERSION_1_6, thread_name, nullptr};
  if (vm->AttachCurrentThreadAsDaemon(reinterpret_cast<void**>(&env), &args) != JNI_OK) {
    return nullptr;
  }
  thread_local Attachment attachment;
  attachment.attached(vm);
  return env;
}

void remember_vm_of(JNIEnv* env) {
  JavaVM* vm = nullptr;
  if (env->GetJavaVM(&vm) == JNI_OK) {
    state().vm.store(vm, std::memory_order_release);
  }
}

// The text of a Java string in modified UTF-8; false for null or exhausted memory.
bool read_name(JNIEnv* env, jstring s, std::string& out) {
  if (s == nullptr) {
    return false;
  }
  const char* chars = env->GetStringUTFChars(s, nullptr);
  if (chars == nullptr) {
    env->ExceptionClear();
    return false;
  }
  bool ok = true;
  try {
    out.assign(chars);
  } catch (...) {
    ok = false;
  }
  env->ReleaseStringUTFChars(s, chars);
  return ok;
}

// A class and a static method found from "pkg.Class.method"; the class is a local
// reference that the caller deletes.
struct StaticMethod {
  jclass cls = nullptr;
  jmethodID id = nullptr;
};

bool resolve(JNIEnv* env, const std::string& name, const char* signature, StaticMethod& m) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == name.size()) {
    return false;
  }
  std::string cls = name.substr(0, dot);
  for (char& ch : cls) {
    if (ch == '.') {
      ch = '/';
    }
  }
  m.cls = env->FindClass(cls.c_str());
  if (m.cls == nullptr) {
    env->ExceptionClear();
    return false;
  }
  m.id = env->GetStaticMethodID(m.cls, name.c_str() + dot + 1, signature);
  if (m.id == nullptr) {
    env->ExceptionClear();
    env->DeleteLocalRef(m.cls);
    m.cls = nullptr;
    return false;
  }
  return true;
}

// An exception thrown by the Java method is shown and cleared: the library's code that
// raised the event must go on, and a pending exception would break the next JNI call.
void after_call(JNIEnv* env) {
  if (env->ExceptionCheck() == JNI_TRUE) {
    env->ExceptionDescribe();
    env->ExceptionClear();
  }
}

}  // namespace

void remember_vm(JavaVM* vm) { state().vm.store(vm, std::memory_order_release); }

// Registration
// ============

bool register_widget_callback(JNIEnv* env, jint id, jstring name) {
  remember_vm_of(env);
  std::string text;
  if (!read_name(env, name, text)) {
    return false;
  }
  Callbacks& c = state();
  std::lock_guard<std::mutex> guard(c.lock);
  if (c.count >= kMaxWidgetCallbacks) {
    return false;
  }
  WidgetEntry& e = c.widgets[static_cast<std::size_t>(c.count)];
  e.id = id;
  e.name.swap(text);
  ++c.count;
  return true;
}

bool register_window_callback(JNIEnv* env, jstring name) {
  remember_vm_of(env);
  std::string text;
  if (!read_name(env, name, text)) {
    return false;
  }
  Callbacks& c = state();
  std::lock_guard<std::mutex> guard(c.lock);
  c.window_name.swap(text);
  return true;
}

bool register_user_function(JNIEnv* env, jstring name) {
  remember_vm_of(env);
  std::string text;
  if (!read_name(env, name, text)) {
    return false;
  }
  StaticMethod m;
  if (!resolve(env, text, "(FF)F", m)) {
    return false;
  }
  auto global = static_cast<jclass>(env->NewGlobalRef(m.cls));
  env->DeleteLocalRef(m.cls);
  if (global == nullptr) {
    env->ExceptionClear();
    return false;
  }
  jclass old = nullptr;
  {
    Callbacks& c = state();
    std::lock_guard<std::mutex> guard(c.lock);
    old = c.user_class;
    c.user_class = global;
    c.user_method = m.id;
  }
  if (old != nullptr) {
    env->DeleteGlobalRef(old);
  }
  return true;
}

void clear_callbacks() {
  Callbacks& c = state();
  jclass old = nullptr;
  {
    std::lock_guard<std::mutex> guard(c.lock);
    for (int i = 0; i < c.count; ++i) {
      c.widgets[static_cast<std::size_t>(i)].name.clear();
    }
    c.count = 0;
    c.window_name.clear();
    old = c.user_class;
    c.user_class = nullptr;
    c.user_method = nullptr;
  }
  if (old != nullptr) {
    if (JNIEnv* env = thread_env()) {
      env->DeleteGlobalRef(old);
    }
  }
}

// Events
// ======

void dispatch_widget_event(WidgetKind kind, int id, int a, int b) {
  std::string name;
  {
    Callbacks& c = state();
    std::lock_guard<std::mutex> guard(c.lock);
    if (c.count == 0) {
      return;
    }
    const WidgetEntry* entry = &c.widgets[0];
    for (int i = 0; i < c.count; ++i) {
      if (c.widgets[static_cast<std::size_t>(i)].id == id) {
        entry = &c.widgets[static_cast<std::size_t>(i)];
        break;
      }
    }
    try {
      name = entry->name;
    } catch (...) {
      return;
    }
  }
  JNIEnv* env = thread_env();
  if (env == nullptr) {
    return;
  }
  static constexpr const char* kSignatures[] = {"(I)V", "(III)V", "(II)V"};
  StaticMethod m;
  if (!resolve(env, name, kSignatures[static_cast<int>(kind)], m)) {
    return;
  }
  switch (kind) {
    case WidgetKind::Single:
      env->CallStaticVoidMethod(m.cls, m.id, static_cast<jint>(id));
      break;
    case WidgetKind::Triple:
      env->CallStaticVoidMethod(m.cls, m.id, static_cast<jint>(id), static_cast<jint>(a),
                                static_cast<jint>(b));
      break;
    case WidgetKind::Pair:
      env->CallStaticVoidMethod(m.cls, m.id, static_cast<jint>(id), static_cast<jint>(a));
      break;
  }
  after_call(env);
  env->DeleteLocalRef(m.cls);
}

void dispatch_window_event(int a, int b, int c, int d, int e) {
  std::string name;
  {
    Callbacks& s = state();
    std::lock_guard<std::mutex> guard(s.lock);
    try {
      name = s.window_name;
    } catch (...) {
      return;
    }
  }
  if (name.empty()) {
    return;
  }
  JNIEnv* env = thread_env();
  if (env == nullptr) {
    return;
  }
  StaticMethod m;
  if (!resolve(env, name, "(IIIII)V", m)) {
    return;
  }
  env->CallStaticVoidMethod(m.cls, m.id, static_cast<jint>(a), static_cast<jint>(b),
                            static_cast<jint>(c), static_cast<jint>(d), static_cast<jint>(e));
  after_call(env);
  env->DeleteLocalRef(m.cls);
}

double call_user_function(double x, double y) {
  JNIEnv* env = thread_env();
  if (env == nullptr) {
    return 0.0;
  }
  jclass cls = nullptr;
  jmethodID method = nullptr;
  {
    // A local reference of our own keeps the class alive should another thread replace
    // the user function during the call.
    Callbacks& c = state();
    std::lock_guard<std::mutex> guard(c.lock);
    if (c.user_class == nullptr) {
      return 0.0;
    }
    cls = static_cast<jclass>(env->NewLocalRef(c.user_class));
    method = c.user_method;
  }
  if (cls == nullptr) {
    env->ExceptionClear();
    return 0.0;
  }
  const jfloat z =
      env->CallStaticFloatMethod(cls, method, static_cast<jfloat>(x), static_cast<jfloat>(y));
  double result = z;
  if (env->ExceptionCheck() == JNI_TRUE) {
    after_call(env);
    result = 0.0;
  }
  env->DeleteLocalRef(cls);
  return result;
}

}  // namespace zorvel::jni

// The natives of the callback routines
// ====================================

namespace {

void register_widget(JNIEnv* env, jint id, jstring cfun, const char* routine) {
  if (cfun == nullptr) {
    zorvel::warn_in(routine, 2, "cfun");
    return;
  }
  // A full registry and unreadable names fail silently, as for any bad name.
  zorvel::jni::register_widget_callback(env, id, cfun);
}

}  // namespace

extern "C" {

JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void* /*reserved*/) {
  zorvel::jni::remember_vm(vm);
  // The library writes its messages through C's stdout, the Java program through
  // System.out on the same descriptor. Line buffering keeps both in order when the output
  // is a pipe or a file: each warning and summary line is out before Java prints again.
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  return JNI_VERSION_1_6;
}

// swgcbk(int id, String cfun): the Java method has the signature "(I)V".
JNIEXPORT void JNICALL Java_zorvel_Zorvel_swgcbk(JNIEnv* env, jclass, jint id,
                                                 jstring cfun) noexcept {
  register_widget(env, id, cfun, "swgcbk");
}

// swgcb2(int id, String cfun): the Java method has the signature "(III)V".
JNIEXPORT void JNICALL Java_zorvel_Zorvel_swgcb2(JNIEnv* env, jclass, jint id,
                                                 jstring cfun) noexcept {
  register_widget(env, id, cfun, "swgcb2");
}

// swgcb3(int id, String cfun): the Java method has the signature "(II)V".
JNIEXPORT void JNICALL Java_zorvel_Zorvel_swgcb3(JNIEnv* env, jclass, jint id,
                                                 jstring cfun) noexcept {
  register_widget(env, id, cfun, "swgcb3");
}

// wincbk(String cfun): the Java method has the signature "(IIIII)V".
JNIEXPORT void JNICALL Java_zorvel_Zorvel_wincbk(JNIEnv* env, jclass, jstring cfun) noexcept {
  if (cfun == nullptr) {
    zorvel::warn_in("wincbk", 2, "cfun");
    return;
  }
  zorvel::jni::register_window_callback(env, cfun);
}

// surfun(String cfun, int ixpts, double xdel, int iypts, double ydel): the function of
// the surface has the signature "(FF)F". It is resolved now; a name that cannot be found
// returns without drawing.
JNIEXPORT void JNICALL Java_zorvel_Zorvel_surfun(JNIEnv* env, jclass, jstring cfun, jint /*ixpts*/,
                                                 jdouble /*xdel*/, jint /*iypts*/,
                                                 jdouble /*ydel*/) noexcept {
  if (cfun == nullptr) {
    zorvel::warn_in("surfun", 2, "cfun");
    return;
  }
  if (!zorvel::jni::register_user_function(env, cfun)) {
    return;
  }
  // The surface subsystem will draw here, with call_user_function as its function.
}

}  // extern "C"
