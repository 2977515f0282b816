// The "GL" device's drawing area. A display list is turned into vertex buffers once, when
// it arrives; a frame then only sets a few uniforms and issues the draw calls, so a
// window showing a million points repaints (on a resize, an expose) at the cost of the
// GPU's work alone.
//
// The geometry follows the raster driver, so that the window shows what the PNG of the
// same plot shows:
// - device coordinates put pixel centres on integers (pixel c spans [c - 0.5, c + 0.5)),
//   GL puts them on c + 0.5: every vertex moves by half a pixel;
// - without anti-aliasing the raster driver rounds every point to a pixel centre; the
//   vertex shader does the same for lines and fills after scaling, so that the rounding
//   holds at any size, and moves areas by a tie shift as the raster page does;
// - lines thinner than 1.5 pixels are GL lines; wider ones are outlines of quadrilaterals,
//   joins and caps (as raster/stroke.cpp builds them, from rounded points) drawn as
//   triangles;
// - fills go through the stencil buffer: a fan of every contour counts the winding
//   (nonzero) or flips a bit (even-odd), then a rectangle over the contours paints where
//   the stencil is set and clears it again ("stencil, then cover");
// - images are textures sampled at the nearest texel, on rectangles of their corners;
// - colours blend in linear light, as on the raster page: a frame is drawn into a
//   framebuffer of our own (16 bits a channel) and written to the area's through the
//   sRGB curve;
// - anti-aliased lists get four samples a pixel; their lines and areas of horizontal and
//   vertical edges only are placed on whole pixels, and thin lines reach half a pixel
//   past their ends, as the raster page draws them.
//
// Colour runs: consecutive polylines of one colour share one draw call
// (glMultiDrawArrays over their strips). Translucent wide lines are drawn one polyline at
// a time through the stencil, so that their overlapping pieces blend once.
//
// The plot keeps its aspect: it is scaled by min(area width / page width, area height /
// page height) and drawn from the upper left corner; the rest shows the background.

#include "screen/gtk/gl_view.h"

#include "raster/stroke.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace zorvel::gtk {

namespace {

using screen::Command;
using screen::DisplayList;
using screen::Op;

// Lines at least this wide (pixels) are outlines; thinner ones are GL lines.
constexpr double kOutlineWidth = 1.5;
// Without anti-aliasing, areas move right and down by this much (pixels), so that edges
// through pixel centres decide as the raster page's do (it moves them by 1/256; GL
// guarantees only a few bits below the pixel, so a little more here).
constexpr float kTieShift = 1.0F / 64.0F;
// Largest distance of a round piece of a line from the circle, pixels: half the raster
// page's, good enough for the plot at twice its size.
constexpr double kRoundTolerance = 0.05;
// Coordinates are held to this (pixels) before they become floats.
constexpr double kFar = 1e7;

enum class Kind : std::uint8_t {
  Lines,     // strips: GL line strips
  Outline,   // first/count: triangles, painted directly (opaque colours)
  Shape,     // strips: triangle fans counted in the stencil; cover: the covering rectangle
  Stroke,    // first/count: triangles marked in the stencil; cover: the covering rectangle
  Image,     // texture on four vertices of the image buffer at first
};

struct Item {
  Kind kind = Kind::Lines;
  bool snap = false;      // vertices rounded to pixel centres after scaling
  bool tie = false;       // areas moved by kTieShift
  bool even_odd = false;  // Shape
  std::uint32_t colour = 0;
  std::size_t strip_begin = 0;  // Lines, Shape: the strips [strip_begin, strip_end)
  std::size_t strip_end = 0;
  GLint first = 0;  // Outline, Stroke: triangles; Image: its quadrilateral
  GLsizei count = 0;
  GLint cover = 0;  // Shape, Stroke: the rectangle's four vertices (a triangle strip)
  std::size_t texture = 0;
};

struct Point {
  double x = 0.0;
  double y = 0.0;
};

// What a list becomes on the CPU before it goes to the GPU.
struct Geometry {
  std::vector<float> vertices;  // x, y in page pixels
  std::vector<GLint> firsts;    // strips
  std::vector<GLsizei> counts;
  std::vector<float> image_vertices;  // x, y, u, v
  std::vector<Item> items;
};

const char* const kSolidVertex = R"(
#if __VERSION__ >= 130
#define IN in
#else
#define IN attribute
#endif
IN vec2 a_pos;
uniform vec2 u_clip;   // 2 / area width, 2 / area height
uniform float u_scale; // area pixels per page pixel
uniform float u_snap;
uniform float u_shift;
void main() {
  vec2 p = a_pos * u_scale;
  if (u_snap > 0.5) {
    p = floor(p + 0.5);
  }
  p += 0.5 + u_shift;
  gl_Position = vec4(p.x * u_clip.x - 1.0, 1.0 - p.y * u_clip.y, 0.0, 1.0);
}
)";

const char* const kSolidFragment = R"(
#if __VERSION__ >= 130
out vec4 frag_colour;
#else
#define frag_colour gl_FragColor
#endif
uniform vec4 u_colour;
void main() { frag_colour = u_colour; }
)";

