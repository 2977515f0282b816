#pragma once
// Where a driver's bytes go: the plot file, or a block of memory (tests, and programs
// that take a format's output in memory). Writers hand over large blocks; a sink reports
// failure by its return value and never throws.

#include <cstddef>
#include <cstdio>
#include <string>

namespace zorvel {

class Sink {
 public:
  virtual ~Sink() = default;
  // Appends n bytes; false when they could not all be written.
  virtual bool write(const char* data, std::size_t n) = 0;
  // Pushes buffered bytes to their destination; false on failure.
  virtual bool flush() { return true; }
};

// A FILE* opened and closed by someone else (the core opens the plot file).
class FileSink final : public Sink {
 public:
  explicit FileSink(std::FILE* file) : file_(file) {}
  bool write(const char* data, std::size_t n) override {
    return file_ == nullptr || std::fwrite(data, 1, n, file_) == n;
  }
  bool flush() override { return file_ == nullptr || std::fflush(file_) == 0; }

 private:
  std::FILE* file_;
};

// Bytes kept in memory. Allocation failure counts as a failed write.
class MemorySink final : public Sink {
 public:
  bool write(const char* data, std::size_t n) override {
    try {
      bytes_.append(data, n);
    } catch (...) {
      return false;
    }
    return true;
  }
  const std::string& bytes() const { return bytes_; }
  void clear() { bytes_.clear(); }

 private:
  std::string bytes_;
};

}  // namespace zorvel
