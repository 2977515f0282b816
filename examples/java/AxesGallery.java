// Axis systems, one EPS file per page, each on an upright A4 landscape page:
//   axes_linear.eps      a linear axis system with a damped oscillation
//   axes_log.eps         log-log axes with LOG labels and the automatic log ticks
//   axes_logfull.eps     every tick of each decade (logtic FULL), scaled from the data
//   axes_crossed.eps     axes crossing at the origin, with a cubic through it
//   axes_descending.eps  a descending X axis and EXP labels on Y
//   axes_time.eps        TIME labels, scaled automatically from a day's hours
//   axes_date.eps        DATE labels with month ticks over a year
//   axes_map.eps         MAP labels and a grid over the world, with an orbit's track
//   paper_figure.eps     a figure for a paper: names with units, a two-line title, a
//                        dotted grid, measurements and a model, and a second Y axis on
//                        the right in other units
// The Java twin of examples/axes_gallery.c.
import static zorvel.Zorvel.*;

public final class AxesGallery {
  private AxesGallery() {}

  private static final double PI = 3.14159265358979;

  // A new page in its own EPS file.
  private static void start(String file) {
    Gallery.output("EPS", file);
    filmod("DELE");
    pagmod("NONE");
    zorini();
    helve();
  }

  // Uniform noise in -0.5..0.5 from a fixed sequence, that of the C example.
  private static long noiseState = 12345;

  private static double noise() {
    noiseState = (noiseState * 1103515245L + 12345L) & 0x7fffffffL;
    return noiseState / 2147483648.0 - 0.5;
  }

  private static void linearPage() {
    start("axes_linear.eps");
    name("Time t [s]", "X");
    name("Amplitude", "Y");
    titlin("Linear axes", 1);
    graf(0, 10, 0, 2, -1, 1, -1, 0.5);
    title();
    color("BLUE");
    rlstrt(0, 1);
    for (int i = 1; i <= 200; i++) {
      double t = i * 0.05;
      rlconn(t, Math.exp(-t / 4) * Math.cos(2 * t));
    }
    endgrf();
    zorfin();
  }

  private static void logPage() {
    start("axes_log.eps");
    axsscl("LOG", "XY");
    labels("LOG", "XY");
    logtic("AUTO");
    name("Frequency [Hz]", "X");
    name("Power [W]", "Y");
    titlin("Log-log axes with LOG labels", 1);
    // Exponents: X from 0.1 to 1000, Y from 0.001 to 100.
    graf(-1, 3, -1, 1, -3, 2, -3, 1);
    title();
    color("BLUE");
    for (int i = 0; i <= 200; i++) {
      double f = Math.pow(10.0, -1 + i * 0.02);
      double p = 50 / (1 + (f / 5) * (f / 5));
      if (i == 0) {
        rlstrt(f, p);
      } else {
        rlconn(f, p);
      }
    }
    endgrf();
    zorfin();
  }

  private static void logfullPage() {
    double[] x = new double[60];
    double[] y = new double[60];
    for (int i = 0; i < 60; i++) {
      x[i] = 0.02 * Math.pow(1.18, i);
      y[i] = 3 * Math.pow(x[i], 1.5);
    }
    start("axes_logfull.eps");
    axsscl("LOG", "XY");
    labels("LOG", "XY");
    logtic("FULL");
    setscl(x, 60, "X");
    setscl(y, 60, "Y");
    name("Length [m]", "X");
    name("Mass [kg]", "Y");
    titlin("Full log ticks, axes scaled from the data", 1);
    graf(0, 0, 0, 0, 0, 0, 0, 0);
    title();
    color("BLUE");
    rlstrt(x[0], y[0]);
    for (int i = 1; i < 60; i++) {
      rlconn(x[i], y[i]);
    }
    endgrf();
    zorfin();
  }

  private static void crossedPage() {
    start("axes_crossed.eps");
    axstyp("CROS");
    frame(0); // a frame would run through the end labels
    name("x", "X");
    name("y", "Y");
    titlin("Crossed axes: y = x (x*x - 9) / 10", 1);
    graf(-4, 4, -4, 1, -3.5, 3.5, -3, 1);
    title();
    color("BLUE");
    for (int i = 0; i <= 160; i++) {
      double x = -4 + i * 0.05;
      if (i == 0) {
        rlstrt(x, x * (x * x - 9) / 10);
      } else {
        rlconn(x, x * (x * x - 9) / 10);
      }
    }
    endgrf();
    zorfin();
  }

  private static void descendingPage() {
    start("axes_descending.eps");
    labels("EXP", "Y");
    name("Wavenumber [1/cm]", "X");
    name("Intensity [counts]", "Y");
    titlin("A descending X axis and EXP labels", 1);
    graf(4000, 400, 4000, -400, 0, 2e5, 0, 5e4);
    title();
    color("BLUE");
    for (int i = 0; i <= 720; i++) {
      double k = 4000 - i * 5;
      double a = (k - 2950) / 80, b = (k - 1720) / 45, c = (k - 1100) / 110;
      double v = 1e4 + 1.2e5 * Math.exp(-a * a) + 1.7e5 * Math.exp(-b * b)
          + 6e4 * Math.exp(-c * c);
      if (i == 0) {
        rlstrt(k, v);
      } else {
        rlconn(k, v);
      }
    }
    endgrf();
    zorfin();
  }

