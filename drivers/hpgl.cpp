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

#include <memory>

#include "core/format.h"
#include "drivers/registry.h"
#include "drivers/text_writer.h"

namespace zorvel {
namespace {

class HpglDriver final : public Driver {
 public:
  bool open(Sink* out, const DriverSetup& /*setup*/) override {
    out_ = std::make_unique<TextWriter>(out, 80);
    out_->word("IN;");
    return !out_->failed();
  }

  void point(double x, double y, Pen pen) override {
    if (pen != Pen::Draw && pen != Pen::Move) {
      return;
    }
    int ix = device_int(x);
    const int iy = device_int(y);
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

  void colour(Rgb /*rgb*/, int value) override {
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
  std::unique_ptr<TextWriter> out_;
  int last_x_ = 0;         // the last position written
  int last_y_ = 0;
  bool after_move_ = false;  // ... by a move
};

}  // namespace

std::unique_ptr<Driver> make_hpgl_driver() { return std::make_unique<HpglDriver>(); }

}  // namespace zorvel
