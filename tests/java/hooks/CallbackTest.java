import static zorvel.Zorvel.*;

import ztest.Trigger;

/** Callbacks from the library reach the right static methods, on any thread. */
public final class CallbackTest {
  private CallbackTest() {}

  static void say(String s) {
    System.out.println(s);
  }

  static String where() {
    Thread t = Thread.currentThread();
    return t.getName().equals("main") ? "main" : "'" + t.getName() + "' daemon=" + t.isDaemon();
  }

  public static void onButton(int id) {
    say("  onButton(" + id + ") on " + where());
  }

  public static void onOther(int id) {
    say("  onOther(" + id + ")");
  }

  public static void onTable(int id, int row, int column) {
    say("  onTable(" + id + ", " + row + ", " + column + ") on " + where());
  }

  public static void onValue(int id, int value) {
    say("  onValue(" + id + ", " + value + ")");
  }

  public static void onWindow(int a, int b, int c, int d, int e) {
    say("  onWindow(" + a + ", " + b + ", " + c + ", " + d + ", " + e + ") on " + where());
  }

  public static void onBoom(int id) {
    say("  onBoom(" + id + ") throws");
    throw new IllegalStateException("thrown by a callback");
  }

  public static float height(float x, float y) {
    return x * y;
  }

  public static void main(String[] args) {
    // Catches: a lookup by widget id that takes the wrong entry, a wrong signature for a
    // kind, and events on a native thread without its own JNIEnv (crash or no call).
    say("== lookup by id");
    swgcbk(10, "CallbackTest.onButton");
    swgcbk(11, "CallbackTest.onOther");
    swgcb2(12, "CallbackTest.onTable");
    swgcb3(13, "CallbackTest.onValue");
    Trigger.widget(1, 11, 0, 0, false);
    Trigger.widget(1, 10, 0, 0, false);
    Trigger.widget(1, 10, 0, 0, true);
    Trigger.widget(2, 12, 6, 7, true);
    Trigger.widget(3, 13, 99, 0, true);

    // An event of an unknown widget calls the first registration.
    Trigger.widget(1, 777, 0, 0, false);

    // Catches: bad names, missing classes or methods and wrong signatures that throw into
    // Java or crash instead of failing silently.
    say("== bad names fail silently");
    swgcbk(20, "NoSuchClass.onButton");
    swgcbk(21, "CallbackTest.noSuchMethod");
    swgcbk(22, "nodot");
    swgcbk(23, "CallbackTest.");
    swgcb3(24, "CallbackTest.onButton");
    swgcbk(25, null);
    for (int id = 20; id <= 24; id++) {
      Trigger.widget(id == 24 ? 3 : 1, id, 1, 0, id % 2 == 0);
    }
    say("  (nothing called)");

    // Catches: an exception of a callback left pending, which breaks the next call on
    // that thread.
    say("== a throwing callback");
    swgcbk(30, "CallbackTest.onBoom");
    Trigger.widget(1, 30, 0, 0, true);
    Trigger.widget(1, 10, 0, 0, false);

    // Catches: a registry that grows past 100 entries (the 101st would be found).
    say("== the registry holds 100 entries");
    Trigger.clear();
    swgcbk(1, "CallbackTest.onButton");
    for (int id = 2; id <= 100; id++) {
      swgcbk(id, "CallbackTest.onOther");
    }
    swgcbk(101, "CallbackTest.onOther");
    Trigger.widget(1, 100, 0, 0, false);
    Trigger.widget(1, 101, 0, 0, false);

    // Catches: the window callback with a wrong signature or not reaching Java from the
    // screen thread.
    say("== window callback");
    wincbk("CallbackTest.onWindow");
    Trigger.window(1, 2, 3, 4, 5);
    wincbk("CallbackTest.onButton");
    Trigger.window(1, 2, 3, 4, 5);
    say("  (wrong signature: nothing called)");

    // Catches: the user function of surfun called with wrong values, and a failed lookup
    // that replaces a working function.
    say("== surface function");
    say("  no function: " + Trigger.surface(3, 1.0));
    surfun("CallbackTest.height", 10, 1.0, 10, 1.0);
    say("  sum of x*2.5 for x < 4: " + Trigger.surface(4, 2.5));
    surfun("CallbackTest.missing", 10, 1.0, 10, 1.0);
    surfun("CallbackTest.onButton", 10, 1.0, 10, 1.0);
    say("  after failed lookups: " + Trigger.surface(4, 2.5));
    say("done");
  }
}
