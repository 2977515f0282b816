// Clipping, "clipping.eps": a fan of lines and a spiral cut exactly at the border of a
// clipping window, filled rectangles that reach across it, and the same drawing with
// clipping switched off beside it. The Java twin of examples/clipping.c.
import static zorvel.Zorvel.*;

public final class Clipping {
  private Clipping() {}

  private static final double PI = 3.14159265358979;

  static void frame(int x, int y, int w, int h) {
    line(x, y, x + w - 1, y);
    line(x + w - 1, y, x + w - 1, y + h - 1);
    line(x + w - 1, y + h - 1, x, y + h - 1);
    line(x, y + h - 1, x, y);
  }

  // The drawing, centred at (cx, cy).
  static void drawing(int cx, int cy) {
    setclr(50);
    for (int i = 0; i < 36; i++) {
      double a = i * PI / 18;
      line(cx, cy, (int) (cx + 700 * Math.cos(a)), (int) (cy - 700 * Math.sin(a)));
    }
    setclr(220);
    linwid(6);
    strtpt(cx, cy);
    for (int i = 1; i <= 600; i++) {
      double a = i * PI / 50;
      double r = i * 1.1;
      connpt(cx + r * Math.cos(a), cy - r * Math.sin(a));
    }
    linwid(1);
    for (int i = 0; i < 5; i++) {
      point(cx - 400 + i * 200, cy + 330, 120, 160, 100 + 30 * i);
    }
  }

  public static void main(String[] args) {
    setpag("DA4L");
    pagmod("NONE");
    Gallery.output("EPS", "clipping.eps");
    filmod("DELE");
    zorini();
    height(40);
    messag("clpwin(300, 400, 1000, 800)", 300, 250);
    messag("noclip", 1700, 250);

    clpwin(300, 400, 1000, 800);
    drawing(800, 800);
    clpmod("NONE");
    color("FORE");
    frame(300, 400, 1000, 800);
    clpmod("AUTO");

    // Clipped to the page only.
    clpwin(0, 0, 2970, 2100);
    noclip();
    drawing(2200, 800);
    color("RED");
    frame(1700, 400, 1000, 800);
    zorfin();
  }
}