const char* const kImageVertex = R"(
#if __VERSION__ >= 130
#define IN in
#define OUT out
#else
#define IN attribute
#define OUT varying
#endif
IN vec2 a_pos;
IN vec2 a_uv;
OUT vec2 v_uv;
uniform vec2 u_clip;
uniform float u_scale;
void main() {
  vec2 p = a_pos * u_scale + 0.5;
  v_uv = a_uv;
  gl_Position = vec4(p.x * u_clip.x - 1.0, 1.0 - p.y * u_clip.y, 0.0, 1.0);
}
)";

const char* const kImageFragment = R"(
#if __VERSION__ >= 130
#define IN in
out vec4 frag_colour;
#define TEX texture
#else
#define IN varying
#define frag_colour gl_FragColor
#define TEX texture2D
#endif
IN vec2 v_uv;
uniform sampler2D u_image;
void main() { frag_colour = TEX(u_image, v_uv); }
)";

// One triangle over the whole area; the linear frame written with the sRGB curve.
const char* const kPresentVertex = R"(
out vec2 v_uv;
void main() {
  vec2 p = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);
  v_uv = p * 0.5 + 0.5;
  gl_Position = vec4(p, 0.0, 1.0);
}
)";

const char* const kPresentFragment = R"(
in vec2 v_uv;
out vec4 frag_colour;
uniform sampler2D u_image;
void main() {
  vec3 l = texture(u_image, v_uv).rgb;
  vec3 lo = l * 12.92;
  vec3 hi = 1.055 * pow(l, vec3(1.0 / 2.4)) - 0.055;
  frag_colour = vec4(mix(hi, lo, vec3(lessThanEqual(l, vec3(0.0031308)))), 1.0);
}
)";

// ===========================================================================================
// From the list to vertices
// ===========================================================================================

class Builder final : public StrokeSink {
 public:
  Builder(const DisplayList& list, Geometry& out) : list_(list), out_(out) {}
  void run();
  // The pieces of wide lines (raster/stroke.h).
  void polygon(const double* xs, const double* ys, int n) override { add_convex(xs, ys, n); }

 private:
  void end_line();
  void thin_line();
  void wide_line();
  void fill(const Command& c);
  void image(std::uint32_t index);

  void add_vertex(double x, double y);
  void add_convex(const double* xs, const double* ys, int n);
  void add_cover(double x0, double y0, double x1, double y1);
  Item& item_for(Kind kind, GLint first);
  GLint vertex_index() const { return static_cast<GLint>(out_.vertices.size() / 2); }

  const DisplayList& list_;
  Geometry& out_;
  std::uint32_t colour_ = 0xFFFFFFFFU;
  double width_ = 1.0;  // pixels
  int cap_ = 2;
  int join_ = 0;
  double miter_limit_ = 10.0;
  std::vector<Point> line_;  // the open polyline
  bool drawn_ = false;       // a Draw came since its move
  std::vector<Point> fill_;  // the contours collected for the next fill
  std::vector<std::size_t> fill_ends_;
  // Bounding box of the vertices added since reset_box().
  double bx0_ = 0.0, by0_ = 0.0, bx1_ = 0.0, by1_ = 0.0;
  void reset_box() {
    bx0_ = by0_ = HUGE_VAL;
    bx1_ = by1_ = -HUGE_VAL;
  }
};

void Builder::add_vertex(double x, double y) {
  x = std::clamp(x, -kFar, kFar);
  y = std::clamp(y, -kFar, kFar);
  out_.vertices.push_back(static_cast<float>(x));
  out_.vertices.push_back(static_cast<float>(y));
  bx0_ = std::min(bx0_, x);
  by0_ = std::min(by0_, y);
  bx1_ = std::max(bx1_, x);
  by1_ = std::max(by1_, y);
}

// A convex polygon as a fan of triangles.
void Builder::add_convex(const double* xs, const double* ys, int n) {
  for (int i = 1; i + 1 < n; ++i) {
    add_vertex(xs[0], ys[0]);
    add_vertex(xs[i], ys[i]);
    add_vertex(xs[i + 1], ys[i + 1]);
  }
}

// Four vertices of a rectangle a little larger than the box (a triangle strip).
void Builder::add_cover(double x0, double y0, double x1, double y1) {
  x0 -= 1.0;
  y0 -= 1.0;
  x1 += 1.0;
  y1 += 1.0;
  add_vertex(x0, y0);
  add_vertex(x1, y0);
  add_vertex(x0, y1);
  add_vertex(x1, y1);
}

// The last item when it continues with the same kind and colour, else a new one whose
// vertices start at `first`.
Item& Builder::item_for(Kind kind, GLint first) {
  if (!out_.items.empty()) {
    Item& last = out_.items.back();
    if (last.kind == kind && last.colour == colour_) {
      return last;
    }
  }
  Item it;
  it.kind = kind;
  it.colour = colour_;
  // Lines' points are rounded as the raster driver rounds them; outlines are built from
  // rounded points already and are areas.
  it.snap = kind == Kind::Lines && !list_.antialias;
  it.tie = kind == Kind::Outline && !list_.antialias;
  it.strip_begin = it.strip_end = out_.firsts.size();
  it.first = first;
  out_.items.push_back(it);
  return out_.items.back();
}

// Moves `end` half a pixel away from `from`.
void extend(Point& end, const Point& from) {
  const double dx = end.x - from.x;
  const double dy = end.y - from.y;
  const double len = std::sqrt(dx * dx + dy * dy);
  if (len > 1e-9 && std::isfinite(len)) {
    end.x += 0.5 * dx / len;
    end.y += 0.5 * dy / len;
  }
}

