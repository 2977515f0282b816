// The fixed half of the fuzzer (see runtime.h): argument decoding, the input's folder,
// and the end of every input, which finishes an open plot and frees all state so that
// each input starts from a new process's state.
//
// Environment:
//   ZORVEL_FUZZ_OUT=DIR   keep the files of input number N in DIR/N, and the input in
//                         DIR/N.input, instead of a temporary folder emptied after every
//                         input (tools/fuzz_consumers.py reads them)
//   ZORVEL_FUZZ_TRACE=1   print every call on standard error, written as C
//   ZORVEL_FUZZ_STDOUT=1  keep the library's messages on standard output (default:
//                         standard output goes to /dev/null)

#include "fuzz/runtime.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>
#include <limits>
#include <type_traits>

#include "zorvel.h"

namespace zfuzz {
namespace {

std::string g_home;    // the folder the fuzzer was started in (libFuzzer's paths)
std::string g_base;    // the fuzzer's folder
std::string g_dir;     // the folder of the current input
bool g_keep = false;   // ZORVEL_FUZZ_OUT: files are kept
unsigned g_input = 0;  // inputs run so far
std::FILE* g_null = nullptr;
bool g_trace = false;
double g_callback_value = 0.0;

constexpr int kIntPool[32] = {0,       1,       -1,      2,       -2,        3,
                              7,       8,       10,      16,      32,        100,
                              255,     256,     999,     1000,    1001,      4095,
                              4096,    4097,    10000,   32000,   32767,     32768,
                              65535,   65536,   1000000, INT_MAX, INT_MIN,   INT_MAX - 1,
                              INT_MIN + 1, -1000000};

double dbl_pool(int i) {
  constexpr double inf = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  const double pool[32] = {0.0,     -0.0,     1.0,      -1.0,          0.5,
                           -0.5,    nan,      -nan,     inf,           -inf,
                           DBL_MAX, -DBL_MAX, DBL_MIN,  DBL_TRUE_MIN,  -DBL_TRUE_MIN,
                           DBL_EPSILON, 1e-300, 1e300,  2147483647.0,  2147483648.0,
                           -2147483649.0, 9.3e18, 1e-9, 0.001,         99.999,
                           100.0,   360.0,    720.0,    -360.0,        60.0001,
                           1e15,    4.5e15};
  return pool[i & 31];
}

std::string special_string(int i) {
  switch (i & 31) {
    case 0: return "";
    case 1: return std::string(300, 'A');
    case 2: {
      std::string s;
      for (int k = 0; k < 1000; ++k) {
        s += static_cast<char>(k % 7 == 0 ? ' ' : 'a' + k % 26);
      }
      return s;
    }
    case 3: return "\xC0\xAF\xE0\x80\xAF";  // overlong forms
    case 4: return "\x80\x80\xBF";          // continuation bytes alone
    case 5: return "ab\xF0\x9F\x98";        // cut short
    case 6: return "\xED\xA0\x80\xED\xBF\xBF";  // surrogates
    case 7: return "\xFF\xFE\xFD";
    case 8: return "\xF4\x90\x80\x80";      // beyond U+10FFFF
    case 9: return "\x01\x1B[2J\t\r\n\b";
    case 10: return "\xCE\xA9\xCE\xB1\xCE\xB2 \xD0\x96\xD0\xA9 \xC3\x84\xC3\x96\xC3\x9F \xE2\x82\xAC";
    case 11: return "%s%n%d%%%";
    case 12: return "(\\)) \\ ( %%EOF showpage";
    case 13: return "<&'\"]]>";
    case 14: return std::string(4095, '(');
    case 15: return "12345678901234567890";
    case 16: return " ";
    case 17: return "    ";
    case 18: return "\xE2\x80\xAE" "abc";  // right-to-left override
    case 19: return "a\xCC\x81\xCC\x81";   // combining accents
    case 20: return "\xEF\xBB\xBF";        // byte order mark
    case 21: return "\x7F";
    case 22: {
      std::string s;
      for (int k = 0; k < 400; ++k) {
        s += static_cast<char>(0x80 + k % 128);
      }
      return s;
    }
    case 23: {
      std::string s;
      for (int k = 0; k < 200; ++k) {
        s += "\xE2\x82\xAC";
      }
      return s;
    }
    case 24: return "nan";
    case 25: return "-1";
    case 26: return "$|{}[]^_~";  // characters that text instructions may use
    case 27: return "\\";
    case 28: return std::string(257, 'x');
    case 29: return "\xE4\xF6\xFC\xDF";  // Latin-1
    case 30: return "\xF0\x9F\x98\x80\xF0\x90\x8D\x88";  // outside the BMP
    default: return std::string(1, '\0');
  }
}

std::string special_file_name(int i) {
  switch (i & 31) {
    case 1: return "zorvel.ps";
    case 2: return "plot.eps";
    case 3: return "/dev/null";
    case 4: return "/dev/full";
    case 5: return g_dir + "/abs.ps";
    case 6: return "x.svg";
    case 7: return std::string(300, 'f');  // longer than a name may be
    case 8: return "nodir/file.ps";
    case 9: return ".";
    case 10: return "..";
    case 11: return "plot.";
    case 12: return ".hidden";
    case 13: return "a b.ps";
    case 14: return "plot.pdf";
    case 15: return "plot.png";
    case 16: return "\xFF\xFE.ps";
    case 17: return g_dir + "/";
    case 18: return std::string(255, 'n');
    case 19: return std::string(251, 'n') + ".ps";
    case 20: return "zorvel.err";
    case 21: return "plot.met";
    case 22: return "plot.hpg";
    case 23: return "plot.java";
    case 24: return "/dev/null/x";
    case 25: return "a.b.c";
    case 26: return "v";
    case 27: return "v_1";
    case 28: return "v.ps";
    case 29: return "v_1.ps";
    case 30: return "";
    default: return "plot";
  }
}

std::string near_miss(std::string k, int kind, Reader& r) {
  switch (kind % 12) {
    case 0:
      for (char& c : k) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      }
      return k;
    case 1: return k.substr(0, 3);
    case 2: return k + "XYZ";
    case 3: return " " + k;
    case 4:
      if (!k.empty()) {
        k.back() = static_cast<char>(k.back() + 1);
      }
      return k;
    case 5: return k + "\xFF";
    case 6: return k.substr(0, 1);
    case 7: return k + k;
    case 8: return (k + "    ").substr(0, 4);
    case 9: return k + " " + r.bytes(r.byte() % 16);
    case 10:
      for (std::size_t i = 0; i < k.size(); i += 2) {
        k[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(k[i])));
      }
      return k;
    default: return k + std::string(300, k.empty() ? 'Z' : k[0]);
  }
}

