#pragma once
// The one text-output helper of the text formats (PostScript, SVG, metafile, HPGL,
// applet source, PDF content). It keeps a line of at most `width` characters, breaks
// lines only between words, formats numbers without printf, and writes in large blocks
// into a Sink (the plot file or memory). The first failed write is remembered (sticky)
// and reported by failed() and finish(); nothing is written after it.

#include <cstdint>
#include <memory>
#include <string_view>

#include "drivers/sink.h"

namespace zorvel {

class TextWriter {
 public:
  static constexpr std::size_t kBlock = 1 << 16;  // bytes per fwrite

  // Writes into `sink` (not owned; null discards). `width` is the longest line, 0 for
  // no limit.
  explicit TextWriter(Sink* sink, int width = 80);
  TextWriter(const TextWriter&) = delete;
  TextWriter& operator=(const TextWriter&) = delete;
  ~TextWriter() = default;  // does not flush: call finish()

  // Appends one word (its trailing blank included by the caller). A word that would
  // make the line longer than the width first ends the line. A word longer than a whole
  // line cannot be written at all: it is dropped and counted in overflows().
  void word(std::string_view w);
  // Splits text at blanks into words, each with its trailing blank, and appends them.
  void words(std::string_view text);
  // Ends the current line if it holds anything, then writes `text` and a newline as a
  // line of its own (prolog and header lines).
  void line(std::string_view text);
  // Ends the current line at once (a newline even when it is empty).
  void newline();
  // Ends the current line when it holds anything.
  void end_line();

  // Number words: the number followed by one blank, kept whole on a line.
  void int_word(long long v);
  void fixed_word(double v, int decimals);

  // Bytes outside the line discipline (for fixed-width records).
  void raw(std::string_view bytes);

  // Writes every buffered byte and flushes the sink; true when every write succeeded.
  bool finish();

  bool failed() const { return failed_; }
  long long overflows() const { return overflows_; }
  std::uint64_t bytes_written() const { return total_ + len_; }
  int line_length() const { return line_len_; }

 private:
  // Short pieces go straight into the block; longer ones, and those that fill it, through
  // append_long.
  void append(std::string_view s) {
    if (s.size() <= 32 && s.size() <= kBlock - len_) {
      char* d = buf_.get() + len_;
      for (const char c : s) {
        *d++ = c;
      }
      len_ += s.size();
      return;
    }
    append_long(s);
  }
  void append_long(std::string_view s);
  void put(char c) {
    if (len_ == kBlock) {
      drain();
    }
    buf_[len_++] = c;
  }
  void drain();

  Sink* sink_;
  int width_;
  int line_len_ = 0;
  bool failed_ = false;
  long long overflows_ = 0;  // words dropped for being longer than a line
  std::uint64_t total_ = 0;
  std::unique_ptr<char[]> buf_;  // kBlock bytes, written out when full
  std::size_t len_ = 0;
};

}  // namespace zorvel
