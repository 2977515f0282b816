// The CGM driver of the device "CGM " (211): a binary Computer Graphics Metafile of
// version 1.
//
// Every element is a 16-bit header word, class << 12 | id << 5 | length, followed by its
// parameters padded to an even length; parameters of 31 bytes or more take the long
// form, the length 31 in the header and then partitions of at most 32,766 bytes, each
// after a word of its length with bit 15 set when another partition follows. Numbers are
// big-endian: integers and VDC coordinates 16 bits, direct colours three bytes of 8 bits.
//
//   BEGIN METAFILE "zorvel", METAFILE VERSION 1, METAFILE DESCRIPTION,
//   METAFILE ELEMENT LIST
//   per page: BEGIN PICTURE "page n", SCALING MODE metric (mm per VDC unit),
//             COLOUR SELECTION MODE direct, LINE WIDTH SPECIFICATION MODE absolute,
//             VDC EXTENT (0, 0) .. page, BACKGROUND COLOUR white, BEGIN PICTURE BODY,
//             the restated attributes,
//             POLYLINE, POLYGON, POLYGON SET, LINE COLOUR, FILL COLOUR, ...
//             END PICTURE
//   END METAFILE
//
// VDC are plot units (0.1 mm) from the bottom left corner; a page longer than 32,767
// plot units is scaled down to fit (the core warns). The file is a sequence of 80-byte
// records, the last one padded with blanks.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "drivers/registry.h"

namespace zorvel {
namespace {

constexpr std::size_t kRecord = 80;
constexpr std::size_t kBlock = 800 * kRecord;  // bytes handed to the sink at once
// The longest parameter list of one partition (even, a whole number of points).
constexpr std::size_t kPartition = 32764;
constexpr int kVdcLimit = 32767;
// Points of a polyline held before it is written (it then goes on from its last point).
constexpr std::size_t kPolylinePoints = 4000;

enum : int {
  kDelimiter = 0,
  kDescriptor = 1,
  kPicture = 2,
  kControl = 3,
  kPrimitive = 4,
  kAttribute = 5,
};

class CgmDriver final : public Driver {
 public:
  bool open(Sink* out, const DriverSetup& setup) override;
  void point(double x, double y, Pen pen) override;
  unsigned caps() const override { return kCapFill | kCapWidths; }
  void colour(Rgb rgb, int /*value*/) override;
  void pen_width(const LineWidth& w) override;
  void fill(const Path& path, Rgb rgb) override;
  void new_page() override {
    end_polyline();
    element(kDelimiter, 5, {});  // END PICTURE
    begin_picture();
  }
  bool close() override;
  bool failed() const override { return failed_; }

 private:
  void begin_picture();
  void end_polyline();

  // Element writing: the parameters are collected in params_, then the element goes out.
  void put16(int v) {
    const auto u = static_cast<std::uint16_t>(v);
    params_.push_back(static_cast<std::uint8_t>(u >> 8));
    params_.push_back(static_cast<std::uint8_t>(u & 0xFFU));
  }
  void put_string(std::string_view s) {
    const std::size_t n = std::min<std::size_t>(s.size(), 254);
    params_.push_back(static_cast<std::uint8_t>(n));
    params_.insert(params_.end(), s.begin(), s.begin() + static_cast<std::ptrdiff_t>(n));
  }
  void put_rgb(Rgb c) {
    params_.push_back(static_cast<std::uint8_t>(std::clamp(c.r, 0, 255)));
    params_.push_back(static_cast<std::uint8_t>(std::clamp(c.g, 0, 255)));
    params_.push_back(static_cast<std::uint8_t>(std::clamp(c.b, 0, 255)));
  }
  void put_point(double x, double y) {
    put16(vdc(x));
    put16(vdc(y));
  }
  int vdc(double v) const {
    return static_cast<int>(std::clamp(device_int(v * vdc_scale_), -32767LL, 32767LL));
  }
  // Writes the element of class c and id with the parameters collected (then cleared).
  void element(int c, int id, std::initializer_list<int> words);
  void emit();
  void bytes(const std::uint8_t* p, std::size_t n);
  void word(int v) {
    const std::uint8_t b[2] = {static_cast<std::uint8_t>((v >> 8) & 0xFF),
                               static_cast<std::uint8_t>(v & 0xFF)};
    bytes(b, 2);
  }
  void drain(std::size_t n);

