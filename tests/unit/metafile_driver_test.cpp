// The binary metafile drivers on their own, through the Driver interface: the Windows
// metafiles must create and delete their objects in balance and state sizes and counts
// that match what they wrote; CGM must cut long parameter lists into partitions exactly
// at the limit. The consumer checks (tests/consumers) read whole files with real tools;
// these catch what those tools forgive.

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "api_decl.h"
#include "drivers/registry.h"
#include "drivers/sink.h"
#include "tests/unit/captured.h"

namespace zorvel {
namespace {

DriverSetup page() {
  DriverSetup s;
  s.page_width = 2969;
  s.page_height = 2099;
  s.scale = 1.0;
  s.reversed = true;
  s.stamp = DateTime{"14.11.2023", "22:13:20"};
  return s;
}

// Lines in several colours, widths and caps, a fill of one ring and one of two (a hole,
// even-odd), as a plot sends them.
void scene(Driver& d) {
  for (int k = 0; k < 4; ++k) {
    d.colour(Rgb{60 * k, 0, 255 - 60 * k}, 0);
    d.pen_width(LineWidth{1 + 3 * k});
    d.line_cap(k % 3);
    d.point(100, 100 + 50 * k, Pen::Move);
    d.point(900, 100 + 50 * k, Pen::Draw);
    d.point(900, 100 + 50 * k, Pen::End);
  }
  const double xs[8] = {100, 500, 500, 100, 200, 400, 400, 200};
  const double ys[8] = {600, 600, 1000, 1000, 700, 700, 900, 900};
  const int one[1] = {4};
  const int two[2] = {4, 8};
  d.fill(Path{std::span(xs, 4), std::span(ys, 4), one, FillRule::NonZero}, Rgb{0, 200, 0});
  d.fill(Path{xs, ys, two, FillRule::EvenOdd}, Rgb{200, 0, 0});
  d.point(300, 300, Pen::Move);
  d.point(600, 800, Pen::Draw);
}

std::string run(std::string_view key, void (*body)(Driver&)) {
  std::unique_ptr<Driver> d = find_device(key)->factory();
  MemorySink sink;
  EXPECT_TRUE(d->open(&sink, page()));
  body(*d);
  EXPECT_TRUE(d->close());
  return sink.bytes();
}

std::uint32_t le(const std::string& b, std::size_t at, int bytes) {
  std::uint32_t v = 0;
  for (int k = bytes - 1; k >= 0; --k) {
    v = v << 8 | static_cast<std::uint8_t>(b[at + static_cast<std::size_t>(k)]);
  }
  return v;
}

TEST(MetafileDrivers, WindowsMetafilesBalanceTheirObjects) {
  // WMF: records after the 22-byte placeable header and the 18-byte META_HEADER. Every
  // created object takes the lowest free index and is deleted by the end; the header's
  // size, largest record and object count match the records.
  const std::string w = run("WMF ", scene);
  ASSERT_GT(w.size(), 40U);
  std::uint32_t sum = 0;
  for (std::size_t k = 0; k < 10; ++k) {
    sum ^= le(w, 2 * k, 2);
  }
  EXPECT_EQ(le(w, 20, 2), sum);
  EXPECT_EQ(le(w, 22 + 6, 4) * 2, w.size() - 22);
  std::vector<bool> used(8, false);
  int alive = 0, most = 0, creates = 0;
  std::uint32_t largest = 0;
  std::size_t at = 40;
  bool eof = false;
  while (at + 6 <= w.size()) {
    const std::uint32_t words = le(w, at, 4);
    const std::uint32_t fn = le(w, at + 4, 2);
    ASSERT_GE(words, 3U);
    largest = std::max(largest, words);
    if (fn == 0x02FA || fn == 0x02FC) {  // CREATEPENINDIRECT, CREATEBRUSHINDIRECT
      std::size_t i = 0;
      while (used[i]) {
        ++i;
      }
      used[i] = true;
      most = std::max(most, ++alive);
      ++creates;
    } else if (fn == 0x01F0) {  // DELETEOBJECT
      const std::uint32_t i = le(w, at + 6, 2);
      ASSERT_TRUE(used[i]) << "deletes a free index " << i;
      used[i] = false;
      --alive;
    } else if (fn == 0x012D) {  // SELECTOBJECT
      EXPECT_TRUE(used[le(w, at + 6, 2)]);
    } else if (fn == 0) {
      eof = true;
    }
    at += 2 * static_cast<std::size_t>(words);
  }
  EXPECT_TRUE(eof);
  EXPECT_EQ(at, w.size());
  EXPECT_EQ(alive, 0);
  EXPECT_GE(creates, 6);  // four line pens, a null pen and a brush per fill
  EXPECT_EQ(static_cast<int>(le(w, 22 + 10, 2)), most);
  EXPECT_EQ(le(w, 22 + 12, 4), largest);

  // EMF: the header states the bytes and records; handles come from 1 and all go.
  const std::string e = run("EMF ", scene);
  ASSERT_GT(e.size(), 108U);
  EXPECT_EQ(le(e, 0, 4), 1U);
  EXPECT_EQ(le(e, 48, 4), e.size());
  std::vector<bool> handles(8, false);
  std::uint32_t records = 0;
  std::uint32_t last = 0;
  alive = 0;
  for (at = 0; at + 8 <= e.size(); ++records) {
    const std::uint32_t type = le(e, at, 4);
    const std::uint32_t size = le(e, at + 4, 4);
    ASSERT_TRUE(size >= 8 && size % 4 == 0 && at + size <= e.size());
    if (type == 95 || type == 39) {  // EXTCREATEPEN, CREATEBRUSHINDIRECT
      const std::uint32_t h = le(e, at + 8, 4);
      ASSERT_TRUE(h >= 1 && h < handles.size() && !handles[h]);
      handles[h] = true;
      ++alive;
    } else if (type == 40) {  // DELETEOBJECT
      const std::uint32_t h = le(e, at + 8, 4);
      ASSERT_TRUE(h < handles.size() && handles[h]);
      handles[h] = false;
      --alive;
    }
    last = type;
    at += size;
  }
  EXPECT_EQ(at, e.size());
  EXPECT_EQ(last, 14U);  // EOF
  EXPECT_EQ(le(e, 52, 4), records);
  EXPECT_EQ(alive, 0);
}

// A polygon of n points into CGM: the bytes of its parameter list as the partitions say.
std::vector<std::uint32_t> polygon_partitions(int n) {
  static int points;
  points = n;
  const std::string c = run("CGM ", [](Driver& d) {
    std::vector<double> xs(static_cast<std::size_t>(points));
    std::vector<double> ys(xs.size());
    for (std::size_t i = 0; i < xs.size(); ++i) {
      xs[i] = static_cast<double>(i % 2000);
      ys[i] = static_cast<double>(i / 2000) * 10.0 + static_cast<double>(i % 7);
    }
    const int ends[1] = {points};
    d.fill(Path{xs, ys, ends, FillRule::NonZero}, Rgb{1, 2, 3});
  });
  EXPECT_EQ(c.size() % 80, 0U);
  // Walk the elements; the POLYGON's partitions are returned.
  std::vector<std::uint32_t> parts;
  std::size_t at = 0;
  while (at + 2 <= c.size()) {
    const auto head = static_cast<std::uint32_t>(static_cast<std::uint8_t>(c[at]) << 8 |
                                                 static_cast<std::uint8_t>(c[at + 1]));
    at += 2;
    const bool polygon = (head >> 12) == 4 && ((head >> 5) & 0x7F) == 7;
    std::uint32_t len = head & 0x1F;
    if (len < 31) {
      at += len + (len & 1);
    } else {
      for (bool more = true; more;) {
        const auto word = static_cast<std::uint32_t>(static_cast<std::uint8_t>(c[at]) << 8 |
                                                     static_cast<std::uint8_t>(c[at + 1]));
        at += 2;
        more = (word & 0x8000U) != 0;
        len = word & 0x7FFFU;
        if (polygon) {
          parts.push_back(len);
        }
        at += len + (len & 1);
      }
    }
    if (head == 0x0040) {  // END METAFILE
      break;
    }
  }
  return parts;
}

TEST(MetafileDrivers, CgmPartitionsAtTheLimit) {
  // 8,191 points are 32,764 bytes: one partition; one more point needs a second.
  EXPECT_EQ(polygon_partitions(8191), (std::vector<std::uint32_t>{32764}));
  EXPECT_EQ(polygon_partitions(8192), (std::vector<std::uint32_t>{32764, 4}));
  EXPECT_EQ(polygon_partitions(7), (std::vector<std::uint32_t>{}));  // 28 bytes: short form
  EXPECT_EQ(polygon_partitions(8), (std::vector<std::uint32_t>{32}));
}

TEST(MetafileDrivers, HpmodeNamesTheWrongDevice) {
  // The dialect is an HPGL setting: chosen for another device it warns (41) but holds for
  // the next HPGL plot; an unknown dialect changes nothing.
  Captured c;
  api::metafl(c.g, "PS");
  api::hpmode(c.g, "HPG2");
  EXPECT_NE(c.text().find("Warning 41:"), std::string::npos) << c.text();
  EXPECT_TRUE(c.g.pipe.hpgl2);
  api::metafl(c.g, "HPA4");
  api::hpmode(c.g, "XXXX");
  EXPECT_TRUE(c.g.pipe.hpgl2);
  api::hpmode(c.g, "HPGL");
  EXPECT_FALSE(c.g.pipe.hpgl2);
  const std::string t = c.text();
  EXPECT_EQ(t.find("Warning 41:"), t.rfind("Warning 41:"));  // once only
  EXPECT_NE(t.find("Warning 2:"), std::string::npos) << t;
}

}  // namespace
}  // namespace zorvel
