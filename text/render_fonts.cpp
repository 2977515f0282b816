// Drawing glyphs of the outline, bitmap and standard PostScript fonts: outlines as filled
// paths by the non-zero rule (as shapes where the driver defines them once), bitmaps as
// runs of filled pixels, and outline glyphs in font files that the driver embeds as text.

#include <bit>
#include <cmath>
#include <string>

#include "core/global_block.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "drivers/pdf_fontfile.h"
#include "fonts/faces.h"
#include "fonts/font_lookup.h"
#include "text/file_fonts.h"
#include "text/glyph_frame.h"
#include "text/layout.h"

namespace zorvel {
namespace {

// Outlines are flattened to this many plot units (0.01 mm at scale 1), finer than a
// quarter pixel on raster pages up to 600 dpi.
constexpr double kFlatness = 0.1;


// A glyph's contours as a filled shape for the pipeline, the pen at (0, 0).
class OutlineShape final : public ShapeSource {
 public:
  OutlineShape(const FlatGlyph& gl, const GlyphFrame& fr) : gl_(gl), fr_(fr) {}
  void record(ShapeRecorder& r) const override {
    std::size_t from = 0;
    for (const int end : gl_.ends) {
      for (auto i = from; i < static_cast<std::size_t>(end); ++i) {
        double x = 0.0;
        double y = 0.0;
        fr_.place(gl_.xs[i], gl_.ys[i], x, y);
        if (i == from) {
          r.move(x, y);
        } else {
          r.draw(x, y);
        }
      }
      from = static_cast<std::size_t>(end);
    }
  }
  bool filled() const override { return true; }