void Builder::thin_line() {
  if (line_.size() < 2) {
    return;
  }
  // Anti-aliased lines cover the pixels of their ends, as the raster page's hairlines
  // (drawn by the distance to the segments) do: half a pixel more at either end.
  if (list_.antialias) {
    extend(line_[0], line_[1]);
    extend(line_[line_.size() - 1], line_[line_.size() - 2]);
  }
  Item& it = item_for(Kind::Lines, vertex_index());
  out_.firsts.push_back(vertex_index());
  out_.counts.push_back(static_cast<GLsizei>(line_.size()));
  for (const Point& p : line_) {
    add_vertex(p.x, p.y);
  }
  it.strip_end = out_.firsts.size();
}

void Builder::wide_line() {
  const bool opaque = (colour_ >> 24) == 255;
  const GLint first = vertex_index();
  reset_box();
  // The outline's pieces as on the raster page: a quadrilateral per segment, joins
  // between, caps at the ends, and a dot for a line drawn to its own start.
  const bool snap = !list_.antialias;
  auto at = [&](std::size_t i) {
    Point p = line_[i];
    if (snap) {
      p.x = std::floor(p.x + 0.5);
      p.y = std::floor(p.y + 0.5);
    }
    return p;
  };
  StrokeStyle style;
  style.width = width_;
  style.cap = cap_;
  style.join = join_;
  style.miter_limit = miter_limit_;
  style.tolerance = kRoundTolerance;
  Stroker stroker(*this);
  stroker.set_style(style);
  const Point start = at(0);
  stroker.move(start.x, start.y);
  for (std::size_t i = 1; i < line_.size(); ++i) {
    const Point p = at(i);
    stroker.line(p.x, p.y);
  }
  if (line_.size() == 1 && drawn_) {
    stroker.line(start.x, start.y);  // a dot
  }
  stroker.finish();
  const GLsizei count = vertex_index() - first;
  if (count == 0) {
    return;
  }
  if (opaque) {
    // Overlaps do not show: one run of triangles for all lines of this colour.
    Item& it = item_for(Kind::Outline, first);
    it.count = vertex_index() - it.first;
    return;
  }
  Item it;
  it.kind = Kind::Stroke;
  it.colour = colour_;
  it.tie = !list_.antialias;
  it.first = first;
  it.count = count;
  it.cover = vertex_index();
  add_cover(bx0_, by0_, bx1_, by1_);
  out_.items.push_back(it);
}

// Whether every edge of the points (closed when `closed`) is horizontal or vertical.
bool rectilinear(const Point* p, std::size_t n, bool closed) {
  for (std::size_t i = 0; i + 1 < n || (closed && i < n); ++i) {
    const Point& q = p[i + 1 < n ? i + 1 : 0];
    if (p[i].x != q.x && p[i].y != q.y) {
      return false;
    }
  }
  return true;
}

void Builder::end_line() {
  // Anti-aliased: lines of horizontal and vertical segments only (frames, ticks, grids)
  // cover whole pixels, as the raster driver places them.
  if (list_.antialias && rectilinear(line_.data(), line_.size(), false)) {
    const bool odd = std::fmod(std::max(1.0, std::round(width_)), 2.0) == 1.0;
    for (Point& p : line_) {
      p.x = odd ? std::round(p.x) : std::floor(p.x) + 0.5;
      p.y = odd ? std::round(p.y) : std::floor(p.y) + 0.5;
    }
  }
  if (!line_.empty()) {
    if (width_ < kOutlineWidth) {
      thin_line();
    } else {
      wide_line();
    }
  }
  line_.clear();
  drawn_ = false;
}

void Builder::fill(const Command& c) {
  Item it;
  it.kind = Kind::Shape;
  it.colour = c.arg;
  it.snap = !list_.antialias;
  it.tie = it.snap;
  it.even_odd = c.x != 0.0;
  it.strip_begin = out_.firsts.size();
  reset_box();
  // Anti-aliased areas with horizontal and vertical edges only (bars, cells of colour
  // ramps) have their corners on pixel boundaries, as on the raster page; pieces of a
  // mesh (c.y set) do not.
  bool grid = list_.antialias && c.y == 0.0;
  std::size_t from = 0;
  for (std::size_t k = 0; k < fill_ends_.size() && grid; ++k) {
    grid = rectilinear(fill_.data() + from, fill_ends_[k] - from, true);
    from = fill_ends_[k];
  }
  if (grid) {
    for (Point& p : fill_) {
      p.x = std::round(p.x - 0.5) + 0.5;
      p.y = std::round(p.y - 0.5) + 0.5;
    }
  }
  from = 0;
  for (const std::size_t to : fill_ends_) {
    if (to - from >= 3) {
      out_.firsts.push_back(vertex_index());
      out_.counts.push_back(static_cast<GLsizei>(to - from));
      for (std::size_t i = from; i < to; ++i) {
        add_vertex(fill_[i].x, fill_[i].y);
      }
    }
    from = to;
  }
  it.strip_end = out_.firsts.size();
  fill_.clear();
  fill_ends_.clear();
  if (it.strip_end == it.strip_begin) {
    return;
  }
  it.cover = vertex_index();
  add_cover(bx0_, by0_, bx1_, by1_);
  out_.items.push_back(it);
}

