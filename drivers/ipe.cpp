// The IPE driver of the device "IPE " (802): an IPE 7 drawing.
//
// Coordinates are points of 1/72 inch from the bottom left corner, as the dispatch hands
// them over, written with 1 decimal (0.035 mm); a point that repeats the last one at that
// precision is left out. The file:
//
//   <?xml version="1.0"?> <!DOCTYPE ipe SYSTEM "ipe.dtd">
//   <ipe version="70000" creator="Zorvel 10.6">
//   <info created="D:yyyymmddhhmmss" .../>
//   <ipestyle name="zorvel"> <layout paper="W H" origin="0 0" frame="W H"/> </ipestyle>
//   <page> <layer name="alpha"/>
//   <path stroke="r g b" pen="w" cap="c" join="j">      lines of one colour, width, cap
//   x y m x y l x y l ...                               and join: every polyline a
//   </path>                                             subpath
//   <path fill="r g b" fillrule="wind">x y m ... h</path>   a filled area
//   </page> <page> ...                                  one page per newpag
//   </ipe>
//
// Text reaches the driver as stroke glyphs (no driver fonts), so the drawing needs no
// LaTeX to be viewed. At most one path element is open; an attribute change closes it.

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

#include "core/format.h"
#include "core/version.h"
#include "drivers/registry.h"
#include "drivers/text_writer.h"

namespace zorvel {
namespace {

// Coordinates beyond this (points) are clamped: far outside any page, they only arrive
// with clipping off.
constexpr double kCoordinateLimit = 1e9;
// Characters per line of path data.
constexpr int kLineWidth = 100;

class IpeDriver final : public Driver {
 public:
  bool open(Sink* out, const DriverSetup& setup) override;
  void point(double x, double y, Pen pen) override;
  unsigned caps() const override { return kCapFill | kCapWidths; }
  void colour(Rgb rgb, int /*value*/) override {
    close_path();
    colour_ = rgb;
  }
  void pen_width(const LineWidth& w) override;
  void line_cap(int cap) override {
    close_path();
    cap_ = std::clamp(cap, 0, 2);
  }
  void line_join(int join, double /*miter_limit*/) override {
    close_path();
    join_ = std::clamp(join, 0, 2);
  }
  void fill(const Path& path, Rgb rgb) override;
  void new_page() override {
    close_path();
    out_->line("</page>");
    start_page();
  }
  bool close() override {
    close_path();
    out_->line("</page>");
    out_->line("</ipe>");
    return out_->finish();
  }
  bool failed() const override { return out_ && out_->failed(); }
  long long overflows() const override { return out_ ? out_->overflows() : 0; }

 private:
  void start_page();
  void close_path() {
    if (open_) {
      out_->end_line();
      out_->line("</path>");
      open_ = false;
    }
  }
  void coordinate(double v) {
    out_->fixed_word(std::clamp(v, -kCoordinateLimit, kCoordinateLimit), 1);
  }
  // "r g b" of a colour, components 0..1.
  void append_rgb(std::string& s, Rgb c) {
    const int parts[3] = {c.r, c.g, c.b};
    for (int k = 0; k < 3; ++k) {
      if (k > 0) {
        s += ' ';
      }
      char num[kNumberBuffer];
      char* end = format_fixed(num, std::clamp(parts[k], 0, 255) / 255.0, 3);
      s.append(num, static_cast<std::size_t>(end - num));
    }
  }

