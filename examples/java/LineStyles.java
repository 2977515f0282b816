// Line styles, "line_styles.ps": the eight predefined styles, patterns of one's own, and
// dashes that run on across the many short segments of a circle and a sine curve
// instead of starting again at every point. The Java twin of examples/line_styles.c.
import static zorvel.Zorvel.*;

public final class LineStyles {
  private LineStyles() {}

  private static final double PI = 3.14159265358979;

  public static void main(String[] args) {
    String[] names = {"solid", "dot", "dash", "chndsh", "chndot", "dashm", "dotl", "dashl"};
    int[] own1 = {60, 15, 5, 15};
    int[] own2 = {40, 10, 40, 10, 5, 10};
    Gallery.output("PS", "line_styles.ps");
    filmod("DELE");
    zorini();
    height(50);
    messag("Line styles", 200, 120);
    height(30);

    // The predefined styles, selected by number.
    for (int i = 0; i < 8; i++) {
      int y = 300 + i * 120;
      lintyp(i);
      line(900, y, 1500, y);
      solid();
      messag(names[i], 200, y - 15);
    }

    // Own patterns: lengths in plot units (0.1 mm), drawn and blank in turn.
    myline(own1, 4);
    line(900, 1300, 1500, 1300);
    myline(own2, 6);
    line(900, 1420, 1500, 1420);
    solid();
    messag("vertical", 200, 1735);
    messag("myline 60 15 5 15", 200, 1285);
    messag("myline 40 10 40 10 5 10", 200, 1405);

    // Vertical dashes, downwards and upwards.
    dash();
    line(900, 1550, 900, 1950);
    line(1000, 1950, 1000, 1550);
    chndsh();
    line(1100, 1550, 1100, 1950);

    // A circle of 180 segments and a sine of 400: the pattern keeps its phase.
    dashm();
    strtpt(2200 + 500, 650);
    for (int i = 1; i <= 180; i++) {
      double a = i * 2 * PI / 180;
      connpt(2200 + 500 * Math.cos(a), 650 - 500 * Math.sin(a));
    }
    chndot();
    strtpt(1700, 1600);
    for (int i = 1; i <= 400; i++) {
      double x = 1700 + i * 2.5;
      connpt(x, 1600 - 250 * Math.sin(i * 4 * PI / 400));
    }
    solid();
    messag("dashes run on across segments", 1700, 1950);
    zorfin();
  }
}
