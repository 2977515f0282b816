#include "drivers/text_writer.h"

#include <cstring>

#include "core/format.h"

namespace zorvel {

TextWriter::TextWriter(Sink* sink, int width)
    : sink_(sink), width_(width), buf_(new char[kBlock]) {}

void TextWriter::append_long(std::string_view s) {
  while (!s.empty()) {
    if (len_ == kBlock) {
      drain();
    }
    const std::size_t n = s.size() < kBlock - len_ ? s.size() : kBlock - len_;
    std::memcpy(buf_.get() + len_, s.data(), n);
    len_ += n;
    s.remove_prefix(n);
  }
}

void TextWriter::drain() {
  if (len_ == 0) {
    return;
  }
  if (!failed_ && sink_ != nullptr && !sink_->write(buf_.get(), len_)) {
    failed_ = true;
  }
  total_ += len_;
  len_ = 0;
}

void TextWriter::word(std::string_view w) {
  if (width_ > 0 && w.size() > static_cast<std::size_t>(width_)) {
    ++overflows_;
    return;
  }
  if (width_ > 0 && line_len_ > 0 && line_len_ + static_cast<int>(w.size()) > width_) {
    put('\n');
    line_len_ = 0;
  }
  append(w);
  line_len_ += static_cast<int>(w.size());
}

void TextWriter::words(std::string_view text) {
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t blank = text.find(' ', start);
    // A word keeps its trailing blank; consecutive blanks stay with the word before.
    std::size_t end = blank == std::string_view::npos ? text.size() : blank + 1;
    while (end < text.size() && text[end] == ' ') {
      ++end;
    }
    word(text.substr(start, end - start));
    start = end;
  }
}

void TextWriter::line(std::string_view text) {
  end_line();
  append(text);
  put('\n');
  line_len_ = 0;
}

void TextWriter::newline() {
  put('\n');
  line_len_ = 0;
}

void TextWriter::end_line() {
  if (line_len_ > 0) {
    newline();
  }
}

void TextWriter::int_word(long long v) {
  char tmp[kNumberBuffer];
  char* end = format_int(tmp, v);
  *end++ = ' ';
  word({tmp, static_cast<std::size_t>(end - tmp)});
}

void TextWriter::fixed_word(double v, int decimals) {
  char tmp[kNumberBuffer];
  char* end = format_fixed(tmp, v, decimals);
  *end++ = ' ';
  word({tmp, static_cast<std::size_t>(end - tmp)});
}

void TextWriter::raw(std::string_view bytes) { append(bytes); }

bool TextWriter::finish() {
  drain();
  if (!failed_ && sink_ != nullptr && !sink_->flush()) {
    failed_ = true;
  }
  return !failed_;
}

}  // namespace zorvel
