// Calls the native methods of the Java binding without a Java machine: loads the native
// library (zorjava.dll on Windows, libzorjava.so on Linux), hands its exported
// Java_zorvel_Zorvel_* functions a JNIEnv whose table implements only what the wrappers
// use (strings as UTF-16, primitive arrays, exception checks), and draws one plot in
// PostScript, SVG, PDF and PNG. The files must be the same from both libraries.
//
// Usage: zorjava_stub_env LIBRARY

#include <jni.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

// Java objects of the stub: strings and double arrays.
struct StubString {
  std::u16string text;
};
struct StubDoubles {
  std::vector<jdouble> values;
};

StubString* str(jstring s) { return reinterpret_cast<StubString*>(s); }
StubDoubles* doubles(jarray a) { return reinterpret_cast<StubDoubles*>(a); }

jsize JNICALL get_string_length(JNIEnv*, jstring s) {
  return static_cast<jsize>(str(s)->text.size());
}
const jchar* JNICALL get_string_critical(JNIEnv*, jstring s, jboolean* copy) {
  if (copy != nullptr) {
    *copy = JNI_FALSE;
  }
  return reinterpret_cast<const jchar*>(str(s)->text.c_str());
}
void JNICALL release_string_critical(JNIEnv*, jstring, const jchar*) {}
jsize JNICALL get_array_length(JNIEnv*, jarray a) {
  return static_cast<jsize>(doubles(a)->values.size());
}
jdouble* JNICALL get_doubles(JNIEnv*, jdoubleArray a, jboolean* copy) {
  if (copy != nullptr) {
    *copy = JNI_FALSE;
  }
  return doubles(a)->values.data();
}
void JNICALL release_doubles(JNIEnv*, jdoubleArray, jdouble*, jint) {}
jboolean JNICALL exception_check(JNIEnv*) { return JNI_FALSE; }
void JNICALL exception_clear(JNIEnv*) {}

// The library's exports by name.
class Library {
 public:
  explicit Library(const char* path) {
#ifdef _WIN32
    handle_ = LoadLibraryA(path);
#else
    handle_ = dlopen(path, RTLD_NOW);
#endif
  }
  bool ok() const { return handle_ != nullptr; }
  template <typename F>
  F get(const char* name) const {
#ifdef _WIN32
    return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(handle_, name)));
#else
    return reinterpret_cast<F>(dlsym(handle_, name));
#endif
  }

 private:
#ifdef _WIN32
  HMODULE handle_ = nullptr;
#else
  void* handle_ = nullptr;
#endif
};

using StrFn = void(JNICALL*)(JNIEnv*, jclass, jstring);
using Str2Fn = void(JNICALL*)(JNIEnv*, jclass, jstring, jstring);
using VoidFn = void(JNICALL*)(JNIEnv*, jclass);
using MessagFn = void(JNICALL*)(JNIEnv*, jclass, jstring, jint, jint);
using GrafFn = void(JNICALL*)(JNIEnv*, jclass, jdouble, jdouble, jdouble, jdouble, jdouble,
                              jdouble, jdouble, jdouble);
using CurveFn = void(JNICALL*)(JNIEnv*, jclass, jdoubleArray, jdoubleArray, jint);
using TitlinFn = void(JNICALL*)(JNIEnv*, jclass, jstring, jint);

