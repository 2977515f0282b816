// Line widths and caps, "line_widths.ps": widths from 1 to 80 plot units (0.1 mm) drawn
// by the PostScript interpreter, the same widths drawn as parallel strokes by the library
// (hardware line-width mode off), and the three line caps with thin guides at the true
// line ends. The Java twin of examples/line_widths.c.
import static zorvel.Zorvel.*;

public final class LineWidths {
  private LineWidths() {}

  public static void main(String[] args) {
    int[] widths = {1, 3, 6, 10, 20, 40, 80};
    String[] caps = {"CUT", "ROUN", "LONG"};
    Gallery.output("PS", "line_widths.ps");
    filmod("DELE");
    zorini();
    height(50);
    messag("Line widths and caps", 200, 120);
    height(30);
    messag("device widths", 500, 250);
    messag("parallel strokes", 1250, 250);

    for (int i = 0; i < 7; i++) {
      int y = 400 + i * 180;
      number(widths[i], -1, 200, y - 15);
      linwid(widths[i]);
      line(500, y, 1100, y);
      hwmode("OFF", "LINE");
      linwid(widths[i]);
      line(1250, y, 1850, y);
      hwmode("ON", "LINE");
      linwid(1);
    }

    // A bent line shows the joins of both kinds.
    linwid(60);
    strtpt(500, 1800);
    connpt(800, 1600);
    connpt(1100, 1800);
    hwmode("OFF", "LINE");
    linwid(60);
    strtpt(1250, 1800);
    connpt(1550, 1600);
    connpt(1850, 1800);
    hwmode("ON", "LINE");

    // Caps on thick lines; the red guides mark where the lines end.
    for (int i = 0; i < 3; i++) {
      int y = 500 + i * 300;
      linwid(80);
      lncap(caps[i]);
      color("FORE");
      line(2150, y, 2650, y);
      linwid(1);
      color("RED");
      line(2150, y - 80, 2150, y + 80);
      line(2650, y - 80, 2650, y + 80);
      color("FORE");
      messag(caps[i], 2150, y - 150);
    }
    lncap("LONG");
    zorfin();
  }
}