void Builder::image(std::uint32_t index) {
  if (index >= list_.images.size()) {
    return;
  }
  const screen::ListImage& im = list_.images[index];
  if (im.width < 1 || im.height < 1 || (im.channels != 3 && im.channels != 4) ||
      im.pixels.size() < static_cast<std::size_t>(im.width) * static_cast<std::size_t>(im.height) *
                             static_cast<std::size_t>(im.channels) ||
      !std::isfinite(im.x0 + im.y0 + im.x1 + im.y1)) {
    return;
  }
  Item it;
  it.kind = Kind::Image;
  it.first = static_cast<GLint>(out_.image_vertices.size() / 4);
  it.texture = index;
  const auto x0 = static_cast<float>(std::clamp(im.x0, -kFar, kFar));
  const auto y0 = static_cast<float>(std::clamp(im.y0, -kFar, kFar));
  const auto x1 = static_cast<float>(std::clamp(im.x1, -kFar, kFar));
  const auto y1 = static_cast<float>(std::clamp(im.y1, -kFar, kFar));
  // The first texel row and column at (x0, y0): flipped rectangles flip the image.
  const float q[16] = {x0, y0, 0.0F, 0.0F, x1, y0, 1.0F, 0.0F, x0, y1, 0.0F, 1.0F, x1, y1, 1.0F, 1.0F};
  out_.image_vertices.insert(out_.image_vertices.end(), q, q + 16);
  out_.items.push_back(it);
}

void Builder::run() {
  for (const Command& c : list_.commands) {
    if ((c.op == Op::Move || c.op == Op::Draw || c.op == Op::FillPoint) &&
        !(std::isfinite(c.x) && std::isfinite(c.y))) {
      continue;
    }
    switch (c.op) {
      case Op::Move:
        // A move to the open line's last point continues it (a polyline in pieces).
        if (!line_.empty() && line_.back().x == c.x && line_.back().y == c.y) {
          break;
        }
        end_line();
        line_.push_back(Point{c.x, c.y});
        break;
      case Op::Draw:
        if (line_.empty()) {
          line_.push_back(Point{c.x, c.y});
        }
        line_.push_back(Point{c.x, c.y});
        drawn_ = true;
        break;
      case Op::End:
        end_line();
        break;
      case Op::Colour:
        end_line();
        colour_ = c.arg;
        break;
      case Op::Width: {
        end_line();
        const double w = c.arg != 0 ? c.x * list_.scale * c.y : 1.0;
        width_ = std::isfinite(w) ? std::clamp(w, 1.0, 1e5) : 1.0;
        if (!list_.antialias) {
          width_ = std::round(width_);
        }
        break;
      }
      case Op::Cap:
        end_line();
        cap_ = static_cast<int>(std::min<std::uint32_t>(c.arg, 2));
        break;
      case Op::Join:
        end_line();
        join_ = static_cast<int>(std::min<std::uint32_t>(c.arg, 2));
        miter_limit_ = std::isfinite(c.x) ? std::max(1.0, c.x) : 10.0;
        break;
      case Op::FillPoint:
        fill_.push_back(Point{c.x, c.y});
        break;
      case Op::FillClose:
        fill_ends_.push_back(fill_.size());
        break;
      case Op::Fill:
        end_line();
        fill(c);
        break;
      case Op::Image:
        end_line();
        image(c.arg);
        break;
    }
  }
  end_line();
}

// ===========================================================================================
// GL objects
// ===========================================================================================

GLuint compile(GLenum type, const char* header, const char* body) {
  const GLuint s = glCreateShader(type);
  const char* parts[2] = {header, body};
  glShaderSource(s, 2, parts, nullptr);
  glCompileShader(s);
  GLint ok = 0;
  glGetShaderiv(s, GL_COMPILE_STATUS, &ok);
  if (ok == 0) {
    glDeleteShader(s);
    return 0;
  }
  return s;
}

GLuint link(const char* header, const char* vertex, const char* fragment) {
  const GLuint vs = compile(GL_VERTEX_SHADER, header, vertex);
  const GLuint fs = compile(GL_FRAGMENT_SHADER, header, fragment);
  GLuint p = 0;
  if (vs != 0 && fs != 0) {
    p = glCreateProgram();
    glAttachShader(p, vs);
    glAttachShader(p, fs);
    glBindAttribLocation(p, 0, "a_pos");
    glBindAttribLocation(p, 1, "a_uv");
    glLinkProgram(p);
    GLint ok = 0;
    glGetProgramiv(p, GL_LINK_STATUS, &ok);
    if (ok == 0) {
      glDeleteProgram(p);
      p = 0;
    }
  }
  if (vs != 0) {
    glDeleteShader(vs);
  }
  if (fs != 0) {
    glDeleteShader(fs);
  }
  return p;
}

// A framebuffer of our own: colour and depth-stencil (the texture is `plain`'s colour).
struct Offscreen {
  GLuint fbo = 0;
  GLuint colour = 0;   // renderbuffer (multisampled) or texture
  GLuint stencil = 0;  // renderbuffer
  int width = 0;
  int height = 0;
};

struct Uniforms {
  GLint clip = -1;
  GLint scale = -1;
  GLint snap = -1;
  GLint shift = -1;
  GLint colour = -1;
  GLint image = -1;
};

}  // namespace

