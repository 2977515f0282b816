// HPGL plotter files for "HPGL" (401) and the fixed sheets "HPA4" ... "HPA1" (402-405).
//
// Coordinates are integer plotter units (0.025 mm) from the lower left corner of the
// sheet; the pipeline converts them, the driver rounds them. The file is a list of
// instructions, each ended by ";", in lines of at most 80 characters (line ends between
// instructions are ignored by plotters):
//   IN;            initialise the plotter (opening)
//   SP<n>;         select pen n: the colour's table index; a plotter holds pens 1 to 8
//                  (0 puts the pen away), so the indices beyond are its pens again
//   PU<x>,<y>;     pen up, move to (x, y)
//   PD<x>,<y>;     pen down, draw to (x, y)
//   PU0,0;         park the pen (closing)
//
// In HP-GL/2 (hpmode "HPG2") the file starts "BP;IN;PS<length>,<width>;NP256;" and draws
// with pens of the page's own colours: each new colour is defined once as a pen by
// "PC<n>,<r>,<g>,<b>;" (pens 1 to 255, then reused from 1), widths are "PW<mm>;" for all
// pens, caps and joins "LA1,<cap>,2,<join>;", filled areas polygons "PM0;" ... "PM1;"
// between rings ... "PM2;FP<rule>;", and every page after the first starts with "PG;".

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string>

#include "core/format.h"
#include "drivers/registry.h"
#include "drivers/text_writer.h"

namespace zorvel {
namespace {

class HpglDriver final : public Driver {
 public:
  bool open(Sink* out, const DriverSetup& setup) override {
    out_ = std::make_unique<TextWriter>(out, 80);
    hpgl2_ = setup.hpgl2;
    if (!hpgl2_) {
      out_->word("IN;");
      return !out_->failed();
    }
    out_->word("BP;");
    out_->word("IN;");
    // The page: length along x, width along y, plotter units.
    const double scale = setup.scale > 0.0 && std::isfinite(setup.scale) ? setup.scale : 1.0;
    const double w = setup.device_width > 0.0 ? setup.device_width : setup.page_width * scale;
    const double h = setup.device_height > 0.0 ? setup.device_height : setup.page_height * scale;
    instruction("PS", {device_int(w), device_int(h)});
    instruction("NP", {kRgbPens});
    line_cap(setup.line_cap);
    return !out_->failed();
  }

  unsigned caps() const override { return hpgl2_ ? kCapFill | kCapWidths : 0U; }

  void pen_width(const LineWidth& w) override {
    if (!hpgl2_) {
      return;
    }
    // Millimetres: plot units are tenths of one.
    const double mm = (w.hardware ? std::max(w.n, 1) : 1) * w.width_scale * 0.1;
    char buf[kNumberBuffer + 4];
    char* p = buf;
    *p++ = 'P';
    *p++ = 'W';
    p = format_fixed(p, std::clamp(mm, 0.01, 1000.0), 2);
    *p++ = ';';
    width_word_.assign(buf, static_cast<std::size_t>(p - buf));
    out_->word(width_word_);
  }

  void line_cap(int cap) override {
    if (!hpgl2_) {
      return;
    }
    // Butt, round or square ends (LA kind 1: 1 butt, 2 square, 4 round); joins mitred.
    static constexpr long long kCaps[3] = {1, 4, 2};
    cap_ = kCaps[std::clamp(cap, 0, 2)];
    instruction("LA", {1, cap_, 2, join_});
  }

  void line_join(int join, double /*miter_limit*/) override {
    if (!hpgl2_) {
      return;
    }
    // Mitred, round or bevelled (LA kind 2: 1 mitre, 4 round, 5 bevel).
    static constexpr long long kJoins[3] = {1, 4, 5};
    join_ = kJoins[std::clamp(join, 0, 2)];
    instruction("LA", {1, cap_, 2, join_});
  }

  void fill(const Path& path, Rgb rgb) override {
    const std::size_t n = std::min(path.xs.size(), path.ys.size());
    if (n < 3 || path.ends.empty()) {
      return;
    }
    // Rings that cover nothing at the plotter's resolution are left out (readers reject
    // polygons of zero area).
    const auto empty = [&](std::size_t a, std::size_t b) {
      long long twice = 0;
      for (std::size_t i = a; i < b; ++i) {
        const std::size_t j = i + 1 < b ? i + 1 : a;
        twice += device_int(path.xs[i]) * device_int(path.ys[j]) -
                 device_int(path.xs[j]) * device_int(path.ys[i]);
      }
      return twice == 0;
    };
    bool any = false;
    for (std::size_t start = 0, r = 0; r < path.ends.size(); ++r) {
      const std::size_t stop = std::min(n, static_cast<std::size_t>(std::max(path.ends[r], 0)));
      any = any || (stop > start + 2 && !empty(start, stop));
      start = std::max(start, stop);
    }
    if (!any) {
      return;
    }
    const int line_pen = pen_;
    select_rgb(rgb);
    std::size_t start = 0;
    bool first = true;
    for (const int e : path.ends) {
      const std::size_t stop = std::min(n, static_cast<std::size_t>(std::max(e, 0)));
      if (stop <= start + 2 || empty(start, stop)) {
        start = std::max(start, stop);
        continue;
      }
      instruction("PU", {device_int(path.xs[start]), device_int(path.ys[start])});
      out_->word(first ? "PM0;" : "PM1;");
      first = false;
      for (std::size_t i = start + 1; i < stop; ++i) {
        instruction("PD", {device_int(path.xs[i]), device_int(path.ys[i])});
      }
      instruction("PD", {device_int(path.xs[start]), device_int(path.ys[start])});
      start = stop;
    }
    out_->word("PM2;");
    out_->word(path.rule == FillRule::EvenOdd ? "FP0;" : "FP1;");
    out_->word("PU;");
    if (line_pen != pen_ && line_pen > 0) {
      select_pen(line_pen);
    }
  }

