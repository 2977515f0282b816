// Colour plots, "colour_plots.eps": filled contours with their level lines in the
// cool-warm table (conshd), a heat map cell by cell in viridis (colmat) and a heat map on
// a logarithmic colour scale drawn as one image in magma, each with a colour bar (graf3).
// The Java twin of examples/colour_plots.c.
import static zorvel.Zorvel.*;

public final class ColourPlots {
  private ColourPlots() {}

  static final int NX = 81;
  static final int NY = 61;
  static final int CX = 24;
  static final int CY = 18;
  static final int LX = 160;
  static final int LY = 120;
  static final int NLEV = 10;

  static double bump(double x, double y, double x0, double y0, double s) {
    double dx = (x - x0) / s;
    double dy = (y - y0) / s;
    return 1.0 / (1.0 + dx * dx + dy * dy);
  }

  static double field(double x, double y) {
    return bump(x, y, 1.0, 1.0, 0.6) + 0.9 * bump(x, y, 3.0, 2.1, 0.7)
        - 0.8 * bump(x, y, 1.1, 2.3, 0.5) - 0.7 * bump(x, y, 3.0, 0.8, 0.6) + 0.05 * x;
  }

  // Positive values over about seven decades: the field's sixth power, shifted.
  static double spread(double x, double y) {
    double q = 2.5 * (field(x, y) + 0.6);
    return q * q * q * q * q * q;
  }

  static void axes(int nx, String heading) {
    axspos(nx, 860);
    axslen(600, 600);
    name("x", "X");
    name("y", "Y");
    titlin(heading, 1);
  }

  public static void main(String[] args) {
    double[] xg = new double[NX];
    double[] yg = new double[NY];
    double[] zg = new double[NX * NY];
    double[] xc = new double[CX];
    double[] yc = new double[CY];
    double[] zc = new double[CX * CY];
    double[] xl = new double[LX];
    double[] yl = new double[LY];
    double[] zl = new double[LX * LY];
    double[] lev = new double[NLEV];
    for (int i = 0; i < NX; i++) {
      xg[i] = 0.05 * i;
    }
    for (int j = 0; j < NY; j++) {
      yg[j] = 0.05 * j;
      for (int i = 0; i < NX; i++) {
        zg[j * NX + i] = field(xg[i], yg[j]);
      }
    }
    for (int i = 0; i < CX; i++) {
      xc[i] = (i + 0.5) * (4.0 / CX);
    }
    for (int j = 0; j < CY; j++) {
      yc[j] = (j + 0.5) * (3.0 / CY);
      for (int i = 0; i < CX; i++) {
        zc[j * CX + i] = field(xc[i], yc[j]);
      }
    }
    for (int i = 0; i < LX; i++) {
      xl[i] = (i + 0.5) * (4.0 / LX);
    }
    for (int j = 0; j < LY; j++) {
      yl[j] = (j + 0.5) * (3.0 / LY);
      for (int i = 0; i < LX; i++) {
        zl[j * LX + i] = spread(xl[i], yl[j]);
      }
    }
    for (int k = 0; k < NLEV; k++) {
      lev[k] = -0.9 + 0.2 * k;
    }

    page(2970, 1000);
    pagmod("NONE");
    Gallery.output("EPS", "colour_plots.eps");
    filmod("DELE");
    zorini();
    errmod("PROT", "OFF");
    helve();
    height(28);
    colbar("RIGH", 40, 30);
    labdig(1, "XYZ");

    // Filled contours with their lines.
    setvlt("CWAR");
    axes(160, "Filled contours (conshd)");
    conopt("BOTH", "EXTE");
    conopt("ON", "LINE");
    graf3(0, 4, 0, 1, 0, 3, 0, 1, -1.0, 1.0, -1.0, 0.5);
    color("FORE");
    linwid(2);
    conshd(xg, NX, yg, NY, zg, lev, NLEV);
    linwid(1);
    title();
    endgrf();

    // A heat map, cell by cell.
    setvlt("VIRI");
    axes(1140, "Heat map (colmat)");
    graf3(0, 4, 0, 1, 0, 3, 0, 1, -0.8, 1.2, -0.8, 0.4);
    colmat(xc, CX, yc, CY, zc);
    title();
    endgrf();

    // A heat map on a log colour scale, as one image.
    setvlt("MAGM");
    axes(2120, "Log heat map (colmat)");
    axsscl("LOG", "Z");
    labels("LOG", "Z");
    setscl(zl, LX * LY, "Z");
    graf3(0, 4, 0, 1, 0, 3, 0, 1, 0, 0, 0, 0);
    colmat(xl, LX, yl, LY, zl);
    title();
    endgrf();
    zorfin();
  }
}
