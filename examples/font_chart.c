/* Font charts: one page per font and alphabet, every character code from 32 to 255 in
 * a grid with its code beside it. Written to font_chart.ps. */
#include <stdio.h>

#include "gallery.h"
#include "zorvel.h"

typedef void (*FontRoutine)(void);

static const struct {
  const char* name;
  FontRoutine select;
} kFonts[] = {
    {"zoralf", zoralf}, {"complx", complx}, {"simplx", simplx}, {"duplx", duplx},
    {"triplx", triplx}, {"gothic", gothic}, {"helve", helve},   {"helves", helves},
    {"helvet", helvet}, {"serif", serif},
};
static const char* const kAlphabets[] = {"STAN", "GREE", "MATH", "ITAL", "SCRI", "RUSS"};

static void chart(int font, int alphabet) {
  char title[64];
  int code;
  zoralf();
  basalf("STAN");
  height(40);
  txtjus("LEFT");
  snprintf(title, sizeof title, "%s  %s", kFonts[font].name, kAlphabets[alphabet]);
  messag(title, 100, 60);
  for (code = 32; code < 256; ++code) {
    const int cell = code - 32;
    const int x = 150 + (cell % 16) * 170;
    const int y = 190 + (cell / 16) * 135;
    char label[8];
    char glyph[2];
    snprintf(label, sizeof label, "%d", code);
    zoralf();
    basalf("STAN");
    height(16);
    messag(label, x - 60, y + 40);
    kFonts[font].select();
    basalf(kAlphabets[alphabet]);
    height(60);
    glyph[0] = (char)code;
    glyph[1] = '\0';
    messag(glyph, x, y);
  }
}

int main(void) {
  int font, alphabet;
  gallery_output("PS", "font_chart.ps");
  filmod("DELE");
  zorini();
  for (font = 0; font < 10; ++font) {
    for (alphabet = 0; alphabet < 6; ++alphabet) {
      if (font + alphabet > 0) {
        newpag();
      }
      chart(font, alphabet);
    }
  }
  zorfin();
  return 0;
}
