// Outline, bitmap and standard fonts: a page per kind of font (a font file, a system
// font, a standard PostScript font, a bitmap font, next to the stroke font complx), the
// 35 standard PostScript fonts, and UTF-8 text and a formula in DejaVu Sans. Written to
// fonts.ps. The Java twin of examples/fonts.c.
import static zorvel.Zorvel.*;

public final class Fonts {
  private Fonts() {}

  private static final String[] STANDARD = {
      "Times-Roman", "Times-Italic", "Times-Bold", "Times-BoldItalic", "Helvetica",
      "Helvetica-Oblique", "Helvetica-Bold", "Helvetica-BoldOblique", "Courier",
      "Courier-Oblique", "Courier-Bold", "Courier-BoldOblique", "Helvetica-Narrow",
      "Helvetica-Narrow-Oblique", "Helvetica-Narrow-Bold", "Helvetica-Narrow-BoldOblique",
      "AvantGarde-Book", "AvantGarde-BookOblique", "AvantGarde-Demi", "AvantGarde-DemiOblique",
      "Bookman-Light", "Bookman-LightItalic", "Bookman-Demi", "Bookman-DemiItalic",
      "NewCenturySchlbk-Roman", "NewCenturySchlbk-Italic", "NewCenturySchlbk-Bold",
      "NewCenturySchlbk-BoldItalic", "Palatino-Roman", "Palatino-Italic", "Palatino-Bold",
      "Palatino-BoldItalic", "ZapfChancery-MediumItalic", "Symbol", "ZapfDingbats"};

  // What the text fonts, Symbol and ZapfDingbats show.
  private static final String[] SAMPLES = {
      "AVATAR Wave, Gr\u00fc\u00dfe: 0123456789",
      "\u03b1\u03b2\u03b3\u03b4\u03b5 \u03a3\u03a6\u03a9 \u2211\u222b\u221a\u221e \u2264\u2260\u00b1 0123",
      "\u2713\u2714\u2708\u260e\u2605 \u2776\u2777\u2778 \u2794\u2798"};

  // The name of the font in use, in complx, then a sample in the font at (x, y).
  private static void sample(String label, String text, int y) {
    String[] name = new String[1];
    getfnt(name, 80);
    messag(text, 800, y);
    complx();
    height(30);
    messag(label, 150, y + 10);
    messag(name[0], 150, y + 50);
    height(60);
  }

  public static void main(String[] args) {
    Gallery.output("PS", "fonts.ps");
    filmod("DELE");
    zorini();
    chacod("UTF8");

    // A page per kind of font.
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

    // The 35 standard fonts, kerned.
    newpag();
    fntopt("ON", "KERN");
    height(36);
    for (int i = 0; i < 35; ++i) {
      psfont(STANDARD[i]);
      messag(SAMPLES[i < 33 ? 0 : i - 32], 900, 80 + i * 52);
      complx();
      height(28);
      messag(STANDARD[i], 100, 84 + i * 52);
      height(36);
    }
    fntopt("OFF", "KERN");

    // UTF-8 and a formula in DejaVu Sans.
    newpag();
    winfnt("DejaVu Sans");
    height(70);
    messag("Gr\u00fc\u00dfe \u03b1\u03b2\u03b3 \u0416\u0436 \u2211\u222b\u221a\u221e \u2264 \u2260", 200, 250);
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
  }
}
