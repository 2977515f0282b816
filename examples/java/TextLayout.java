// Rotated and justified text: a fan of rotated strings around a centre, the nine
// justification points of txtjus marked with a cross, slanted, stretched, fixed-pitch
// and framed texts, and texts continued with messag(..., 999, 999). Written to
// text_layout.ps. The Java twin of examples/text_layout.c.
import static zorvel.Zorvel.*;

public final class TextLayout {
  private TextLayout() {}

  static void cross(int x, int y) {
    line(x - 20, y, x + 20, y);
    line(x, y - 20, x, y + 20);
  }

  public static void main(String[] args) {
    String[] horiz = {"LEFT", "CENT", "RIGH"};
    String[] vert = {"TOP", "MIDD", "BOTT"};
    Gallery.output("PS", "text_layout.ps");
    filmod("DELE");
    zorini();
    complx();

    // A fan: every 30 degrees, left-justified at the centre.
    height(40);
    for (int i = 0; i < 12; ++i) {
      angle(i * 30);
      messag("  Angle text", 500, 600);
    }
    angle(0);
    cross(500, 600);

    // Justification: each string's justification point on its cross.
    height(36);
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) {
        final int x = 1300 + i * 550;
        final int y = 200 + j * 150;
        txtjus(horiz[i]);
        txtjus(vert[j]);
        cross(x, y);
        messag("Justified", x, y);
      }
    }
    txtjus("LEFT");
    txtjus("TOP");

    // Justification with an angle: centred and rotated by 45 degrees.
    txtjus("CENT");
    txtjus("MIDD");
    angle(45);
    cross(2500, 1500);
    messag("Centred at 45 degrees", 2500, 1500);
    angle(0);
    txtjus("LEFT");
    txtjus("TOP");

    // Slant, width factor, fixed pitch, spacing, a frame.
    height(44);
    chaang(20.0);
    messag("Slanted by 20 degrees", 1300, 700);
    chaang(0.0);
    chawth(1.6);
    messag("Wide characters", 1300, 800);
    chawth(0.6);
    messag("Narrow characters", 1300, 900);
    chawth(1.0);
    chaspc(0.3);
    simplx();
    frmess(2);
    messag("Spaced and framed", 1300, 1150);
    frmess(0);
    chaspc(0.0);

    // Continuation: strings and a number run on, one of them in another height.
    complx();
    height(40);
    messag("Continued", 200, 1400);
    height(60);
    messag(" text", 999, 999);
    height(40);
    messag(" (pi ~", 999, 999);  // trailing blanks are dropped: the number follows
    number(3.14159, 3, 999, 999);
    messag(")", 999, 999);

    // Italic: synthetic (simplx) and designed (complx).
    simplx();
    basalf("ITAL");
    messag("simplx italic: slanted standard letters", 200, 1600);
    complx();
    messag("complx italic: its own letters", 200, 1700);
    basalf("STAN");

    // Outline fonts, filled.
    helve();
    height(70);
    messag("helve outline", 200, 1850);
    serif();
    messag("serif outline", 1300, 1850);

    // Fixed pitch (it stays on for the rest of the plot).
    complx();
    height(44);
    fixspc(1.0);
    messag("Fixed pitch: iiii WWWW", 1300, 1000);
    zorfin();
  }
}