  std::unique_ptr<TextWriter> out_;
  bool open_ = false;         // a stroke path element is open
  bool pending_ = false;      // a move not written yet (written with the first draw)
  double move_x_ = 0.0;
  double move_y_ = 0.0;
  long long last_x_ = 0;      // the last point written, tenths of a point
  long long last_y_ = 0;
  double scale_ = 1.0;
  bool background_ = false;   // not reversed: a dark page
  double width_ = 0.0;        // the page in points
  double height_ = 0.0;
  Rgb colour_{};
  double pen_ = 0.0;          // line width in points
  int cap_ = 2;
  int join_ = 0;
  std::string scratch_;
};

bool IpeDriver::open(Sink* out, const DriverSetup& setup) {
  out_ = std::make_unique<TextWriter>(out, kLineWidth);
  scale_ = setup.scale > 0.0 && std::isfinite(setup.scale) ? setup.scale : 1.0;
  // The page's sizes are a plot unit short of the paper.
  width_ = std::clamp(
      (setup.device_width > 0.0 ? setup.device_width : setup.page_width * scale_) + scale_, 1.0,
      kCoordinateLimit);
  height_ = std::clamp(
      (setup.device_height > 0.0 ? setup.device_height : setup.page_height * scale_) + scale_,
      1.0, kCoordinateLimit);
  background_ = !setup.reversed;
  cap_ = std::clamp(setup.line_cap, 0, 2);
  pen_ = scale_;
  // The date of the stamp as IPE writes it: D:yyyymmddhhmmss.
  const DateTime& t = setup.stamp;
  std::string when = "D:";
  when.append(t.date + 6, 4).append(t.date + 3, 2).append(t.date, 2);
  when.append(t.time, 2).append(t.time + 3, 2).append(t.time + 6, 2);
  std::string& s = scratch_;
  s = "<?xml version=\"1.0\"?>\n<!DOCTYPE ipe SYSTEM \"ipe.dtd\">\n";
  s += "<ipe version=\"70000\" creator=\"Zorvel ";
  char num[kNumberBuffer];
  char* end = format_fixed(num, kVersion, 1);
  s.append(num, static_cast<std::size_t>(end - num));
  s += "\">\n<info created=\"" + when + "\" modified=\"" + when + "\"/>\n";
  s += "<ipestyle name=\"zorvel\">\n<layout paper=\"";
  std::string size;
  for (const double v : {width_, height_}) {
    end = format_fixed(num, v, 2);
    size.append(num, static_cast<std::size_t>(end - num));
    size += ' ';
  }
  size.pop_back();
  s += size + "\" origin=\"0 0\" frame=\"" + size + "\"/>\n</ipestyle>";
  out_->line(s);
  start_page();
  return !out_->failed();
}

void IpeDriver::start_page() {
  out_->line("<page>\n<layer name=\"alpha\"/>");
  if (background_) {
    // Not reversed, the colour table draws light on a dark page, as on a screen.
    const double xs[4] = {0.0, width_, width_, 0.0};
    const double ys[4] = {0.0, 0.0, height_, height_};
    const int ends[1] = {4};
    fill(Path{xs, ys, ends, FillRule::NonZero}, Rgb{0, 0, 0});
  }
}

void IpeDriver::point(double x, double y, Pen pen) {
  if (pen == Pen::Move) {
    pending_ = true;
    move_x_ = x;
    move_y_ = y;
    return;
  }
  if (pen != Pen::Draw) {
    return;  // End and Close: the path stays open for the next polyline of its kind
  }
  // A point that repeats the last one written at the written precision adds nothing.
  const long long kx = device_int(std::clamp(x, -kCoordinateLimit, kCoordinateLimit) * 10.0);
  const long long ky = device_int(std::clamp(y, -kCoordinateLimit, kCoordinateLimit) * 10.0);
  if (!pending_ && open_ && kx == last_x_ && ky == last_y_) {
    return;
  }
  last_x_ = kx;
  last_y_ = ky;
  if (!open_) {
    std::string& s = scratch_;
    s = "<path stroke=\"";
    append_rgb(s, colour_);
    s += "\" pen=\"";
    char num[kNumberBuffer];
    char* end = format_fixed(num, pen_, 3);
    s.append(num, static_cast<std::size_t>(end - num));
    s += "\" cap=\"";
    s += static_cast<char>('0' + cap_);
    s += "\" join=\"";
    s += static_cast<char>('0' + join_);
    s += "\">";
    out_->line(s);
    open_ = true;
  }
  if (pending_) {
    coordinate(move_x_);
    coordinate(move_y_);
    out_->word("m ");
    pending_ = false;
  }
  coordinate(x);
  coordinate(y);
  out_->word("l ");
}

void IpeDriver::pen_width(const LineWidth& w) {
  close_path();
  const double thinnest = scale_;  // a plot unit
  const double width = (w.hardware ? std::max(w.n * scale_, thinnest) : thinnest) * w.width_scale;
  pen_ = width > 0.0 && width < kCoordinateLimit ? width : thinnest;
}

void IpeDriver::fill(const Path& path, Rgb rgb) {
  close_path();
  std::string& s = scratch_;
  s = "<path fill=\"";
  append_rgb(s, rgb);
  s += path.rule == FillRule::EvenOdd ? "\" fillrule=\"eofill\">" : "\" fillrule=\"wind\">";
  out_->line(s);
  const std::size_t n = std::min(path.xs.size(), path.ys.size());
  std::size_t start = 0;
  for (const int e : path.ends) {
    const std::size_t stop = std::min(n, static_cast<std::size_t>(std::max(e, 0)));
    for (std::size_t i = start; i < stop; ++i) {
      coordinate(path.xs[i]);
      coordinate(path.ys[i]);
      out_->word(i == start ? "m " : "l ");
    }
    if (stop > start) {
      out_->word("h ");
    }
    start = std::max(start, stop);
  }
  out_->end_line();
  out_->line("</path>");
}

}  // namespace

std::unique_ptr<Driver> make_ipe_driver() { return std::make_unique<IpeDriver>(); }

}  // namespace zorvel
