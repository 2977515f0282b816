// The PostScript driver on its own, through the Driver interface: the exact header,
// prolog and trailer of each variant, the polyline rules, attributes, pages, the line
// discipline and write errors.

#include <gtest/gtest.h>

#include <cstdio>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "drivers/registry.h"

namespace zorvel {
namespace {

// An A4 landscape page at the PostScript device scale: W·s = 5938, H·s = 4198 units.
DriverSetup a4_landscape(int device) {
  DriverSetup s;
  s.variant = find_device(device)->variant;
  s.page_width = 2969;
  s.page_height = 2099;
  s.scale = 2.0;
  s.scale_factor = 1.0;
  s.landscape = true;
  // The screen mode that zorini resolves AUTO to: reversed for EPS and PS.
  s.reversed = device == 503 || device == 504;
  s.stamp = DateTime{"14.11.2023", "22:13:20"};
  return s;
}

struct Written {
  std::string text;
  bool ok = false;  // close() reported success
};

// Opens a driver on a temporary file, runs `body`, closes it and returns the file.
Written run(const DriverSetup& setup, const std::function<void(Driver&)>& body = {}) {
  Written w;
  std::FILE* f = std::tmpfile();
  if (f == nullptr) {
    ADD_FAILURE() << "no temporary file";
    return w;
  }
  std::unique_ptr<Driver> d = make_ps_driver();
  FileSink sink(f);
  EXPECT_TRUE(d->open(&sink, setup));
  if (body) {
    body(*d);
  }
  w.ok = d->close();
  std::rewind(f);
  char buf[4096];
  std::size_t n = 0;
  while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) {
    w.text.append(buf, n);
  }
  std::fclose(f);
  return w;
}

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    lines.push_back(line);
  }
  return lines;
}

// The drawing part: everything after the last set-up line of the header.
std::string body_of(const std::string& text) {
  const std::string mark = "2 setlinecap 2 setlinejoin\n";
  const std::size_t at = text.rfind(mark);
  return at == std::string::npos ? text : text.substr(at + mark.size());
}

