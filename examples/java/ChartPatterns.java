// Fill patterns and areas, "chart_patterns.eps": the patterns of shdpat (0 the outline
// alone, 1..15 hatchings, 16 solid) and one of myptrn as labelled boxes; sectors as the
// slices of a pie (one pulled out and hatched) and as a ring; the area between two
// crossing curves and the area under one of them, with a legend that shows each area's
// pattern. The Java twin of examples/chart_patterns.c.
import static zorvel.Zorvel.*;

public final class ChartPatterns {
  private ChartPatterns() {}

  private static final double PI = 3.14159265358979;

  // Colours of the slices and areas.
  private static int rgb(int r, int g, int b) {
    return intrgb(r / 255.0, g / 255.0, b / 255.0);
  }

  // The boxes of the patterns in an axis system without axes: six columns, three rows.
  private static void patternBoxes() {
    int[] angles = {20, 110};
    int[] spacings = {30, 15};
    frame(0);
    setgrf("NONE", "NONE", "NONE", "NONE");
    axspos(100, 1050);
    axslen(1500, 900);
    graf(0.0, 6.0, 0.0, 1.0, 0.0, 3.0, 0.0, 1.0);
    height(28);
    txtjus("CENT");
    for (int n = 0; n < 18; n++) {
      int col = n % 6;
      int row = n / 6;
      double x0 = col + 0.12;
      double x1 = col + 0.88;
      double y0 = 2.3 - row + 0.05;
      double y1 = 2.9 - row;
      double[] xs = {x0, x1, x1, x0};
      double[] ys = {y0, y0, y1, y1};
      if (n < 17) {
        shdpat(n);
      } else {
        myptrn(angles, spacings, 2);
      }
      rlarea(xs, ys, 4);
      int nx = 100 + (int) ((col + 0.5) * 250);
      int ny = 1050 - (int) ((2.3 - row) * 300) + 10;
      if (n < 17) {
        number(n, -1, nx, ny);
      } else {
        messag("myptrn", nx, ny);
      }
    }
    txtjus("LEFT");
    endgrf();
  }

  // A pie of five slices, the first pulled out and hatched, and a ring of four sectors.
  private static void sectors() {
    double[] shares = {0.30, 0.25, 0.20, 0.15, 0.10};
    int[] ringPatterns = {1, 6, 9, 14};
    int[] colours = {
      rgb(31, 119, 180), rgb(255, 127, 14), rgb(44, 160, 44), rgb(214, 39, 40), rgb(148, 103, 189)
    };
    double a = 90.0;
    for (int i = 0; i < 5; i++) {
      double b = a + 360.0 * shares[i];
      int cx = 1985;
      int cy = 560;
      if (i == 0) {
        // Pulled out along its middle.
        double mid = (a + b) / 2.0 * PI / 180.0;
        cx += (int) (40.0 * Math.cos(mid));
        cy -= (int) (40.0 * Math.sin(mid));
        shdpat(9);
      } else {
        shdpat(16);
      }
      sector(cx, cy, 0, 300, a, b, colours[i]);
      a = b;
    }
    for (int i = 0; i < 4; i++) {
      shdpat(ringPatterns[i]);
      sector(2620, 560, 160, 300, 90.0 * i + 10.0, 90.0 * i + 80.0, colours[i]);
    }
    shdpat(0);
    sector(2620, 560, 0, 110, 0.0, 360.0, colours[4]);
    shdpat(16);
    height(30);
    txtjus("CENT");
    messag("sector: slices of a pie", 1985, 920);
    messag("sector: a ring", 2620, 920);
    txtjus("LEFT");
  }

  // Two crossing curves, the area between them hatched, the area under the first solid.
  private static void areas() {
    final int n = 121;
    double[] x = new double[n];
    double[] y1 = new double[n];
    double[] y2 = new double[n];
    double[] baseX = {0.0, 12.0};
    double[] baseY = {-1.5, -1.5};
    byte[] cbuf = new byte[4 * 24 + 1];
    for (int i = 0; i < n; i++) {
      x[i] = i * 0.1;
      y1[i] = Math.sin(x[i]);
      y2[i] = 0.8 * Math.cos(1.5 * x[i]);
    }
    frame(1);
    setgrf("NAME", "NAME", "TICK", "TICK");
    axspos(250, 1950);
    axslen(2600, 800);
    name("x", "X");
    name("y", "Y");
    graf(0.0, 12.0, 0.0, 1.0, -1.5, 1.5, -1.5, 0.5);
    legini(cbuf, 4, 24);
    setrgb(0.78, 0.86, 0.94);
    shdpat(16);
    shdcrv(x, y1, n, baseX, baseY, 2);
    setclr(rgb(255, 127, 14));
    shdpat(7);
    shdcrv(x, y1, n, x, y2, n);
    shdpat(16);
    color("FORE");
    linwid(3);
    curve(x, y1, n);
    curve(x, y2, n);
    linwid(1);
    leglin(cbuf, "under sin x", 1);
    leglin(cbuf, "between the curves", 2);
    leglin(cbuf, "sin x", 3);
    leglin(cbuf, "0.8 cos 1.5x", 4);
    legtit("");
    legend("", 7);
    endgrf();
  }

  public static void main(String[] args) {
    Gallery.output("EPS", "chart_patterns.eps");
    pagmod("NONE");
    filmod("DELE");
    zorini();
    errmod("PROT", "OFF");
    helve();
    height(44);
    messag("Fill patterns and areas", 100, 40);
    patternBoxes();
    sectors();
    areas();
    zorfin();
  }
}
