// Bar graphs and statistics, one EPS file per page:
//   chart_bars.eps        four axis systems: grouped bars with labels and a legend,
//                         stacked bars labelled with their parts, horizontal bars of
//                         named categories, 3D bars
//   chart_statistics.eps  a histogram with the density curve of its distribution, and
//                         box plots of four samples
// The Java twin of examples/chart_bars.c.
import static zorvel.Zorvel.*;

import java.nio.charset.StandardCharsets;

public final class ChartBars {
  private ChartBars() {}

  private static void start(String file) {
    Gallery.output("EPS", file);
    filmod("DELE");
    pagmod("NONE");
    zorini();
    errmod("PROT", "OFF");
    helve();
  }

  // Uniform values in 0..1 from a fixed sequence, that of the C example.
  private static long state = 2024;

  private static double uniform() {
    state = (state * 1103515245L + 12345L) & 0x7fffffffL;
    return state / 2147483648.0;
  }

  // Nearly normal values: the sum of twelve uniform ones, less six.
  private static double normal(double mean, double sd) {
    double s = -6;
    for (int i = 0; i < 12; i++) {
      s += uniform();
    }
    return mean + sd * s;
  }

  private static String text(byte[] cbuf) {
    int n = 0;
    while (n < cbuf.length && cbuf[n] != 0) {
      n++;
    }
    return new String(cbuf, 0, n, StandardCharsets.UTF_8);
  }

  // Category labels 1..n of the axis cax.
  private static void categories(String[] names, String cax) {
    labels("MYLA", cax);
    ticks(1, cax);
    for (int i = 0; i < names.length; i++) {
      mylab(names[i], i + 1, cax);
    }
  }

  // Numbers again on both axes after categories.
  private static void plainAxes() {
    labels("FLOA", "XY");
    ticks(2, "XY");
  }

  // The lower left corner of panel k (0..3) of a 2 x 2 page.
  private static void panel(int k) {
    axspos(300 + (k % 2) * 1420, 880 + (k / 2) * 1000);
    axslen(1100, 620);
  }

  private static void grouped() {
    double[] x = {1, 2, 3, 4};
    double[] zero = {0, 0, 0, 0};
    double[][] sales = {{12, 15, 14, 19}, {14, 17, 16, 22}, {17, 18, 21, 25}};
    String[] years = {"2022", "2023", "2024"};
    byte[] cbuf = new byte[3 * 4 + 1];
    panel(0);
    categories(new String[] {"Q1", "Q2", "Q3", "Q4"}, "X");
    name("Sales [Mio EUR]", "Y");
    titlin("Grouped bars with labels", 1);
    graf(0.5, 4.5, 1, 1, 0, 30, 0, 5);
    title();
    legini(cbuf, 3, 4);
    barwth(-0.8);
    bargrp(3, -0.02);
    labels("SECO", "BAR");
    labdig(-1, "BAR");
    for (int k = 0; k < 3; k++) {
      bars(x, zero, sales[k], 4);
      leglin(cbuf, years[k], k + 1);
    }
    labels("NONE", "BAR");
    legtit("");
    legend(text(cbuf), 8);
    endgrf();
  }

  private static void stacked() {
    double[] x = {1, 2, 3, 4, 5};
    double[][] hours = {{1.5, 1, 2, 1, 0.5}, {2, 3.5, 1, 4, 1.5}, {4, 3, 4.5, 2.5, 5}};
    String[] parts = {"Mail", "Meetings", "Code"};
    double[] bottom = {0, 0, 0, 0, 0};
    double[] top = new double[5];
    byte[] cbuf = new byte[3 * 8 + 1];
    panel(1);
    categories(new String[] {"Mon", "Tue", "Wed", "Thu", "Fri"}, "X");
    name("Hours", "Y");
    titlin("Stacked bars, labelled with their parts", 1);
    graf(0.5, 5.5, 1, 1, 0, 12, 0, 2);
    title();
    legini(cbuf, 3, 8);
    barwth(-0.6);
    labels("DELT", "BAR");
    labdig(-2, "BAR");
    labpos("CENT", "BAR");
    barclr(-1, 255, -1);
    for (int k = 0; k < 3; k++) {
      for (int i = 0; i < 5; i++) {
        top[i] = bottom[i] + hours[k][i];
      }
      shdpat(k == 1 ? 7 : 16); // the middle part hatched
      bars(x, bottom, top, 5);
      for (int i = 0; i < 5; i++) {
        bottom[i] = top[i];
      }
      leglin(cbuf, parts[k], k + 1);
    }
    barclr(-1, -1, -1);
    shdpat(16);
    labels("NONE", "BAR");
    labpos("OUTS", "BAR");
    legtit("");
    legend(text(cbuf), 7);
    endgrf();
  }

