// An EPS figure, "eps_figure.eps", for inclusion in documents: a small landscape page
// with a framed polar rose, a dashed circle, and a column of filled squares in mixed
// colours. The Java twin of examples/eps_figure.c.
import static zorvel.Zorvel.*;

public final class EpsFigure {
  private EpsFigure() {}

  public static void main(String[] args) {
    final double pi = 3.14159265358979;
    Gallery.output("EPS", "eps_figure.eps");
    page(1600, 1200);
    pagmod("NONE");
    filmod("DELE");
    zorini();

    color("FORE");
    line(50, 50, 1550, 50);
    line(1550, 50, 1550, 1150);
    line(1550, 1150, 50, 1150);
    line(50, 1150, 50, 50);

    // A four-petal rose r = cos(2t) in two colours per petal.
    linwid(4);
    for (int i = 0; i <= 720; i++) {
      double t = i * pi / 360;
      double r = 450 * Math.cos(2 * t);
      double x = 600 + r * Math.cos(t);
      double y = 550 - r * Math.sin(t);
      if (i % 180 == 0) {
        color(i % 360 == 0 ? "RED" : "BLUE");
      }
      if (i == 0) {
        strtpt(x, y);
      } else {
        connpt(x, y);
      }
    }

    // The circle the petals touch, dashed.
    linwid(1);
    color("GREE");
    dash();
    for (int i = 0; i <= 360; i++) {
      double x = 600 + 450 * Math.cos(i * pi / 180);
      double y = 550 - 450 * Math.sin(i * pi / 180);
      if (i == 0) {
        strtpt(x, y);
      } else {
        connpt(x, y);
      }
    }
    solid();

    for (int i = 0; i < 5; i++) {
      point(1300, 200 + i * 180, 120, 120, intrgb(i / 4.0, 0.3, 1.0 - i / 4.0));
    }
    zorfin();
  }
}
