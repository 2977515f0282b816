// Reading the metafile "GKSL": incmet draws a file's pages into the open plot, metcnv
// replays the metafile of the plot just ended on another device.

#include "core/metafile.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/platform.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "drivers/registry.h"

namespace zorvel {
namespace {

constexpr std::size_t kBlock = 1U << 16;
constexpr int kFieldWidth = 10;
// Plot units per centimetre.
constexpr double kUnitsPerCm = 100.0;
// Points of one filled path and contours of one path, at most: a file cannot make the
// reader hold more.
constexpr long long kMaxPathPoints = 1LL << 22;
constexpr long long kMaxContours = 1LL << 20;

constexpr double kPowers[] = {1.0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10};

// A field of ten characters: blanks, an optional minus, digits with at most one point.
// The digits (at most ten) make an exact integer, and one division by a power of ten
// rounds it correctly.
bool parse_field(const char* s, double& v) {
  int i = 0;
  while (i < kFieldWidth && s[i] == ' ') {
    ++i;
  }
  bool negative = false;
  if (i < kFieldWidth && (s[i] == '-' || s[i] == '+')) {
    negative = s[i] == '-';
    ++i;
  }
  long long m = 0;
  int digits = 0;
  int decimals = -1;
  for (; i < kFieldWidth; ++i) {
    const char c = s[i];
    if (c >= '0' && c <= '9') {
      m = m * 10 + (c - '0');
      ++digits;
      if (decimals >= 0) {
        ++decimals;
      }
    } else if (c == '.' && decimals < 0) {
      decimals = 0;
    } else {
      return false;
    }
  }
  if (digits == 0) {
    return false;
  }
  const double a = static_cast<double>(m) / kPowers[std::max(decimals, 0)];
  v = negative ? -a : a;
  return true;
}

// A whole number from 1 to 99: a pen, colour or command field; 0 otherwise.
int code_of(double v) {
  if (v >= 1.0 && v <= 99.0 && v == std::floor(v)) {
    return static_cast<int>(v);
  }
  return 0;
}

// What a replay draws and where.
struct Placement {
  double nx = 0.0;
  double ny = 0.0;
  double scale = 1.0;   // plot units per file unit
  double height = 0.0;  // page height in file units
  int page = 0;         // 0: every page, newpag between
};

enum class Outcome { Done, Truncated, Bad };

class Replay {
 public:
  Replay(GlobalBlock& g, GkslFields& f, const Placement& at) : g_(g), f_(f), at_(at) {}

  Outcome run() {
    double v = 0.0;
    Pen pen = Pen::Move;
    for (;;) {
      Outcome o = Outcome::Done;
      if (!take(v, o)) {
        return o == Outcome::Done ? Outcome::Truncated : o;
      }
      const int code = code_of(v);
      if (code == 0) {
        // A point: x, y and its pen when the file changes it.
        double y = 0.0;
        if (!take(y, o)) {
          return o == Outcome::Done ? Outcome::Truncated : o;
        }
        double next = 0.0;
        Outcome p = Outcome::Done;
        bool pending = false;
        if (take(next, p)) {
          const int c = code_of(next);
          if (c == 2 || c == 3) {
            pen = c == 2 ? Pen::Draw : Pen::Move;
          } else {
            pending = true;
          }
        } else if (p == Outcome::Bad) {
          return p;
        }
        if (drawing()) {
          const double px = at_.nx + v * at_.scale;
          const double py = at_.ny + (at_.height - y) * at_.scale;
          if (pen == Pen::Draw) {
            draw_to(g_, px, py);
          } else {
            move_to(g_, px, py);
          }
        }
        if (pending) {
          held_ = true;
          held_value_ = next;
        }
        continue;
      }
      if (!command(code, o)) {
        return o;
      }
      if (finished_) {
        return Outcome::Done;
      }
    }
  }

  int pages() const { return page_; }

 private:
  // The next field, the one held back first.
  bool take(double& v, Outcome& o) {
    if (held_) {
      held_ = false;
      v = held_value_;
      return true;
    }
    switch (f_.next(v)) {
      case GkslFields::Result::Value:
        return true;
      case GkslFields::Result::End:
        o = Outcome::Done;
        return false;
      case GkslFields::Result::Bad:
        break;
    }
    o = Outcome::Bad;
    return false;
  }

  bool take_more(double& v, Outcome& o) {
    if (take(v, o)) {
      return true;
    }
    if (o == Outcome::Done) {
      o = Outcome::Truncated;
    }
    return false;
  }

  bool drawing() const { return at_.page == 0 || at_.page == page_; }

