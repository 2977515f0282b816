// The EMF driver of the device "EMF " (222): an enhanced Windows metafile.
//
// Logical units are device units are plot units (0.1 mm, y downwards from the top of
// the page): the header names a reference device of 254 pixels per inch, so MM_TEXT
// needs no mapping. Records are little-endian 32-bit words:
//
//   EMR_HEADER           bounds in device units, frame in 0.01 mm, size, record count,
//                        handles
//   EMR_SETPOLYFILLMODE  winding
//   EMR_EXTCREATEPEN, EMR_SELECTOBJECT, EMR_POLYLINE16 ...   lines in a geometric pen of
//                        the colour, width, cap and join; a new pen is selected before
//                        the old one is deleted
//   EMR_SELECTOBJECT NULL_PEN, EMR_CREATEBRUSHINDIRECT, EMR_SELECTOBJECT,
//   EMR_POLYGON16 or EMR_POLYPOLYGON16, EMR_SELECTOBJECT (the line pen),
//   EMR_DELETEOBJECT     a filled area, its brush deleted after use
//   EMR_DELETEOBJECT (the line pen), EMR_EOF
//
// Coordinates beyond 16 bits take the 32-bit records (EMR_POLYLINE, EMR_POLYGON,
// EMR_POLYPOLYGON). The header holds the file's size, so a page is collected in memory;
// newpag finishes the file and goes on in the plot file's next version, as WMF does.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "drivers/page_files.h"
#include "drivers/registry.h"

namespace zorvel {
namespace {

// Points of a polyline held before it is written (it then goes on from its last point).
constexpr std::size_t kPolylinePoints = 8000;
constexpr std::uint32_t kNullPen = 0x80000008U;
// Coordinates are clamped far outside the page, within 32 bits.
constexpr long long kLimit = 1000000000LL;

enum : std::uint32_t {
  kHeader = 1,
  kPolygon32 = 3,
  kPolyline32 = 4,
  kPolyPolygon32 = 8,
  kEof = 14,
  kSetPolyFillMode = 19,
  kSelectObject = 37,
  kCreateBrush = 39,
  kDeleteObject = 40,
  kPolygon16 = 86,
  kPolyline16 = 87,
  kPolyPolygon16 = 91,
  kExtCreatePen = 95,
};

class EmfDriver final : public Driver {
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
    width_ = static_cast<std::uint32_t>(std::clamp(device_int(width), 1LL, 100000LL));
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
  // Points of a poly record: 16-bit when they all fit, with their bounds first.
  void put_points(std::uint32_t type16, std::uint32_t type32, const long long* xs,
                  const long long* ys, std::size_t n, const std::vector<std::uint32_t>* counts);

  void begin_record(std::uint32_t type) {
    record_ = body_.size();
    put32(type);
    put32(0);
    ++records_;
  }
  void end_record() {
    while (body_.size() % 4 != 0) {
      body_.push_back(0);
    }
    const auto size = static_cast<std::uint32_t>(body_.size() - record_);
    for (int k = 0; k < 4; ++k) {
      body_[record_ + 4 + static_cast<std::size_t>(k)] =
          static_cast<std::uint8_t>((size >> (8 * k)) & 0xFFU);
    }
  }
  void put16(std::int32_t v) {
    const auto u = static_cast<std::uint16_t>(v);
    body_.push_back(static_cast<std::uint8_t>(u & 0xFFU));
    body_.push_back(static_cast<std::uint8_t>(u >> 8));
  }
  void put32(std::uint32_t v) {
    for (int k = 0; k < 4; ++k) {
      body_.push_back(static_cast<std::uint8_t>((v >> (8 * k)) & 0xFFU));
    }
  }
  static std::uint32_t rgb_word(Rgb c) {
    return static_cast<std::uint32_t>(std::clamp(c.r, 0, 255)) |
           static_cast<std::uint32_t>(std::clamp(c.g, 0, 255)) << 8 |
           static_cast<std::uint32_t>(std::clamp(c.b, 0, 255)) << 16;
  }
  static long long coord(double v) { return std::clamp(device_int(v), -kLimit, kLimit); }
  std::uint32_t take_handle() {
    for (std::uint32_t i = 1; i < used_.size(); ++i) {
      if (!used_[i]) {
        used_[i] = true;
        most_ = std::max(most_, i);
        return i;
      }
    }
    return 1;  // cannot happen: at most two objects live at once
  }
  void delete_object(std::uint32_t h) {
    begin_record(kDeleteObject);
    put32(h);
    end_record();
    used_[h] = false;
  }
  void select(std::uint32_t h) {
    begin_record(kSelectObject);
    put32(h);
    end_record();
  }