jstring make(std::vector<StubString>& pool, const char* utf8_ascii_or_latin) {
  StubString s;
  for (const char* p = utf8_ascii_or_latin; *p != '\0'; ++p) {
    s.text += static_cast<char16_t>(static_cast<unsigned char>(*p));
  }
  pool.push_back(s);
  return reinterpret_cast<jstring>(&pool.back());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s LIBRARY\n", argv[0]);
    return 2;
  }
  const Library lib(argv[1]);
  if (!lib.ok()) {
    std::fprintf(stderr, "cannot load %s\n", argv[1]);
    return 1;
  }
  JNINativeInterface_ table{};
  table.GetStringLength = get_string_length;
  table.GetStringCritical = get_string_critical;
  table.ReleaseStringCritical = release_string_critical;
  table.GetArrayLength = get_array_length;
  table.GetDoubleArrayElements = get_doubles;
  table.ReleaseDoubleArrayElements = release_doubles;
  table.ExceptionCheck = exception_check;
  table.ExceptionClear = exception_clear;
  JNIEnv env{};
  env.functions = &table;

  const auto metafl = lib.get<StrFn>("Java_zorvel_Zorvel_metafl");
  const auto setfil = lib.get<StrFn>("Java_zorvel_Zorvel_setfil");
  const auto filmod = lib.get<StrFn>("Java_zorvel_Zorvel_filmod");
  const auto zorini = lib.get<VoidFn>("Java_zorvel_Zorvel_zorini");
  const auto zorfin = lib.get<VoidFn>("Java_zorvel_Zorvel_zorfin");
  const auto name = lib.get<Str2Fn>("Java_zorvel_Zorvel_name");
  const auto titlin = lib.get<TitlinFn>("Java_zorvel_Zorvel_titlin");
  const auto graf = lib.get<GrafFn>("Java_zorvel_Zorvel_graf");
  const auto title = lib.get<VoidFn>("Java_zorvel_Zorvel_title");
  const auto color = lib.get<StrFn>("Java_zorvel_Zorvel_color");
  const auto curve = lib.get<CurveFn>("Java_zorvel_Zorvel_curve___3D_3DI");
  const auto endgrf = lib.get<VoidFn>("Java_zorvel_Zorvel_endgrf");
  const auto messag = lib.get<MessagFn>("Java_zorvel_Zorvel_messag");
  if (metafl == nullptr || setfil == nullptr || filmod == nullptr || zorini == nullptr ||
      zorfin == nullptr || name == nullptr || titlin == nullptr || graf == nullptr ||
      title == nullptr || color == nullptr || curve == nullptr || endgrf == nullptr ||
      messag == nullptr) {
    std::fprintf(stderr, "a native method is missing\n");
    return 1;
  }

  StubDoubles x;
  StubDoubles y;
  for (int i = 0; i <= 200; ++i) {
    x.values.push_back(i * 0.05);
    // A damped wave from polynomials only: the same on every system's mathematics.
    const double t = (i % 40) / 20.0 - 1.0;
    y.values.push_back((1.0 - t * t) * (i % 80 < 40 ? 1.0 : -1.0) * (1.0 - i / 400.0));
  }
  std::vector<StubString> pool;
  pool.reserve(64);  // the strings' addresses are their references
  const char* const formats[][2] = {
      {"PS", "stub.ps"}, {"SVG", "stub.svg"}, {"PDF", "stub.pdf"}, {"PNG", "stub.png"}};
  for (const auto& f : formats) {
    metafl(&env, nullptr, make(pool, f[0]));
    setfil(&env, nullptr, make(pool, f[1]));
    filmod(&env, nullptr, make(pool, "DELE"));
    zorini(&env, nullptr);
    name(&env, nullptr, make(pool, "Time t"), make(pool, "X"));
    name(&env, nullptr, make(pool, "Damped wave"), make(pool, "Y"));
    titlin(&env, nullptr, make(pool, "Through the native methods"), 1);
    graf(&env, nullptr, 0.0, 10.0, 0.0, 2.0, -1.0, 1.0, -1.0, 0.5);
    title(&env, nullptr);
    color(&env, nullptr, make(pool, "RED"));
    curve(&env, nullptr, reinterpret_cast<jdoubleArray>(&x), reinterpret_cast<jdoubleArray>(&y),
          static_cast<jint>(x.values.size()));
    color(&env, nullptr, make(pool, "FORE"));
    endgrf(&env, nullptr);
    messag(&env, nullptr, make(pool, "Caf\xe9 au lait"), 400, 1900);
    zorfin(&env, nullptr);
  }
  return 0;
}
