#pragma once
// Conversions between Java arguments and the library's C arguments, used by the native
// methods that tools/gen_java.py generates from the routine table.
//
// Every converter is an RAII object made before the library call. Its bool value tells
// whether the call may go ahead; get() is the C argument; commit(), called after the
// routine returned, copies output values back into the Java array; the destructor
// releases whatever the converter still holds (without copy-back).
//
// Failures are warnings, never Java exceptions, and the routine is then not called:
//   - an array shorter than its count: warning 301 "Not enough array elements" in the
//     name "Java" (for int[], float[] and double[] alike: the library never reads or
//     writes outside a Java array);
//   - memory exhausted (a temporary, or the virtual machine's copy of an array): warning
//     302 "Not enough memory" in the name "Java"; a pending OutOfMemoryError is cleared;
//   - a null String: warning 2 "Incorrect parameter" in the routine's name, with the
//     argument's name;
//   - a file code other than 0, 1 and 2: warning 2 in the routine's name, with the code.
// A null array is handed on as a null pointer, so that the routine's own check reports it
// (warning 2 naming the argument when its count is positive) just as for a C caller.
//
// Output scalars are one-element Java arrays (Java has no pointers); output strings are
// a one-element String[] that receives a new String.

#include <jni.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <type_traits>

namespace zorvel::jni {

static_assert(std::is_same_v<jint, int> && std::is_same_v<jdouble, double> &&
                  std::is_same_v<jfloat, float>,
              "Java's int, double and float must be C's, so that arrays pass unconverted");

// Warning 301 in the name "Java": " <<<< Warning 301: Not enough array elements in Java!"
void warn_short_array();
// Warning 302 in the name "Java", after clearing a pending exception of the VM.
void warn_no_memory(JNIEnv* env);

enum class Dir { In, Out, InOut };

// The element count of an nx by ny array, without overflow: 0 when either is not
// positive.
constexpr std::int64_t cells(jint nx, jint ny) {
  return nx > 0 && ny > 0 ? std::int64_t{nx} * ny : 0;
}

// An int[] or double[] handed through as the library's int* or double*, holding at least
// `count` elements. The virtual machine's elements are taken for the call; an input
// array is released without copy-back (the library only reads it), an output or in/out
// array with it by commit().
template <typename JArray, typename T>
class PinnedArray {
 public:
  PinnedArray(JNIEnv* env, JArray a, std::int64_t count, Dir dir) noexcept;
  ~PinnedArray();
  PinnedArray(const PinnedArray&) = delete;
  PinnedArray& operator=(const PinnedArray&) = delete;

  explicit operator bool() const { return ok_; }
  T* get() const { return p_; }
  void commit();

 private:
  JNIEnv* env_;
  JArray a_;
  T* p_ = nullptr;
  bool ok_ = false;
};

using IntArray = PinnedArray<jintArray, jint>;
using DoubleArray = PinnedArray<jdoubleArray, jdouble>;

// A float[] for the library's double*: its first `count` elements widened into a
// temporary double array (also for output arrays, so that a routine may read them);
// commit() narrows the values back into the Java array (output and in/out arrays).
class FloatArray {
 public:
  FloatArray(JNIEnv* env, jfloatArray a, std::int64_t count, Dir dir) noexcept;
  FloatArray(const FloatArray&) = delete;
  FloatArray& operator=(const FloatArray&) = delete;

  explicit operator bool() const { return ok_; }
  double* get() const { return a_ != nullptr ? p_.get() : nullptr; }
  void commit();

 private:
  JNIEnv* env_;
  jfloatArray a_;
  jint n_ = 0;
  std::unique_ptr<double[]> p_;
  bool ok_ = false;
};

// An output scalar as a one-element array: int[] for `out int`, double[] or float[] for
// `out dbl`. The element is read in first, commit() writes the routine's value back.
template <typename JArray, typename J, typename C>
class Cell {
 public:
  Cell(JNIEnv* env, JArray a) noexcept;
  Cell(const Cell&) = delete;
  Cell& operator=(const Cell&) = delete;

  explicit operator bool() const { return ok_; }
  C* get() { return a_ != nullptr ? &value_ : nullptr; }
  void commit();

 private:
  JNIEnv* env_;
  JArray a_;
  C value_ = 0;
  bool ok_ = false;
};

using IntCell = Cell<jintArray, jint, int>;
using DoubleCell = Cell<jdoubleArray, jdouble, double>;
using FloatCell = Cell<jfloatArray, jfloat, double>;

// A String as a zero-terminated UTF-8 text for the library (see jni/utf.h). Short texts
// stay in the object; longer ones get a heap buffer of the size they need.
class StringIn {
 public:
  StringIn(JNIEnv* env, jstring s, const char* routine, const char* argument) noexcept;
  StringIn(const StringIn&) = delete;
  StringIn& operator=(const StringIn&) = delete;

  explicit operator bool() const { return text_ != nullptr; }
  const char* get() const { return text_; }

 private:
  static constexpr std::size_t kInline = 256;
  char inline_[kInline];
  std::unique_ptr<char[]> heap_;
  const char* text_ = nullptr;
};

// An `out str[n]` buffer: the library writes at most `count` bytes of UTF-8 (zero
// terminated) into a temporary; commit() stores them as a new String into element 0 of
// the Java String[]. A count below 1 passes no buffer.
class StringOut {
 public:
  StringOut(JNIEnv* env, jobjectArray a, jint count) noexcept;
  StringOut(const StringOut&) = delete;
  StringOut& operator=(const StringOut&) = delete;

  explicit operator bool() const { return ok_; }
  char* get() const { return p_.get(); }
  void commit();

 private:
  JNIEnv* env_;
  jobjectArray a_;
  jint n_ = 0;
  std::unique_ptr<char[]> p_;
  bool ok_ = false;
};

// An `inout str[n]` text: the String's UTF-8 in a buffer of `count` bytes (cut to it: a
// text that fills the buffer has no end inside it, which the routine reports), and
// result(), the text the routine left there as a new String. A null String gives warning
// 2 naming the argument; a count below 1 passes no buffer, and result() is the String
// as it came when there is no buffer or the text filled it.
class StringInOut {
 public:
  StringInOut(JNIEnv* env, jstring s, jint count, const char* routine,
              const char* argument) noexcept;
  StringInOut(const StringInOut&) = delete;
  StringInOut& operator=(const StringInOut&) = delete;

  explicit operator bool() const { return ok_; }
  char* get() const { return p_.get(); }
  jstring result() const noexcept;

 private:
  JNIEnv* env_;
  jstring s_;
  jint n_ = 0;
  std::unique_ptr<char[]> p_;
  bool ok_ = false;
};

// A FILE* argument given from Java as a code: 0 no file (for `unit`: messages off),
// 1 standard output, 2 standard error.
class FileArg {
 public:
  FileArg(jint code, const char* routine) noexcept;

  explicit operator bool() const { return ok_; }
  std::FILE* get() const { return file_; }

 private:
  std::FILE* file_ = nullptr;
  bool ok_ = false;
};

// A new String from the library's zero-terminated UTF-8 text (null gives null, as does
// exhausted memory after warning 302).
jstring new_string(JNIEnv* env, const char* text) noexcept;

}  // namespace zorvel::jni
