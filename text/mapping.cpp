#include "text/mapping.h"

#include "text/decode.h"
#include "text/font_data.h"

namespace zorvel {
namespace {

constexpr int kUpperLast = 255;
constexpr int kDriverCopyright = 187;  // the copyright sign in the driver's encoding
constexpr int kDriverLast = 186;       // last accented letter of the driver's encoding
constexpr int kCopyright = 264;        // the copyright sign of the extended alphabet

constexpr int kFirstLatin1Sign = 161;  // codes below it from 127 up: controls, no-break space

// A character that the fonts lack, and a code that stands for a blank.
MappedCode missing() { return {kBlank, -1, true}; }
MappedCode blank() { return {kBlank, -1, false}; }

MappedCode table_code(int entry, int alphabet) {
  return entry == 0 ? missing() : MappedCode{entry, alphabet, false};
}

// ISO 8859-1, also Unicode up to 255.
MappedCode map_latin1(int code) {
  switch (code) {
    case 161:
      return {185, -1, false};
    case 164:
      return {263, -1, false};
    case 169:
      return {kCopyright, -1, false};
    default:
      break;
  }
  if (code >= kIso1First && code <= kUpperLast) {
    return table_code(kIso1Codes[code - kIso1First], -1);
  }
  return code < kFirstLatin1Sign ? blank() : missing();
}

MappedCode map_unicode(int code) {
  if (code <= kUpperLast) {
    return map_latin1(code);
  }
  if (code >= kUnicodeCyrillicFirst && code < kUnicodeCyrillicFirst + 96) {
    const int i = code - kUnicodeCyrillicFirst;
    return table_code(kUnicodeCyrillicCodes[i], kUnicodeCyrillicAlphabets[i]);
  }
  if (code >= kUnicodeGreekFirst && code < kUnicodeGreekFirst + 73) {
    const int i = code - kUnicodeGreekFirst;
    return table_code(kUnicodeGreekCodes[i], kUnicodeGreekAlphabets[i]);
  }
  return missing();
}

// Sets whose upper half (160..255) is one table drawn from one alphabet; the other
// codes are drawn from `lower_alphabet` (-1: the current one).
template <typename T>
MappedCode map_upper(int code, const T* table, int alphabet, int lower_alphabet) {
  if (code >= kIsoUpperFirst && code <= kUpperLast) {
    return table_code(table[code - kIsoUpperFirst], alphabet);
  }
  return {code, lower_alphabet, false};
}

MappedCode map_set(int charset, int code) {
  switch (charset) {
    case kCharsetStan:
      return {code, -1, false};
    case kCharsetIso1:
      return code <= kUpperLast ? map_latin1(code) : missing();
    case kCharsetUtf8:
      return map_unicode(code);
    case kCharsetIso2:
      return code >= kIsoUpperFirst ? map_upper(code, kIso2Codes, -1, -1) : blank();
    case kCharsetIso3:
      return code >= kIsoUpperFirst ? map_upper(code, kIso3Codes, -1, -1) : blank();
    case kCharsetIso5:
      return map_upper(code, kIso5Codes, kAlphabetRuss, kAlphabetStan);
    case kCharsetKoi8:
      return map_upper(code, kKoi8Codes, kAlphabetRuss, kAlphabetStan);
    case kCharsetIso7:
      return map_upper(code, kIso7Codes, kAlphabetGree, kAlphabetStan);
    default:
      return missing();
  }
}

}  // namespace

MappedCode map_charset(int charset, int code, int current_alphabet) {
  MappedCode m{code < kBlank ? kBlank : code, -1, false};
  const bool eight_bit_sets =
      charset == kCharsetIso5 || charset == kCharsetKoi8 || charset == kCharsetIso7;
  if (m.code < 127) {
    if (eight_bit_sets) {
      m.alphabet = kAlphabetStan;  // these sets draw their lower half from STAN
    }
  } else if (!(m.code == 127 && current_alphabet == kAlphabetMath)) {
    m = map_set(charset, m.code);
  }
  return m;
}

int driver_code(int code) {
  if (code <= kDriverLast) {
    return code;
  }
  return code == kCopyright ? kDriverCopyright : kBlank;
}

// Remapping rules
// ===============
// A glyph number g = code - 31 of the standard numbering is translated into the
// numbering of an alphabet that holds only letters and a few signs. 0 means that the
// alphabet has no glyph for it and the character falls back to STAN; -1 is the blank
// of STAN.

namespace {

int remap_letters(int alphabet, int g) {
  if (g >= 34 && g <= 59) {
    return g - 32;  // capital letters
  }
  if (g >= 66 && g <= 91) {
    return g - 38;  // small letters
  }
  if (alphabet == kAlphabetMath && g == 96) {
    return 54;
  }
  if ((alphabet == kAlphabetGree || alphabet == kAlphabetScri) && g >= 96) {
    return g - 42;
  }
  return 0;
}

int remap_russian(int g) {
  if (g >= 5 && g <= 7) {
    return g - 3;
  }
  if (g >= 29 && g <= 31) {
    return g - 24;
  }
  if (g >= 34 && g <= 63) {
    return g - 26;
  }
  if (g >= 66 && g <= 95) {
    return g - 28;
  }
  return g >= 96 ? -1 : 0;
}

int remap_complex_italic(int g) {
  if (g >= 66 && g <= 91) {
    return g - 64;
  }
  if (g >= 99 && g <= 101) {
    return g - 71;
  }
  return 0;
}

constexpr int kComplexType = 3;
constexpr int kGothicType = 7;

}  // namespace

GlyphChoice choose_glyph(const FontRecord& font, int alphabet, int code) {
  const int g = code - 31;
  GlyphChoice c{alphabet, g, false, false};
  const AlphabetSlot& slot = font.alphabets[static_cast<std::size_t>(alphabet)];
  if (alphabet != kAlphabetStan && !slot.present) {
    if (slot.borrowed) {
      // An alphabet without glyphs of its own draws STAN's; italic gets its slant.
      c.italic = alphabet == kAlphabetItal;
    } else {
      int r = 0;
      if (alphabet == kAlphabetRuss) {
        r = remap_russian(g);
      } else if (alphabet == kAlphabetItal && font.type == kComplexType) {
        r = remap_complex_italic(g);
      } else {
        r = remap_letters(alphabet, g);
      }
      if (r > 0) {
        c.glyph = r;
      } else {
        c.alphabet = kAlphabetStan;
        c.glyph = r < 0 ? 1 : g;
        c.fell_back = true;
        c.italic = alphabet == kAlphabetItal ||
                   (alphabet == kAlphabetScri && font.type != kGothicType);
      }
    }
  }
  const AlphabetSlot& drawn = font.alphabets[static_cast<std::size_t>(c.alphabet)];
  if (c.glyph < 1 || c.glyph > drawn.chars) {
    c.glyph = 1;
  }
  return c;
}

}  // namespace zorvel
