#pragma once
// One face of an outline font file (TrueType, OpenType, Type 1), read by FreeType. Glyph
// outlines are flattened into polygons in font units (y up) the first time a glyph is
// drawn and kept with the face, so that a glyph drawn again costs nothing; a glyph is
// flattened again only when text of a finer size needs a finer tolerance.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zorvel {

// A glyph's outline as closed contours (the closing point not repeated): contour i holds
// the points ends[i-1] (0 for the first) up to ends[i]. Filled by the non-zero rule.
struct FlatGlyph {
  std::vector<float> xs;
  std::vector<float> ys;
  std::vector<int> ends;
  float tolerance = 0.0F;  // font units it was flattened to; 0: not yet
  float xmax = 0.0F;       // right end of the outline (its extent from the origin)
  int advance = 0;         // advance width, font units
  bool loaded = false;     // metrics known
  bool broken = false;     // FreeType could not load the glyph
};

// Why a face could not be opened.
enum class FaceError { None, NotFound, Unreadable, NoFreeType };

class OutlineFont {
 public:
  ~OutlineFont();
  OutlineFont(const OutlineFont&) = delete;
  OutlineFont& operator=(const OutlineFont&) = delete;

  // Opens face `index` of the file at `path`. Null with `err` set when it cannot.
  static std::unique_ptr<OutlineFont> open(const std::string& path, int index, FaceError& err);

  const std::string& path() const { return path_; }
  int face_index() const { return index_; }
  const std::string& family() const { return family_; }
  const std::string& style() const { return style_; }
  const std::string& ps_name() const { return ps_name_; }
  // "DejaVu Sans Bold": family and style, the style left out when it is "Regular".
  std::string full_name() const;
  int units_per_em() const { return units_per_em_; }
  // Capital height in font units: the font's own (OS/2), else the top of "H", else 70 %
  // of the em.
  double cap_height() const { return cap_height_; }
  bool italic() const { return italic_; }
  // Licence bits allow embedding the font into documents.
  bool embeddable() const { return embeddable_; }
  // The face has TrueType outlines in a glyf table (embeddable as CIDFontType2).
  bool truetype() const { return truetype_; }
  // An identifier of the face unique for the process's life.
  std::uint64_t id() const { return id_; }

  // Glyph index of `unicode`, 0 when the face has none.
  std::uint32_t glyph_index(std::uint32_t unicode);
  // Kerning between two glyphs, font units (0 without a kerning table).
  int kerning(std::uint32_t left, std::uint32_t right);
  // The glyph's metrics (outline not flattened); null for indexes beyond the face.
  const FlatGlyph* metrics(std::uint32_t glyph);
  // The glyph flattened to at most `tolerance` font units; null as for metrics.
  const FlatGlyph* outline(std::uint32_t glyph, double tolerance);
  // Number of FreeType glyph loads so far (each glyph once per face and tolerance).
  long loads() const { return loads_; }

 private:
  OutlineFont() = default;
  FlatGlyph* load(std::uint32_t glyph, double tolerance);

  struct Impl;
  std::unique_ptr<Impl> impl_;
  std::string path_;
  int index_ = 0;
  std::string family_;
  std::string style_;
  std::string ps_name_;
  int units_per_em_ = 1000;
  double cap_height_ = 700.0;
  bool italic_ = false;
  bool embeddable_ = true;
  bool truetype_ = false;
  std::uint64_t id_ = 0;
  long loads_ = 0;
  std::vector<FlatGlyph> glyphs_;  // by glyph index, grown on demand
};

// Whether this build reads outline fonts.
bool have_freetype();

}  // namespace zorvel
