// UTF-8 text: Latin accents, Greek and Cyrillic in one page with chacod("UTF8"), once
// in the stroke font complx and once in the PostScript driver font. Written to
// text_utf8.ps. The Java twin of examples/text_utf8.c: Java strings reach the library as
// UTF-8.
import static zorvel.Zorvel.*;

public final class TextUtf8 {
  private TextUtf8() {}

  private static final String[] LINES = {
      "Latin: \u00c4rger \u00fcber Stra\u00dfe, caf\u00e9, se\u00f1or, Fran\u00e7ais, \u00c5ngstr\u00f6m",
      "\u00c0 \u00c1 \u00c2 \u00c3 \u00c8 \u00c9 \u00ca \u00cc \u00cd \u00d2 \u00d3 \u00d4 \u00d5 \u00d9 \u00da \u00db \u00ff \u00a9 \u00a1 \u00bf",
      "Greek: \u0391\u03b8\u03ae\u03bd\u03b1 \u03b1\u03b2\u03b3\u03b4 \u03a9\u03a3\u03a6 \u03c0\u03c1",
      "Cyrillic: \u041c\u043e\u0441\u043a\u0432\u0430 \u0416\u0438\u0437\u043d\u044c \u0429\u0438 \u042f",
      "Euro sign (no glyph, a blank): [\u20ac]"};

  public static void main(String[] args) {
    Gallery.output("PS", "text_utf8.ps");
    filmod("DELE");
    zorini();
    chacod("UTF8");
    height(50);
    complx();
    for (int i = 0; i < 5; ++i) {
      messag(LINES[i], 150, 150 + i * 120);
    }
    hwfont();
    for (int i = 0; i < 5; ++i) {
      messag(LINES[i], 150, 1000 + i * 120);
    }
    zorfin();
  }
}
