// The library's own text metafile "GKSL". The file is a stream of fixed fields of ten
// characters, eight to a line, each a decimal number with seven decimals (fewer only when
// a value needs more than three places before the point):
//   - opening record: page width and height in centimetres, then the unit field: 0.0 when
//     the file holds centimetres, else the number of centimetres of one file unit (10 or
//     100: pages wider or higher than 99.99 cm are written in tenths or hundredths so that
//     every field stays within its ten columns);
//   - a point: x and y (y upwards from the bottom of the page), then the pen field
//     " 2.0000000" (draw) or " 3.0000000" (move) when it differs from the pen written last;
//   - a colour: fields "99.0000000" for every 89 colour numbers, then 9 + the rest, so a
//     pen field from 10 to 98 is a colour and 99 means 89 more (index 0 is sent as 256);
//   - " 1.0000000": a new page;
//   - " 4.0000000" and the line width in file units (0: the device's thinnest line);
//   - " 5.0000000", the point count n and n points: a filled polygon, non-zero rule, in
//     the colour in force;
//   - " 6.0000000", the rule (0 non-zero, 1 even-odd), the contour count k, then k times
//     a point count and its points: a filled path of several contours (holes);
//   - closing record " 9.0000000".
// Where a field may be a pen field or the x of a point, the x is kept apart from the
// codes: an x that would be written as a whole number from 1 to 99 is moved by 1e-7 (one
// unit of the last place) away from it. After every record other than a point the next
// point writes its pen again.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "core/format.h"
#include "drivers/registry.h"
#include "drivers/text_writer.h"

namespace zorvel {
namespace {

// Largest magnitude written with seven decimals in ten columns.
constexpr double kSevenDecimals = 99.99999994;

class GkslDriver final : public Driver {
 public:
  bool open(Sink* out, const DriverSetup& setup) override {
    out_ = std::make_unique<TextWriter>(out, 80);
    const double w = setup.page_width * setup.scale;
    const double h = setup.page_height * setup.scale;
    const double longest = std::max(w, h);
    unit_ = longest <= kSevenDecimals ? 1.0 : longest <= 999.99999 ? 10.0 : 100.0;
    field(w / unit_);
    field(h / unit_);
    field(unit_ == 1.0 ? 0.0 : unit_);
    return !out_->failed();
  }

  unsigned caps() const override { return kCapFill | kCapWidths; }

  void point(double x, double y, Pen pen) override {
    if (pen != Pen::Draw && pen != Pen::Move) {
      return;
    }
    x_field(x / unit_);
    field(y / unit_);
    if (pen != last_pen_) {
      field(static_cast<double>(static_cast<int>(pen)));
      last_pen_ = pen;
    }
  }

  void colour(Rgb /*rgb*/, int value) override {
    int c = value & 0xff;
    if (c == 0) {
      c = 256;
    }
    const int k = (c - 1) / 89;
    for (int i = 0; i < k; ++i) {
      field(99.0);
    }
    field(static_cast<double>(9 + c - 89 * k));
    // A colour field stands where a pen field would: the next point repeats its pen.
    last_pen_ = Pen::Close;
  }

  void pen_width(const LineWidth& w) override {
    // The plot starts every page with the width it had at the start; a file records only
    // the changes after the first call, so that files without widths stay as they were.
    const double cm = w.hardware ? w.n * w.width_scale * kCmPerUnit / unit_ : 0.0;
    if (!width_known_) {
      width_known_ = true;
      width_ = cm;
      return;
    }
    if (cm == width_) {
      return;
    }
    width_ = cm;
    field(4.0);
    field(cm);
    last_pen_ = Pen::Close;
  }

  void fill(const Path& path, Rgb /*rgb*/) override {
    const std::size_t contours = path.ends.size();
    if (contours == 0) {
      return;
    }
    if (contours == 1 && path.rule == FillRule::NonZero) {
      field(5.0);
    } else {
      field(6.0);
      field(path.rule == FillRule::EvenOdd ? 1.0 : 0.0);
      field(static_cast<double>(contours));
    }
    std::size_t from = 0;
    for (const int e : path.ends) {
      const auto to = static_cast<std::size_t>(e);
      field(static_cast<double>(to - from));
      for (std::size_t i = from; i < to; ++i) {
        field(path.xs[i] / unit_);
        field(path.ys[i] / unit_);
      }
      from = to;
    }
    last_pen_ = Pen::Close;
  }

  void new_page() override {
    field(1.0);
    last_pen_ = Pen::Close;
  }

  bool close() override {
    field(9.0);
    out_->end_line();
    return out_->finish();
  }

  bool failed() const override { return out_ && out_->failed(); }

 private:
  static constexpr double kCmPerUnit = 0.01;

  // Writes v in ten columns: seven decimals while they fit, fewer for larger values.
  void field(double v) {
    constexpr double kLimit = 99999999.0;  // eight digits and a sign fill ten columns
    v = std::clamp(std::isfinite(v) ? v : 0.0, -kLimit, kLimit);
    char tmp[kNumberBuffer];
    char* end = tmp;
    for (int decimals = 7; decimals >= 0; --decimals) {
      end = format_fixed(tmp, v, decimals);
      if (end - tmp <= 10) {
        break;
      }
    }
    end = pad_left(tmp, end, 10);
    out_->word({tmp, static_cast<std::size_t>(end - tmp)});
  }

  // The x of a point: kept apart from the pen and command fields 1 to 99.
  void x_field(double v) {
    if (v > 0.5 && v < 99.5) {
      const double whole = std::nearbyint(v);
      if (std::fabs(v - whole) < 5e-8) {
        v = v >= whole ? whole + 1e-7 : whole - 1e-7;
      }
    }
    field(v);
  }

  std::unique_ptr<TextWriter> out_;
  Pen last_pen_ = Pen::Close;
  double unit_ = 1.0;
  bool width_known_ = false;
  double width_ = 0.0;
};

}  // namespace

std::unique_ptr<Driver> make_gksl_driver() { return std::make_unique<GkslDriver>(); }

}  // namespace zorvel
