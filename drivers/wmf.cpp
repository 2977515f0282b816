// The WMF driver of the device "WMF " (221): a placeable Windows metafile.
//
// Logical units are plot units (254 to the inch), y downwards from the top of the page,
// as 16-bit integers. The file:
//
//   placeable header    key 0x9AC6CDD7, bounding box, 254 units per inch, checksum
//   META_HEADER         sizes in 16-bit words, the most objects alive at once
//   SETWINDOWORG/EXT, SETPOLYFILLMODE winding
//   CREATEPENINDIRECT, SELECTOBJECT, POLYLINE ...   lines in a pen of the colour, width
//                                                   and cap; a new pen is selected
//                                                   before the old one is deleted
//   CREATEPENINDIRECT null, CREATEBRUSHINDIRECT, SELECTOBJECT x2, POLYGON or POLYPOLYGON,
//   SELECTOBJECT (the line pen), DELETEOBJECT x2    a filled area: every object deleted
//                                                   after use
//   DELETEOBJECT (the line pen), EOF
//
// The header holds the file's size, so a page is collected in memory and written when
// it ends. A metafile holds one page: newpag finishes the file and goes on in the plot
// file's next version (zorvel_1.wmf, ...), as SVG does.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "drivers/page_files.h"
#include "drivers/registry.h"

namespace zorvel {
namespace {

constexpr int kInch = 254;
// Points of a polyline held before it is written (it then goes on from its last point).
constexpr std::size_t kPolylinePoints = 8000;
// Objects: a line pen, and a null pen and a brush for a fill.
constexpr int kObjects = 3;

enum : std::uint16_t {
  kEof = 0x0000,
  kSetPolyFillMode = 0x0106,
  kSelectObject = 0x012D,
  kDeleteObject = 0x01F0,
  kSetWindowOrg = 0x020B,
  kSetWindowExt = 0x020C,
  kCreatePen = 0x02FA,
  kCreateBrush = 0x02FC,
  kPolygon = 0x0324,
  kPolyline = 0x0325,
  kPolyPolygon = 0x0538,
};

class WmfDriver final : public Driver {
 public:
  bool open(Sink* out, const DriverSetup& setup) override;
  void point(double x, double y, Pen pen) override;
  unsigned caps() const override { return kCapFill | kCapWidths; }
  void colour(Rgb rgb, int /*value*/) override {
    end_polyline();
    colour_ = rgb;
    pen_dirty_ = true;
  }
  void pen_width(const LineWidth& w) override {
    end_polyline();
    const double width = (w.hardware ? std::max(w.n, 1) : 1) * w.width_scale;
    width_ = static_cast<int>(std::clamp(device_int(width), 1LL, 32767LL));
    pen_dirty_ = true;
  }
  void line_cap(int cap) override {
    end_polyline();
    cap_ = std::clamp(cap, 0, 2);
    pen_dirty_ = true;
  }
  void line_join(int join, double /*miter_limit*/) override {
    end_polyline();
    join_ = std::clamp(join, 0, 2);
    pen_dirty_ = true;
  }
  void fill(const Path& path, Rgb rgb) override;
  void new_page() override;
  bool close() override;
  bool failed() const override { return failed_; }

 private:
  void begin_file();
  bool end_file();
  void end_polyline();
  void select_pen();

  // Records: the word count is filled in by end_record.
  void begin_record(std::uint16_t function) {
    record_ = body_.size();
    put32(0);
    put16(function);
  }
  void end_record() {
    const std::size_t words = (body_.size() - record_) / 2;
    for (int k = 0; k < 4; ++k) {
      body_[record_ + static_cast<std::size_t>(k)] =
          static_cast<std::uint8_t>((words >> (8 * k)) & 0xFFU);
    }
    max_record_ = std::max(max_record_, words);
  }
  void put16(int v) {
    const auto u = static_cast<std::uint16_t>(v);
    body_.push_back(static_cast<std::uint8_t>(u & 0xFFU));
    body_.push_back(static_cast<std::uint8_t>(u >> 8));
  }
  void put32(std::uint32_t v) {
    put16(static_cast<int>(v & 0xFFFFU));
    put16(static_cast<int>(v >> 16));
  }
  void put_rgb(Rgb c) {
    body_.push_back(static_cast<std::uint8_t>(std::clamp(c.r, 0, 255)));
    body_.push_back(static_cast<std::uint8_t>(std::clamp(c.g, 0, 255)));
    body_.push_back(static_cast<std::uint8_t>(std::clamp(c.b, 0, 255)));
    body_.push_back(0);
  }
  static int coord(double v) { return static_cast<int>(std::clamp(device_int(v), -32768LL, 32767LL)); }
  // The lowest free object index, taken.
  int take_object() {
    for (int i = 0; i < kObjects; ++i) {
      if (!used_[static_cast<std::size_t>(i)]) {
        used_[static_cast<std::size_t>(i)] = true;
        ++alive_;
        most_alive_ = std::max(most_alive_, alive_);
        return i;
      }
    }
    return 0;  // cannot happen: at most three objects live at once
  }
  void delete_object(int i) {
    begin_record(kDeleteObject);
    put16(i);
    end_record();
    used_[static_cast<std::size_t>(i)] = false;
    --alive_;
  }
  void select(int i) {
    begin_record(kSelectObject);
    put16(i);
    end_record();
  }