  bool command(int code, Outcome& o) {
    double v = 0.0;
    switch (code) {
      case 1:
        if (drawing() && at_.page == 0) {
          api::newpag(g_);
        }
        ++page_;
        if (at_.page != 0 && page_ > at_.page) {
          finished_ = true;
        }
        return true;
      case 2:
      case 3:
        return true;  // a pen field without a point: nothing to draw
      case 4: {
        if (!take_more(v, o)) {
          return false;
        }
        if (!(v >= 0.0)) {
          o = Outcome::Bad;
          return false;
        }
        if (drawing()) {
          const double n = std::nearbyint(std::min(v * at_.scale, 32000.0));
          api::linwid(g_, std::max(1, static_cast<int>(n)));
        }
        return true;
      }
      case 5:
        return path(false, o);
      case 6:
        return path(true, o);
      case 9:
        finished_ = true;
        return true;
      default:
        break;
    }
    if (code < 10) {
      o = Outcome::Bad;
      return false;
    }
    // A colour: 99 adds 89, a field from 10 to 98 ends the number.
    int c = 0;
    while (code == 99) {
      c += 89;
      if (c > 256 || !take_more(v, o)) {
        if (c > 256) {
          o = Outcome::Bad;
        }
        return false;
      }
      code = code_of(v);
      if (code < 10) {
        o = Outcome::Bad;
        return false;
      }
    }
    c += code - 9;
    if (c > 256) {
      o = Outcome::Bad;
      return false;
    }
    if (drawing()) {
      set_colour(g_, c == 256 ? 0 : c);
    }
    return true;
  }

  // A count field: a whole number from 1 to `limit`.
  bool count(long long limit, long long& n, Outcome& o) {
    double v = 0.0;
    if (!take_more(v, o)) {
      return false;
    }
    if (!(v >= 1.0 && v <= static_cast<double>(limit)) || v != std::floor(v)) {
      o = Outcome::Bad;
      return false;
    }
    n = static_cast<long long>(v);
    return true;
  }

  bool path(bool several, Outcome& o) {
    long long contours = 1;
    FillRule rule = FillRule::NonZero;
    if (several) {
      double r = 0.0;
      if (!take_more(r, o)) {
        return false;
      }
      if (r != 0.0 && r != 1.0) {
        o = Outcome::Bad;
        return false;
      }
      rule = r == 1.0 ? FillRule::EvenOdd : FillRule::NonZero;
      if (!count(kMaxContours, contours, o)) {
        return false;
      }
    }
    xs_.clear();
    ys_.clear();
    ends_.clear();
    for (long long k = 0; k < contours; ++k) {
      long long n = 0;
      if (!count(kMaxPathPoints - static_cast<long long>(xs_.size()), n, o)) {
        return false;
      }
      for (long long i = 0; i < n; ++i) {
        double x = 0.0;
        double y = 0.0;
        if (!take_more(x, o) || !take_more(y, o)) {
          return false;
        }
        xs_.push_back(at_.nx + x * at_.scale);
        ys_.push_back(at_.ny + (at_.height - y) * at_.scale);
      }
      ends_.push_back(static_cast<int>(xs_.size()));
    }
    if (drawing()) {
      FillPatternScope solid(g_, kSolidPattern);
      fill_path(g_, xs_.data(), ys_.data(), ends_.data(), static_cast<int>(ends_.size()), rule);
    }
    return true;
  }

