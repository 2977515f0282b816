#include "fonts/outline_font.h"

#include <algorithm>
#include <atomic>
#include <cmath>

#ifdef ZORVEL_HAVE_FREETYPE
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H
#include FT_TRUETYPE_TAGS_H
#endif

namespace zorvel {
namespace {

// Points one glyph may have after flattening: beyond, the glyph is not drawn.
constexpr std::size_t kMaxGlyphPoints = 1000000;
// Pieces one curve is cut into at most.
constexpr int kMaxPieces = 64;
// Glyph indexes kept per face (larger indexes are refused).
constexpr std::uint32_t kMaxGlyphIndex = 1U << 20;

std::atomic<std::uint64_t> next_face_id{1};

}  // namespace

#ifdef ZORVEL_HAVE_FREETYPE

struct OutlineFont::Impl {
  FT_Library lib = nullptr;
  FT_Face face = nullptr;
  ~Impl() {
    if (face != nullptr) {
      FT_Done_Face(face);
    }
    if (lib != nullptr) {
      FT_Done_FreeType(lib);
    }
  }
};

namespace {

// Collects the flattened contours of one outline.
struct Flattener {
  FlatGlyph* g;
  double tol;
  double x = 0.0;  // current point
  double y = 0.0;
  std::size_t start = 0;
  bool too_many = false;

