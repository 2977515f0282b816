import static zorvel.Zorvel.*;

/** Strings of the real routines: UTF-8 file names and texts, long texts. */
public final class StringsTest {
  private StringsTest() {}

  public static void main(String[] args) {
    // Catches: non-ASCII text reaching the library in modified UTF-8 (the emoji as two
    // 3-byte surrogates): the file name and the warning text must be real UTF-8.
    System.out.println("== non-ASCII strings");
    metafl("\u00dcn\u00ef");
    metafl("GKSL");
    setfil("gr\u00fc\u00dfe-\ud83d\ude00.met");
    zorini();
    zorfin();

    // Catches: long strings written into a fixed buffer (overflow) instead of one of the
    // size they need; the library's warning line cuts the text, not the binding.
    System.out.println("== a long string");
    metafl("\u00e9".repeat(20) + "x".repeat(300));

    System.out.println("done");
  }
}