struct GlView {
  GtkWidget* area = nullptr;
  bool ok = false;  // a context and the programs
  std::shared_ptr<const DisplayList> list;
  bool uploaded = false;  // the list is in the buffers
  GLuint solid = 0;
  GLuint textured = 0;
  Uniforms su;  // of solid
  Uniforms iu;  // of textured
  GLuint vao = 0;
  GLuint buffer = 0;
  GLuint image_buffer = 0;
  std::vector<GLuint> textures;  // one per image of the list
  Geometry geo;                  // vertices emptied once uploaded
  // Frames are drawn in linear light into framebuffers of our own (16 bits a channel;
  // four samples a pixel for anti-aliased lists), then written to the area's with the
  // sRGB curve by `present` (GL 3.0 and later; else straight into the area's, blending
  // the sRGB values).
  bool linear = false;
  GLsizei samples = 0;  // 0: no multisampling
  GLuint present = 0;
  GLint present_image = -1;
  Offscreen plain;  // single samples; the resolved frame when multisampled
  Offscreen multi;
};

namespace {

void release_textures(GlView& v) {
  if (!v.textures.empty()) {
    glDeleteTextures(static_cast<GLsizei>(v.textures.size()), v.textures.data());
    v.textures.clear();
  }
}

// An image as a texture, reduced to the largest size GL takes.
GLuint make_texture(const screen::ListImage& im, bool linear) {
  GLint max_side = 0;
  glGetIntegerv(GL_MAX_TEXTURE_SIZE, &max_side);
  max_side = std::max(max_side, 64);
  const int w = std::min(im.width, max_side);
  const int h = std::min(im.height, max_side);
  const auto c = static_cast<std::size_t>(im.channels);
  std::vector<std::uint8_t> reduced;
  const std::uint8_t* data = im.pixels.data();
  if (w != im.width || h != im.height) {
    reduced.resize(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * c);
    for (int j = 0; j < h; ++j) {
      const auto sj = static_cast<std::size_t>(static_cast<long long>(j) * im.height / h);
      for (int i = 0; i < w; ++i) {
        const auto si = static_cast<std::size_t>(static_cast<long long>(i) * im.width / w);
        const std::uint8_t* s = data + (sj * static_cast<std::size_t>(im.width) + si) * c;
        std::copy(s, s + c, reduced.begin() + static_cast<std::ptrdiff_t>(
                                                  (static_cast<std::size_t>(j) * static_cast<std::size_t>(w) +
                                                   static_cast<std::size_t>(i)) * c));
      }
    }
    data = reduced.data();
  }
  GLuint t = 0;
  glGenTextures(1, &t);
  glBindTexture(GL_TEXTURE_2D, t);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  const GLenum format = im.channels == 4 ? GL_RGBA : GL_RGB;
  // In linear frames GL decodes the texels as it samples them.
  const GLint internal = im.channels == 4 ? (linear ? GL_SRGB8_ALPHA8 : GL_RGBA8) : (linear ? GL_SRGB8 : GL_RGB8);
  glTexImage2D(GL_TEXTURE_2D, 0, internal, w, h, 0, format, GL_UNSIGNED_BYTE, data);
  return t;
}

// Forgets errors left by others, so that the next glGetError speaks of our calls (a few
// at most: a lost context reports itself forever).
void drain_errors() {
  for (int i = 0; i < 8 && glGetError() != GL_NO_ERROR; ++i) {
  }
}

// The list into the buffers (context current).
void upload(GlView& v) {
  drain_errors();
  v.geo = Geometry{};
  release_textures(v);
  if (v.list) {
    Builder(*v.list, v.geo).run();
    for (const screen::ListImage& im : v.list->images) {
      v.textures.push_back(im.width > 0 && im.height > 0 && (im.channels == 3 || im.channels == 4) &&
                                   im.pixels.size() >= static_cast<std::size_t>(im.width) *
                                                           static_cast<std::size_t>(im.height) *
                                                           static_cast<std::size_t>(im.channels)
                               ? make_texture(im, v.linear)
                               : 0);
    }
  }
  glBindBuffer(GL_ARRAY_BUFFER, v.buffer);
  glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(v.geo.vertices.size() * sizeof(float)),
               v.geo.vertices.data(), GL_STATIC_DRAW);
  glBindBuffer(GL_ARRAY_BUFFER, v.image_buffer);
  glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(v.geo.image_vertices.size() * sizeof(float)),
               v.geo.image_vertices.data(), GL_STATIC_DRAW);
  // Only the draw calls stay on the CPU; none when the buffers did not take the list (out
  // of memory): drawing would read past them.
  v.geo.vertices = std::vector<float>();
  v.geo.image_vertices = std::vector<float>();
  if (glGetError() != GL_NO_ERROR) {
    v.geo = Geometry{};
  }
  v.uploaded = true;
}

// Channel `shift` of 0xAARRGGBB as 0..1.
float channel(std::uint32_t c, int shift) { return static_cast<float>((c >> shift) & 255U) / 255.0F; }

// An sRGB value 0..1 in linear light.
float to_linear(float c) {
  return c <= 0.04045F ? c / 12.92F : std::pow((c + 0.055F) / 1.055F, 2.4F);
}

// Red, green and blue of 0xAARRGGBB for the frame being drawn.
void frame_rgb(const GlView& v, std::uint32_t c, float rgb[3]) {
  for (int k = 0; k < 3; ++k) {
    const float x = channel(c, 16 - 8 * k);
    rgb[k] = v.linear ? to_linear(x) : x;
  }
}