template <class T>
std::unique_ptr<T[]> allocate(long long n) {
  const std::size_t size = n > 0 ? static_cast<std::size_t>(n) : 0;
  return std::unique_ptr<T[]>(new T[size]());
}

template <class T, class Read>
Array<T> read_array(Reader& r, long long n, Read read_value) {
  const std::uint8_t tag = r.byte();
  Array<T> a;
  if ((tag & 7) == 0) {
    return a;
  }
  a.data = allocate<T>(n);
  T* p = a.data.get();
  switch (tag & 7) {
    case 1: {
      const T v = read_value(r);
      for (long long i = 0; i < n; ++i) {
        p[i] = v;
      }
      break;
    }
    case 2: {
      const T start = read_value(r);
      const T step = read_value(r);
      T v = start;
      for (long long i = 0; i < n; ++i) {
        p[i] = v;
        // Wrapping on purpose: the library meets whatever the ramp becomes.
        if constexpr (std::is_same_v<T, int>) {
          v = static_cast<int>(static_cast<unsigned>(v) + static_cast<unsigned>(step));
        } else {
          v += step;
        }
      }
      break;
    }
    case 3: {
      T first[16] = {};
      const long long m = n < 16 ? n : 16;
      for (long long i = 0; i < m; ++i) {
        first[i] = read_value(r);
      }
      for (long long i = 0; i < n; ++i) {
        p[i] = first[i % 16];
      }
      break;
    }
    default:
      for (long long i = 0; i < n; ++i) {
        p[i] = static_cast<T>(i);
      }
      break;
  }
  return a;
}

template <class T>
Array<T> out_array(Reader& r, long long n) {
  Array<T> a;
  if ((r.byte() & 7) != 0) {
    a.data = allocate<T>(n);
  }
  return a;
}

void make_dir(const std::string& path) {
  if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
    std::perror(path.c_str());
    std::abort();
  }
}

// Removes what the library left in a folder (plot files and message files only: it
// makes no folders).
void empty_dir(const std::string& path) {
  DIR* d = ::opendir(path.c_str());
  if (d == nullptr) {
    return;
  }
  while (const dirent* e = ::readdir(d)) {
    if (std::strcmp(e->d_name, ".") != 0 && std::strcmp(e->d_name, "..") != 0) {
      std::remove((path + "/" + e->d_name).c_str());
    }
  }
  ::closedir(d);
}

void remove_temporary() {
  empty_dir(g_base + "/work");
  ::rmdir((g_base + "/work").c_str());
  ::rmdir(g_base.c_str());
}

