#pragma once
// The fixed half of the fuzzer: reading hostile arguments from the fuzz input and the
// folder that each input's plot files go to. The other half, the calls of every public
// routine, is generated from include/routines.tbl by tools/gen_fuzz.py, which also
// writes the seed corpus in the encoding read here.
//
// Encoding (every value read from an exhausted input is 0):
//   call      u16 routine id (FNV-1a of the name, low 16 bits; the first routine whose id
//             is >= the value, wrapping around), then its arguments in table order,
//             the scalars first and the arrays after them
//   int       tag 0x00-0xBF: tag - 0x40; 0xC0-0xDF: hostile pool; 0xE0-0xEF: int16;
//             0xF0-0xFF: int32 (little endian)
//   dbl       tag 0x00-0xBF: tag - 0x40; 0xC0-0xDF: hostile pool; 0xE0-0xEF: int16 / 100;
//             0xF0-0xFF: raw 8-byte double
//   str       tag 0x00-0x3F: keyword (u16 index); 0x40-0x7F: near miss of a keyword
//             (u16 index, kind = tag & 0x3F); 0x80-0x9F: special strings (file names for
//             file-name arguments); 0xA0-0xEF: literal of u8 length; 0xF0-0xFF: literal
//             of u16 length (at most 4095)
//   count     an int; values above 4096 wrap into 0..4096 (arrays are allocated with
//             exactly the count's elements), negative values stay
//   array     tag & 7: 0 null, 1 one value, 2 ramp (start, step), 3 up to 16 values
//             repeated, else 0, 1, 2, ...
//   out, cb   tag & 7 == 0: null, else a variable or a function that does nothing
//   file      tag % 3: null, a FILE* on /dev/null, stdout (itself /dev/null)

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace zfuzz {

inline constexpr int kMaxCount = 4096;  // elements of any array the fuzzer allocates
inline constexpr int kMaxCalls = 512;   // calls per input

class Reader {
 public:
  Reader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  bool empty() const { return at_ >= size_; }
  std::uint8_t byte() { return at_ < size_ ? data_[at_++] : 0; }
  std::uint16_t u16();
  std::uint32_t u32();
  std::uint64_t u64();
  std::string bytes(std::size_t n);

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

// The keywords of the library and the device keys, harvested from the sources by the
// generator.
extern const char* const kKeywords[];
extern const std::size_t kKeywordCount;

int read_int(Reader& r);
int read_count(Reader& r);
// Lowers ny so that an nx by ny array holds at most kMaxCount elements.
void cap_pair(int nx, int& ny);
double read_dbl(Reader& r);

// A string argument: null or text (which may hold anything, invalid UTF-8 included).
struct Str {
  bool null = false;
  std::string text;
  const char* get() const { return null ? nullptr : text.c_str(); }
};
Str read_str(Reader& r);
// A plot or message file name: special names and names in the input's folder; never a
// path that leaves the folder other than /dev/null and /dev/full.
Str read_file_name(Reader& r);

std::FILE* read_file(Reader& r);
bool read_present(Reader& r);

// The value that callbacks returning a double give back: the last double read.
double callback_value();

// An input array of exactly max(n, 0) elements, or null.
template <class T>
struct Array {
  std::unique_ptr<T[]> data;
  T* get() const { return data.get(); }
};
Array<int> read_int_array(Reader& r, long long n);
Array<double> read_dbl_array(Reader& r, long long n);
// An output array or string buffer of max(n, 0) elements (zeros), or null.
Array<int> out_int_array(Reader& r, long long n);
Array<double> out_dbl_array(Reader& r, long long n);
Array<char> out_chars(Reader& r, long long n);
// The caller's buffers whose size the routine decides (kinds "buf", "out int[*]", "out
// dbl[*]"): null, or one buffer per kind as large as any routine writes into (a legend
// of 1000 lines of 1000 bytes, 30001 spline points), kept across the calls of an input
// so that what one routine writes the next one reads.
char* sized_chars(Reader& r);
int* sized_ints(Reader& r);
double* sized_dbls(Reader& r);

// ZORVEL_FUZZ_TRACE=1: every call is printed on standard error, written as C.
bool tracing();
void trace(const char* routine, std::initializer_list<std::string> args);
std::string show(int v);
std::string show(double v);
std::string show(const Str& s);
std::string show(std::FILE* f);
std::string show_pointer(const void* p, const char* what);
template <class T>
std::string show(const Array<T>& a, long long n) {
  if (!a.data) {
    return "NULL";
  }
  std::string s = "(" + std::string(std::is_same_v<T, int> ? "int" : std::is_same_v<T, char> ?
                                    "char" : "double") + "[]){";
  for (long long i = 0; i < n && i < 8; ++i) {
    s += (i > 0 ? ", " : "") + show(a.data[i]);
  }
  return s + (n > 8 ? ", ...}" : "}");
}

// The generated part: one call decoded from r; false when the input is used up.
bool call_one(Reader& r);

}  // namespace zfuzz
