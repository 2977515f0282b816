import static zorvel.Zorvel.*;

/** Strings of the real routines: UTF-8 file names and texts, nulls, file codes. */
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

    // Catches: null strings crashing the virtual machine or passing silently.
    System.out.println("== null strings");
    metafl(null);
    setfil(null);
    filopt(null, "SEPA");

    // Catches: file codes mapped to the wrong stream or a bad code passed on.
    System.out.println("== message units");
    unit(9);
    unit(0);
    metafl("off");
    unit(1);
    metafl("stdout");
    System.out.println("done");
  }
}
