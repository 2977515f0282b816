// Font charts: one page per font and alphabet, every character code from 32 to 255 in
// a grid with its code beside it. Written to font_chart.ps. The Java twin of
// examples/font_chart.c.
//
// The codes from 128 up are single bytes in the default character set ("STAN"); a Java
// string reaches the library as UTF-8, so those bytes are written as the characters
// U+DC80 to U+DCFF, which the binding passes on as the bytes 0x80 to 0xFF.
import static zorvel.Zorvel.*;

public final class FontChart {
  private FontChart() {}

  private static final String[] FONT_NAMES = {
      "zoralf", "complx", "simplx", "duplx", "triplx", "gothic", "helve", "helves", "helvet",
      "serif"};
  private static final Runnable[] FONTS = {
      zorvel.Zorvel::zoralf, zorvel.Zorvel::complx, zorvel.Zorvel::simplx,
      zorvel.Zorvel::duplx, zorvel.Zorvel::triplx, zorvel.Zorvel::gothic,
      zorvel.Zorvel::helve, zorvel.Zorvel::helves, zorvel.Zorvel::helvet,
      zorvel.Zorvel::serif};
  private static final String[] ALPHABETS = {"STAN", "GREE", "MATH", "ITAL", "SCRI", "RUSS"};

  // The one-byte string of a character code.
  static String code(int c) {
    return String.valueOf((char) (c < 128 ? c : 0xDC00 + c));
  }

  static void chart(int font, int alphabet) {
    zoralf();
    basalf("STAN");
    height(40);
    txtjus("LEFT");
    messag(FONT_NAMES[font] + "  " + ALPHABETS[alphabet], 100, 60);
    for (int c = 32; c < 256; ++c) {
      final int cell = c - 32;
      final int x = 150 + (cell % 16) * 170;
      final int y = 190 + (cell / 16) * 135;
      zoralf();
      basalf("STAN");
      height(16);
      messag(Integer.toString(c), x - 60, y + 40);
      FONTS[font].run();
      basalf(ALPHABETS[alphabet]);
      height(60);
      messag(code(c), x, y);
    }
  }

  public static void main(String[] args) {
    Gallery.output("PS", "font_chart.ps");
    filmod("DELE");
    zorini();
    for (int font = 0; font < 10; ++font) {
      for (int alphabet = 0; alphabet < 6; ++alphabet) {
        if (font + alphabet > 0) {
          newpag();
        }
        chart(font, alphabet);
      }
    }
    zorfin();
  }
}