  PageFiles files_;
  bool failed_ = false;
  std::vector<std::uint8_t> body_;  // the records of the page
  std::size_t record_ = 0;
  std::size_t max_record_ = 0;
  std::array<bool, kObjects> used_{};
  int alive_ = 0;
  int most_alive_ = 0;
  int pen_ = -1;  // object index of the selected line pen; -1 none
  bool pen_dirty_ = true;
  int width_px_ = 0;  // the page in logical units
  int height_px_ = 0;
  Rgb colour_{};
  int width_ = 1;
  int cap_ = 2;
  int join_ = 0;
  std::vector<std::int16_t> xs_;
  std::vector<std::int16_t> ys_;
};

bool WmfDriver::open(Sink* out, const DriverSetup& setup) {
  files_.start(out, setup.file_name, setup.versions);
  const double scale = setup.scale > 0.0 && std::isfinite(setup.scale) ? setup.scale : 1.0;
  width_px_ = coord((setup.device_width > 0.0 ? setup.device_width : setup.page_width * scale) + 1);
  height_px_ =
      coord((setup.device_height > 0.0 ? setup.device_height : setup.page_height * scale) + 1);
  cap_ = std::clamp(setup.line_cap, 0, 2);
  xs_.reserve(kPolylinePoints);
  ys_.reserve(kPolylinePoints);
  begin_file();
  return true;
}

void WmfDriver::begin_file() {
  body_.clear();
  max_record_ = 0;
  used_ = {};
  alive_ = 0;
  most_alive_ = 0;
  pen_ = -1;
  pen_dirty_ = true;
  begin_record(kSetWindowOrg);
  put16(0);
  put16(0);
  end_record();
  begin_record(kSetWindowExt);
  put16(height_px_);
  put16(width_px_);
  end_record();
  begin_record(kSetPolyFillMode);
  put16(2);  // winding
  end_record();
}

// Writes the page's file: the headers, then the records and EOF.
bool WmfDriver::end_file() {
  end_polyline();
  if (pen_ >= 0) {
    delete_object(pen_);
    pen_ = -1;
  }
  begin_record(kEof);
  end_record();
  std::vector<std::uint8_t> head;
  const auto put = [&](int v) {
    head.push_back(static_cast<std::uint8_t>(v & 0xFF));
    head.push_back(static_cast<std::uint8_t>((v >> 8) & 0xFF));
  };
  // Placeable header: key, handle, bounding box, units per inch, reserved, checksum.
  const int words[10] = {0xCDD7, 0x9AC6, 0, 0, 0, width_px_, height_px_, kInch, 0, 0};
  int checksum = 0;
  for (const int w : words) {
    put(w);
    checksum ^= w & 0xFFFF;
  }
  put(checksum);
  // META_HEADER: memory metafile, 9 words, version 3.0, sizes in words.
  const std::size_t total = 9 + body_.size() / 2;
  put(1);
  put(9);
  put(0x0300);
  put(static_cast<int>(total & 0xFFFFU));
  put(static_cast<int>(total >> 16));
  put(std::max(most_alive_, 1));
  put(static_cast<int>(max_record_ & 0xFFFFU));
  put(static_cast<int>(max_record_ >> 16));
  put(0);
  Sink* sink = files_.current();
  const bool ok = sink != nullptr &&
                  sink->write(reinterpret_cast<const char*>(head.data()), head.size()) &&
                  sink->write(reinterpret_cast<const char*>(body_.data()), body_.size()) &&
                  sink->flush();
  body_.clear();
  return ok;
}

void WmfDriver::select_pen() {
  if (!pen_dirty_ && pen_ >= 0) {
    return;
  }
  const int old = pen_;
  pen_ = take_object();
  begin_record(kCreatePen);
  // The pen's style: flat, round or square ends; mitre, round or bevel joins.
  static constexpr int kCaps[3] = {0x0200, 0x0000, 0x0100};
  static constexpr int kJoins[3] = {0x2000, 0x0000, 0x1000};
  put16(kCaps[cap_] | kJoins[join_]);
  put16(width_);
  put16(0);
  put_rgb(colour_);
  end_record();
  select(pen_);
  if (old >= 0) {
    delete_object(old);
  }
  pen_dirty_ = false;
}

void WmfDriver::end_polyline() {
  const std::size_t n = xs_.size();
  if (n >= 2) {
    select_pen();
    begin_record(kPolyline);
    put16(static_cast<int>(n));
    for (std::size_t i = 0; i < n; ++i) {
      put16(xs_[i]);
      put16(ys_[i]);
    }
    end_record();
  }
  xs_.clear();
  ys_.clear();
}

void WmfDriver::point(double x, double y, Pen pen) {
  if (pen == Pen::Move) {
    end_polyline();
  } else if (pen != Pen::Draw) {
    end_polyline();
    return;
  } else if (xs_.size() == kPolylinePoints) {
    const std::int16_t lx = xs_.back();
    const std::int16_t ly = ys_.back();
    end_polyline();
    xs_.push_back(lx);
    ys_.push_back(ly);
  }
  xs_.push_back(static_cast<std::int16_t>(coord(x)));
  ys_.push_back(static_cast<std::int16_t>(coord(y)));
}

void WmfDriver::fill(const Path& path, Rgb rgb) {
  end_polyline();
  const std::size_t n = std::min(path.xs.size(), path.ys.size());
  if (n < 3 || path.ends.empty()) {
    return;
  }
  select_pen();  // the line pen that the fill's objects give way to
  const int null_pen = take_object();
  begin_record(kCreatePen);
  put16(5);  // PS_NULL
  put16(0);
  put16(0);
  put_rgb(rgb);
  end_record();
  const int brush = take_object();
  begin_record(kCreateBrush);
  put16(0);  // BS_SOLID
  put_rgb(rgb);
  put16(0);
  end_record();
  select(null_pen);
  select(brush);
  if (path.rule == FillRule::EvenOdd) {
    begin_record(kSetPolyFillMode);
    put16(1);  // alternate
    end_record();
  }
  std::size_t start = 0;
  int rings = 0;
  std::array<int, 1> single{};
  std::vector<int> counts;
  for (const int e : path.ends) {
    const std::size_t stop = std::min(n, static_cast<std::size_t>(std::max(e, 0)));
    if (stop > start) {
      if (rings == 0) {
        single[0] = static_cast<int>(stop - start);
      } else {
        if (rings == 1) {
          counts.push_back(single[0]);
        }
        counts.push_back(static_cast<int>(stop - start));
      }
      ++rings;
    }
    start = std::max(start, stop);
  }
  begin_record(rings == 1 ? kPolygon : kPolyPolygon);
  if (rings == 1) {
    put16(single[0]);
  } else {
    put16(rings);
    for (const int c : counts) {
      put16(c);
    }
  }
  start = 0;
  for (const int e : path.ends) {
    const std::size_t stop = std::min(n, static_cast<std::size_t>(std::max(e, 0)));
    for (std::size_t i = start; i < stop; ++i) {
      put16(coord(path.xs[i]));
      put16(coord(path.ys[i]));
    }
    start = std::max(start, stop);
  }
  end_record();
  if (path.rule == FillRule::EvenOdd) {
    begin_record(kSetPolyFillMode);
    put16(2);
    end_record();
  }
  // Back to the line pen, then the fill's objects go.
  select(pen_);
  delete_object(brush);
  delete_object(null_pen);
}

void WmfDriver::new_page() {
  if (!files_.versioned()) {
    end_polyline();  // no file of its own for the page: it draws over this one
    return;
  }
  if (!end_file() || !files_.next()) {
    failed_ = true;
  }
  begin_file();
}

bool WmfDriver::close() {
  if (!end_file() || !files_.close()) {
    failed_ = true;
  }
  return !failed_;
}

}  // namespace

std::unique_ptr<Driver> make_wmf_driver() { return std::make_unique<WmfDriver>(); }

}  // namespace zorvel