std::vector<std::string> tokens_of(const std::string& text) {
  std::vector<std::string> tokens;
  std::istringstream in(text);
  for (std::string t; in >> t;) {
    tokens.push_back(t);
  }
  return tokens;
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// Header and prolog
// =================

// Catches a wrong bounding-box formula: sides swapped for landscape, the user offset
// not doubled, the scale factor not applied, or rounding instead of truncating.
TEST(PsDriverTest, BoundingBoxNumbers) {
  auto box = [](const DriverSetup& s) { return lines_of(run(s).text)[1]; };
  DriverSetup s = a4_landscape(504);
  EXPECT_EQ(box(s), "%%BoundingBox: 21 28 617 870");

  // hworig(100, 50) counts twice in driver units; sclfac 0.7 as a float.
  s.user_offset = true;
  s.offset_x = 100;
  s.offset_y = 50;
  s.scale_factor = 0.7;
  EXPECT_EQ(box(s), "%%BoundingBox: 28 14 445 604");

  // Portrait: width along x.
  DriverSetup p = a4_landscape(504);
  p.page_width = 1000;
  p.page_height = 3000;
  p.scale = 1.5;
  p.landscape = false;
  EXPECT_EQ(box(p), "%%BoundingBox: 21 28 234 667");
  // A wide page kept unrotated (page mode NONE) is placed like a portrait page.
  p.page_width = 3000;
  p.page_height = 1000;
  EXPECT_EQ(box(p), "%%BoundingBox: 21 28 660 241");
}

// Catches a wrong placement layout: field widths, the offset written as set (not
// doubled), and the scale factor's six decimals.
TEST(PsDriverTest, PlacementLine) {
  DriverSetup s = a4_landscape(504);
  s.user_offset = true;
  s.offset_x = 100;
  s.offset_y = -50;
  s.scale_factor = 0.7;
  EXPECT_TRUE(contains(run(s).text, "\n  100 cm   -50 cm translate   0.700000  0.700000 scale\n"));
  s.offset_x = 123456;
  EXPECT_TRUE(contains(run(s).text, "\n123456 cm   -50 cm translate"));
}

// Catches a background fill on the wrong variants or with the sides swapped, and an
// erasepage in EPS.
TEST(PsDriverTest, BackgroundPerVariant) {
  DriverSetup s = a4_landscape(502);  // PSCL: not reversed by default
  std::string t = run(s).text;
  EXPECT_TRUE(contains(t, "scale\n0 0 4198 5938 0 0 0 e \n2 setlinecap"));
  EXPECT_FALSE(contains(t, "erasepage"));

  s.page_width = 2099;
  s.page_height = 2969;
  s.landscape = false;
  EXPECT_TRUE(contains(run(s).text, "scale\n0 5938 4198 0 0 0 0 e \n2 setlinecap"));

  s = a4_landscape(504);
  s.reversed = false;  // scrmod NORE: PS gets the black page as well
  EXPECT_TRUE(contains(run(s).text, "0 0 4198 5938 0 0 0 e "));

  s = a4_landscape(501);  // POST: always erased
  s.reversed = false;
  t = run(s).text;
  EXPECT_TRUE(contains(t, "scale\nerasepage\n"));
  EXPECT_FALSE(contains(t, " e \n"));

  s = a4_landscape(503);
  t = run(s).text;
  EXPECT_FALSE(contains(t, "erasepage"));
  EXPECT_FALSE(contains(t, " e \n"));
  s.reversed = false;
  EXPECT_TRUE(contains(run(s).text, "%%Page: 1 1\n0 0 4198 5938 0 0 0 e \n"));
}

// Catches the single-page mode keeping parts of the multi-page structure, or losing
// its own page comment and line settings.
TEST(PsDriverTest, SinglePageMode) {
  DriverSetup s = a4_landscape(504);
  s.single_page = true;
  const std::string t = run(s).text;
  const std::vector<std::string> l = lines_of(t);
  EXPECT_EQ(l[4], "%%EndComments");
  EXPECT_EQ(l[5], "%%Page: 1 1");
  EXPECT_EQ(l[6], "2 setlinecap 2 setlinejoin");
  EXPECT_EQ(l[7], "/cm {0.1417322835 mul} def /rgb {255 div} def /lc 1 string def");
  EXPECT_EQ(l.back(), "showpage ");
  EXPECT_EQ(l[l.size() - 2], "erasepage");
  for (const char* absent : {"%%Pages", "%%BeginProlog", "%%EndProlog", "initgraphics",
                             "%%Trailer", "%%EOF"}) {
    EXPECT_FALSE(contains(t, absent)) << absent;
  }
}

// Polylines
// =========

// Catches the dot rule applied to the wrong points (or not at all), a duplicate kept in
// a longer polyline, and rounding that is not "add 0.5 and truncate".
TEST(PsDriverTest, DotsAndDuplicates) {
  // A zero-length line becomes a line of 4 units.
  EXPECT_EQ(body_of(run(a4_landscape(504), [](Driver& d) {
              d.point(10.2, 20.4, Pen::Move);
              d.point(10.2, 20.4, Pen::Draw);
            }).text),
            "8 20 u 12 20 d p gsave showpage grestore \n%%Trailer \n%%Pages: 1\n%%EOF \n");

  // With two or more points, a repeat of the last point is dropped.
  EXPECT_EQ(tokens_of(body_of(run(a4_landscape(503), [](Driver& d) {
              d.point(0, 0, Pen::Move);
              d.point(100.49, 0, Pen::Draw);
              d.point(100.2, 0.3, Pen::Draw);  // same driver units
              d.point(100, 50, Pen::Draw);
            }).text)),
            (std::vector<std::string>{"0", "0", "u", "100", "0", "d", "100", "50", "d", "p",
                                      "gsave", "showpage", "grestore"}));

  // A move without a draw writes nothing; negative values truncate towards zero.
  EXPECT_EQ(tokens_of(body_of(run(a4_landscape(503), [](Driver& d) {
              d.point(5, 5, Pen::Move);
              d.point(-3.7, -0.2, Pen::Move);
              d.point(-1.5, 7, Pen::Draw);
            }).text)),
            (std::vector<std::string>{"-3", "0", "u", "-1", "7", "d", "p", "gsave", "showpage",
                                      "grestore"}));
}

// Catches an off-by-one in the buffer split: 150 points must give one polyline of 100
// points and one of 51 that restarts at the 100th point.
TEST(PsDriverTest, LongPolylineSplitsAtHundredPoints) {
  const std::string body = body_of(run(a4_landscape(503), [](Driver& d) {
                                     d.point(1000, 0, Pen::Move);
                                     for (int i = 1; i < 150; ++i) {
                                       d.point(1000 + i, i % 7, Pen::Draw);
                                     }
                                   }).text);
  const std::vector<std::string> t = tokens_of(body);
  std::vector<std::vector<std::string>> polylines(1);
  for (const std::string& tok : t) {
    if (tok == "gsave") {
      break;
    }
    polylines.back().push_back(tok);
    if (tok == "p") {
      polylines.emplace_back();
    }
  }
  polylines.pop_back();
  ASSERT_EQ(polylines.size(), 2u);
  EXPECT_EQ(polylines[0].size(), 100u * 3 + 1);
  EXPECT_EQ(polylines[1].size(), 51u * 3 + 1);
  EXPECT_EQ(polylines[0][0], "1000");
  EXPECT_EQ(polylines[0][2], "u");
  EXPECT_EQ(polylines[0][297], "1099");  // the 100th point ends the first ...
  EXPECT_EQ(polylines[1][0], "1099");    // ... and starts the second
  EXPECT_EQ(polylines[1][1], std::to_string(99 % 7));
  EXPECT_EQ(polylines[1][2], "u");
  EXPECT_EQ(polylines[1][150], "1149");
}

// Catches an attribute change that does not end the path (the new colour would apply
// to the old part at the stroke), and a following draw that loses its start point.
TEST(PsDriverTest, AttributeChangeEndsPolylineAndDrawContinues) {
  const std::string body = body_of(run(a4_landscape(503), [](Driver& d) {
                                     d.point(10, 10, Pen::Move);
                                     d.point(20, 10, Pen::Draw);
                                     d.point(30, 15, Pen::End);
                                     d.colour(Rgb{255, 0, 128}, 0x01800000 | 255);
                                     d.point(40, 20, Pen::Draw);
                                     d.line_cap(1);
                                     d.point(40, 30, Pen::Draw);
                                     d.point(50, 30, Pen::Draw);
                                   }).text);
  EXPECT_EQ(body,
            "10 10 u 20 10 d p 255 0 128 f 20 10 u 40 20 d p 1 setlinecap 40 20 u 40 30 d 50 \n"
            "30 d p gsave showpage grestore \n");
}

// Catches a non-hardware width, a wrong minimum, a missing scale, and decimals other
// than two.
TEST(PsDriverTest, LineWidths) {
  const std::string body = body_of(run(a4_landscape(503), [](Driver& d) {
                                     d.pen_width(LineWidth{1, true, 1.0, 1.0});
                                     d.pen_width(LineWidth{3, true, 1.0, 1.0});
                                     d.pen_width(LineWidth{10, false, 1.0, 1.0});
                                     d.pen_width(LineWidth{10, true, 1.5, 1.0});
                                     d.pen_width(LineWidth{7, true, 0.333, 1.0});
                                   }).text);
  EXPECT_EQ(body,
            "5.00 cm setlinewidth 6.00 cm setlinewidth 5.00 cm setlinewidth 30.00 cm \n"
            "setlinewidth 4.66 cm setlinewidth gsave showpage grestore \n");

  // A mitred join repeats its limit after every width.
  const std::string mitre = body_of(run(a4_landscape(503), [](Driver& d) {
                                      d.line_join(0, 4.0);
                                      d.pen_width(LineWidth{4, true, 1.0, 1.0});
                                      d.line_join(0, 0.2);  // below 1: PostScript's error
                                    }).text);
  EXPECT_EQ(mitre,
            "0 setlinejoin 4.00 setmiterlimit 8.00 cm setlinewidth 4.00 setmiterlimit 0 \n"
            "setlinejoin 10.00 setmiterlimit gsave showpage grestore \n");
}

// Pages
// =====

// Catches a wrong new-page sequence (page comment, erase or fill, the restated line
// settings and colour) and a wrong page count in the trailer.
TEST(PsDriverTest, NewPages) {
  auto draw_pages = [](Driver& d) {
    d.colour(Rgb{0, 0, 255}, 0);
    d.line_cap(0);
    d.pen_width(LineWidth{7, true, 1.0, 1.5});
    d.point(1, 2, Pen::Move);
    d.point(3, 4, Pen::Draw);
    d.new_page();
    d.point(5, 6, Pen::Draw);
    d.new_page();
  };
  std::string t = run(a4_landscape(504), draw_pages).text;
  EXPECT_TRUE(contains(t,
                       "1 2 u 3 4 d p copypage \n"
                       "%%Page: 1 2\n"
                       "erasepage \n"
                       "0 setlinecap 2 setlinejoin 21 cm setlinewidth\n"
                       "0 0 255 f 3 4 u 5 6 d p copypage \n"
                       "%%Page: 1 3\n"))
      << t;
  EXPECT_TRUE(contains(t, "\n%%Trailer \n%%Pages: 3\n%%EOF \n"));

  DriverSetup s = a4_landscape(502);
  t = run(s, draw_pages).text;
  EXPECT_TRUE(contains(t, "%%Page: 1 2\n0 0 4198 5938 0 0 0 e \n0 setlinecap")) << t;

  // EPS has one page and no trailer, whatever is asked.
  t = run(a4_landscape(503), draw_pages).text;
  for (const char* absent : {"copypage", "erasepage", "%%Page: 1 2", "%%Pages", "%%Trailer"}) {
    EXPECT_FALSE(contains(t, absent)) << absent;
  }
}

// Catches a default width below the thinnest line after a new page.
TEST(PsDriverTest, NewPageRestatesThinnestWidth) {
  const std::string t = run(a4_landscape(501), [](Driver& d) { d.new_page(); }).text;
  EXPECT_TRUE(contains(t, "\n2 setlinecap 2 setlinejoin 5 cm setlinewidth\n0 0 0 f gsave showpage"));
}

// Fills
// =====

// Catches a rectangle not sent through the prolog's `e` and a polygon fill that leaks
// its colour into the following lines.
TEST(PsDriverTest, Fills) {
  const double rx[] = {10, 10, 50, 50}, ry[] = {20, 60, 60, 20};
  const double tx[] = {0, 40, 20, 10, 12, 11}, ty[] = {0, 0, 30, 5, 5, 8};
  const int one[] = {4}, tri[] = {3}, two[] = {3, 6};
  const std::string body = body_of(run(a4_landscape(503), [&](Driver& d) {
                                     d.fill(Path{rx, ry, one, FillRule::NonZero}, Rgb{1, 2, 3});
                                     d.fill(Path{{tx, 3}, {ty, 3}, tri, FillRule::NonZero},
                                            Rgb{9, 8, 7});
                                     d.fill(Path{tx, ty, two, FillRule::EvenOdd}, Rgb{});
                                   }).text);
  // A second contour must not start a new path (`u` does newpath), and the even-odd
  // rule must reach the file.
  EXPECT_EQ(body,
            "10 20 50 60 1 2 3 e gsave 9 8 7 f 0 0 u 40 0 d 20 30 d closepath fill grestore \n"
            "gsave 0 0 0 f 0 0 u 40 0 d 20 30 d closepath 10 5 cm exch cm exch moveto 12 5 d \n"
            "11 8 d closepath eofill grestore gsave showpage grestore \n");
}

// Output discipline
// =================

// Catches lines over 80 characters and numbers split across lines, with long numbers
// from huge, infinite and NaN coordinates, which must be clamped and never read "nan".
TEST(PsDriverTest, LinesStayWithinEightyColumnsAndNumbersStayWhole) {
  const double kInf = std::numeric_limits<double>::infinity();
  const std::string t = run(a4_landscape(503), [&](Driver& d) {
                          const double values[] = {1e300, -1e300, kInf, std::nan(""),
                                                   -123456789.4, 7.5, 2147483647.0, -0.4};
                          d.point(0, 0, Pen::Move);
                          for (int i = 0; i < 400; ++i) {
                            const double x = values[i % 8];
                            const double y = values[(i * 3 + 1) % 8];
                            d.point(x, y, Pen::Draw);
                          }
                        }).text;
  EXPECT_FALSE(contains(t, "nan"));
  EXPECT_FALSE(contains(t, "inf"));
  const std::vector<std::string> lines = lines_of(t);
  for (const std::string& line : lines) {
    EXPECT_LE(line.size(), 80u) << line;
  }
  for (const std::string& tok : tokens_of(body_of(t))) {
    const bool number = tok.find_first_not_of("-0123456789") == std::string::npos;
    if (number) {
      const long long v = std::stoll(tok);
      EXPECT_LE(v, 1000000000LL);
      EXPECT_GE(v, -1000000000LL);
      // A split number would leave a part of a clamped value behind.
      EXPECT_TRUE(v == 0 || v == 1000000000 || v == -999999999 || v == -123456788 || v == 8)
          << tok;
    } else {
      EXPECT_TRUE(tok == "u" || tok == "d" || tok == "p" || tok == "gsave" ||
                  tok == "showpage" || tok == "grestore")
          << tok;
    }
  }
}

// Catches a write error that goes unreported (a full disk must make close() fail, so
// that zorfin warns) or a crash after it.
TEST(PsDriverTest, WriteErrorIsReportedByClose) {
  std::FILE* f = std::fopen("/dev/full", "w");
  if (f == nullptr) {
    GTEST_SKIP() << "no /dev/full";
  }
  std::unique_ptr<Driver> d = make_ps_driver();
  FileSink sink(f);
  d->open(&sink, a4_landscape(504));
  d->point(0, 0, Pen::Move);
  for (int i = 0; i < 200000; ++i) {
    d->point(i % 5000, i % 3000, Pen::Draw);
  }
  EXPECT_TRUE(d->failed());
  EXPECT_FALSE(d->close());
  std::fclose(f);
}

}  // namespace
}  // namespace zorvel