  private static void horizontal() {
    double[] y = {1, 2, 3, 4, 5, 6};
    double[] zero = {0, 0, 0, 0, 0, 0};
    double[] share = {4.2, 9.7, 11.3, 10.1, 23.9, 1.6};
    panel(2);
    categories(new String[] {"Fortran", "Java", "C", "C++", "Python", "Rust"}, "Y");
    name("Share [%]", "X");
    name("", "Y");
    titlin("Horizontal bars of named categories", 1);
    graf(0, 30, 0, 5, 0.5, 6.5, 1, 1);
    title();
    bartyp("HORI");
    barwth(-0.7);
    labels("SECO", "BAR");
    labdig(1, "BAR");
    setrgb(0.25, 0.55, 0.75);
    bars(y, zero, share, 6);
    color("FORE");
    labels("NONE", "BAR");
    bartyp("VERT");
    endgrf();
  }

  private static void depthBars() {
    double[] x = {1, 2, 3, 4, 5, 6};
    double[] zero = {0, 0, 0, 0, 0, 0};
    double[] rain = {48, 41, 52, 38, 61, 70};
    panel(3);
    categories(new String[] {"Jan", "Feb", "Mar", "Apr", "May", "Jun"}, "X");
    name("Month", "X");
    name("Rain [mm]", "Y");
    titlin("3D bars", 1);
    graf(0.5, 6.5, 1, 1, 0, 80, 0, 20);
    title();
    bartyp("3DVE");
    barwth(-0.6);
    baropt(0.5, 45);
    setrgb(0.2, 0.6, 0.35);
    bars(x, zero, rain, 6);
    color("FORE");
    bartyp("VERT");
    endgrf();
  }

  private static void barsPage() {
    start("chart_bars.eps");
    height(30);
    hname(30);
    htitle(34);
    grouped();
    plainAxes();
    stacked();
    plainAxes();
    horizontal();
    plainAxes();
    depthBars();
    zorfin();
  }

  private static void statisticsPage() {
    final int samples = 2000;
    final int bins = 30;
    double[] heights = new double[samples];
    double[] centres = new double[bins];
    double[] density = new double[bins];
    double[] zero = new double[bins];
    double[] curveX = new double[121];
    double[] curveY = new double[121];
    double[][] sample = new double[4][60];
    byte[] cbuf = new byte[2 * 16 + 1];
    for (int i = 0; i < samples; i++) {
      heights[i] = normal(170, 8);
    }
    histog(heights, samples, 140, 200, bins, "DENS", centres, density);
    for (int i = 0; i <= 120; i++) {
      curveX[i] = 140 + i * 0.5;
      double t = curveX[i] - 170;
      curveY[i] = Math.exp(-t * t / 128) / (8 * Math.sqrt(2 * 3.14159265358979));
    }
    start("chart_statistics.eps");
    height(30);
    hname(30);
    htitle(34);

    axspos(300, 1650);
    axslen(1100, 1200);
    name("Height [cm]", "X");
    name("Density", "Y");
    labdig(2, "Y");
    titlin("Histogram and the normal density", 1);
    graf(140, 200, 140, 10, 0, 0.06, 0, 0.01);
    title();
    legini(cbuf, 2, 16);
    barwth(-1);
    bars(centres, zero, density, bins);
    leglin(cbuf, "2000 samples", 1);
    color("RED");
    linwid(6);
    curve(curveX, curveY, 121);
    linwid(1);
    color("FORE");
    leglin(cbuf, "normal density", 2);
    legtit("");
    legend(text(cbuf), 8);
    endgrf();

    for (int k = 0; k < 4; k++) {
      for (int i = 0; i < 60; i++) {
        sample[k][i] = normal(20 + 4 * k, 2 + k);
      }
      sample[k][0] = 20 + 4 * k + (k % 2 == 0 ? 5.5 : -5) * (2 + k); // an outlier
    }
    axspos(1720, 1650);
    axslen(1100, 1200);
    labdig(-1, "Y");
    categories(new String[] {"A", "B", "C", "D"}, "X");
    name("Sample", "X");
    name("Value", "Y");
    titlin("Box plots", 1);
    graf(0.5, 4.5, 1, 1, 0, 60, 0, 10);
    title();
    barwth(-0.5);
    hsymbl(20);
    for (int k = 0; k < 4; k++) {
      boxplt(sample[k], 60, k + 1);
    }
    endgrf();
    zorfin();
  }

  public static void main(String[] args) {
    barsPage();
    statisticsPage();
  }
}