  Sink* sink_ = nullptr;
  bool failed_ = false;
  std::vector<std::uint8_t> block_;
  std::vector<std::uint8_t> params_;
  int element_class_ = 0;
  int element_id_ = 0;
  double vdc_scale_ = 1.0;
  int width_ = 0;   // the page in VDC
  int height_ = 0;
  int page_ = 0;
  Rgb colour_{};
  Rgb fill_{};
  bool fill_set_ = false;  // FILL COLOUR written in this picture
  int line_width_ = 1;  // VDC
  // The open polyline.
  std::vector<double> xs_;
  std::vector<double> ys_;
};

void CgmDriver::bytes(const std::uint8_t* p, std::size_t n) {
  while (n > 0) {
    const std::size_t m = std::min(n, kBlock - block_.size());
    block_.insert(block_.end(), p, p + m);
    p += m;
    n -= m;
    if (block_.size() == kBlock) {
      drain(kBlock);
    }
  }
}

// Hands the first n bytes of the block to the sink.
void CgmDriver::drain(std::size_t n) {
  if (!failed_ && sink_ != nullptr &&
      !sink_->write(reinterpret_cast<const char*>(block_.data()), n)) {
    failed_ = true;
  }
  block_.erase(block_.begin(), block_.begin() + static_cast<std::ptrdiff_t>(n));
}

void CgmDriver::element(int c, int id, std::initializer_list<int> words) {
  for (const int w : words) {
    put16(w);
  }
  element_class_ = c;
  element_id_ = id;
  emit();
}

void CgmDriver::emit() {
  const int head = (element_class_ << 12) | (element_id_ << 5);
  const std::size_t n = params_.size();
  static constexpr std::uint8_t kPad = 0;
  if (n < 31) {
    word(head | static_cast<int>(n));
    bytes(params_.data(), n);
    if (n % 2 != 0) {
      bytes(&kPad, 1);
    }
  } else {
    word(head | 31);
    std::size_t at = 0;
    do {
      const std::size_t m = std::min(n - at, kPartition);
      const bool more = at + m < n;
      word((more ? 0x8000 : 0) | static_cast<int>(m));
      bytes(params_.data() + at, m);
      if (m % 2 != 0) {
        bytes(&kPad, 1);
      }
      at += m;
    } while (at < n);
  }
  params_.clear();
}

bool CgmDriver::open(Sink* out, const DriverSetup& setup) {
  sink_ = out;
  block_.reserve(kBlock);
  params_.reserve(kPartition + 16);
  xs_.reserve(kPolylinePoints);
  ys_.reserve(kPolylinePoints);
  const double scale = setup.scale > 0.0 && std::isfinite(setup.scale) ? setup.scale : 1.0;
  const double w = (setup.page_width + 1.0) * scale;
  const double h = (setup.page_height + 1.0) * scale;
  const double longest = std::max(w, h);
  vdc_scale_ = longest > kVdcLimit ? kVdcLimit / longest : 1.0;
  width_ = vdc(w);
  height_ = vdc(h);
  put_string("zorvel");
  element(kDelimiter, 1, {});       // BEGIN METAFILE
  element(kDescriptor, 1, {1});     // METAFILE VERSION
  std::string text = "Zorvel, a scientific plotting library; ";
  text += setup.stamp.date;
  text += ' ';
  text += setup.stamp.time;
  put_string(text);
  element(kDescriptor, 2, {});      // METAFILE DESCRIPTION
  element(kDescriptor, 11, {1, -1, 0});  // METAFILE ELEMENT LIST: the drawing set
  begin_picture();
  return !failed_;
}

void CgmDriver::begin_picture() {
  ++page_;
  std::string name = "page ";
  name += std::to_string(page_);
  put_string(name);
  element(kDelimiter, 3, {});       // BEGIN PICTURE
  // SCALING MODE metric: millimetres per VDC unit as a 32-bit fixed-point real.
  const double mm = 0.1 / vdc_scale_;
  const double whole = std::floor(mm);
  const auto frac = static_cast<int>(std::lround((mm - whole) * 65536.0));
  element(kPicture, 1, {1, static_cast<int>(whole), frac});
  element(kPicture, 2, {1});        // COLOUR SELECTION MODE direct
  element(kPicture, 3, {0});        // LINE WIDTH SPECIFICATION MODE absolute
  element(kPicture, 6, {0, 0, width_, height_});  // VDC EXTENT
  put_rgb(Rgb{255, 255, 255});
  element(kPicture, 7, {});         // BACKGROUND COLOUR: the paper (the default is black)
  element(kDelimiter, 4, {});       // BEGIN PICTURE BODY
  element(kAttribute, 22, {1});     // INTERIOR STYLE solid
  fill_set_ = false;
  element(kAttribute, 3, {line_width_});  // LINE WIDTH
  put_rgb(colour_);
  element(kAttribute, 4, {});       // LINE COLOUR
}

void CgmDriver::end_polyline() {
  if (xs_.size() >= 2) {
    for (std::size_t i = 0; i < xs_.size(); ++i) {
      put_point(xs_[i], ys_[i]);
    }
    element(kPrimitive, 1, {});     // POLYLINE
  }
  xs_.clear();
  ys_.clear();
}

void CgmDriver::point(double x, double y, Pen pen) {
  if (pen == Pen::Move) {
    end_polyline();
  } else if (pen != Pen::Draw) {
    end_polyline();
    return;
  } else if (xs_.size() == kPolylinePoints) {
    const double lx = xs_.back();
    const double ly = ys_.back();
    end_polyline();
    xs_.push_back(lx);
    ys_.push_back(ly);
  }
  xs_.push_back(x);
  ys_.push_back(y);
}

void CgmDriver::colour(Rgb rgb, int /*value*/) {
  end_polyline();
  colour_ = rgb;
  put_rgb(rgb);
  element(kAttribute, 4, {});       // LINE COLOUR: 0x50 0x83 r g b 0x00
}

void CgmDriver::pen_width(const LineWidth& w) {
  end_polyline();
  const double width = (w.hardware ? std::max(w.n, 1) : 1) * w.width_scale * vdc_scale_;
  line_width_ = static_cast<int>(std::clamp(device_int(width), 1LL, 32767LL));
  element(kAttribute, 3, {line_width_});
}

void CgmDriver::fill(const Path& path, Rgb rgb) {
  end_polyline();
  const std::size_t n = std::min(path.xs.size(), path.ys.size());
  if (n < 3 || path.ends.empty()) {
    return;
  }
  if (!fill_set_ || rgb.r != fill_.r || rgb.g != fill_.g || rgb.b != fill_.b) {
    put_rgb(rgb);
    element(kAttribute, 23, {});    // FILL COLOUR
    fill_ = rgb;
    fill_set_ = true;
  }
  if (path.ends.size() == 1) {
    const std::size_t stop = std::min(n, static_cast<std::size_t>(std::max(path.ends[0], 0)));
    for (std::size_t i = 0; i < stop; ++i) {
      put_point(path.xs[i], path.ys[i]);
    }
    element(kPrimitive, 7, {});     // POLYGON
    return;
  }
  // POLYGON SET: every point with its edge flag, 2 (close, invisible) at a contour's end;
  // the interior by the even-odd rule.
  std::size_t start = 0;
  for (const int e : path.ends) {
    const std::size_t stop = std::min(n, static_cast<std::size_t>(std::max(e, 0)));
    for (std::size_t i = start; i < stop; ++i) {
      put_point(path.xs[i], path.ys[i]);
      put16(i + 1 == stop ? 2 : 0);
    }
    start = std::max(start, stop);
  }
  element(kPrimitive, 8, {});
}

bool CgmDriver::close() {
  end_polyline();
  element(kDelimiter, 5, {});       // END PICTURE
  element(kDelimiter, 2, {});       // END METAFILE
  // The last record padded with blanks.
  const std::size_t rest = block_.size() % kRecord;
  if (rest != 0) {
    block_.insert(block_.end(), kRecord - rest, static_cast<std::uint8_t>(' '));
  }
  drain(block_.size());
  if (!failed_ && sink_ != nullptr && !sink_->flush()) {
    failed_ = true;
  }
  return !failed_;
}

}  // namespace

std::unique_ptr<Driver> make_cgm_driver() { return std::make_unique<CgmDriver>(); }

}  // namespace zorvel
