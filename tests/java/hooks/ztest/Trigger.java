package ztest;

/**
 * Raises the library's callback events through the callbacks that the library stored
 * (test-only natives of the test libzorjava).
 */
public final class Trigger {
  private Trigger() {}

  /** A widget event of kind 1 (swgcbk), 2 (swgcb2) or 3 (swgcb3). */
  public static native void widget(int kind, int id, int a, int b, boolean onNewThread);

  /** A window event, raised on a new native thread. */
  public static native void window(int a, int b, int c, int d, int e);

  /** The sum of the surface function at x = 0 .. n-1, evaluated on a new native thread. */
  public static native double surface(int n, double y);

  /** Forgets every callback. */
  public static native void clear();
}