  PageFiles files_;
  bool failed_ = false;
  std::vector<std::uint8_t> body_;  // the records of the page after the header
  std::size_t record_ = 0;
  std::uint32_t records_ = 0;
  std::vector<bool> used_ = std::vector<bool>(4, false);
  std::uint32_t most_ = 0;
  std::uint32_t pen_ = 0;  // handle of the selected line pen; 0 none
  bool pen_dirty_ = true;
  long long width_px_ = 1;  // the page in device units
  long long height_px_ = 1;
  Rgb colour_{};
  std::uint32_t width_ = 1;
  int cap_ = 2;
  int join_ = 0;
  std::vector<long long> xs_;
  std::vector<long long> ys_;
  std::vector<std::uint32_t> counts_;
};

bool EmfDriver::open(Sink* out, const DriverSetup& setup) {
  files_.start(out, setup.file_name, setup.versions);
  const double scale = setup.scale > 0.0 && std::isfinite(setup.scale) ? setup.scale : 1.0;
  width_px_ = std::max(1LL, coord((setup.device_width > 0.0 ? setup.device_width
                                                               : setup.page_width * scale) + 1));
  height_px_ = std::max(1LL, coord((setup.device_height > 0.0 ? setup.device_height
                                                                 : setup.page_height * scale) + 1));
  cap_ = std::clamp(setup.line_cap, 0, 2);
  xs_.reserve(kPolylinePoints);
  ys_.reserve(kPolylinePoints);
  begin_file();
  return true;
}

void EmfDriver::begin_file() {
  body_.clear();
  records_ = 0;
  std::fill(used_.begin(), used_.end(), false);
  most_ = 0;
  pen_ = 0;
  pen_dirty_ = true;
  begin_record(kSetPolyFillMode);
  put32(2);  // winding
  end_record();
}

bool EmfDriver::end_file() {
  end_polyline();
  if (pen_ != 0) {
    delete_object(pen_);
    pen_ = 0;
  }
  begin_record(kEof);
  put32(0);   // no palette
  put32(16);  // where it would start
  put32(20);  // the record's size, again
  end_record();
  // The header, 108 bytes: bounds, frame, signature, version, size, records, handles,
  // description, palette, reference device in pixels and millimetres, pixel format,
  // OpenGL, reference device in micrometres.
  std::vector<std::uint8_t> head;
  const auto put = [&](long long v) {
    const auto u = static_cast<std::uint32_t>(v);
    for (int k = 0; k < 4; ++k) {
      head.push_back(static_cast<std::uint8_t>((u >> (8 * k)) & 0xFFU));
    }
  };
  constexpr std::uint32_t kHeaderBytes = 108;
  put(kHeader);
  put(kHeaderBytes);
  for (const long long v : {0LL, 0LL, width_px_ - 1, height_px_ - 1}) {  // bounds
    put(v);
  }
  for (const long long v : {0LL, 0LL, width_px_ * 10 - 1, height_px_ * 10 - 1}) {  // frame
    put(v);
  }
  put(0x464D4520);  // " EMF"
  put(0x00010000);
  put(static_cast<long long>(kHeaderBytes + body_.size()));
  put(records_ + 1);
  put(static_cast<long long>(most_ + 1));  // handles (16 bits) and a reserved zero
  put(0);
  put(0);  // no description
  put(0);
  put(width_px_);  // reference device: one pixel per plot unit
  put(height_px_);
  put(width_px_ / 10);  // millimetres
  put(height_px_ / 10);
  put(0);  // no pixel format
  put(0);
  put(0);  // no OpenGL
  put(width_px_ * 100);  // micrometres
  put(height_px_ * 100);
  Sink* sink = files_.current();
  const bool ok = sink != nullptr &&
                  sink->write(reinterpret_cast<const char*>(head.data()), head.size()) &&
                  sink->write(reinterpret_cast<const char*>(body_.data()), body_.size()) &&
                  sink->flush();
  body_.clear();
  return ok;
}

void EmfDriver::select_pen() {
  if (!pen_dirty_ && pen_ != 0) {
    return;
  }
  const std::uint32_t old = pen_;
  pen_ = take_handle();
  begin_record(kExtCreatePen);
  put32(pen_);
  for (int k = 0; k < 4; ++k) {
    put32(0);  // no brush bitmap
  }
  // PS_GEOMETRIC, solid, with flat, round or square ends and mitre, round or bevel joins.
  static constexpr std::uint32_t kCaps[3] = {0x0200, 0x0000, 0x0100};
  static constexpr std::uint32_t kJoins[3] = {0x2000, 0x0000, 0x1000};
  put32(0x00010000U | kCaps[cap_] | kJoins[join_]);
  put32(width_);
  put32(0);  // BS_SOLID
  put32(rgb_word(colour_));
  put32(0);  // hatch
  put32(0);  // no style entries
  end_record();
  select(pen_);
  if (old != 0) {
    delete_object(old);
  }
  pen_dirty_ = false;
}

void EmfDriver::put_points(std::uint32_t type16, std::uint32_t type32, const long long* xs,
                           const long long* ys, std::size_t n,
                           const std::vector<std::uint32_t>* counts) {
  long long x0 = std::numeric_limits<long long>::max();
  long long y0 = x0;
  long long x1 = std::numeric_limits<long long>::min();
  long long y1 = x1;
  for (std::size_t i = 0; i < n; ++i) {
    x0 = std::min(x0, xs[i]);
    x1 = std::max(x1, xs[i]);
    y0 = std::min(y0, ys[i]);
    y1 = std::max(y1, ys[i]);
  }
  const bool small = x0 >= -32768 && y0 >= -32768 && x1 <= 32767 && y1 <= 32767;
  begin_record(small ? type16 : type32);
  for (const long long v : {x0, y0, x1, y1}) {
    put32(static_cast<std::uint32_t>(v));
  }
  if (counts != nullptr) {
    put32(static_cast<std::uint32_t>(counts->size()));
  }
  put32(static_cast<std::uint32_t>(n));
  if (counts != nullptr) {
    for (const std::uint32_t c : *counts) {
      put32(c);
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    if (small) {
      put16(static_cast<std::int32_t>(xs[i]));
      put16(static_cast<std::int32_t>(ys[i]));
    } else {
      put32(static_cast<std::uint32_t>(xs[i]));
      put32(static_cast<std::uint32_t>(ys[i]));
    }
  }
  end_record();
}

void EmfDriver::end_polyline() {
  if (xs_.size() >= 2) {
    select_pen();
    put_points(kPolyline16, kPolyline32, xs_.data(), ys_.data(), xs_.size(), nullptr);
  }
  xs_.clear();
  ys_.clear();
}

void EmfDriver::point(double x, double y, Pen pen) {
  if (pen == Pen::Move) {
    end_polyline();
  } else if (pen != Pen::Draw) {
    end_polyline();
    return;
  } else if (xs_.size() == kPolylinePoints) {
    const long long lx = xs_.back();
    const long long ly = ys_.back();
    end_polyline();
    xs_.push_back(lx);
    ys_.push_back(ly);
  }
  xs_.push_back(coord(x));
  ys_.push_back(coord(y));
}

void EmfDriver::fill(const Path& path, Rgb rgb) {
  end_polyline();
  const std::size_t n = std::min(path.xs.size(), path.ys.size());
  if (n < 3 || path.ends.empty()) {
    return;
  }
  select_pen();  // the line pen that the fill gives way to
  // The points of the rings into the polyline buffers (empty between polylines).
  counts_.clear();
  std::size_t start = 0;
  for (const int e : path.ends) {
    const std::size_t stop = std::min(n, static_cast<std::size_t>(std::max(e, 0)));
    if (stop > start) {
      counts_.push_back(static_cast<std::uint32_t>(stop - start));
      for (std::size_t i = start; i < stop; ++i) {
        xs_.push_back(coord(path.xs[i]));
        ys_.push_back(coord(path.ys[i]));
      }
    }
    start = std::max(start, stop);
  }
  select(kNullPen);
  const std::uint32_t brush = take_handle();
  begin_record(kCreateBrush);
  put32(brush);
  put32(0);  // BS_SOLID
  put32(rgb_word(rgb));
  put32(0);
  end_record();
  select(brush);
  if (path.rule == FillRule::EvenOdd) {
    begin_record(kSetPolyFillMode);
    put32(1);  // alternate
    end_record();
  }
  if (counts_.size() == 1) {
    put_points(kPolygon16, kPolygon32, xs_.data(), ys_.data(), xs_.size(), nullptr);
  } else {
    put_points(kPolyPolygon16, kPolyPolygon32, xs_.data(), ys_.data(), xs_.size(), &counts_);
  }
  xs_.clear();
  ys_.clear();
  if (path.rule == FillRule::EvenOdd) {
    begin_record(kSetPolyFillMode);
    put32(2);
    end_record();
  }
  select(pen_);
  delete_object(brush);
}

void EmfDriver::new_page() {
  if (!files_.versioned()) {
    end_polyline();  // no file of its own for the page: it draws over this one
    return;
  }
  if (!end_file() || !files_.next()) {
    failed_ = true;
  }
  begin_file();
}

bool EmfDriver::close() {
  if (!end_file() || !files_.close()) {
    failed_ = true;
  }
  return !failed_;
}

}  // namespace

std::unique_ptr<Driver> make_emf_driver() { return std::make_unique<EmfDriver>(); }

}  // namespace zorvel
