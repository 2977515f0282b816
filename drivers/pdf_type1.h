#pragma once
// The standard PostScript fonts in PDF files: the font objects of the PDF driver's
// driver-font text. The 14 fonts every viewer has are named only; the other 21 are
// embedded from the Type 1 programs of their URW twins, with a font descriptor from the
// fonts' metrics (text/ps_fonts.h). Characters outside a font's 8-bit encoding get codes
// of their own in that font object, named by an /Encoding with /Differences.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zorvel {

// Where the PDF driver writes numbered objects.
class PdfObjects {
 public:
  // A new object number; its object must be written before the file ends.
  virtual int reserve() = 0;
  // Starts object `obj` here ("obj 0 obj"); the caller writes the rest, "endobj" included.
  virtual void begin(int obj) = 0;
  virtual void put(std::string_view bytes) = 0;

 protected:
  ~PdfObjects() = default;
};

// Codes given to the characters of one font object that its encoding lacks (code 0 of a
// GlyphPlace): the codes no character of the encoding uses, 1..31 and 188..255 in the
// text fonts, 1..31 and 127..255 in Symbol and ZapfDingbats, in the order the characters
// first appear.
class PdfExtraCodes {
 public:
  explicit PdfExtraCodes(int font) : font_(font) {}

  // The code of `unicode`, given on its first use; 0 when the font has no glyph for it or
  // every free code is taken (the character is then not shown).
  int code(std::uint32_t unicode);
  bool empty() const { return chars_.empty(); }

  struct Entry {
    int code;
    std::uint32_t unicode;
  };
  const std::vector<Entry>& entries() const { return chars_; }

 private:
  int font_;
  std::vector<Entry> chars_;  // in the order of their codes
};

// A Type 1 font program as a PDF FontFile stream holds it: the clear-text part up to
// and including the line of "eexec", the encrypted part, and the trailer of 512 zeros
// and "cleartomark", one after the other.
struct Type1Program {
  std::string bytes;
  std::size_t length1 = 0;
  std::size_t length2 = 0;
  std::size_t length3 = 0;
};

// Reads the Type 1 program of a .t1 (PFA with a binary encrypted part) or .pfa file.
// False when the file cannot be read, is larger than a few megabytes, or does not have
// the parts above.
bool read_type1_program(const std::string& path, Type1Program& program);

// The Type 1 program of the URW twin of standard font `id`: "$ZORVEL/fonts/<twin>.t1",
// then Debian's fonts-urw-base35 folder; "" when neither has it.
std::string find_type1_program(int id);

// Writes object `obj`, the font dictionary of standard font `id` for the driver's text,
// with the widths of its codes: the standard 14 by name, the others with a font
// descriptor and, where the program of their twin is found, embedded (a FontFile
// stream, deflated when `compress`). Text fonts without extra codes refer to the shared
// `text_encoding` (standard encoding, GermanVec at 127..186, copyright at 187); fonts
// with extra codes get an encoding object of their own.
void write_pdf_standard_font(PdfObjects& out, int obj, int id, const PdfExtraCodes& extras,
                             int text_encoding, bool compress);

}  // namespace zorvel
