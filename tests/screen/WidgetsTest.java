import static zorvel.Zorvel.*;

/**
 * Widgets from Java (run_widgets.sh). Faults it would catch: a Java callback called with
 * the JNIEnv of another thread (a crash on the screen thread), an exception thrown by one
 * crashing the program or left pending instead of giving warning 292, and itmncat's new
 * text not coming back as the method's result.
 */
public final class WidgetsTest {
  private WidgetsTest() {}

  private static int presses = 0;

  public static void onPress(int id) {
    presses++;
    System.out.println("press " + presses + ", button " + gwgbut(id));
    if (presses == 2) {
      throw new IllegalStateException("second press");
    }
  }

  private static void sh(String cmd) {
    try {
      new ProcessBuilder("sh", "-c", cmd).inheritIO().start().waitFor();
    } catch (Exception e) {
      System.out.println("driver failed: " + e);
    }
  }

  public static void main(String[] args) throws Exception {
    String s = itmncat("", 8, "a");
    s = itmncat(s, 8, "bc");
    System.out.println("itmncat [" + s + "] [" + itmncat(s, 5, "d") + "] " + itmcnt(s));
    if (args.length > 0) {
      return;
    }
    swgtit("wtest-J");
    swgsiz(300, 80);
    int ip = wgini("HORI");
    int press = wgpbut(ip, "Press");
    wgok(ip);
    swgcbk(press, "WidgetsTest.onPress");
    Thread driver = new Thread(() -> sh(
        "timeout 10 xdotool search --sync --onlyvisible --name '^wtest-J$' windowfocus --sync"
        + " mousemove --window %1 75 40 sleep 0.3 click 1 sleep 0.3 click 1 sleep 0.3"
        + " mousemove --window %1 225 40 sleep 0.3 click 1"));
    driver.start();
    wgfin();
    driver.join();
    System.out.println("after wgfin: " + presses + " presses");
  }
}
