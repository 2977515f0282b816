#pragma once
// Fixed-capacity strings for the short names of the state record (keywords, routine
// names). Assigning a longer text cuts it; nothing is ever written past the buffer.

#include <cstddef>
#include <cstring>
#include <string_view>

namespace zorvel {

template <std::size_t N>
class FixedString {
 public:
  constexpr FixedString() = default;
  FixedString(std::string_view s) { assign(s); }  // NOLINT: implicit by design

  void assign(std::string_view s) {
    len_ = s.size() < N ? s.size() : N;
    if (len_ > 0) {
      std::memcpy(buf_, s.data(), len_);
    }
    buf_[len_] = '\0';
  }
  FixedString& operator=(std::string_view s) {
    assign(s);
    return *this;
  }

  std::string_view view() const { return {buf_, len_}; }
  const char* c_str() const { return buf_; }
  std::size_t size() const { return len_; }
  bool empty() const { return len_ == 0; }
  bool operator==(std::string_view s) const { return view() == s; }

 private:
  char buf_[N + 1] = {};
  std::size_t len_ = 0;
};

}  // namespace zorvel
