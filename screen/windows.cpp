// The screen windows of a block and the window routines. Each window keeps the page it
// showed last (so that selwin and scrmod "NOER" continue from it) and, after its plot,
// a renderer that replays the plot's display list at the window's new size.

#include <algorithm>
#include <chrono>
#include <cstring>
#include <limits>
#include <vector>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "drivers/raster_driver.h"
#include "draw/pipeline.h"
#include "drivers/registry.h"
#include "screen/module.h"
#include "screen/screen_target.h"
#include "screen/windows.h"

namespace zorvel {
namespace screen {
namespace {

// Pages are shown this often at most while a plot is drawn (bufmod "OFF").
constexpr auto kShowInterval = std::chrono::milliseconds(100);

// The largest window side accepted by window and winsiz.
constexpr int kMaxWindowSide = 10000;

// Draws a finished plot again at another window size: the display list replayed through
// the raster driver at the scale the pipeline would give a page of that size.
class ReplayRenderer final : public Renderer {
 public:
  ReplayRenderer(std::shared_ptr<const DisplayList> list, const PageFit& fit)
      : list_(std::move(list)), fit_(fit) {}

  Pixels render(int width, int height) override {
    width = std::clamp(width, 1, kMaxWindowSide);
    height = std::clamp(height, 1, kMaxWindowSide);
    const DisplayList& l = *list_;
    const double scale = fit_.scale(width, height);
    const double f = l.scale > 0.0 ? scale / l.scale : 1.0;
    const std::uint32_t bg = l.background;
    if (!page_.allocate(width, height, Rgb{static_cast<int>((bg >> 16) & 255),
                                           static_cast<int>((bg >> 8) & 255),
                                           static_cast<int>(bg & 255), 255})) {
      return {};
    }
    replay(l, f, scale, page_);
    const PixelView v = page_.view();
    return Pixels{v.rgb, v.width, v.height, v.stride};
  }

