/* Outline, bitmap and standard fonts: a page per kind of font (a font file, a system
 * font, a standard PostScript font, a bitmap font, next to the stroke font complx), the
 * 35 standard PostScript fonts, and UTF-8 text and a formula in DejaVu Sans. Written to
 * fonts.ps; the bitmap font is the 9x15.bdf that the build makes from the X fonts. */
#include "gallery.h"
#include "zorvel.h"

static const char* const kStandard[35] = {
    "Times-Roman", "Times-Italic", "Times-Bold", "Times-BoldItalic", "Helvetica",
    "Helvetica-Oblique", "Helvetica-Bold", "Helvetica-BoldOblique", "Courier",
    "Courier-Oblique", "Courier-Bold", "Courier-BoldOblique", "Helvetica-Narrow",
    "Helvetica-Narrow-Oblique", "Helvetica-Narrow-Bold", "Helvetica-Narrow-BoldOblique",
    "AvantGarde-Book", "AvantGarde-BookOblique", "AvantGarde-Demi", "AvantGarde-DemiOblique",
    "Bookman-Light", "Bookman-LightItalic", "Bookman-Demi", "Bookman-DemiItalic",
    "NewCenturySchlbk-Roman", "NewCenturySchlbk-Italic", "NewCenturySchlbk-Bold",
    "NewCenturySchlbk-BoldItalic", "Palatino-Roman", "Palatino-Italic", "Palatino-Bold",
    "Palatino-BoldItalic", "ZapfChancery-MediumItalic", "Symbol", "ZapfDingbats"};

/* What the text fonts, Symbol and ZapfDingbats show. */
static const char* const kSamples[3] = {
    "AVATAR Wave, Grüße: 0123456789", "αβγδε ΣΦΩ ∑∫√∞ ≤≠± 0123",
    "✓✔✈☎★ ❶❷❸ ➔➘"};

/* The name of the font in use, in complx, then a sample in the font at (x, y). */
static void sample(const char* label, const char* text, int y) {
  char name[80];
  getfnt(name, sizeof name);
  messag(text, 800, y);
  complx();
  height(30);
  messag(label, 150, y + 10);
  messag(name, 150, y + 50);
  height(60);
}

int main(void) {
  int i;
  gallery_output("PS", "fonts.ps");
  filmod("DELE");
  zorini();
  chacod("UTF8");

  /* A page per kind of font. */
  height(60);
  complx();
  sample("stroke font", "Wave AVATAR 0.5 8B", 200);
  ttfont("DejaVuSans.ttf");
  sample("ttfont", "Wave AVATAR 0.5 8B", 400);
  fntopt("TYPO", "SPAC");
  fntopt("ON", "KERN");
  ttfont("DejaVuSans.ttf");
  sample("ttfont, TYPO, KERN", "Wave AVATAR 0.5 8B", 600);
  fntopt("STAN", "SPAC");
  winfnt("DejaVu Serif:bold");
  sample("winfnt", "Wave AVATAR 0.5 8B", 800);
  psfont("Palatino-Italic");
  sample("psfont", "Wave AVATAR 0.5 8B", 1000);
  bmpfnt("9x15.bdf");
  sample("bmpfnt", "Wave AVATAR 0.5 8B", 1200);
  fntopt("OFF", "KERN");

  /* The 35 standard fonts, kerned. */
  newpag();
  fntopt("ON", "KERN");
  height(36);
  for (i = 0; i < 35; ++i) {
    psfont(kStandard[i]);
    messag(kSamples[i < 33 ? 0 : i - 32], 900, 80 + i * 52);
    complx();
    height(28);
    messag(kStandard[i], 100, 84 + i * 52);
    height(36);
  }
  fntopt("OFF", "KERN");

  /* UTF-8 and a formula in DejaVu Sans. */
  newpag();
  winfnt("DejaVu Sans");
  height(70);
  messag("Grüße αβγ Жж ∑∫√∞ ≤ ≠", 200, 250);
  basalf("ITAL");
  messag("Italic from the family's own face", 200, 450);
  basalf("STAN");
  angle(20);
  messag("Turned 20 degrees", 1200, 1000);
  angle(0);
  texmod("ON");
  messag("$\\int_0^\\infty e^{-x^2} dx = \\frac{\\sqrt{\\pi}}{2}$", 200, 700);
  texmod("OFF");
  zorfin();
  return 0;
}
