// The scene of scene.c from Java. Usage: java Scene DEVICE FILE
import static zorvel.Zorvel.*;

public final class Scene {
  public static void main(String[] args) {
    double[] x = new double[41], y1 = new double[41], y2 = new double[41];
    for (int i = 0; i < 41; ++i) {
      x[i] = i / 4.0;
      y1[i] = (x[i] * (10.0 - x[i])) / 12.5 - 1.0;
      y2[i] = ((i * 7) % 11) / 10.0 - 0.5;
    }
    byte[] cbuf = new byte[2 * 24 + 1];
    metafl(args[0]);
    setfil(args[1]);
    setpag("DA4L");
    zorini();
    legini(cbuf, 2, 24);
    complx();
    titlin("One figure, five languages", 1);
    name("Distance x", "X");
    name("Value y", "Y");
    labdig(1, "X");
    graf(0.0, 10.0, 0.0, 2.0, -1.0, 1.0, -1.0, 0.5);
    title();
    color("RED");
    linwid(3);
    curve(x, y1, 41);
    color("BLUE");
    incmrk(-1);
    marker(15);
    curve(x, y2, 41);
    color("FORE");
    leglin(cbuf, "parabola", 1);
    leglin(cbuf, "scattered points", 2);
    legend(new String(cbuf, 0, 2 * 24, java.nio.charset.StandardCharsets.ISO_8859_1), 7);
    endgrf();
    zorfin();
  }
}
