// The library's own text metafile "GKSL". The file is a stream of fixed fields of ten
// characters with seven decimals, eight to a line:
//   - opening record: page width and height in centimetres, then the field 0.0;
//   - a point: x and y in centimetres (y upwards from the bottom of the page), then the
//     pen field " 2.0000000" (draw) or " 3.0000000" (move) when it differs from the pen
//     written last;
//   - a colour: fields "99.0000000" for every 89 colour numbers, then 9 + the rest, so a
//     pen field from 10 to 98 is a colour and 99 means 89 more (index 0 is sent as 256);
//   - closing record " 9.0000000".

#include <memory>

#include "core/format.h"
#include "drivers/registry.h"
#include "drivers/text_writer.h"

namespace zorvel {
namespace {

class GkslDriver final : public Driver {
 public:
  bool open(Sink* out, const DriverSetup& setup) override {
    out_ = std::make_unique<TextWriter>(out, 80);
    field(setup.page_width * setup.scale);
    field(setup.page_height * setup.scale);
    field(0.0);
    return !out_->failed();
  }

  void point(double x, double y, Pen pen) override {
    if (pen != Pen::Draw && pen != Pen::Move) {
      return;
    }
    field(x);
    field(y);
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

  bool close() override {
    field(9.0);
    out_->end_line();
    return out_->finish();
  }

  bool failed() const override { return out_ && out_->failed(); }

 private:
  void field(double v) {
    char tmp[kNumberBuffer];
    char* end = format_fixed(tmp, v, 7);
    end = pad_left(tmp, end, 10);
    out_->word({tmp, static_cast<std::size_t>(end - tmp)});
  }

  std::unique_ptr<TextWriter> out_;
  Pen last_pen_ = Pen::Close;
};

}  // namespace

std::unique_ptr<Driver> make_gksl_driver() { return std::make_unique<GkslDriver>(); }

}  // namespace zorvel