void set_colour(const GlView& v, std::uint32_t c) {
  float rgb[3];
  frame_rgb(v, c, rgb);
  glUniform4f(v.su.colour, rgb[0], rgb[1], rgb[2], channel(c, 24));
}

void point_at(GLuint buffer, bool textured) {
  glBindBuffer(GL_ARRAY_BUFFER, buffer);
  const GLsizei stride = textured ? 4 * sizeof(float) : 2 * sizeof(float);
  glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, stride, nullptr);
  glEnableVertexAttribArray(0);
  if (textured) {
    glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, stride, reinterpret_cast<const void*>(2 * sizeof(float)));
    glEnableVertexAttribArray(1);
  } else {
    glDisableVertexAttribArray(1);
  }
}

// Paints where the stencil is set over the rectangle at `cover`, clearing it on the way.
void cover(GLint first) {
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glStencilFunc(GL_NOTEQUAL, 0, 0xFF);
  glStencilOp(GL_ZERO, GL_ZERO, GL_ZERO);
  glDrawArrays(GL_TRIANGLE_STRIP, first, 4);
}

void draw_items(GlView& v, float sx, float sy, float scale) {
  const Geometry& g = v.geo;
  bool textured = false;
  glUseProgram(v.solid);
  glUniform2f(v.su.clip, sx, sy);
  glUniform1f(v.su.scale, scale);
  point_at(v.buffer, false);
  for (const Item& it : g.items) {
    if (it.kind == Kind::Image) {
      if (it.texture >= v.textures.size() || v.textures[it.texture] == 0) {
        continue;
      }
      if (!textured) {
        glUseProgram(v.textured);
        glUniform2f(v.iu.clip, sx, sy);
        glUniform1f(v.iu.scale, scale);
        glUniform1i(v.iu.image, 0);
        point_at(v.image_buffer, true);
        textured = true;
      }
      glActiveTexture(GL_TEXTURE0);
      glBindTexture(GL_TEXTURE_2D, v.textures[it.texture]);
      glDrawArrays(GL_TRIANGLE_STRIP, it.first, 4);
      continue;
    }
    if (textured) {
      glUseProgram(v.solid);
      point_at(v.buffer, false);
      textured = false;
    }
    set_colour(v, it.colour);
    glUniform1f(v.su.snap, it.snap ? 1.0F : 0.0F);
    glUniform1f(v.su.shift, it.tie ? kTieShift : 0.0F);
    const auto strips = static_cast<GLsizei>(it.strip_end - it.strip_begin);
    switch (it.kind) {
      case Kind::Lines:
        glMultiDrawArrays(GL_LINE_STRIP, g.firsts.data() + it.strip_begin, g.counts.data() + it.strip_begin,
                          strips);
        break;
      case Kind::Outline:
        glDrawArrays(GL_TRIANGLES, it.first, it.count);
        break;
      case Kind::Shape:
        glEnable(GL_STENCIL_TEST);
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
        glStencilFunc(GL_ALWAYS, 0, 0xFF);
        if (it.even_odd) {
          glStencilOp(GL_KEEP, GL_KEEP, GL_INVERT);
        } else {
          glStencilOpSeparate(GL_FRONT, GL_KEEP, GL_KEEP, GL_INCR_WRAP);
          glStencilOpSeparate(GL_BACK, GL_KEEP, GL_KEEP, GL_DECR_WRAP);
        }
        glMultiDrawArrays(GL_TRIANGLE_FAN, g.firsts.data() + it.strip_begin, g.counts.data() + it.strip_begin,
                          strips);
        cover(it.cover);
        glDisable(GL_STENCIL_TEST);
        break;
      case Kind::Stroke:
        glEnable(GL_STENCIL_TEST);
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
        glStencilFunc(GL_ALWAYS, 1, 0xFF);
        glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
        glDrawArrays(GL_TRIANGLES, it.first, it.count);
        cover(it.cover);
        glDisable(GL_STENCIL_TEST);
        break;
      case Kind::Image:
        break;
    }
  }
}

void release(Offscreen& o) {
  if (o.fbo != 0) {
    glDeleteFramebuffers(1, &o.fbo);
  }
  if (o.colour != 0) {
    glDeleteRenderbuffers(1, &o.colour);  // `plain`'s texture is gone already
  }
  if (o.stencil != 0) {
    glDeleteRenderbuffers(1, &o.stencil);
  }
  o = Offscreen{};
}

void release_offscreen(GlView& v) {
  release(v.multi);
  if (v.plain.colour != 0) {
    glDeleteTextures(1, &v.plain.colour);
    v.plain.colour = 0;
  }
  release(v.plain);
}

// A framebuffer of `samples` samples (0: `plain`, its colour a texture) at the size given;
// false when GL does not make it.
bool make_offscreen(Offscreen& o, GLsizei samples, int width, int height) {
  drain_errors();
  glGenFramebuffers(1, &o.fbo);
  glBindFramebuffer(GL_FRAMEBUFFER, o.fbo);
  if (samples > 0) {
    glGenRenderbuffers(1, &o.colour);
    glBindRenderbuffer(GL_RENDERBUFFER, o.colour);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, GL_RGBA16, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, o.colour);
  } else {
    glGenTextures(1, &o.colour);
    glBindTexture(GL_TEXTURE_2D, o.colour);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA16, width, height, 0, GL_RGBA, GL_UNSIGNED_SHORT, nullptr);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, o.colour, 0);
  }
  glGenRenderbuffers(1, &o.stencil);
  glBindRenderbuffer(GL_RENDERBUFFER, o.stencil);
  glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, GL_DEPTH24_STENCIL8, width, height);
  glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER, o.stencil);
  o.width = width;
  o.height = height;
  return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE && glGetError() == GL_NO_ERROR;
}

