import static zorvel.Zorvel.*;

/**
 * Screen windows from Java: a click comes back from csrpt1 and csrpts in plot
 * coordinates, and the window callback runs (on the screen thread) while the plot waits.
 * run_java.sh clicks into the window titled "Java screen" with xdotool.
 */
public final class ScreenJava {
  private ScreenJava() {}

  static volatile int windowEvents = 0;

  public static void onWindow(int id, int nx, int ny, int nw, int nh) {
    if (nw == 600 && nh == 400) {
      windowEvents++;
    }
  }

  public static void main(String[] args) {
    metafl("XWND");
    winsiz(600, 400);
    wintit("Java screen");
    winmod("NONE");
    wincbk("ScreenJava.onWindow");
    zorini();
    int[] nx = new int[1];
    int[] ny = new int[1];
    csrpt1(nx, ny);
    // The click of run_java.sh at window pixel (150, 100); the page fills 600 x 400 at
    // min(600 / 2970, 400 / 2100) pixels per plot unit.
    double s = Math.min(600.0 / 2970.0, 400.0 / 2100.0);
    boolean ok = nx[0] == Math.round(150 / s) && ny[0] == Math.round(100 / s);
    System.out.println("csrpt1 " + (ok ? "ok" : "wrong: " + nx[0] + " " + ny[0]));
    int[] xs = new int[3];
    int[] ys = new int[3];
    int[] n = new int[1];
    int[] iret = new int[1];
    csrpts(xs, ys, 3, n, iret);
    System.out.println("csrpts " + (n[0] == 3 && iret[0] == 1 && xs[2] == nx[0] ? "ok" : "wrong: " + n[0] + " " + iret[0]));
    System.out.println("window callback " + (windowEvents > 0 ? "ok" : "not called"));
    zorfin();
  }
}