  // A new page: readers forget the pens at PG, so their number, the pen of the current
  // colour, the width and the line attributes are stated again.
  void new_page() override {
    if (!hpgl2_) {
      return;
    }
    out_->word("PG;");
    instruction("NP", {kRgbPens});
    defined_.fill(false);
    next_pen_ = 1;
    pen_ = 0;
    select_rgb(current_);
    if (!width_word_.empty()) {
      out_->word(width_word_);
    }
    instruction("LA", {1, cap_, 2, join_});
  }

  void point(double x, double y, Pen pen) override {
    if (pen != Pen::Draw && pen != Pen::Move) {
      return;
    }
    int ix = device_int(x);
    const int iy = device_int(y);
    if (pen == Pen::Draw && !after_move_ && ix == last_x_ && iy == last_y_) {
      return;  // a repeated point draws nothing more
    }
    if (pen == Pen::Draw && after_move_ && ix == last_x_ && iy == last_y_) {
      // A zero-length line is a dot one plotter unit long: readers take a picture of a
      // single point for one without size.
      ix = ix < 2000000000 ? ix + 1 : ix - 1;
    }
    after_move_ = pen == Pen::Move;
    last_x_ = ix;
    last_y_ = iy;
    char buf[2 * kNumberBuffer + 8];
    char* p = buf;
    *p++ = 'P';
    *p++ = pen == Pen::Draw ? 'D' : 'U';
    p = format_int(p, ix);
    *p++ = ',';
    p = format_int(p, iy);
    *p++ = ';';
    out_->word({buf, static_cast<std::size_t>(p - buf)});
  }

  void colour(Rgb rgb, int value) override {
    if (hpgl2_) {
      current_ = rgb;
      select_rgb(rgb);
      return;
    }
    constexpr int kPens = 8;
    int pen = value & 0xff;
    if (pen > kPens) {
      pen = (pen - 1) % kPens + 1;
    }
    char buf[kNumberBuffer + 4];
    char* p = buf;
    *p++ = 'S';
    *p++ = 'P';
    p = format_int(p, pen);
    *p++ = ';';
    out_->word({buf, static_cast<std::size_t>(p - buf)});
  }

  bool close() override {
    out_->word("PU0,0;");
    out_->end_line();
    return out_->finish();
  }

  bool failed() const override { return out_ && out_->failed(); }
  long long overflows() const override { return out_ ? out_->overflows() : 0; }

 private:
  static constexpr long long kRgbPens = 256;  // NP: pens 0 .. 255, 0 the white pen

  // An instruction of two letters and its integer parameters, separated by commas.
  void instruction(const char* name, std::initializer_list<long long> params) {
    char buf[8 * kNumberBuffer];
    char* p = buf;
    *p++ = name[0];
    *p++ = name[1];
    bool first = true;
    for (const long long v : params) {
      if (!first) {
        *p++ = ',';
      }
      first = false;
      p = format_int(p, v);
    }
    *p++ = ';';
    out_->word({buf, static_cast<std::size_t>(p - buf)});
  }

  void select_pen(int pen) {
    instruction("SP", {pen});
    pen_ = pen;
  }

  // Selects the pen of the colour, defining the next pen for a colour not seen before.
  void select_rgb(Rgb c) {
    const std::uint32_t key = static_cast<std::uint32_t>(std::clamp(c.r, 0, 255)) << 16 |
                              static_cast<std::uint32_t>(std::clamp(c.g, 0, 255)) << 8 |
                              static_cast<std::uint32_t>(std::clamp(c.b, 0, 255));
    int pen = 0;
    for (int i = 1; i < kRgbPens; ++i) {
      if (defined_[static_cast<std::size_t>(i)] && colours_[static_cast<std::size_t>(i)] == key) {
        pen = i;
        break;
      }
    }
    if (pen == 0) {
      pen = next_pen_;
      next_pen_ = next_pen_ + 1 < kRgbPens ? next_pen_ + 1 : 1;
      defined_[static_cast<std::size_t>(pen)] = true;
      colours_[static_cast<std::size_t>(pen)] = key;
      instruction("PC", {pen, key >> 16, (key >> 8) & 0xFFU, key & 0xFFU});
    }
    if (pen != pen_) {
      select_pen(pen);
    }
  }

  bool hpgl2_ = false;
  int pen_ = 0;        // the selected pen (HP-GL/2)
  int next_pen_ = 1;   // the pen the next new colour takes
  std::array<bool, kRgbPens> defined_{};
  std::array<std::uint32_t, kRgbPens> colours_{};
  long long cap_ = 1;
  long long join_ = 1;
  Rgb current_{};            // the colour of the lines
  std::string width_word_;   // the last PW instruction
  std::unique_ptr<TextWriter> out_;
  int last_x_ = 0;         // the last position written
  int last_y_ = 0;
  bool after_move_ = false;  // ... by a move
};

}  // namespace

std::unique_ptr<Driver> make_hpgl_driver() { return std::make_unique<HpglDriver>(); }

}  // namespace zorvel