// The framebuffer to draw a frame in, bound: `multi` for anti-aliased lists, else
// `plain`. False when GL makes none: the view then draws straight into the area's (from
// then on, so the images go up again in plain texels).
bool bind_offscreen(GlView& v, int width, int height) {
  const bool aa = v.list && v.list->antialias && v.samples > 0;
  bool ok = true;
  if (v.plain.fbo == 0 || v.plain.width != width || v.plain.height != height) {
    release_offscreen(v);
    ok = make_offscreen(v.plain, 0, width, height);
  }
  if (ok && aa && v.multi.fbo == 0) {
    ok = make_offscreen(v.multi, v.samples, width, height);
  }
  if (!ok) {
    release_offscreen(v);
    v.linear = false;
    v.uploaded = false;
    return false;
  }
  glBindFramebuffer(GL_FRAMEBUFFER, aa ? v.multi.fbo : v.plain.fbo);
  return true;
}

void draw_list(GlView& v, int width, int height) {
  glViewport(0, 0, width, height);
  float bg[3] = {1.0F, 1.0F, 1.0F};
  if (v.list) {
    frame_rgb(v, v.list->background, bg);
  }
  glClearColor(bg[0], bg[1], bg[2], 1.0F);
  glClearStencil(0);
  glStencilMask(0xFF);
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glClear(GL_COLOR_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
  if (!v.list) {
    return;
  }
  if (!v.uploaded) {
    upload(v);
  }
  const DisplayList& l = *v.list;
  double f = 1.0;
  if (l.width > 0 && l.height > 0) {
    f = std::min(static_cast<double>(width) / l.width, static_cast<double>(height) / l.height);
  }
  glDisable(GL_DEPTH_TEST);
  glDisable(GL_CULL_FACE);
  glEnable(GL_BLEND);
  glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
  draw_items(v, 2.0F / static_cast<float>(width), 2.0F / static_cast<float>(height), static_cast<float>(f));
  glDisable(GL_BLEND);
}

// One frame at `width` x `height` pixels into the bound framebuffer.
void draw_frame(GlView& v, int width, int height) {
  if (width < 1 || height < 1) {
    return;
  }
  GLint bound = 0;
  glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
  const auto target = static_cast<GLuint>(bound);
  if (v.vao != 0) {
    glBindVertexArray(v.vao);
  }
  if (!v.linear || !bind_offscreen(v, width, height)) {
    glBindFramebuffer(GL_FRAMEBUFFER, target);
    draw_list(v, width, height);
    return;
  }
  draw_list(v, width, height);
  if (v.list && v.list->antialias && v.multi.fbo != 0) {
    glBindFramebuffer(GL_READ_FRAMEBUFFER, v.multi.fbo);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, v.plain.fbo);
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
  }
  glBindFramebuffer(GL_FRAMEBUFFER, target);
  glViewport(0, 0, width, height);
  glDisable(GL_STENCIL_TEST);
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glUseProgram(v.present);
  glUniform1i(v.present_image, 0);
  glDisableVertexAttribArray(0);  // the triangle comes from the vertex numbers
  glDisableVertexAttribArray(1);
  glActiveTexture(GL_TEXTURE0);
  glBindTexture(GL_TEXTURE_2D, v.plain.colour);
  glDrawArrays(GL_TRIANGLES, 0, 3);
}

void area_size(const GlView& v, int& w, int& h) {
  const int s = gtk_widget_get_scale_factor(v.area);
  w = gtk_widget_get_allocated_width(v.area) * s;
  h = gtk_widget_get_allocated_height(v.area) * s;
}

gboolean on_render(GtkGLArea*, GdkGLContext*, gpointer data) {
  auto* v = static_cast<GlView*>(data);
  if (!v->ok) {
    return FALSE;
  }
  int w = 0;
  int h = 0;
  area_size(*v, w, h);
  draw_frame(*v, w, h);
  return TRUE;
}

