#pragma once
// A state block for unit tests whose messages go into a string instead of the console.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "core/global_block.h"

namespace zorvel {

class Captured {
 public:
  explicit Captured(const char* routine = "test") {
    file_ = open_memstream(&buf_, &len_);
    g.msg.output = 1;
    g.msg.handle = file_;
    g.msg.routine = routine;
  }
  ~Captured() {
    g.msg.handle = nullptr;
    std::fclose(file_);
    std::free(buf_);
  }
  Captured(const Captured&) = delete;
  Captured& operator=(const Captured&) = delete;

  // Every message line written so far.
  std::string text() {
    std::fflush(file_);
    return std::string(buf_, len_);
  }

  GlobalBlock g;

 private:
  std::FILE* file_;
  char* buf_ = nullptr;
  std::size_t len_ = 0;
};

}  // namespace zorvel