  void point(double px, double py) {
    if (g->xs.size() >= kMaxGlyphPoints) {
      too_many = true;
      return;
    }
    g->xs.push_back(static_cast<float>(px));
    g->ys.push_back(static_cast<float>(py));
    x = px;
    y = py;
  }
  void close() {
    std::size_t n = g->xs.size();
    if (n > start + 1 && g->xs[n - 1] == g->xs[start] && g->ys[n - 1] == g->ys[start]) {
      g->xs.pop_back();
      g->ys.pop_back();
      --n;
    }
    if (n - start < 3) {
      g->xs.resize(start);
      g->ys.resize(start);
    } else {
      g->ends.push_back(static_cast<int>(n));
    }
    start = g->xs.size();
  }
  // Pieces for a curve whose control polygon strays `dev` from the chord.
  int pieces(double dev) const {
    const double n = std::ceil(std::sqrt(dev / tol));
    return n >= kMaxPieces ? kMaxPieces : std::max(1, static_cast<int>(n));
  }
};

int move_cb(const FT_Vector* to, void* user) {
  auto* f = static_cast<Flattener*>(user);
  if (f->g->xs.size() > f->start) {
    f->close();
  }
  f->point(static_cast<double>(to->x), static_cast<double>(to->y));
  return f->too_many ? 1 : 0;
}

int line_cb(const FT_Vector* to, void* user) {
  auto* f = static_cast<Flattener*>(user);
  f->point(static_cast<double>(to->x), static_cast<double>(to->y));
  return f->too_many ? 1 : 0;
}

int conic_cb(const FT_Vector* c, const FT_Vector* to, void* user) {
  auto* f = static_cast<Flattener*>(user);
  const double x0 = f->x;
  const double y0 = f->y;
  const double x1 = static_cast<double>(c->x);
  const double y1 = static_cast<double>(c->y);
  const double x2 = static_cast<double>(to->x);
  const double y2 = static_cast<double>(to->y);
  // The curve strays from its chord by at most a quarter of |p0 - 2 p1 + p2|.
  const int n = f->pieces(0.25 * std::hypot(x0 - 2.0 * x1 + x2, y0 - 2.0 * y1 + y2));
  for (int i = 1; i <= n; ++i) {
    const double t = static_cast<double>(i) / n;
    const double s = 1.0 - t;
    f->point(s * s * x0 + 2.0 * s * t * x1 + t * t * x2,
             s * s * y0 + 2.0 * s * t * y1 + t * t * y2);
  }
  return f->too_many ? 1 : 0;
}

int cubic_cb(const FT_Vector* c1, const FT_Vector* c2, const FT_Vector* to, void* user) {
  auto* f = static_cast<Flattener*>(user);
  const double x0 = f->x;
  const double y0 = f->y;
  const double x1 = static_cast<double>(c1->x);
  const double y1 = static_cast<double>(c1->y);
  const double x2 = static_cast<double>(c2->x);
  const double y2 = static_cast<double>(c2->y);
  const double x3 = static_cast<double>(to->x);
  const double y3 = static_cast<double>(to->y);
  const double d = std::max(std::hypot(x0 - 2.0 * x1 + x2, y0 - 2.0 * y1 + y2),
                            std::hypot(x1 - 2.0 * x2 + x3, y1 - 2.0 * y2 + y3));
  const int n = f->pieces(0.75 * d);
  for (int i = 1; i <= n; ++i) {
    const double t = static_cast<double>(i) / n;
    const double s = 1.0 - t;
    const double a = s * s * s;
    const double b = 3.0 * s * s * t;
    const double cc = 3.0 * s * t * t;
    const double e = t * t * t;
    f->point(a * x0 + b * x1 + cc * x2 + e * x3, a * y0 + b * y1 + cc * y2 + e * y3);
  }
  return f->too_many ? 1 : 0;
}

}  // namespace

OutlineFont::~OutlineFont() = default;

std::unique_ptr<OutlineFont> OutlineFont::open(const std::string& path, int index,
                                               FaceError& err) {
  err = FaceError::None;
  std::unique_ptr<OutlineFont> f(new OutlineFont());
  f->impl_ = std::make_unique<Impl>();
  if (FT_Init_FreeType(&f->impl_->lib) != 0) {
    err = FaceError::NoFreeType;
    return nullptr;
  }
  FT_Face face = nullptr;
  const FT_Error e = FT_New_Face(f->impl_->lib, path.c_str(), index, &face);
  if (e != 0) {
    err = e == FT_Err_Cannot_Open_Resource ? FaceError::NotFound : FaceError::Unreadable;
    return nullptr;
  }
  f->impl_->face = face;
  // A Type 1 font's kerning pairs are in its metrics file beside it.
  if (const std::size_t dot = path.rfind('.');
      dot != std::string::npos && (path.compare(dot, std::string::npos, ".t1") == 0 ||
                                   path.compare(dot, std::string::npos, ".pfb") == 0 ||
                                   path.compare(dot, std::string::npos, ".pfa") == 0)) {
    const std::string afm = path.substr(0, dot) + ".afm";
    FT_Attach_File(face, afm.c_str());  // without it the font is not kerned
  }
  // Scalable outlines only: bitmap-only faces (and faces without glyphs) are refused.
  if (!FT_IS_SCALABLE(face) || face->num_glyphs <= 0 || face->units_per_EM == 0) {
    err = FaceError::Unreadable;
    return nullptr;
  }
  // A Unicode map when the face has one (Type 1 faces get one from their glyph names).
  if (FT_Select_Charmap(face, FT_ENCODING_UNICODE) != 0 && face->num_charmaps > 0) {
    FT_Set_Charmap(face, face->charmaps[0]);
  }
  f->path_ = path;
  f->index_ = index;
  f->family_ = face->family_name != nullptr ? face->family_name : "";
  f->style_ = face->style_name != nullptr ? face->style_name : "";
  const char* ps = FT_Get_Postscript_Name(face);
  f->ps_name_ = ps != nullptr ? ps : "";
  if (f->ps_name_.empty()) {
    for (char c : f->family_ + "-" + f->style_) {
      if (c != ' ') {
        f->ps_name_ += c;
      }
    }
  }
  f->units_per_em_ = face->units_per_EM;
  f->italic_ = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
  const FT_UShort fs = FT_Get_FSType_Flags(face);
  f->embeddable_ = (fs & FT_FSTYPE_RESTRICTED_LICENSE_EMBEDDING) == 0 &&
                   (fs & FT_FSTYPE_BITMAP_EMBEDDING_ONLY) == 0;
  FT_ULong length = 0;
  f->truetype_ = FT_Load_Sfnt_Table(face, TTAG_glyf, 0, nullptr, &length) == 0 && length > 0;
  f->id_ = next_face_id.fetch_add(1);
  f->glyphs_.resize(static_cast<std::size_t>(std::min<FT_Long>(face->num_glyphs, kMaxGlyphIndex)));
  double cap = 0.0;
  const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
  if (os2 != nullptr && os2->version >= 2 && os2->sCapHeight > 0) {
    cap = os2->sCapHeight;
  }
  if (cap <= 0.0) {
    const std::uint32_t h = f->glyph_index('H');
    const FlatGlyph* g = h != 0 ? f->outline(h, 0.01 * f->units_per_em_) : nullptr;
    if (g != nullptr && !g->ys.empty()) {
      cap = *std::max_element(g->ys.begin(), g->ys.end());
    }
  }
  f->cap_height_ = cap > 0.0 ? cap : 0.7 * f->units_per_em_;
  return f;
}

std::uint32_t OutlineFont::glyph_index(std::uint32_t unicode) {
  const FT_UInt i = FT_Get_Char_Index(impl_->face, unicode);
  return i < glyphs_.size() ? i : 0;
}

int OutlineFont::kerning(std::uint32_t left, std::uint32_t right) {
  FT_Face face = impl_->face;
  if (!FT_HAS_KERNING(face)) {
    return 0;
  }
  FT_Vector k{};
  if (FT_Get_Kerning(face, left, right, FT_KERNING_UNSCALED, &k) != 0) {
    return 0;
  }
  return static_cast<int>(k.x);
}

FlatGlyph* OutlineFont::load(std::uint32_t glyph, double tolerance) {
  if (glyph >= glyphs_.size()) {
    return nullptr;
  }
  FlatGlyph& g = glyphs_[glyph];
  const bool want_outline = tolerance > 0.0;
  if (g.loaded && g.broken) {
    return &g;
  }
  if (g.loaded && (!want_outline || (g.tolerance > 0.0F && g.tolerance <= 2.0 * tolerance))) {
    return &g;
  }
  FT_Face face = impl_->face;
  ++loads_;
  g.loaded = true;
  g.broken = FT_Load_Glyph(face, glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING |
                                            FT_LOAD_NO_BITMAP | FT_LOAD_IGNORE_TRANSFORM) != 0;
  if (g.broken) {
    return &g;
  }
  const FT_GlyphSlot slot = face->glyph;
  g.advance = static_cast<int>(std::clamp<FT_Pos>(slot->metrics.horiAdvance, -1000000, 1000000));
  if (slot->format != FT_GLYPH_FORMAT_OUTLINE) {
    g.broken = slot->format != FT_GLYPH_FORMAT_NONE;
    return &g;
  }
  FT_BBox box{};
  FT_Outline_Get_CBox(&slot->outline, &box);
  g.xmax = slot->outline.n_points > 0 ? static_cast<float>(box.xMax) : 0.0F;
  if (!want_outline) {
    return &g;
  }
  g.xs.clear();
  g.ys.clear();
  g.ends.clear();
  Flattener fl{&g, std::max(tolerance, 1e-3)};
  FT_Outline_Funcs funcs{};
  funcs.move_to = move_cb;
  funcs.line_to = line_cb;
  funcs.conic_to = conic_cb;
  funcs.cubic_to = cubic_cb;
  const bool ok = FT_Outline_Decompose(&slot->outline, &funcs, &fl) == 0 && !fl.too_many;
  if (ok && g.xs.size() > fl.start) {
    fl.close();
  }
  if (!ok) {
    g.xs.clear();
    g.ys.clear();
    g.ends.clear();
    g.broken = true;
  }
  g.tolerance = static_cast<float>(fl.tol);
  return &g;
}

bool have_freetype() { return true; }

#else  // no FreeType in this build

struct OutlineFont::Impl {};

OutlineFont::~OutlineFont() = default;

std::unique_ptr<OutlineFont> OutlineFont::open(const std::string& /*path*/, int /*index*/,
                                               FaceError& err) {
  err = FaceError::NoFreeType;
  return nullptr;
}

std::uint32_t OutlineFont::glyph_index(std::uint32_t /*unicode*/) { return 0; }
int OutlineFont::kerning(std::uint32_t /*left*/, std::uint32_t /*right*/) { return 0; }
FlatGlyph* OutlineFont::load(std::uint32_t /*glyph*/, double /*tolerance*/) { return nullptr; }

bool have_freetype() { return false; }

#endif

std::string OutlineFont::full_name() const {
  if (style_.empty() || style_ == "Regular" || style_ == "Roman" || style_ == "Book") {
    return family_;
  }
  return family_ + ' ' + style_;
}

const FlatGlyph* OutlineFont::metrics(std::uint32_t glyph) { return load(glyph, 0.0); }

const FlatGlyph* OutlineFont::outline(std::uint32_t glyph, double tolerance) {
  return load(glyph, tolerance > 0.0 ? tolerance : 1e-3);
}

}  // namespace zorvel
