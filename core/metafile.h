#pragma once
// Reading the metafile "GKSL" (the format is described in drivers/gksl.cpp): a field
// reader that takes the file in large blocks and parses its fixed fields by hand, and the
// replay of the records through the drawing pipeline (incmet, metcnv).

#include <cstddef>
#include <cstdio>
#include <memory>

namespace zorvel {

struct GlobalBlock;

class GkslFields {
 public:
  // Opens a regular file; false when it cannot be opened or is no regular file.
  bool open(const char* path);

  enum class Result { Value, End, Bad };
  // The next field: Value with v set, End at the end of the file (a field cut short is
  // the end too), Bad for a field that is no fixed decimal number.
  Result next(double& v);
  // Fields returned so far (the number of the next one less one).
  long long count() const { return count_; }

 private:
  bool fill();

  struct Closer {
    void operator()(std::FILE* f) const { std::fclose(f); }
  };
  std::unique_ptr<std::FILE, Closer> file_;
  std::unique_ptr<char[]> buf_;
  std::size_t pos_ = 0;
  std::size_t len_ = 0;
  bool eof_ = false;
  long long count_ = 0;
};

// The opening record of a file.
struct GkslHeader {
  double width = 0.0;  // page size in centimetres
  double height = 0.0;
  double unit = 1.0;  // centimetres per file unit
};

// Reads the opening record; false when the file does not start like a metafile.
bool read_gksl_header(GkslFields& f, GkslHeader& h);

}  // namespace zorvel
