#include "jni/marshal.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

#include "core/format.h"
#include "core/messages.h"
#include "jni/utf.h"

namespace zorvel::jni {

static_assert(std::is_same_v<jchar, std::uint16_t>, "Java's char is a UTF-16 unit");

namespace {

constexpr std::string_view kBinding = "Java";

// Element access of the primitive array types, chosen at compile time.
template <typename JArray>
struct ArrayOps;

template <>
struct ArrayOps<jintArray> {
  static jint* get(JNIEnv* env, jintArray a) { return env->GetIntArrayElements(a, nullptr); }
  static void release(JNIEnv* env, jintArray a, jint* p, jint mode) {
    env->ReleaseIntArrayElements(a, p, mode);
  }
  static void read(JNIEnv* env, jintArray a, jint* v) { env->GetIntArrayRegion(a, 0, 1, v); }
  static void write(JNIEnv* env, jintArray a, const jint* v) { env->SetIntArrayRegion(a, 0, 1, v); }
};

template <>
struct ArrayOps<jdoubleArray> {
  static jdouble* get(JNIEnv* env, jdoubleArray a) {
    return env->GetDoubleArrayElements(a, nullptr);
  }
  static void release(JNIEnv* env, jdoubleArray a, jdouble* p, jint mode) {
    env->ReleaseDoubleArrayElements(a, p, mode);
  }
  static void read(JNIEnv* env, jdoubleArray a, jdouble* v) {
    env->GetDoubleArrayRegion(a, 0, 1, v);
  }
  static void write(JNIEnv* env, jdoubleArray a, const jdouble* v) {
    env->SetDoubleArrayRegion(a, 0, 1, v);
  }
};

template <>
struct ArrayOps<jfloatArray> {
  static void read(JNIEnv* env, jfloatArray a, jfloat* v) { env->GetFloatArrayRegion(a, 0, 1, v); }
  static void write(JNIEnv* env, jfloatArray a, const jfloat* v) {
    env->SetFloatArrayRegion(a, 0, 1, v);
  }
};

// Fewer elements than the routine will touch: warning 301, no call.
bool too_short(JNIEnv* env, jarray a, std::int64_t count) {
  if (count > env->GetArrayLength(a)) {
    warn_short_array();
    return true;
  }
  return false;
}

}  // namespace

void warn_short_array() { warn_in(kBinding, 301); }

void warn_no_memory(JNIEnv* env) {
  if (env != nullptr && env->ExceptionCheck() == JNI_TRUE) {
    env->ExceptionClear();
  }
  warn_in(kBinding, 302);
}

// Pinned int[] and double[]
// =========================

template <typename JArray, typename T>
PinnedArray<JArray, T>::PinnedArray(JNIEnv* env, JArray a, std::int64_t count,
                                    Dir /*dir*/) noexcept
    : env_(env), a_(a) {
  if (a == nullptr) {
    ok_ = true;  // the routine's own check reports a null array that it would read
    return;
  }
  if (too_short(env, a, count)) {
    return;
  }
  if (env->GetArrayLength(a) == 0) {
    ok_ = true;  // nothing to hand over; some machines give no elements for empty arrays
    return;
  }
  p_ = ArrayOps<JArray>::get(env, a);
  if (p_ == nullptr) {
    warn_no_memory(env);
    return;
  }
  ok_ = true;
}

template <typename JArray, typename T>
PinnedArray<JArray, T>::~PinnedArray() {
  if (p_ != nullptr) {
    ArrayOps<JArray>::release(env_, a_, p_, JNI_ABORT);
  }
}

template <typename JArray, typename T>
void PinnedArray<JArray, T>::commit() {
  if (p_ != nullptr) {
    ArrayOps<JArray>::release(env_, a_, p_, 0);
    p_ = nullptr;
  }
}

template class PinnedArray<jintArray, jint>;
template class PinnedArray<jdoubleArray, jdouble>;

// float[] through a double temporary
// ==================================

FloatArray::FloatArray(JNIEnv* env, jfloatArray a, std::int64_t count, Dir /*dir*/) noexcept
    : env_(env), a_(a) {
  if (a == nullptr) {
    ok_ = true;
    return;
  }
  if (too_short(env, a, count)) {
    return;
  }
  n_ = count > 0 ? static_cast<jint>(count) : 0;  // at most the array's length
  p_.reset(new (std::nothrow) double[static_cast<std::size_t>(n_) + 1]);
  if (!p_) {
    warn_no_memory(env);
    return;
  }
  if (n_ > 0) {
    // The critical section only spans the widening loop: no JNI call happens inside.
    auto* f = static_cast<jfloat*>(env->GetPrimitiveArrayCritical(a, nullptr));
    if (f == nullptr) {
      warn_no_memory(env);
      return;
    }
    for (jint i = 0; i < n_; ++i) {
      p_[static_cast<std::size_t>(i)] = f[i];
    }
    env->ReleasePrimitiveArrayCritical(a, f, JNI_ABORT);
  }
  ok_ = true;
}

void FloatArray::commit() {
  if (a_ == nullptr || n_ == 0 || !p_) {
    return;
  }
  auto* f = static_cast<jfloat*>(env_->GetPrimitiveArrayCritical(a_, nullptr));
  if (f == nullptr) {
    warn_no_memory(env_);
    return;
  }
  for (jint i = 0; i < n_; ++i) {
    f[i] = static_cast<jfloat>(p_[static_cast<std::size_t>(i)]);
  }
  env_->ReleasePrimitiveArrayCritical(a_, f, 0);
}

// One-element arrays for output scalars
// =====================================

template <typename JArray, typename J, typename C>
Cell<JArray, J, C>::Cell(JNIEnv* env, JArray a) noexcept : env_(env), a_(a) {
  if (a == nullptr) {
    ok_ = true;  // the routine reports the null output argument
    return;
  }
  if (too_short(env, a, 1)) {
    return;
  }
  J v{};
  ArrayOps<JArray>::read(env, a, &v);
  value_ = static_cast<C>(v);
  ok_ = true;
}

template <typename JArray, typename J, typename C>
void Cell<JArray, J, C>::commit() {
  if (a_ != nullptr) {
    const J v = static_cast<J>(value_);
    ArrayOps<JArray>::write(env_, a_, &v);
  }
}

template class Cell<jintArray, jint, int>;
template class Cell<jdoubleArray, jdouble, double>;
template class Cell<jfloatArray, jfloat, double>;

// Strings
// =======

StringIn::StringIn(JNIEnv* env, jstring s, const char* routine, const char* argument) noexcept {
  if (s == nullptr) {
    warn_in(routine, 2, argument);
    return;
  }
  const auto units = static_cast<std::size_t>(env->GetStringLength(s));
  const std::size_t need = utf8_capacity(units) + 1;
  char* buf = inline_;
  if (need > kInline) {
    heap_.reset(new (std::nothrow) char[need]);
    if (!heap_) {
      warn_no_memory(env);
      return;
    }
    buf = heap_.get();
  }
  const jchar* u = env->GetStringCritical(s, nullptr);
  if (u == nullptr) {
    warn_no_memory(env);
    return;
  }
  const std::size_t len = utf16_to_utf8(u, units, buf);
  env->ReleaseStringCritical(s, u);
  buf[len] = '\0';
  text_ = buf;
}

StringOut::StringOut(JNIEnv* env, jobjectArray a, jint count) noexcept : env_(env), a_(a) {
  if (a == nullptr) {
    ok_ = true;
    return;
  }
  if (too_short(env, a, 1)) {
    return;
  }
  if (count > 0) {
    n_ = count;
    p_.reset(new (std::nothrow) char[static_cast<std::size_t>(count)]);
    if (!p_) {
      warn_no_memory(env);
      return;
    }
    p_[0] = '\0';
  }
  ok_ = true;
}

void StringOut::commit() {
  if (a_ == nullptr) {
    return;
  }
  jstring s = nullptr;
  if (p_) {
    // The library terminates its text; a text that fills the buffer is cut at its end.
    p_[static_cast<std::size_t>(n_) - 1] = '\0';
    s = new_string(env_, p_.get());
  } else {
    s = new_string(env_, "");
  }
  if (s == nullptr) {
    return;
  }
  env_->SetObjectArrayElement(a_, 0, s);
  env_->DeleteLocalRef(s);
}

StringInOut::StringInOut(JNIEnv* env, jstring s, jint count, const char* routine,
                         const char* argument) noexcept
    : env_(env), s_(s) {
  StringIn in(env, s, routine, argument);
  if (!in) {
    return;
  }
  if (count > 0) {
    n_ = count;
    const auto size = static_cast<std::size_t>(count);
    p_.reset(new (std::nothrow) char[size]);
    if (!p_) {
      warn_no_memory(env);
      return;
    }
    const std::size_t len = std::min(std::strlen(in.get()), size);
    std::memcpy(p_.get(), in.get(), len);
    if (len < size) {
      p_[len] = '\0';
    }
  }
  ok_ = true;
}

jstring StringInOut::result() const noexcept {
  if (!p_) {
    return s_;
  }
  // A text that filled the buffer was refused by the routine and is as it was.
  const auto size = static_cast<std::size_t>(n_);
  if (strnlen(p_.get(), size) == size) {
    return s_;
  }
  return new_string(env_, p_.get());
}

jstring new_string(JNIEnv* env, const char* text) noexcept {
  if (text == nullptr) {
    return nullptr;
  }
  const std::size_t n = std::strlen(text);
  constexpr std::size_t kInlineUnits = 256;
  jchar inline_units[kInlineUnits];
  std::unique_ptr<jchar[]> heap;
  jchar* units = inline_units;
  if (n > kInlineUnits) {
    heap.reset(new (std::nothrow) jchar[n]);
    if (!heap) {
      warn_no_memory(env);
      return nullptr;
    }
    units = heap.get();
  }
  const std::size_t len = utf8_to_utf16(text, n, units);
  jstring s = env->NewString(units, static_cast<jsize>(len));
  if (s == nullptr) {
    warn_no_memory(env);
  }
  return s;
}

// Files
// =====

FileArg::FileArg(jint code, const char* routine) noexcept {
  switch (code) {
    case 0:
      file_ = nullptr;
      break;
    case 1:
      file_ = stdout;
      break;
    case 2:
      file_ = stderr;
      break;
    default: {
      char buf[kNumberBuffer + 1];
      buf[0] = ' ';
      const char* end = format_int(buf + 1, code);
      warn_in(routine, 2, std::string_view(buf, static_cast<std::size_t>(end - buf)));
      return;
    }
  }
  ok_ = true;
}

}  // namespace zorvel::jni
