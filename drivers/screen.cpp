// The screen driver: draws on the raster page exactly as the raster devices do, so that a
// window shows the same pixels as the PNG file of the same plot, and records every call
// in the window's display list, from which the window draws the plot again at another
// size or through OpenGL. The page reaches the window at sendbf, now and then while
// drawing, and at the end of the plot.

#include <cmath>
#include <memory>

#include "drivers/raster_driver.h"
#include "raster/raster_page.h"
#include "screen/screen_target.h"

namespace zorvel {
namespace {

using screen::Op;
using screen::pack_rgba;

class ScreenDriver final : public Driver {
 public:
  bool open(Sink* out, const DriverSetup& setup) override {
    target_ = setup.screen;
    page_ = setup.raster;
    if (target_ == nullptr || page_ == nullptr || !inner_->open(out, setup)) {
      return false;
    }
    screen::DisplayList& list = target_->list();
    list.clear();
    list.width = page_->width();
    list.height = page_->height();
    list.scale = setup.scale;
    list.antialias = setup.antialias;
    list.background = setup.reversed ? 0xFFFFFFFFU : 0xFF000000U;
    list.add(Op::Cap, 0.0, 0.0, static_cast<std::uint32_t>(setup.line_cap));
    return true;
  }
  unsigned caps() const override { return inner_->caps(); }
  void point(double x, double y, Pen pen) override {
    inner_->point(x, y, pen);
    if (pen == Pen::End || pen == Pen::Close) {
      list().add(Op::End);
      target_->tick(page_->view());
    } else {
      list().add(pen == Pen::Move ? Op::Move : Op::Draw, x, y);
    }
  }
  void colour(Rgb rgb, int value) override {
    inner_->colour(rgb, value);
    list().add(Op::Colour, 0.0, 0.0, pack_rgba(rgb.r, rgb.g, rgb.b, rgb.a));
  }
  void pen_width(const LineWidth& w) override {
    inner_->pen_width(w);
    list().add(Op::Width, w.n, w.width_scale, w.hardware ? 1U : 0U);
  }
  void line_cap(int cap) override {
    inner_->line_cap(cap);
    list().add(Op::Cap, 0.0, 0.0, static_cast<std::uint32_t>(cap));
  }
  void line_join(int join, double miter_limit) override {
    inner_->line_join(join, miter_limit);
    list().add(Op::Join, miter_limit, 0.0, static_cast<std::uint32_t>(join));
  }
  void fill(const Path& path, Rgb rgb) override {
    inner_->fill(path, rgb);
    screen::DisplayList& l = list();
    std::size_t from = 0;
    for (const int end : path.ends) {
      const auto to = std::min(static_cast<std::size_t>(std::max(end, 0)), path.xs.size());
      for (std::size_t i = from; i < to; ++i) {
        l.add(Op::FillPoint, path.xs[i], path.ys[i]);
      }
      l.add(Op::FillClose);
      from = std::max(from, to);
    }
    l.add(Op::Fill, path.rule == FillRule::EvenOdd ? 1.0 : 0.0, path.seamless ? 1.0 : 0.0,
          pack_rgba(rgb.r, rgb.g, rgb.b, rgb.a));
    target_->tick(page_->view());
  }
  void image(const Image& img) override {
    inner_->image(img);
    if (img.pixels == nullptr || img.width <= 0 || img.height <= 0) {
      return;
    }
    screen::DisplayList& l = list();
    screen::ListImage copy;
    const std::size_t row = static_cast<std::size_t>(img.width) * static_cast<std::size_t>(img.channels);
    copy.pixels.resize(row * static_cast<std::size_t>(img.height));
    for (int j = 0; j < img.height; ++j) {
      const std::uint8_t* src = img.pixels + static_cast<std::size_t>(j) * img.stride;
      std::copy(src, src + row, copy.pixels.begin() + static_cast<std::ptrdiff_t>(row * static_cast<std::size_t>(j)));
    }
    copy.width = img.width;
    copy.height = img.height;
    copy.channels = img.channels;
    copy.x0 = img.x0;
    copy.y0 = img.y0;
    copy.x1 = img.x1;
    copy.y1 = img.y1;
    l.images.push_back(std::move(copy));
    l.add(Op::Image, 0.0, 0.0, static_cast<std::uint32_t>(l.images.size() - 1));
  }
  void erase() override {
    inner_->erase();
    restart();
  }
  void new_page() override {
    inner_->new_page();
    restart();
  }
  void flush() override {
    inner_->flush();
    target_->present(page_->view());
  }
  bool close() override {
    const bool ok = inner_->close();
    target_->finish(page_->view());
    return ok;
  }
  bool failed() const override { return inner_->failed(); }

 private:
  screen::DisplayList& list() { return target_->list(); }
  // An erased page forgets what was drawn on it, but not the attributes in force.
  void restart() {
    screen::DisplayList& l = list();
    std::uint32_t colour = 0;
    const screen::Command* width = nullptr;
    const screen::Command* cap = nullptr;
    const screen::Command* join = nullptr;
    bool has_colour = false;
    for (const screen::Command& c : l.commands) {
      switch (c.op) {
        case Op::Colour:
          colour = c.arg;
          has_colour = true;
          break;
        case Op::Width:
          width = &c;
          break;
        case Op::Cap:
          cap = &c;
          break;
        case Op::Join:
          join = &c;
          break;
        default:
          break;
      }
    }
    std::vector<screen::Command> kept;
    for (const screen::Command* c : {width, cap, join}) {
      if (c != nullptr) {
        kept.push_back(*c);
      }
    }
    if (has_colour) {
      kept.push_back(screen::Command{0.0, 0.0, colour, Op::Colour});
    }
    l.clear();
    l.commands = std::move(kept);
    // The page is cleared in the background: the list starts from it.
    const PixelView v = page_->view();
    if (v.rgb != nullptr) {
      l.background = pack_rgba(v.rgb[0], v.rgb[1], v.rgb[2], 255);
    }
  }

  std::unique_ptr<Driver> inner_ = make_raster_driver(nullptr);
  screen::Target* target_ = nullptr;
  RasterPage* page_ = nullptr;
};

}  // namespace

std::unique_ptr<Driver> make_screen_driver() { return std::make_unique<ScreenDriver>(); }

}  // namespace zorvel
