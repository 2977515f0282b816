// Unit tests of the spline interpolation, against values of an independent solver
// (tools/peers/spline_reference.py) and against polynomials that splines reproduce.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "axes/spline.h"

namespace zorvel {
namespace {

using Values = std::vector<double>;

// tools/peers/spline_reference.py: sin at x = 0 .. 9, degrees 2 .. 5, grid points 1 .. 3 of 4
// steps; and the parametric curve of the last test.
const double kSin[4][3] = {{0.7821240450858022, -0.9691979480962678, 0.4573308864975103},
                           {0.778895323346716, -0.9740256276067837, 0.4520011315700979},
                           {0.7779708146058362, -0.9770859978737652, 0.4508102905947702},
                           {0.7770001610109132, -0.9778085043611057, 0.44925453491232864}};
const double kParametric[2][3] = {{1.0002386638740117, 1.3011140469255897, 3.0358522471028024},
                                  {0.9980247362781834, 2.128769102949177, 1.393070947719937}};

struct Spline {
  SplineResult result;
  Values xs, ys;
};

Spline run(const Values& x, const Values& y, int degree, int npts, bool parametric = false,
           bool log_x = false) {
  static SplineWork work;
  Spline s{SplineResult::Ok, Values(npts + 1, -7.0), Values(npts + 1, -7.0)};
  s.result = interpolate_spline(x.data(), y.data(), static_cast<int>(x.size()), degree, npts,
                                parametric, log_x, s.xs.data(), s.ys.data(), work);
  return s;
}

TEST(Spline, InterpolatesAndMatchesTheReferenceForOddAndEvenOrders) {
  Values x, y;
  for (int i = 0; i < 10; ++i) {
    x.push_back(i);
    y.push_back(std::sin(i));
  }
  for (int degree = 2; degree <= 5; ++degree) {
    const Spline at_data = run(x, y, degree, 9), s = run(x, y, degree, 4);
    ASSERT_EQ(s.result, SplineResult::Ok);
    for (int i = 0; i < 10; ++i) {
      EXPECT_NEAR(at_data.ys[i], y[i], 1e-13) << degree;
    }
    for (int i = 1; i < 4; ++i) {
      EXPECT_NEAR(s.ys[i], kSin[degree - 2][i - 1], 1e-9) << degree;
    }
    EXPECT_EQ(s.xs, (Values{0, 2.25, 4.5, 6.75, 9}));
  }
}

TEST(Spline, ReproducesCubicsAndGivesTheDataEnds) {
  const Values x = {-1, -0.3, 0.1, 0.2, 0.9, 1.4, 2.0, 3.5};
  const auto cubic = [](double v) { return ((2 * v - 3) * v + 0.5) * v - 1; };
  Values y;
  for (double v : x) {
    y.push_back(cubic(v));
  }
  const Spline s = run(x, y, 3, 5);  // five steps: six points
  ASSERT_EQ(s.result, SplineResult::Ok);
  EXPECT_TRUE(s.xs.front() == -1 && s.xs.back() == 3.5);
  EXPECT_TRUE(s.ys.front() == y.front() && s.ys.back() == y.back());
  for (int i = 1; i < 5; ++i) {
    EXPECT_NEAR(s.ys[i], cubic(s.xs[i]), 1e-12);
  }
}

TEST(Spline, LogGridIsUniformInLog10X) {
  const Values x = {1, 3, 10, 40, 100, 1000, 1e4};
  Values y;
  for (double v : x) {
    y.push_back(2 * v + 1);  // a line, reproduced by the spline in x
  }
  const Spline s = run(x, y, 3, 8, false, true);
  ASSERT_EQ(s.result, SplineResult::Ok);
  for (int i = 0; i <= 8; ++i) {
    EXPECT_NEAR(s.xs[i], std::pow(10.0, i * 0.5), 1e-12 * s.xs[i]);
    EXPECT_NEAR(s.ys[i], 2 * s.xs[i] + 1, 1e-9);
  }
}

TEST(Spline, RefusesBadCountsAndBadValuesWithoutWriting) {
  Values x(201);
  for (int i = 0; i < 201; ++i) {
    x[i] = i;
  }
  EXPECT_EQ(run(x, x, 2, 5).result, SplineResult::BadCount);  // 5 * 201 > 1000
  EXPECT_EQ(run(Values(x.begin(), x.end() - 1), x, 2, 5).result, SplineResult::Ok);
  x.resize(143);
  EXPECT_EQ(run(x, x, 3, 5).result, SplineResult::BadCount);  // 7 * 143 > 1000
  x.resize(142);
  EXPECT_EQ(run(x, x, 3, 5).result, SplineResult::Ok);
  EXPECT_EQ(run({0, 1, 2}, {0, 1, 0}, 3, 5).result, SplineResult::BadCount);  // n < order
  const double nan = std::nan("");
  EXPECT_EQ(run({0, nan, 2, 3}, {0, 1, 0, 1}, 2, 5).result, SplineResult::NotIncreasing);
  EXPECT_EQ(run({0, 1, 2, 3}, {0, nan, 0, 1}, 2, 5).result, SplineResult::Singular);
  const Spline repeated = run({0, 1, 1, 2}, {0, 1, 1, 0}, 2, 5, true);
  EXPECT_EQ(repeated.result, SplineResult::Singular);
  EXPECT_EQ(repeated.xs, Values(6, -7.0));
}

TEST(Spline, ParametricFormFollowsTheChordLength) {
  const Values x = {0, 1, 1, 2, 3}, y = {0, 1, 2, 2, 0};
  EXPECT_EQ(run(x, y, 3, 4).result, SplineResult::NotIncreasing);
  const Spline s = run(x, y, 3, 4, true);
  ASSERT_EQ(s.result, SplineResult::Ok);
  for (int i = 1; i < 4; ++i) {
    EXPECT_NEAR(s.xs[i], kParametric[0][i - 1], 1e-9);
    EXPECT_NEAR(s.ys[i], kParametric[1][i - 1], 1e-9);
  }
}

}  // namespace
}  // namespace zorvel