 private:
  const FlatGlyph& gl_;
  GlyphFrame fr_;
};

// Fills the contours of `gl` placed by `fr` through the pipeline.
void fill_contours(GlobalBlock& g, const FlatGlyph& gl, const GlyphFrame& fr) {
  TextScratch& sc = g.text.scratch;
  sc.xs.resize(gl.xs.size());
  sc.ys.resize(gl.xs.size());
  for (std::size_t i = 0; i < gl.xs.size(); ++i) {
    fr.place(gl.xs[i], gl.ys[i], sc.xs[i], sc.ys[i]);
  }
  const FillPatternScope solid(g, kSolidPattern);  // glyphs are never hatched
  fill_path(g, sc.xs.data(), sc.ys.data(), gl.ends.data(), static_cast<int>(gl.ends.size()),
            FillRule::NonZero);
}

// Draws glyph `gid` of `face` with its origin at `fr`: as a shape defined once where the
// driver can, else as a filled path. False when the glyph could not be read.
bool draw_outline(GlobalBlock& g, OutlineFont& face, std::uint32_t gid, const GlyphFrame& fr) {
  const FlatGlyph* gl = face.outline(gid, kFlatness / std::max(fr.uy, 1e-9));
  if (gl == nullptr || gl->broken) {
    return false;
  }
  if (gl->ends.empty()) {
    return true;  // a glyph without ink
  }
  if ((g.pipe.caps & kCapFilledShapes) != 0U) {
    GlyphFrame rel = fr;
    rel.x0 = 0.0;
    rel.y0 = 0.0;
    const ShapeKey key{face.id() | (1ULL << 62),
                       static_cast<std::uint64_t>(gid) | (fr.italic ? 1ULL << 32 : 0ULL),
                       std::bit_cast<std::uint64_t>(fr.ux),
                       std::bit_cast<std::uint64_t>(fr.uy),
                       std::bit_cast<std::uint64_t>(fr.slant),
                       std::bit_cast<std::uint64_t>(fr.inset),
                       std::bit_cast<std::uint64_t>(fr.sn),
                       std::bit_cast<std::uint64_t>(fr.cs)};
    if (place_shape(g, key, fr.x0, fr.y0, OutlineShape(*gl, rel))) {
      return true;
    }
  }
  fill_contours(g, *gl, fr);
  return true;
}

// A bitmap glyph: every run of set pixels a rectangle, all of them one filled path.
void draw_bitmap(GlobalBlock& g, const BdfFont& font, const BdfGlyph& b, const GlyphFrame& fr) {
  TextScratch& sc = g.text.scratch;
  sc.xs.clear();
  sc.ys.clear();
  sc.ends.clear();
  const int top = b.yoff + b.height;  // font pixels above the base line
  for_each_run(font, b, [&](int x, int y, int n) {
    const double x0 = b.xoff + x;
    const double x1 = x0 + n;
    const double y1 = top - y;
    const double y0 = y1 - 1;
    const double us[4] = {x0, x1, x1, x0};
    const double vs[4] = {y0, y0, y1, y1};
    for (int k = 0; k < 4; ++k) {
      double px = 0.0;
      double py = 0.0;
      fr.place(us[k], vs[k], px, py);
      sc.xs.push_back(px);
      sc.ys.push_back(py);
    }
    sc.ends.push_back(static_cast<int>(sc.xs.size()));
  });
  if (sc.ends.empty()) {
    return;
  }
  const FillPatternScope solid(g, kSolidPattern);
  fill_path(g, sc.xs.data(), sc.ys.data(), sc.ends.data(), static_cast<int>(sc.ends.size()),
            FillRule::NonZero);
}

// Whether the face in `slot` can be embedded: its licence allows it and the embedding
// driver reads its file. Asked once per face.
bool file_embeddable(FontFileState& s, int slot) {
  const auto i = static_cast<std::size_t>(slot);
  if (s.file_embeddable.size() < s.faces.size()) {
    s.file_embeddable.resize(s.faces.size(), -1);
  }
  if (s.file_embeddable[i] < 0) {
    const OutlineFont& face = *s.faces[i];
    s.file_embeddable[i] = face.embeddable() && pdf_can_embed(face.path(), face.face_index()) ? 1 : 0;
  }
  return s.file_embeddable[i] == 1;
}

}  // namespace

int ps_outline_face(GlobalBlock& g, int id) {
  FontFileState& s = g.fonts;
  if (id < 0 || id >= kPsFontCount) {
    return -1;
  }
  int& slot = s.ps_faces[static_cast<std::size_t>(id)];
  if (slot == -1) {
    slot = -2;
    // The twin as Type 1 (the widths are those of its AFM file), else as OpenType.
    for (const char* ext : {".t1", ".otf"}) {
      const FontLocation loc = find_font_file(std::string(ps_font(id).urw) + ext);
      FaceError err = FaceError::None;
      if (!loc.path.empty()) {
        if (const int f = face_slot(s, loc.path, loc.index, err); f >= 0) {
          slot = f;
          break;
        }
      }
    }
  }
  return slot >= 0 ? slot : -1;
}

bool draw_font_glyph(GlobalBlock& g, const LaidGlyph& e, double x, double y, FileRun& run) {
  const TextState& t = g.text;
  const double sn = t.sin_a;
  const double cs = t.cos_a;
  GlyphFrame fr{x - sn * e.raise, y - cs * e.raise, sn, cs, e.unit_x, e.unit_y, e.slant, e.inset,
           e.italic};
  FontFileState& s = g.fonts;
  if (e.kind == GlyphKind::Bitmap) {
    const BdfGlyph* b = s.bitmap ? s.bitmap->find(e.gid) : nullptr;
    if (b != nullptr) {
      draw_bitmap(g, *s.bitmap, *b, fr);
    }
    return b != nullptr;
  }
  if (e.kind == GlyphKind::Driver) {
    // A standard font on a device without fonts of its own: its URW twin's outline,
    // scaled from the twin's em, centred on its own width as drivers centre characters.
    const int slot = ps_outline_face(g, e.ps_id);
    if (slot < 0) {
      return false;
    }
    OutlineFont& face = *s.faces[static_cast<std::size_t>(slot)];
    const double k = 1000.0 / face.units_per_em();
    fr.ux *= k;
    fr.uy *= k;
    const std::uint32_t gid = face.glyph_index(e.unicode);
    return gid != 0 && draw_outline(g, face, gid, fr);
  }
  if (e.face_slot < 0 || static_cast<std::size_t>(e.face_slot) >= s.faces.size()) {
    return false;
  }
  OutlineFont& face = *s.faces[static_cast<std::size_t>(e.face_slot)];
  const bool as_text = (g.pipe.caps & kCapFontFiles) != 0U && s.embed && !e.italic &&
                       e.slant == 0.0 && file_embeddable(s, e.face_slot);
  if (!as_text) {
    flush_file_run(g, run);
    return draw_outline(g, face, e.gid, fr);
  }
  const double size = face.units_per_em() * e.unit_y;
  const double stretch = e.unit_x / e.unit_y;
  if (run.face != e.face_slot || run.size != size || run.stretch != stretch) {
    flush_file_run(g, run);
    run.face = e.face_slot;
    run.size = size;
    run.stretch = stretch;
  }
  GlyphPlace& p = run.places.emplace_back();
  p.x = fr.x0 + e.inset * cs;
  p.y = fr.y0 - e.inset * sn;
  p.unicode = e.unicode;
  p.glyph = e.gid;
  return true;
}

void flush_file_run(GlobalBlock& g, FileRun& run) {
  if (run.places.empty() || run.face < 0) {
    run.places.clear();
    return;
  }
  const OutlineFont& face = *g.fonts.faces[static_cast<std::size_t>(run.face)];
  FontFileRef ref;
  ref.path = face.path();
  ref.face_index = face.face_index();
  ref.ps_name = face.ps_name();
  ref.id = face.id();
  TextRun r;
  r.glyphs = run.places;
  r.face = ref.ps_name;
  r.file = &ref;
  r.angle = g.text.angle;
  r.size = run.size;
  r.stretch = run.stretch;
  draw_text_run(g, r);
  run.places.clear();
}

}  // namespace zorvel