void setup() {
  g_trace = std::getenv("ZORVEL_FUZZ_TRACE") != nullptr;
  char* home = ::getcwd(nullptr, 0);
  if (home == nullptr) {
    std::perror("getcwd");
    std::abort();
  }
  g_home = home;
  std::free(home);
  ::setenv("SOURCE_DATE_EPOCH", "1700000000", 0);
  // No display: screen plots, cursor input, widgets and dialogs would wait for a user.
  ::unsetenv("DISPLAY");
  ::unsetenv("WAYLAND_DISPLAY");
  g_null = std::fopen("/dev/null", "w");
  if (std::getenv("ZORVEL_FUZZ_STDOUT") == nullptr) {
    std::fflush(stdout);
    const int fd = ::open("/dev/null", O_WRONLY);
    if (fd >= 0) {
      ::dup2(fd, 1);
      ::close(fd);
    }
  }
  if (const char* out = std::getenv("ZORVEL_FUZZ_OUT"); out != nullptr && *out != '\0') {
    g_keep = true;
    char* abs = ::realpath(out, nullptr);
    if (abs == nullptr) {
      make_dir(out);
      abs = ::realpath(out, nullptr);
    }
    if (abs == nullptr) {
      std::perror(out);
      std::abort();
    }
    g_base = abs;
    std::free(abs);
    return;
  }
  const char* tmp = std::getenv("TMPDIR");
  std::string pattern = std::string(tmp != nullptr && *tmp != '\0' ? tmp : "/tmp") +
                        "/zorvel-fuzz-XXXXXX";
  if (::mkdtemp(pattern.data()) == nullptr) {
    std::perror("mkdtemp");
    std::abort();
  }
  g_base = pattern;
  std::atexit(remove_temporary);
}

void enter_input_dir(const std::uint8_t* data, std::size_t size) {
  ++g_input;
  if (g_keep) {
    // DIR/N holds the files of input N, DIR/N.input the input itself (to replay it).
    char name[16];
    std::snprintf(name, sizeof name, "/%06u", g_input);
    g_dir = g_base + name;
    empty_dir(g_dir);  // a folder of an earlier run of the same number
    if (std::FILE* f = std::fopen((g_dir + ".input").c_str(), "wb")) {
      std::fwrite(data, 1, size, f);
      std::fclose(f);
    }
  } else {
    g_dir = g_base + "/work";
  }
  make_dir(g_dir);
  if (::chdir(g_dir.c_str()) != 0) {
    std::perror(g_dir.c_str());
    std::abort();
  }
}

void leave_input_dir() {
  if (::chdir(g_home.c_str()) != 0) {
    std::perror(g_home.c_str());
    std::abort();
  }
  if (!g_keep) {
    empty_dir(g_dir);
  }
}

}  // namespace

std::uint16_t Reader::u16() {
  const unsigned lo = byte();
  return static_cast<std::uint16_t>(lo | static_cast<unsigned>(byte()) << 8);
}

std::uint32_t Reader::u32() {
  const std::uint32_t lo = u16();
  return lo | static_cast<std::uint32_t>(u16()) << 16;
}

std::uint64_t Reader::u64() {
  const std::uint64_t lo = u32();
  return lo | static_cast<std::uint64_t>(u32()) << 32;
}

std::string Reader::bytes(std::size_t n) {
  const std::size_t left = size_ - at_;
  const std::size_t take = n < left ? n : left;
  std::string s(reinterpret_cast<const char*>(data_ + at_), take);
  at_ += take;
  return s;
}

int read_int(Reader& r) {
  const std::uint8_t tag = r.byte();
  if (tag < 0xC0) {
    return tag - 0x40;
  }
  if (tag < 0xE0) {
    return kIntPool[tag - 0xC0];
  }
  if (tag < 0xF0) {
    return static_cast<std::int16_t>(r.u16());
  }
  return static_cast<std::int32_t>(r.u32());
}

int read_count(Reader& r) {
  const int n = read_int(r);
  return n > kMaxCount ? n % (kMaxCount + 1) : n;
}

void cap_pair(int nx, int& ny) {
  if (nx > 0 && ny > 0 && nx * ny > kMaxCount) {
    ny = kMaxCount / nx;
  }
}

double read_dbl(Reader& r) {
  const std::uint8_t tag = r.byte();
  double v = 0.0;
  if (tag < 0xC0) {
    v = tag - 0x40;
  } else if (tag < 0xE0) {
    v = dbl_pool(tag - 0xC0);
  } else if (tag < 0xF0) {
    v = static_cast<std::int16_t>(r.u16()) / 100.0;
  } else {
    const std::uint64_t bits = r.u64();
    std::memcpy(&v, &bits, sizeof v);
  }
  g_callback_value = v;
  return v;
}