  GlobalBlock& g_;
  GkslFields& f_;
  Placement at_;
  int page_ = 1;
  bool finished_ = false;
  bool held_ = false;
  double held_value_ = 0.0;
  std::vector<double> xs_;
  std::vector<double> ys_;
  std::vector<int> ends_;
};

// Draws a metafile into the open plot; warnings for what the file lacks. False when the
// file could not be read as a metafile at all.
bool replay_file(GlobalBlock& g, const char* path, Placement at, double xfac) {
  // The plot's own file grows while it is read: the replay would never end.
  const CoreState& c = g.core;
  const platform::FileStatus st = platform::file_status(path);
  if (c.file_watched && st.exists && st.device == c.file_device && st.inode == c.file_inode) {
    warn(g, 2, std::string_view(path));
    return false;
  }
  GkslFields f;
  if (!f.open(path)) {
    warn(g, 36, std::string_view(path));
    return false;
  }
  GkslHeader h;
  if (!read_gksl_header(f, h)) {
    warn(g, 56, std::string_view(path));
    return false;
  }
  at.scale = h.unit * kUnitsPerCm * xfac;
  at.height = h.height / h.unit;
  // The file's lines are drawn as they are: solid, in their own colours and widths;
  // those of the plot come back afterwards.
  const int colour = g.colour.current;
  const int width = g.pipe.line_width;
  Outcome o = Outcome::Done;
  int pages = 0;
  {
    DashScope solid(g);
    Replay r(g, f, at);
    o = r.run();
    pages = r.pages();
    end_polyline(g);
  }
  if (g.pipe.line_width != width) {
    api::linwid(g, width);
  }
  if (g.colour.current != colour) {
    set_colour(g, colour);
  }
  if (o == Outcome::Truncated) {
    warn(g, 241, static_cast<int>(std::min(f.count() + 1, 0x7fffffffLL)));
  } else if (o == Outcome::Bad) {
    warn(g, 56, static_cast<int>(std::min(f.count(), 0x7fffffffLL)));
  } else if (at.page > pages) {
    warn(g, 2, at.page);
  }
  return true;
}

}  // namespace

bool GkslFields::open(const char* path) {
  if (path == nullptr || !platform::file_status(path).regular) {
    return false;
  }
  file_.reset(platform::open_file(path, "rb"));
  if (!file_) {
    return false;
  }
  buf_ = std::make_unique<char[]>(kBlock);
  pos_ = len_ = 0;
  eof_ = false;
  count_ = 0;
  return true;
}

bool GkslFields::fill() {
  if (eof_ || !file_) {
    return false;
  }
  if (pos_ < len_) {
    std::copy(buf_.get() + pos_, buf_.get() + len_, buf_.get());
  }
  len_ -= pos_;
  pos_ = 0;
  const std::size_t n = std::fread(buf_.get() + len_, 1, kBlock - len_, file_.get());
  if (n == 0) {
    eof_ = true;
    return false;
  }
  len_ += n;
  return true;
}

GkslFields::Result GkslFields::next(double& v) {
  char field[kFieldWidth];
  int k = 0;
  while (k < kFieldWidth) {
    if (pos_ == len_ && !fill()) {
      // Blanks and line ends after the last field end the file; anything else is a
      // field cut short.
      return Result::End;
    }
    const char c = buf_[pos_++];
    if (c == '\n' || c == '\r') {
      continue;
    }
    field[k++] = c;
  }
  if (!parse_field(field, v)) {
    return Result::Bad;
  }
  ++count_;
  return Result::Value;
}

bool read_gksl_header(GkslFields& f, GkslHeader& h) {
  double w = 0.0;
  double ht = 0.0;
  double unit = 0.0;
  if (f.next(w) != GkslFields::Result::Value || f.next(ht) != GkslFields::Result::Value ||
      f.next(unit) != GkslFields::Result::Value) {
    return false;
  }
  if (unit != 0.0 && unit != 10.0 && unit != 100.0) {
    return false;
  }
  h.unit = unit == 0.0 ? 1.0 : unit;
  h.width = w * h.unit;
  h.height = ht * h.unit;
  return w > 0.0 && ht > 0.0;
}

namespace api {

void incmet(GlobalBlock& g, const char* cfil, int npag, int nx, int ny, double xfac) {
  if (!check_range(g, npag, 0, -1)) {
    return;
  }
  if (!(xfac > 0.0) || !(xfac <= 1e6)) {
    warn(g, 51, xfac);
    return;
  }
  Placement at;
  at.nx = nx;
  at.ny = ny;
  at.page = npag;
  replay_file(g, cfil, at, xfac);
}

void metcnv(GlobalBlock& g, const char* cdev, const char* copt) {
  CoreState& c = g.core;
  if (c.level != 0) {
    warn(g, 21);
    return;
  }
  const int opt = match_keyword(g, "KEEP+DELE", copt);
  if (opt == 0) {
    return;
  }
  const DeviceInfo* metafile = find_device(c.device);
  if (metafile == nullptr || metafile->family != DeviceFamily::Metafile || !c.has_plot_file ||
      c.memory.kept) {
    warn(g, 20);
    return;
  }
  if (c.metafile_deleted) {
    warn(g, 22);
    return;
  }
  const Key4 k = key4(cdev);
  const DeviceInfo* dev = find_device(key_view(k));
  if (dev == nullptr) {
    warn(g, 2, std::string_view(cdev));
    return;
  }
  if (dev->file == FileKind::None || dev->family == DeviceFamily::Metafile) {
    warn(g, 40, std::string_view(cdev));
    return;
  }
  const std::string name = c.plot_file;
  {
    GkslFields f;
    GkslHeader h;
    if (!f.open(name.c_str()) || !read_gksl_header(f, h)) {
      warn(g, 56, std::string_view(name));
      return;
    }
  }
  // The new file takes the metafile's name with the device's extension.
  std::string out = name;
  const auto slash = out.find_last_of("/\\");
  const auto dot = out.find_last_of('.');
  if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) {
    out.resize(dot);
  }
  out += '.';
  out += dev->extension;
  const int device = c.device;
  const auto key = c.device_key;
  const bool chosen = c.metafl_called;
  const int name_state = c.file_name_state;
  c.device = dev->code;
  c.device_key = key_view(k);
  c.plot_file = out;
  c.file_name_state = 1;
  zorini(g);
  if (c.level != 0) {
    replay_file(g, name.c_str(), Placement{}, 1.0);
    zorfin(g);
  }
  // The metafile stays the file of the last plot, for further conversions.
  c.device = device;
  c.device_key = key;
  c.metafl_called = chosen;
  c.plot_file = name;
  c.file_name_state = name_state;
  c.has_plot_file = true;
  if (opt == 2) {
    std::remove(name.c_str());
    c.metafile_deleted = true;
  }
}

}  // namespace api
}  // namespace zorvel