  private static void timePage() {
    double[] t = new double[64];
    double[] w = new double[64];
    // Irradiance from 05:30 to 21:15, every quarter of an hour (times in seconds).
    for (int i = 0; i < 64; i++) {
      double h = 5.5 + i * 0.25;
      double s = Math.sin(PI * (h - 5.5) / 15.75);
      t[i] = h * 3600;
      w[i] = 850 * s * s;
    }
    start("axes_time.eps");
    labels("TIME", "X");
    setscl(t, 64, "X");
    setscl(w, 64, "Y");
    name("Local time", "X");
    name("Irradiance [W/m2]", "Y");
    titlin("TIME labels over a day", 1);
    graf(0, 0, 0, 0, 0, 0, 0, 0);
    title();
    color("BLUE");
    rlstrt(t[0], w[0]);
    for (int i = 1; i < 64; i++) {
      rlconn(t[i], w[i]);
    }
    endgrf();
    zorfin();
  }

  private static void datePage() {
    double[] d = {0, 365};
    start("axes_date.eps");
    basdat(1, 1, 2024);
    labels("DATE", "X");
    ticmod("MONT", "X");
    setscl(d, 2, "X");
    name("Date", "X");
    name("Day length [h]", "Y");
    titlin("DATE labels and month ticks: day length at latitude 50 N", 1);
    graf(0, 0, 0, 0, 6, 18, 6, 2);
    title();
    color("BLUE");
    for (int i = 0; i <= 365; i++) {
      double decl = 23.44 * PI / 180 * Math.sin(2 * PI * (284 + i + 1) / 365);
      double h = 24 / PI * Math.acos(-Math.tan(50 * PI / 180) * Math.tan(decl));
      if (i == 0) {
        rlstrt(i, h);
      } else {
        rlconn(i, h);
      }
    }
    endgrf();
    zorfin();
  }

  private static void mapPage() {
    double last = 0;
    final double incl = 51.6 * PI / 180;
    start("axes_map.eps");
    labels("MAP", "XY");
    titlin("MAP labels: the track of an orbit inclined at 51.6 degrees", 1);
    graf(-180, 180, -180, 60, -90, 90, -90, 30);
    title();
    grid(1, 1);
    // Two orbits of 92 minutes while the earth turns beneath.
    color("BLUE");
    for (int i = 0; i <= 720; i++) {
      double u = i * PI / 180;
      double lat = Math.asin(Math.sin(incl) * Math.sin(u)) * 180 / PI;
      double lon = Math.atan2(Math.cos(incl) * Math.sin(u), Math.cos(u)) * 180 / PI - 30
          - i * 92.0 / 1436;
      lon = (lon + 540) % 360 - 180;
      if (i == 0 || Math.abs(lon - last) > 180) {
        rlstrt(lon, lat);
      } else {
        rlconn(lon, lat);
      }
      last = lon;
    }
    endgrf();
    zorfin();
  }

  // The temperature measured every half hour over a day, and a harmonic model of it.
  private static double model(double h) {
    return 12 + 8 * Math.sin(2 * PI * (h - 9) / 24);
  }

  private static void paperFigure() {
    double[] hours = new double[49];
    double[] measured = new double[49];
    double[] modelH = new double[241];
    double[] modelT = new double[241];
    for (int i = 0; i <= 48; i++) {
      hours[i] = i * 0.5;
      measured[i] = model(hours[i]) + 2.5 * noise();
    }
    for (int i = 0; i <= 240; i++) {
      modelH[i] = i * 0.1;
      modelT[i] = model(modelH[i]);
    }
    start("paper_figure.eps");
    chacod("UTF8");
    name("Time of day [h]", "X");
    name("Temperature [\u00b0C]", "Y");
    titlin("Air temperature at a weather station", 1);
    titlin("measured every 30 minutes, with a harmonic model", 3);
    // The right side is only a line here: the second axis system labels it.
    setgrf("NAME", "NAME", "LINE", "LINE");
    graf(0, 24, 0, 4, 0, 25, 0, 5);
    title();
    grid(1, 1);
    // The curves take the first two colours of the cycle.
    linwid(5);
    curve(hours, measured, 49);
    curve(modelH, modelT, 241);
    linwid(1);
    endgrf();
    // The same rectangle again, scaled in Fahrenheit, drawing only the right axis.
    setgrf("NONE", "NONE", "NONE", "NAME");
    name("Temperature [\u00b0F]", "Y");
    graf(0, 24, 0, 4, 32, 77, 40, 10);
    endgrf();
    zorfin();
  }

  public static void main(String[] args) {
    linearPage();
    logPage();
    logfullPage();
    crossedPage();
    descendingPage();
    timePage();
    datePage();
    mapPage();
    paperFigure();
  }
}