namespace {

Str decode_str(std::uint8_t tag, Reader& r) {
  Str s;
  if (tag < 0x80) {
    const std::size_t i = r.u16() % kKeywordCount;
    s.text = kKeywords[i];
    if (tag >= 0x40) {
      s.text = near_miss(s.text, tag & 0x3F, r);
    }
  } else if (tag < 0xA0) {
    if (tag == 0x80) {
      s.null = true;
    } else {
      s.text = special_string(tag - 0x80);
    }
  } else if (tag < 0xF0) {
    s.text = r.bytes(r.byte());
  } else {
    s.text = r.bytes(r.u16() & 0xFFF);
  }
  return s;
}

}  // namespace

Str read_str(Reader& r) { return decode_str(r.byte(), r); }

Str read_file_name(Reader& r) {
  const std::uint8_t tag = r.byte();
  if (tag == 0x80) {
    return Str{true, {}};
  }
  if (tag > 0x80 && tag < 0xA0) {
    return Str{false, special_file_name(tag - 0x80)};
  }
  // Any other name stays inside the input's folder.
  Str s = decode_str(tag, r);
  for (char& c : s.text) {
    if (c == '/') {
      c = '_';
    }
  }
  return s;
}

std::FILE* read_file(Reader& r) {
  switch (r.byte() % 3) {
    case 0: return nullptr;
    case 1: return g_null;
    default: return stdout;
  }
}

bool read_present(Reader& r) { return (r.byte() & 7) != 0; }

double callback_value() { return g_callback_value; }

bool tracing() { return g_trace; }

void trace(const char* routine, std::initializer_list<std::string> args) {
  std::string line = routine;
  line += '(';
  bool first = true;
  for (const std::string& a : args) {
    line += (first ? "" : ", ") + a;
    first = false;
  }
  line += ");\n";
  std::fputs(line.c_str(), stderr);
}

std::string show(int v) {
  if (v == INT_MIN) {
    return "INT_MIN";
  }
  return std::to_string(v);
}

std::string show(double v) {
  if (std::isnan(v)) {
    return std::signbit(v) ? "-NAN" : "NAN";
  }
  if (std::isinf(v)) {
    return v < 0 ? "-INFINITY" : "INFINITY";
  }
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.17g", v);
  std::string s = buf;
  if (s.find_first_of(".e") == std::string::npos) {
    s += ".0";
  }
  return s;
}

std::string show(const Str& s) {
  if (s.null) {
    return "NULL";
  }
  std::string out = "\"";
  const std::size_t shown = s.text.size() < 120 ? s.text.size() : 120;
  for (std::size_t i = 0; i < shown; ++i) {
    const auto c = static_cast<unsigned char>(s.text[i]);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
    } else if (c >= 0x20 && c < 0x7F) {
      out += static_cast<char>(c);
    } else {
      char buf[8];
      std::snprintf(buf, sizeof buf, "\\%03o", c);
      out += buf;
    }
  }
  out += '"';
  if (shown < s.text.size()) {
    out += " /* " + std::to_string(s.text.size()) + " bytes */";
  }
  return out;
}

std::string show(std::FILE* f) {
  return f == nullptr ? "NULL" : f == stdout ? "stdout" : "devnull";
}

std::string show_pointer(const void* p, const char* what) { return p != nullptr ? what : "NULL"; }

Array<int> read_int_array(Reader& r, long long n) { return read_array<int>(r, n, read_int); }
Array<double> read_dbl_array(Reader& r, long long n) {
  return read_array<double>(r, n, read_dbl);
}
Array<int> out_int_array(Reader& r, long long n) { return out_array<int>(r, n); }
Array<double> out_dbl_array(Reader& r, long long n) { return out_array<double>(r, n); }
Array<char> out_chars(Reader& r, long long n) { return out_array<char>(r, n); }

namespace {
constexpr std::size_t kSizedChars = 1000 * 1000 + 1;
constexpr std::size_t kSizedElements = 65536;
}  // namespace

char* sized_chars(Reader& r) {
  static std::vector<char> buf(kSizedChars, ' ');
  return read_present(r) ? buf.data() : nullptr;
}

int* sized_ints(Reader& r) {
  static std::vector<int> buf(kSizedElements);
  return read_present(r) ? buf.data() : nullptr;
}

double* sized_dbls(Reader& r) {
  static std::vector<double> buf(kSizedElements);
  return read_present(r) ? buf.data() : nullptr;
}

}  // namespace zfuzz

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  zfuzz::setup();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zfuzz::enter_input_dir(data, size);
  zfuzz::Reader r(data, size);
  for (int i = 0; i < zfuzz::kMaxCalls && zfuzz::call_one(r); ++i) {
  }
  // Every input ends as a careful program ends: its plot finished, its state freed
  // (thrfin ends thread mode and frees every block; without it, delglb frees ours).
  if (getlev() > 0) {
    zorfin();
  }
  thrfin();
  delglb();
  zfuzz::leave_input_dir();
  return 0;
}
