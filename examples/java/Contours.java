// Contour lines, "contours.eps": labelled contour lines of a function with hills,
// hollows and saddles, traced through a grid (contur), and the same function measured at
// 60 scattered stations, triangulated (triang) and contoured through the triangles
// (contri). The Java twin of examples/contours.c.
import static zorvel.Zorvel.*;

public final class Contours {
  private Contours() {}

  static final int NX = 81;
  static final int NY = 61;
  static final int NS = 60;
  static final int NLEV = 9;

  // Colours of the levels, dark to light.
  static final double[][] COLOURS = {
    {0.267, 0.005, 0.329}, {0.281, 0.161, 0.473}, {0.241, 0.296, 0.540},
    {0.186, 0.419, 0.557}, {0.142, 0.526, 0.556}, {0.123, 0.637, 0.529},
    {0.246, 0.739, 0.452}, {0.497, 0.826, 0.306}, {0.720, 0.860, 0.150}};

  static double bump(double x, double y, double x0, double y0, double s) {
    double dx = (x - x0) / s;
    double dy = (y - y0) / s;
    return 1.0 / (1.0 + dx * dx + dy * dy);
  }

  static double field(double x, double y) {
    return bump(x, y, 1.0, 1.0, 0.6) + 0.9 * bump(x, y, 3.0, 2.1, 0.7)
        - 0.8 * bump(x, y, 1.1, 2.3, 0.5) - 0.7 * bump(x, y, 3.0, 0.8, 0.6) + 0.05 * x;
  }

  static double level(int k) {
    return -0.6 + 0.2 * k;
  }

  // The level's colour and line style.
  static void pen(int k) {
    setrgb(COLOURS[k][0], COLOURS[k][1], COLOURS[k][2]);
    if (level(k) < -1e-9) {
      dash();
    } else {
      solid();
    }
  }

  static void axes(int nx, String heading) {
    axspos(nx, 1060);
    axslen(1200, 900);
    name("x", "X");
    name("y", "Y");
    titlin(heading, 1);
    graf(0, 4, 0, 1, 0, 3, 0, 1);
    title();
  }

  public static void main(String[] args) {
    double[] xg = new double[NX];
    double[] yg = new double[NY];
    double[] zg = new double[NX * NY];
    double[] xs = new double[NS];
    double[] ys = new double[NS];
    double[] zs = new double[NS];
    int[] i1 = new int[2 * NS];
    int[] i2 = new int[2 * NS];
    int[] i3 = new int[2 * NS];
    for (int i = 0; i < NX; i++) {
      xg[i] = 0.05 * i;
    }
    for (int j = 0; j < NY; j++) {
      yg[j] = 0.05 * j;
      for (int i = 0; i < NX; i++) {
        zg[j * NX + i] = field(xg[i], yg[j]);
      }
    }
    // Stations spread evenly without a pattern (an additive recurrence of the plastic
    // number).
    for (int i = 0; i < NS; i++) {
      double u = 0.31 + i * 0.7548776662466927;
      double v = 0.17 + i * 0.5698402909980532;
      xs[i] = 0.1 + 3.8 * (u - Math.floor(u));
      ys[i] = 0.1 + 2.8 * (v - Math.floor(v));
      zs[i] = field(xs[i], ys[i]);
    }

    page(2970, 1250);
    pagmod("NONE");
    Gallery.output("EPS", "contours.eps");
    filmod("DELE");
    zorini();
    errmod("PROT", "OFF");
    helve();
    height(30);
    labels("FLOA", "CON");
    labdig(1, "CON");
    labdis(700, "CON");

    axes(250, "Contour lines of a grid (contur)");
    height(24);
    linwid(4);
    for (int k = 0; k < NLEV; k++) {
      pen(k);
      contur(xg, NX, yg, NY, zg, level(k));
    }
    solid();
    linwid(1);
    color("FORE");
    height(30);
    endgrf();

    axes(1650, "Contour lines of 60 stations (triang, contri)");
    int ntri = triang(xs, ys, NS, i1, i2, i3, 2 * NS);
    setrgb(0.8, 0.8, 0.8);
    linwid(2);
    for (int k = 0; k < ntri; k++) {
      rlstrt(xs[i1[k] - 1], ys[i1[k] - 1]);
      rlconn(xs[i2[k] - 1], ys[i2[k] - 1]);
      rlconn(xs[i3[k] - 1], ys[i3[k] - 1]);
      rlconn(xs[i1[k] - 1], ys[i1[k] - 1]);
    }
    height(24);
    linwid(4);
    for (int k = 0; k < NLEV; k++) {
      pen(k);
      contri(xs, ys, zs, NS, i1, i2, i3, ntri, level(k));
    }
    solid();
    linwid(1);
    color("FORE");
    hsymbl(14);
    for (int i = 0; i < NS; i++) {
      symbol(13, nxposn(xs[i]), nyposn(ys[i]));
    }
    height(30);
    endgrf();
    zorfin();
  }
}
