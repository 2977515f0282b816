// The smallest plot from Java: choose a device and a file, start and end the plot.
// The Java twin of examples/first_plot.c.
import static zorvel.Zorvel.*;

public final class FirstPlot {
  private FirstPlot() {}

  public static void main(String[] args) {
    metafl("GKSL");
    setfil("first_plot.met");
    filmod("DELE");
    zorini();
    zorfin();
  }
}
