// Metafiles: two plots written as GKSL metafiles, "metafiles_curve.met" (a damped wave in
// an axis system) and "metafiles_rings.met" (filled rings with holes), then merged side by
// side on one page, "metafiles.eps", by incmet. The Java twin of examples/metafiles.c.
import static zorvel.Zorvel.*;

public final class Metafiles {
  private Metafiles() {}

  private static void startMetafile(String file) {
    page(1500, 1100);
    metafl("GKSL");
    setfil(file);
    filmod("DELE");
    zorini();
    errmod("PROT", "OFF");
    helve();
  }

  private static void curvePlot() {
    double[] x = new double[201];
    double[] y = new double[201];
    for (int i = 0; i <= 200; i++) {
      x[i] = i * 0.05;
      y[i] = Math.exp(-0.25 * x[i]) * Math.cos(3.0 * x[i]);
    }
    startMetafile("metafiles_curve.met");
    axspos(250, 900);
    axslen(1100, 700);
    name("t", "X");
    name("amplitude", "Y");
    titlin("A damped wave", 1);
    graf(0, 10, 0, 2, -1, 1, -1, 0.5);
    title();
    color("BLUE");
    linwid(8);
    curve(x, y, 201);
    linwid(1);
    color("FORE");
    endgrf();
    zorfin();
  }

  private static void ringsPlot() {
    startMetafile("metafiles_rings.met");
    for (int i = 0; i < 6; i++) {
      // Six rings of growing holes, each in three sectors of its own colours.
      int cx = 300 + (i % 3) * 450;
      int cy = 350 + (i / 3) * 450;
      sector(cx, cy, 30 * i, 180, 0, 140, 40 + i * 30);
      sector(cx, cy, 30 * i, 180, 140, 250, 60 + i * 30);
      sector(cx, cy, 30 * i, 180, 250, 360, 80 + i * 30);
    }
    height(40);
    messag("Rings in filled sectors", 450, 1030);
    zorfin();
  }

  public static void main(String[] args) {
    curvePlot();
    ringsPlot();

    Gallery.output("EPS", "metafiles.eps");
    page(3100, 1200);
    pagmod("NONE");
    filmod("DELE");
    zorini();
    incmet("metafiles_curve.met", 0, 50, 50, 1.0);
    incmet("metafiles_rings.met", 0, 1600, 100, 0.9);
    zorfin();
  }
}
