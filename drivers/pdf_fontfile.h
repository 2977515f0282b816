#pragma once
// Outline font files embedded in PDF files: our own reader of TrueType and OpenType
// files (sfnt tables, collections by face index) and the subsetter that writes the glyphs
// a document uses as a font program of its own.
//
// A TrueType face (glyf outlines) becomes a subset with its glyph ids kept: glyphs the
// document does not use are empty in loca and glyf, composite glyphs bring their
// components. It is embedded as FontFile2 of a CIDFontType2 under a Type0 font with the
// Identity-H encoding, so that a run's 2-byte codes are its glyph ids. A face with CFF
// outlines (OpenType "OTTO") is embedded whole as FontFile3 /OpenType under a
// CIDFontType0; a CID-keyed CFF (whose CIDs are not its glyph ids) is refused, and the
// text engine draws it as outlines. Both carry a ToUnicode map built from the characters
// the runs showed with each glyph, so that text stays text.
//
// Every read from a file is bounds-checked: a damaged file, or a run with a glyph that
// is damaged (a composite that refers to itself, an outline beyond its table), is
// refused as a whole and nothing of it reaches the PDF file.

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "drivers/driver.h"

namespace zorvel {

// One face of a font file, read for embedding. The file's bytes are held in memory.
class FontProgram {
 public:
  // Reads face `face_index` of the file at `path`; false when the file cannot be read or
  // is not a TrueType/OpenType face that a PDF file can carry (damaged tables, a
  // CID-keyed CFF, more than 65535 glyphs).
  bool load(std::string_view path, int face_index);
  // The same from bytes in memory (tests).
  bool load_bytes(std::string bytes, int face_index);

  bool cff() const { return cff_; }
  std::uint32_t glyph_count() const { return num_glyphs_; }
  int units_per_em() const { return units_per_em_; }

  // The glyph of a character by the face's Unicode cmap; 0 (.notdef) when it has none.
  std::uint32_t glyph_of(std::uint32_t unicode) const;

  // Advance of a glyph in thousandths of the em, rounded: what /W says for it.
  int width(std::uint32_t glyph) const;

  // Whether the glyph can be shown: its index is in range and (TrueType) its outline and
  // those of its components lie within glyf, with no component loop. The answer is
  // remembered per glyph.
  bool glyph_ok(std::uint32_t glyph);

  // The font program of the glyphs `used` (flags by glyph id; shorter means unused):
  // the TrueType subset, or the whole face of a CFF font. Empty when it cannot be made.
  std::string program(const std::vector<bool>& used) const;

  // Font descriptor values in thousandths of the em.
  struct Metrics {
    int bbox[4] = {0, 0, 1000, 1000};
    int ascent = 800;
    int descent = -200;
    int cap_height = 700;
    int stem_v = 80;
    double italic_angle = 0.0;
    int flags = 4;  // symbolic, as the glyphs are reached by id, never by name
  };
  const Metrics& metrics() const { return metrics_; }

 private:
  struct Table {
    std::uint32_t tag = 0;
    std::uint32_t offset = 0;  // from the start of the file
    std::uint32_t length = 0;
  };
  enum class GlyphState : std::uint8_t { Unknown, Visiting, Good, Bad };

  bool parse(int face_index);
  const Table* table(const char* tag) const;
  std::string_view table_bytes(const char* tag) const;
  bool glyph_check(std::uint32_t glyph, int depth);
  // Appends the components of a composite glyph to `out`; false when damaged.
  bool components(std::uint32_t glyph, std::vector<std::uint32_t>& out) const;
  std::string_view glyph_data(std::uint32_t glyph) const;
  bool cff_is_cid_keyed() const;
  void read_metrics();

  std::string data_;
  std::vector<Table> tables_;
  bool cff_ = false;
  int units_per_em_ = 1000;
  std::uint32_t num_glyphs_ = 0;
  std::uint32_t num_metrics_ = 0;  // hhea's numberOfHMetrics
  bool long_loca_ = false;
  std::vector<std::uint32_t> loca_;  // glyph offsets in glyf, num_glyphs_ + 1 of them
  std::vector<GlyphState> state_;
  std::uint32_t cmap_offset_ = 0;  // the Unicode subtable in the file, 0: none
  int cmap_format_ = 0;
  Metrics metrics_;
};

// Whether the text of a face can be embedded in PDF files; the text engine draws the
// faces of which it cannot as outlines.
bool pdf_can_embed(std::string_view path, int face_index);

// The font files of one PDF document: each face (by FontFileRef::id) is read on its
// first run and named /FF<n> in the resources of the pages that use it; the glyphs
// grow with every run, and all fonts are written at the end of the file.
class PdfFontFiles {
 public:
  PdfFontFiles();
  ~PdfFontFiles();
  PdfFontFiles(const PdfFontFiles&) = delete;
  PdfFontFiles& operator=(const PdfFontFiles&) = delete;

  // Records the glyphs of a run and returns the font's index (its resource is /FF<index
  // + 1>), or -1 when the run is refused: the file cannot be embedded, or a glyph is out
  // of range or damaged. `reserve` hands out the object number of a new font.
  int use(const FontFileRef& ref, std::span<const GlyphPlace> glyphs,
          const std::function<int()>& reserve);

  // The glyph's advance in thousandths of the em, as its font's /W gives it.
  int width(int font, std::uint32_t glyph) const;

  // The page's font resources " /FF1 12 0 R ..." (nothing when the page uses none); a
  // new page starts with none.
  void append_resources(std::string& s) const;
  void begin_page();

  // Whether a face goes in as OpenType (FontFile3 /OpenType, PDF 1.6).
  bool opentype() const;

  // Writes every font: `reserve` numbers the objects besides the font's own, `put`
  // writes one object's body (what goes between "n 0 obj" and "endobj").
  void write(const std::function<int()>& reserve,
             const std::function<void(int obj, std::string_view body)>& put) const;

 private:
  struct Font;
  std::vector<std::unique_ptr<Font>> fonts_;
};

}  // namespace zorvel
