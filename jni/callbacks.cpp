// Everything of the Java binding that is shared by the whole process lives in this file:
// the JavaVM, the callback registries and the one mutex that guards them. The library's
// threads read the registries while Java threads may register, so every access takes the
// mutex; Java is never called with the mutex held (a callback may register further
// callbacks).

#include "jni/callbacks.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

#include "core/callbacks.h"
#include "core/global_block.h"
#include "core/messages.h"
#include "core/process.h"
#include "jni/marshal.h"

namespace zorvel::jni {

static_assert(kMaxKeyedCallbacks == kMaxWidgetCallbacks,
              "the registry of widget handlers keeps what the library's widget table keeps");

namespace {

struct Handler {
  int key = 0;
  std::string name;  // "class.method" in the JVM's modified UTF-8, as FindClass wants it
};

struct Registry {
  std::vector<Handler> handlers;  // in the order of their first registration
  jclass function_class = nullptr;  // global reference
  jmethodID function = nullptr;
};

struct Callbacks {
  std::atomic<JavaVM*> vm{nullptr};
  std::mutex lock;
  std::array<Registry, kMaxRegistries> registries;
};

Callbacks& state() {
  // Never destroyed: library threads may raise events while the process exits.
  static Callbacks* c = new Callbacks;
  return *c;
}

Registry* registry_of(int registry) {
  if (registry < 0 || registry >= kMaxRegistries) {
    return nullptr;
  }
  return &state().registries[static_cast<std::size_t>(registry)];
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

// The text of a Java string in modified UTF-8. A null string gives warning 2 naming the
// argument, exhausted memory warning 302; both return false.
bool read_name(JNIEnv* env, jstring s, std::string& out, const char* routine,
               const char* argument) {
  if (s == nullptr) {
    warn_in(routine, 2, argument);
    return false;
  }
  const char* chars = env->GetStringUTFChars(s, nullptr);
  if (chars == nullptr) {
    warn_no_memory(env);
    return false;
  }
  bool ok = true;
  try {
    out.assign(chars);
  } catch (...) {
    ok = false;
  }
  env->ReleaseStringUTFChars(s, chars);
  if (!ok) {
    warn_no_memory(nullptr);
  }
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

}  // namespace

void remember_vm(JavaVM* vm) { state().vm.store(vm, std::memory_order_release); }

// Registration
// ============

bool keep_handler(JNIEnv* env, int registry, int key, jstring name, const char* routine,
                  const char* argument) noexcept {
  remember_vm_of(env);
  Registry* r = registry_of(registry);
  std::string text;
  if (r == nullptr || !read_name(env, name, text, routine, argument)) {
    return false;
  }
  std::lock_guard<std::mutex> guard(state().lock);
  for (Handler& h : r->handlers) {
    if (h.key == key) {
      h.name.swap(text);
      return true;
    }
  }
  if (r->handlers.size() >= static_cast<std::size_t>(kMaxKeyedCallbacks)) {
    return true;  // the library's table is full as well and ignores the registration
  }
  try {
    r->handlers.push_back(Handler{key, std::move(text)});
  } catch (...) {
    warn_no_memory(nullptr);
    return false;
  }
  return true;
}

bool keep_function(JNIEnv* env, int registry, jstring name, const char* signature,
                   const char* routine, const char* argument) noexcept {
  remember_vm_of(env);
  Registry* r = registry_of(registry);
  std::string text;
  if (r == nullptr || !read_name(env, name, text, routine, argument)) {
    return false;
  }
  StaticMethod m;
  try {
    if (!resolve(env, text, signature, m)) {
      warn_in(routine, 279, text);
      return false;
    }
  } catch (...) {
    warn_no_memory(env);
    return false;
  }
  auto global = static_cast<jclass>(env->NewGlobalRef(m.cls));
  env->DeleteLocalRef(m.cls);
  if (global == nullptr) {
    warn_no_memory(env);
    return false;
  }
  jclass old = nullptr;
  {
    std::lock_guard<std::mutex> guard(state().lock);
    old = r->function_class;
    r->function_class = global;
    r->function = m.id;
  }
  if (old != nullptr) {
    env->DeleteGlobalRef(old);
  }
  return true;
}

void clear_callbacks() {
  std::array<jclass, kMaxRegistries> old{};
  {
    Callbacks& c = state();
    std::lock_guard<std::mutex> guard(c.lock);
    for (std::size_t i = 0; i < c.registries.size(); ++i) {
      Registry& r = c.registries[i];
      r.handlers.clear();
      old[i] = r.function_class;
      r.function_class = nullptr;
      r.function = nullptr;
    }
  }
  JNIEnv* env = thread_env();
  for (jclass cls : old) {
    if (cls != nullptr && env != nullptr) {
      env->DeleteGlobalRef(cls);
    }
  }
}

// Calls
// =====

JavaCallback::JavaCallback(int registry, int key, const char* signature) noexcept {
  Registry* r = registry_of(registry);
  if (r == nullptr) {
    return;
  }
  std::string name;
  {
    std::lock_guard<std::mutex> guard(state().lock);
    if (r->handlers.empty()) {
      return;
    }
    const Handler* h = &r->handlers.front();
    for (const Handler& each : r->handlers) {
      if (each.key == key) {
        h = &each;
        break;
      }
    }
    try {
      name = h->name;
    } catch (...) {
      return;
    }
  }
  env_ = thread_env();
  if (env_ == nullptr) {
    return;
  }
  StaticMethod m;
  try {
    if (!resolve(env_, name, signature, m)) {
      return;
    }
  } catch (...) {
    return;
  }
  cls_ = m.cls;
  method_ = m.id;
}

JavaCallback::JavaCallback(int registry) noexcept {
  Registry* r = registry_of(registry);
  if (r == nullptr) {
    return;
  }
  env_ = thread_env();
  if (env_ == nullptr) {
    return;
  }
  // A local reference of our own keeps the class alive should another thread replace the
  // function during the call.
  std::lock_guard<std::mutex> guard(state().lock);
  if (r->function_class == nullptr) {
    return;
  }
  cls_ = static_cast<jclass>(env_->NewLocalRef(r->function_class));
  method_ = r->function;
  if (cls_ == nullptr) {
    env_->ExceptionClear();
  }
}

JavaCallback::~JavaCallback() {
  if (env_ == nullptr) {
    return;
  }
  threw();
  if (cls_ != nullptr) {
    env_->DeleteLocalRef(cls_);
  }
}

// An exception thrown by the Java method is shown, cleared and reported as warning 292:
// the library's code that made the call must go on, and a pending exception would break
// the next JNI call. The warning is given in the name of the routine that raised the
// event (on the screen thread: the one the lent block waits in).
bool JavaCallback::threw() noexcept {
  if (env_ != nullptr && env_->ExceptionCheck() == JNI_TRUE) {
    env_->ExceptionDescribe();
    env_->ExceptionClear();
    try {
      const GlobalBlock* g = find_block();
      warn_in(g != nullptr ? std::string(g->msg.routine.view()) : std::string("callback"), 292);
    } catch (...) {
      // no memory for the routine's name: the stack trace above has said it
    }
    return true;
  }
  return false;
}

}  // namespace zorvel::jni

extern "C" JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void* /*reserved*/) {
  zorvel::jni::remember_vm(vm);
  // The library writes its messages through C's stdout, the Java program through
  // System.out on the same descriptor. Line buffering keeps both in order when the output
  // is a pipe or a file: each warning and summary line is out before Java prints again.
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  return JNI_VERSION_1_6;
}
