// Colours and colour tables, "colours.ps": the nine predefined tables of setvlt as bars
// of their entries, the named colours of color, and ramps of explicit RGB colours from
// setrgb. The Java twin of examples/colours.c.
import static zorvel.Zorvel.*;

public final class Colours {
  private Colours() {}

  public static void main(String[] args) {
    String[] tables = {"SMAL", "RAIN", "SPEC", "GREY", "RRAI", "RSPE", "RGRE", "VGA", "TEMP"};
    String[] names = {"WHIT", "RED", "GREE", "YELL", "BLUE", "ORAN", "CYAN", "MAGE", "BLAC",
                      "FORE", "BACK", "GRAY", "HALF"};
    Gallery.output("PS", "colours.ps");
    filmod("DELE");
    zorini();
    height(50);
    messag("Colour tables", 200, 120);
    height(30);

    for (int t = 0; t < 9; t++) {
      int y = 300 + t * 150;
      int n = t == 0 ? 9 : t == 7 ? 16 : 256;
      int w = 2048 / n;
      setvlt(tables[t]);
      for (int i = 0; i < n; i++) {
        point(600 + i * w + w / 2, y, w, 100, i);
      }
      color("FORE");
      messag(tables[t], 200, y - 15);
    }

    // Named colours of the RAIN table, framed in the foreground colour.
    setvlt("RAIN");
    for (int i = 0; i < 13; i++) {
      int x = 600 + i * 160;
      if (i == 12) {
        setrgb(0.2, 0.4, 1.0);  // HALF: halfway from this blue to the background
      }
      color(names[i]);
      linwid(100);
      lncap("CUT");
      line(x, 1700, x + 120, 1700);
      linwid(1);
      lncap("LONG");
      color("FORE");
      line(x, 1650, x + 120, 1650);
      line(x + 120, 1650, x + 120, 1750);
      line(x + 120, 1750, x, 1750);
      line(x, 1750, x, 1650);
      messag(names[i], x, 1780);
    }
    messag("color", 200, 1685);

    // Explicit RGB: red against blue.
    for (int i = 0; i < 64; i++) {
      setrgb(i / 63.0, 0.0, 1.0 - i / 63.0);
      line(600 + i * 32, 1900, 600 + i * 32, 2000);
      line(601 + i * 32, 1900, 631 + i * 32, 2000);
    }
    color("FORE");
    messag("setrgb", 200, 1935);
    zorfin();
  }
}
