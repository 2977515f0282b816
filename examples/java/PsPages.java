// A PostScript file of three pages, "ps_pages.ps":
//   1. the eight line styles in eight colours, widening from top to bottom;
//   2. colour bars of the RAIN table, and a star clipped to a window with a frame
//      showing the window;
//   3. the three line caps on thick lines, and dots (zero-length lines).
// The Java twin of examples/ps_pages.c.
import static zorvel.Zorvel.*;

public final class PsPages {
  private PsPages() {}

  static void frame(int x, int y, int w, int h) {
    line(x, y, x + w, y);
    line(x + w, y, x + w, y + h);
    line(x + w, y + h, x, y + h);
    line(x, y + h, x, y);
  }

  static void lineStyles() {
    String[] names = {"RED", "GREE", "BLUE", "ORAN", "CYAN", "MAGE", "FORE", "RED"};
    for (int i = 0; i < 8; i++) {
      int y = 250 + i * 220;
      color(names[i]);
      linwid(1 + 2 * i);
      lintyp(i);
      line(300, y, 2670, y);
    }
    solid();
    linwid(1);
    color("FORE");
    frame(200, 150, 2570, 1800);
  }

  static void coloursAndClipping() {
    setvlt("RAIN");
    for (int i = 0; i < 32; i++) {
      point(300 + i * 40, 400, 36, 400, 8 * i + 4);
    }
    color("FORE");
    frame(280, 200, 1280, 400);

    // A 9-pointed star whose points reach beyond its clipping window.
    color("BLUE");
    linwid(3);
    clpwin(1800, 700, 800, 900);
    for (int i = 0; i <= 9; i++) {
      double a = 3.14159265358979 / 2 + i * 8 * 3.14159265358979 / 9;
      double x = 2200 + 700 * Math.cos(a);
      double y = 1150 - 700 * Math.sin(a);
      if (i == 0) {
        strtpt(x, y);
      } else {
        connpt(x, y);
      }
    }
    noclip();
    color("RED");
    linwid(1);
    dash();
    frame(1800, 700, 800, 900);
    solid();
  }

  static void capsAndDots() {
    String[] caps = {"CUT", "ROUN", "LONG"};
    linwid(60);
    for (int i = 0; i < 3; i++) {
      int y = 400 + i * 400;
      lncap(caps[i]);
      color(i == 0 ? "RED" : i == 1 ? "GREE" : "BLUE");
      line(600, y, 2000, y);
    }
    lncap("LONG");
    color("FORE");
    linwid(1);
    for (int i = 0; i < 3; i++) {
      line(600, 300 + i * 400, 600, 500 + i * 400);
      line(2000, 300 + i * 400, 2000, 500 + i * 400);
    }
    // Dots: lines of length zero stay visible.
    linwid(10);
    for (int i = 0; i < 20; i++) {
      line(600 + i * 70, 1700, 600 + i * 70, 1700);
    }
  }

  public static void main(String[] args) {
    Gallery.output("PS", "ps_pages.ps");
    filmod("DELE");
    zorini();
    lineStyles();
    newpag();
    coloursAndClipping();
    newpag();
    capsAndDots();
    zorfin();
  }
}