void on_realize(GtkWidget* widget, gpointer data) {
  auto* v = static_cast<GlView*>(data);
  GtkGLArea* area = GTK_GL_AREA(widget);
  gtk_gl_area_make_current(area);
  if (gtk_gl_area_get_error(area) != nullptr) {
    return;
  }
  GdkGLContext* ctx = gtk_gl_area_get_context(area);
  if (ctx == nullptr || !epoxy_is_desktop_gl()) {
    return;
  }
  drain_errors();
  // A 3.2 core context as a rule; a legacy one (GDK_GL=legacy) gets the older dialect.
  const int glsl = epoxy_glsl_version();
  const char* header = glsl >= 150 ? "#version 150\n" : glsl >= 130 ? "#version 130\n" : "#version 120\n";
  v->solid = link(header, kSolidVertex, kSolidFragment);
  v->textured = link(header, kImageVertex, kImageFragment);
  if (v->solid == 0 || v->textured == 0) {
    return;
  }
  v->su.clip = glGetUniformLocation(v->solid, "u_clip");
  v->su.scale = glGetUniformLocation(v->solid, "u_scale");
  v->su.snap = glGetUniformLocation(v->solid, "u_snap");
  v->su.shift = glGetUniformLocation(v->solid, "u_shift");
  v->su.colour = glGetUniformLocation(v->solid, "u_colour");
  v->iu.clip = glGetUniformLocation(v->textured, "u_clip");
  v->iu.scale = glGetUniformLocation(v->textured, "u_scale");
  v->iu.image = glGetUniformLocation(v->textured, "u_image");
  // Core contexts draw nothing without a vertex array object.
  if (epoxy_gl_version() >= 30) {
    glGenVertexArrays(1, &v->vao);
  }
  glGenBuffers(1, &v->buffer);
  glGenBuffers(1, &v->image_buffer);
  if (epoxy_gl_version() >= 30 && glsl >= 130) {
    v->present = link(header, kPresentVertex, kPresentFragment);
    v->present_image = glGetUniformLocation(v->present, "u_image");
    GLint most = 0;
    glGetIntegerv(GL_MAX_SAMPLES, &most);
    v->samples = most >= 2 ? std::min(most, 4) : 0;
    v->linear = v->present != 0;
  }
  v->uploaded = false;
  v->ok = glGetError() == GL_NO_ERROR;
}

void on_unrealize(GtkWidget* widget, gpointer data) {
  auto* v = static_cast<GlView*>(data);
  GtkGLArea* area = GTK_GL_AREA(widget);
  gtk_gl_area_make_current(area);
  if (gtk_gl_area_get_error(area) == nullptr) {
    release_textures(*v);
    release_offscreen(*v);
    for (GLuint* b : {&v->buffer, &v->image_buffer}) {
      if (*b != 0) {
        glDeleteBuffers(1, b);
      }
    }
    if (v->vao != 0) {
      glDeleteVertexArrays(1, &v->vao);
    }
    if (v->solid != 0) {
      glDeleteProgram(v->solid);
    }
    if (v->textured != 0) {
      glDeleteProgram(v->textured);
    }
    if (v->present != 0) {
      glDeleteProgram(v->present);
    }
  }
  v->buffer = v->image_buffer = v->vao = v->solid = v->textured = v->present = 0;
  v->linear = false;
  v->ok = false;
  v->uploaded = false;
}

void free_view(gpointer data) { delete static_cast<GlView*>(data); }

}  // namespace

GtkWidget* gl_view_new(GlView*& view) {
  view = nullptr;
  // Lets the plain window be tried where GL works (tests of the fallback).
  if (const char* no = std::getenv("ZORVEL_NO_GL"); no != nullptr && no[0] != '\0' && no[0] != '0') {
    return nullptr;
  }
  GtkWidget* area = gtk_gl_area_new();
  auto* v = new GlView;
  v->area = area;
  GtkGLArea* gl = GTK_GL_AREA(area);
  gtk_gl_area_set_required_version(gl, 3, 2);
  gtk_gl_area_set_has_stencil_buffer(gl, TRUE);
  gtk_gl_area_set_auto_render(gl, TRUE);
  g_signal_connect(area, "realize", G_CALLBACK(on_realize), v);
  g_signal_connect(area, "unrealize", G_CALLBACK(on_unrealize), v);
  g_signal_connect(area, "render", G_CALLBACK(on_render), v);
  // The view lives as long as the widget.
  g_object_set_data_full(G_OBJECT(area), "zorvel-gl-view", v, free_view);
  view = v;
  return area;
}

bool gl_view_ok(GlView* view) { return view != nullptr && view->ok; }

void gl_view_set_list(GlView* view, std::shared_ptr<const screen::DisplayList> list) {
  if (view == nullptr) {
    return;
  }
  view->list = std::move(list);
  view->uploaded = false;
  gtk_gl_area_queue_render(GTK_GL_AREA(view->area));
}

bool gl_view_read(GlView* view, std::vector<std::uint8_t>& rgb, int& w, int& h) {
  w = 0;
  h = 0;
  if (view == nullptr || !view->ok) {
    return false;
  }
  GtkGLArea* area = GTK_GL_AREA(view->area);
  gtk_gl_area_make_current(area);
  if (gtk_gl_area_get_error(area) != nullptr) {
    return false;
  }
  gtk_gl_area_attach_buffers(area);
  int aw = 0;
  int ah = 0;
  area_size(*view, aw, ah);
  if (aw < 1 || ah < 1) {
    return false;
  }
  draw_frame(*view, aw, ah);
  const std::size_t row = static_cast<std::size_t>(aw) * 3;
  std::vector<std::uint8_t> up(row * static_cast<std::size_t>(ah));
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadPixels(0, 0, aw, ah, GL_RGB, GL_UNSIGNED_BYTE, up.data());
  if (glGetError() != GL_NO_ERROR) {
    return false;
  }
  // GL counts rows from the bottom.
  rgb.resize(up.size());
  for (int j = 0; j < ah; ++j) {
    std::copy_n(up.data() + row * static_cast<std::size_t>(ah - 1 - j), row,
                rgb.data() + row * static_cast<std::size_t>(j));
  }
  w = aw;
  h = ah;
  return true;
}

}  // namespace zorvel::gtk
