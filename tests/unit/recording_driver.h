#pragma once
// A plot open on a driver that records everything the pipeline hands to it, for the
// tests of the pipeline and the colours.

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/global_block.h"
#include "tests/unit/captured.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "drivers/registry.h"

namespace zorvel::recording {

struct Sent {
  double x;
  double y;
  Pen pen;
};

// A filled path as the driver received it.
struct Filled {
  std::vector<double> xs;
  std::vector<double> ys;
  std::vector<int> ends;
  FillRule rule;
  Rgb rgb;
};

// A text run as the driver received it.
struct Written {
  std::string utf8;
  std::vector<GlyphPlace> glyphs;
  std::string face;
  double angle;
  double size;
};

// A shape placed by place_shape: its polylines moved to where it was placed.
struct Placed {
  int id;
  bool filled;
  std::vector<std::vector<Sent>> polylines;
};

// Records everything the pipeline hands to a driver.
class Recorder final : public Driver {
 public:
  explicit Recorder(unsigned caps) : caps_(caps) {}
  bool open(Sink* /*out*/, const DriverSetup& /*setup*/) override { return true; }
  void point(double x, double y, Pen pen) override { points.push_back({x, y, pen}); }
  unsigned caps() const override { return caps_; }
  void colour(Rgb rgb, int value) override {
    colours.push_back(rgb);
    values.push_back(value);
  }
  void pen_width(const LineWidth& w) override { widths.push_back(w); }
  void fill(const Path& path, Rgb rgb) override {
    fills.push_back({{path.xs.begin(), path.xs.end()},
                     {path.ys.begin(), path.ys.end()},
                     {path.ends.begin(), path.ends.end()},
                     path.rule,
                     rgb});
  }
  void text(const TextRun& run) override {
    texts.push_back({std::string(run.utf8), {run.glyphs.begin(), run.glyphs.end()},
                     std::string(run.face), run.angle, run.size});
  }
  void image(const Image& img) override { images.push_back(img); }
  void place_shape(const Shape& shape, double x, double y) override {
    Placed& p = shapes.emplace_back();
    p.id = shape.id;
    p.filled = shape.filled;
    std::size_t from = 0;
    for (const int to : shape.ends) {
      auto& line = p.polylines.emplace_back();
      for (auto i = from; i < static_cast<std::size_t>(to); ++i) {
        line.push_back({x + shape.xs[i], y + shape.ys[i], i == from ? Pen::Move : Pen::Draw});
      }
      from = static_cast<std::size_t>(to);
    }
  }
  void sector(const Sector& s, Rgb /*rgb*/) override { sectors.push_back(s); }
  void new_page() override { ++pages; }
  bool close() override { return true; }
  bool failed() const override { return false; }
  long long overflows() const override { return overflow_count; }

  std::vector<Sent> points;
  std::vector<Rgb> colours;
  std::vector<int> values;
  std::vector<LineWidth> widths;
  std::vector<Filled> fills;
  std::vector<Written> texts;
  std::vector<Image> images;
  std::vector<Placed> shapes;
  std::vector<Sector> sectors;
  long long overflow_count = 0;  // what overflows() reports
  int pages = 0;                 // new_page calls

 private:
  unsigned caps_;
};

// A plot open on a recording driver for the device of metafl keyword `key`, with messages
// captured in memory. With `raw` the dispatch hands plot units over unchanged, so that
// geometry can be checked directly.
class Plot : public Captured {
 public:
  explicit Plot(std::string_view key = "GKSL", bool raw = true, unsigned caps = kCapFill) {
    const DeviceInfo& dev = *find_device(key);
    g.core.device = dev.code;
    g.core.level = 1;
    auto r = std::make_unique<Recorder>(caps);
    rec = r.get();
    EXPECT_TRUE(open_driver(g, dev, std::move(r), nullptr));
    if (raw) {
      g.pipe.dispatch = Dispatch::None;
      g.pipe.scale = 1.0;
    }
    init_colours(g);
    rec->points.clear();
    rec->colours.clear();
    rec->values.clear();
  }
  ~Plot() { g.pipe.driver.reset(); }
  // The points sent so far, split into polylines at every Move.
  std::vector<std::vector<Sent>> polylines() {
    end_polyline(g);
    std::vector<std::vector<Sent>> out;
    for (const Sent& s : rec->points) {
      if (s.pen == Pen::Move) {
        out.emplace_back();
      }
      if (s.pen == Pen::Move || s.pen == Pen::Draw) {
        EXPECT_FALSE(out.empty()) << "a draw before any move";
        if (!out.empty()) {
          out.back().push_back(s);
        }
      }
    }
    return out;
  }
  // The same as text: "x,y x,y; x,y x,y" (seven significant digits).
  std::string traced() {
    std::string out;
    for (const auto& line : polylines()) {
      for (std::size_t i = 0; i < line.size(); ++i) {
        char buf[64];
        std::snprintf(buf, sizeof buf, "%s%.7g,%.7g", i > 0 ? " " : out.empty() ? "" : "; ",
                      line[i].x, line[i].y);
        out += buf;
      }
    }
    return out;
  }

  Recorder* rec = nullptr;
};
}  // namespace zorvel::recording