 private:
  std::shared_ptr<const DisplayList> list_;
  PageFit fit_;
  RasterPage page_;
};

}  // namespace

double PageFit::scale(int width, int height) const {
  const bool window = !(sheet_w > 0.0 && sheet_h > 0.0);
  return natural * factor *
         fit_factor(window ? width / natural : sheet_w, window ? height / natural : sheet_h,
                    page_w, page_h, scale_mode);
}

PageFit page_fit(const GlobalBlock& g) {
  PageFit fit;
  const PipelineState& p = g.pipe;
  fit.natural = p.device != nullptr ? p.device->natural : 1.0;
  fit.page_w = (p.rotated ? g.page.height : g.page.width) + 1.0;
  fit.page_h = (p.rotated ? g.page.width : g.page.height) + 1.0;
  fit.scale_mode = g.page.scale_mode;
  fit.factor = g.page.hw_scale * g.page.scale_factor;
  if (g.page.hw_page_set) {
    fit.sheet_w = g.page.hw_page_width;
    fit.sheet_h = g.page.hw_page_height;
  }
  return fit;
}

void replay(const DisplayList& l, double f, double scale, RasterPage& page) {
  std::unique_ptr<Driver> d = make_raster_driver(nullptr);
  DriverSetup setup;
  setup.raster = &page;
  setup.scale = scale;
  setup.antialias = l.antialias;
  setup.reversed = l.background == 0xFFFFFFFFU;
  if (!d->open(nullptr, setup)) {
    return;
  }
  std::vector<double> xs;
  std::vector<double> ys;
  std::vector<int> ends;
  auto rgb = [](std::uint32_t v) {
    return Rgb{static_cast<int>((v >> 16) & 255), static_cast<int>((v >> 8) & 255),
               static_cast<int>(v & 255), static_cast<int>(v >> 24)};
  };
  // Thin lines without anti-aliasing go from pixel to pixel: a point that rounds to the
  // pixel of the one before draws nothing new, and dense curves have many of them.
  bool thin = !l.antialias;
  long long px = 0;
  long long py = 0;
  for (const Command& c : l.commands) {
    switch (c.op) {
      case Op::Move:
        px = std::numeric_limits<long long>::min();  // the first draw makes at least a dot
        py = px;
        d->point(c.x * f, c.y * f, Pen::Move);
        break;
      case Op::Draw:
        if (thin) {
          const long long x = device_int(c.x * f);
          const long long y = device_int(c.y * f);
          if (x == px && y == py) {
            break;
          }
          px = x;
          py = y;
        }
        d->point(c.x * f, c.y * f, Pen::Draw);
        break;
      case Op::End:
        d->point(0.0, 0.0, Pen::End);
        break;
      case Op::Colour:
        d->colour(rgb(c.arg), 0);
        break;
      case Op::Width: {
        LineWidth w;
        w.n = static_cast<int>(c.x);
        w.width_scale = c.y;
        w.hardware = c.arg != 0;
        d->pen_width(w);
        thin = !l.antialias && (!w.hardware || w.n * scale * w.width_scale < 1.5);
        break;
      }
      case Op::Cap:
        d->line_cap(static_cast<int>(c.arg));
        break;
      case Op::Join:
        d->line_join(static_cast<int>(c.arg), c.x);
        break;
      case Op::FillPoint:
        xs.push_back(c.x * f);
        ys.push_back(c.y * f);
        break;
      case Op::FillClose:
        ends.push_back(static_cast<int>(xs.size()));
        break;
      case Op::Fill: {
        Path p;
        p.xs = xs;
        p.ys = ys;
        p.ends = ends;
        p.rule = c.x != 0.0 ? FillRule::EvenOdd : FillRule::NonZero;
        p.seamless = c.y != 0.0;
        d->fill(p, rgb(c.arg));
        xs.clear();
        ys.clear();
        ends.clear();
        break;
      }
      case Op::Image:
        if (c.arg < l.images.size()) {
          const ListImage& im = l.images[c.arg];
          Image img;
          img.pixels = im.pixels.data();
          img.width = im.width;
          img.height = im.height;
          img.channels = im.channels;
          img.stride = static_cast<std::size_t>(im.width) * static_cast<std::size_t>(im.channels);
          img.x0 = im.x0 * f;
          img.y0 = im.y0 * f;
          img.x1 = im.x1 * f;
          img.y1 = im.y1 * f;
          d->image(img);
        }
        break;
    }
  }
  d->close();
}

// The windows of a block: [0] is "XWND", [1]..[8] the numbered ones.
BlockWindows::BlockWindows(GlobalBlock& g) : g_(g) {}

BlockWindows::~BlockWindows() {
  const Module* m = module();
  if (m == nullptr) {
    return;
  }
  for (Slot& s : slots_) {
    if (s.handle != 0) {
      m->display->close(s.handle);
    }
  }
}

void BlockWindows::window_event(void* owner, int id, int x, int y, int w, int h) {
  auto* self = static_cast<BlockWindows*>(owner);
  if (zorvel_window_cb cb = self->g_.callbacks.window) {
    BlockLoan loan(&self->g_);
    cb(id, x, y, w, h);
  }
}

WindowSettings BlockWindows::settings(bool gl) const {
  WindowSettings s;
  const ScreenState& st = g_.screen;
  s.x = st.x;
  s.y = st.y;
  s.placed = st.placed;
  s.width = g_.core.window_width;
  s.height = g_.core.window_height;
  s.title = st.title;
  s.gl = gl;
  s.embed = gl ? 0 : st.embed;
  return s;
}

bool BlockWindows::open_slot(int index, bool gl) {
  Display* d = display(g_);
  if (d == nullptr) {
    return false;
  }
  Slot& s = slots_[static_cast<std::size_t>(index)];
  int w = 0;
  int h = 0;
  int x = 0;
  int y = 0;
  const WindowSettings sp = settings(gl);
  if (s.handle != 0 &&
      (!d->geometry(s.handle, x, y, w, h) || s.gl != gl || s.embed != sp.embed)) {
    d->close(s.handle);  // closed by the user, or of another kind or place
    s.handle = 0;
  }
  if (s.handle == 0) {
    s.handle = d->create(sp, index);
    if (s.handle == 0 && gl) {
      warn(g_, 181);  // no OpenGL context: a plain window instead
      gl = false;
      s.handle = d->create(settings(false), index);
    }
    if (s.handle == 0) {
      warn(g_, 221);
      return false;
    }
    s.gl = gl;
    s.embed = sp.embed;
    d->set_events(s.handle, &BlockWindows::window_event, this);
  } else {
    d->reshape(s.handle, sp);
  }
  d->set_renderer(s.handle, nullptr);
  d->set_cursor(s.handle, g_.screen.cursor);
  return true;
}

bool BlockWindows::attach(const DeviceInfo& dev, DriverSetup& setup) {
  const int index = screen_window(dev);
  if (!open_slot(index, dev.family == DeviceFamily::OpenGL)) {
    return false;
  }
  current_ = index;
  Slot& s = slots_[static_cast<std::size_t>(index)];
  s.list = std::make_shared<DisplayList>();
  // "NOER": the plot starts on what the window shows.
  if (g_.core.effective_screen_mode == 1) {
    restore(s);
  }
  last_shown_ = std::chrono::steady_clock::now();
  setup.screen = this;
  int x = 0;
  int y = 0;
  int w = 0;
  int h = 0;
  // A plot starts in the window (asked only for a callback: the window may still be on
  // its way while the plot draws).
  if (Display* d = display(g_, false);
      g_.callbacks.window != nullptr && d != nullptr && d->geometry(s.handle, x, y, w, h)) {
    window_event(this, index, x, y, w, h);
  }
  return true;
}

// The window's last page back on the raster page, when their sizes agree.
void BlockWindows::restore(const Slot& s) {
  RasterPage& page = g_.raster.page;
  if (s.width != page.width() || s.height != page.height() || s.pixels.empty()) {
    return;
  }
  for (int j = 0; j < s.height; ++j) {
    std::memcpy(page.row(j), s.pixels.data() + page.stride() * static_cast<std::size_t>(j),
                page.stride());
  }
}

DisplayList& BlockWindows::list() { return *slots_[static_cast<std::size_t>(current_)].list; }

bool BlockWindows::gl() const { return slots_[static_cast<std::size_t>(current_)].gl; }

void BlockWindows::show(Slot& s, const PixelView& page, bool upload) {
  Display* d = display(g_, false);
  if (d == nullptr || s.handle == 0) {
    return;
  }
  s.width = page.width;
  s.height = page.height;
  s.pixels.resize(page.stride * static_cast<std::size_t>(page.height));
  for (int j = 0; j < page.height; ++j) {
    std::memcpy(s.pixels.data() + page.stride * static_cast<std::size_t>(j),
                page.rgb + page.stride * static_cast<std::size_t>(j), page.stride);
  }
  if (s.gl) {
    if (upload) {
      d->show_list(s.handle, std::make_shared<const DisplayList>(*s.list));
    }
  } else {
    d->show(s.handle, Pixels{page.rgb, page.width, page.height, page.stride});
  }
  last_shown_ = std::chrono::steady_clock::now();
}

void BlockWindows::present(const PixelView& page) {
  show(slots_[static_cast<std::size_t>(current_)], page);
}

void BlockWindows::tick(const PixelView& page) {
  // GL windows take their list at sendbf and at the end only: uploading a growing list
  // ten times a second would cost more than the drawing.
  if (g_.pipe.buffer_mode == 0 && !gl() &&
      std::chrono::steady_clock::now() - last_shown_ > kShowInterval) {
    present(page);
  }
}

void BlockWindows::finish(const PixelView& page) {
  Slot& s = slots_[static_cast<std::size_t>(current_)];
  show(s, page, false);  // a GL window gets the list itself below
  Display* d = display(g_, false);
  if (d == nullptr || s.handle == 0) {
    return;
  }
  const PageFit fit = page_fit(g_);
  std::shared_ptr<const DisplayList> frozen = std::move(s.list);
  s.list = std::make_shared<DisplayList>();
  if (s.gl) {
    d->show_list(s.handle, frozen);
  }
  d->set_renderer(s.handle, std::make_shared<ReplayRenderer>(frozen, fit));
  end_plot(s, *d);
}

// winmod: wait for the user, keep the window, or close it.
void BlockWindows::end_plot(Slot& s, Display& d) {
  if (s.embed != 0) {
    return;  // a drawing area of a widget window lives with that window
  }
  switch (g_.screen.end_mode) {
    case 0: {
      InputResult r;
      d.input(s.handle, Track::Dismiss, 0, r);
      break;
    }
    case 2:
      d.close(s.handle);
      s.handle = 0;
      break;
    default:
      break;
  }
}

int BlockWindows::handle() const {
  return current_ >= 0 ? slots_[static_cast<std::size_t>(current_)].handle : 0;
}

bool BlockWindows::select(int id, bool open) {
  Slot& now = slots_[static_cast<std::size_t>(current_)];
  Slot& next = slots_[static_cast<std::size_t>(id)];
  if (!open && next.handle == 0) {
    return false;
  }
  const RasterPage& page = g_.raster.page;
  show(now, page.view());
  if (open && !open_slot(id, now.gl)) {
    return false;
  }
  current_ = id;
  if (next.list == nullptr) {
    next.list = std::make_shared<DisplayList>();
  }
  // The page continues what this window showed; a new one starts blank.
  if (next.pixels.empty() || open) {
    const std::uint32_t bg = now.list->background;
    g_.raster.page.clear(Rgb{static_cast<int>((bg >> 16) & 255), static_cast<int>((bg >> 8) & 255),
                             static_cast<int>(bg & 255), 255});
    next.list->clear();
    next.list->width = now.list->width;
    next.list->height = now.list->height;
    next.list->scale = now.list->scale;
    next.list->antialias = now.list->antialias;
    next.list->background = bg;
  } else {
    restore(next);
  }
  return true;
}

void BlockWindows::close_window(int id) {
  Slot& s = slots_[static_cast<std::size_t>(id)];
  if (Display* d = display(g_, false); d != nullptr && s.handle != 0) {
    d->close(s.handle);
  }
  s.handle = 0;
  s.pixels.clear();
}

}  // namespace screen

ScreenState::ScreenState() = default;
ScreenState::~ScreenState() = default;

bool screen::attach_screen(GlobalBlock& g, const DeviceInfo& dev, DriverSetup& setup) {
  if (!g.screen.windows) {
    g.screen.windows = std::make_unique<BlockWindows>(g);
  }
  return g.screen.windows->attach(dev, setup);
}

namespace api {
namespace {

bool window_size_ok(GlobalBlock& g, int nw, int nh) {
  if (nw < 1 || nh < 1 || nw > screen::kMaxWindowSide || nh > screen::kMaxWindowSide) {
    warn(g, 225);
    return false;
  }
  return true;
}

// The windows of an open screen plot, or null after warning 222.
screen::BlockWindows* plot_windows(GlobalBlock& g) {
  if (g.pipe.device == nullptr || !screen::is_screen(*g.pipe.device) || !g.screen.windows) {
    warn(g, 222);
    return nullptr;
  }
  return g.screen.windows.get();
}

bool window_id_ok(GlobalBlock& g, int id) {
  if (id < 1 || id > 8) {
    warn(g, 2, id);
    return false;
  }
  return true;
}

}  // namespace

void window(GlobalBlock& g, int nx, int ny, int nw, int nh) {
  if (!window_size_ok(g, nw, nh)) {
    return;
  }
  g.screen.x = nx;
  g.screen.y = ny;
  g.screen.placed = true;
  g.core.window_size_set = true;
  g.core.user_window_width = nw;
  g.core.user_window_height = nh;
}

void winsiz(GlobalBlock& g, int nw, int nh) {
  if (!window_size_ok(g, nw, nh)) {
    return;
  }
  g.core.window_size_set = true;
  g.core.user_window_width = nw;
  g.core.user_window_height = nh;
}

void wintit(GlobalBlock& g, const char* ctit) { g.screen.title.assign(std::string_view(ctit).substr(0, 256)); }

void winmod(GlobalBlock& g, const char* cmode) {
  if (const int i = match_keyword(g, "STAN+HOLD+NONE", cmode); i != 0) {
    g.screen.end_mode = i - 1;
  }
}

void opnwin(GlobalBlock& g, int id) {
  if (!window_id_ok(g, id)) {
    return;
  }
  if (screen::BlockWindows* w = plot_windows(g)) {
    end_polyline(g);
    w->select(id, true);
  }
}

void selwin(GlobalBlock& g, int id) {
  if (!window_id_ok(g, id)) {
    return;
  }
  if (screen::BlockWindows* w = plot_windows(g)) {
    end_polyline(g);
    if (!w->select(id, false)) {
      warn(g, 2, id);  // not open
    }
  }
}

void clswin(GlobalBlock& g, int id) {
  if (!window_id_ok(g, id)) {
    return;
  }
  if (screen::BlockWindows* w = plot_windows(g)) {
    if (w->current() == id) {
      warn(g, 2, id);  // the window drawn in stays until the plot ends
      return;
    }
    w->close_window(id);
  }
}

void getscr(GlobalBlock& g, int* nw, int* nh) {
  *nw = 0;
  *nh = 0;
  if (screen::Display* d = screen::display(g, false)) {
    d->screen_size(*nw, *nh);
  }
}

void getwin(GlobalBlock& g, int* nx, int* ny, int* nw, int* nh) {
  *nx = g.screen.x;
  *ny = g.screen.y;
  *nw = g.core.window_size_set ? g.core.user_window_width : 853;
  *nh = g.core.window_size_set ? g.core.user_window_height : 603;
  if (g.screen.windows && g.screen.windows->handle() != 0) {
    if (screen::Display* d = screen::display(g, false)) {
      d->geometry(g.screen.windows->handle(), *nx, *ny, *nw, *nh);
    }
  }
}

int getxid(GlobalBlock& g, const char* copt) {
  if (match_keyword(g, "WIND", copt) == 0) {
    return 0;
  }
  if (!g.screen.windows || g.screen.windows->handle() == 0) {
    return 0;
  }
  screen::Display* d = screen::display(g, false);
  return d != nullptr ? static_cast<int>(d->xid(g.screen.windows->handle())) : 0;
}

}  // namespace api
}  // namespace zorvel
