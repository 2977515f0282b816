// One page in every raster format, and the raster page in memory:
//   raster_page.tif .img .png .ppm .bmp .gif   the page by the devices TIFF, IMAG, PNG,
//                                              PPM, BMP and GIF (anti-aliased)
//   raster_exact.png                           the same page without anti-aliasing
//   raster_memory.png                          the virtual bitmap (VIRT): the page read
//                                              pixel by pixel, marked, and copied out as
//                                              a PNG in memory
//   raster_image.ps                            the virtual bitmap as a PostScript image
// The raw image (.img) holds the width and height as 32-bit big-endian integers, then
// the RGB rows from the top. The Java twin of examples/raster_formats.c.
import static zorvel.Zorvel.*;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.util.Locale;

public final class RasterFormats {
  private RasterFormats() {}

  // The text of a legend buffer up to its terminating zero.
  private static String text(byte[] cbuf) {
    int n = 0;
    while (n < cbuf.length && cbuf[n] != 0) {
      n++;
    }
    return new String(cbuf, 0, n, StandardCharsets.UTF_8);
  }

  private static void drawPage() {
    double[] x = new double[301];
    double[] y1 = new double[301];
    double[] y2 = new double[301];
    byte[] cbuf = new byte[2 * 16 + 1];
    for (int i = 0; i <= 300; i++) {
      x[i] = i * 0.04;
      y1[i] = Math.exp(-x[i] / 5.0) * Math.cos(2.0 * x[i]);
      y2[i] = 0.6 * Math.sin(1.3 * x[i]) * Math.exp(-x[i] / 8.0);
    }
    helve();
    name("Time [s]", "X");
    name("Amplitude", "Y");
    titlin("Damped oscillations", 1);
    graf(0, 12, 0, 2, -1, 1, -1, 0.5);
    title();
    grid(1, 1);
    legini(cbuf, 2, 16);
    linwid(4);
    curve(x, y1, 301);
    curve(x, y2, 301);
    linwid(1);
    leglin(cbuf, "exp(-t/5) cos 2t", 1);
    leglin(cbuf, "damped sine", 2);
    legend(text(cbuf), 7);
    endgrf();
  }

  private static void oneFormat(String device, String file, boolean smooth) {
    metafl(device);
    setfil(file);
    filmod("DELE");
    scrmod("REVERS");
    zorini();
    errmod("PROT", "OFF");
    imgopt(smooth ? "ON" : "OFF", "ANTI"); // the setting stays for later plots
    drawPage();
    zorfin();
  }

  public static void main(String[] args) throws IOException {
    String[] devices = {"TIFF", "IMAG", "PNG", "PPM", "BMP", "GIF"};
    String[] files = {"raster_page.tif", "raster_page.img", "raster_page.png",
                      "raster_page.ppm", "raster_page.bmp", "raster_page.gif"};
    int[] nclr = {0};
    int[] nw = {0};
    int[] nh = {0};
    for (int i = 0; i < 6; i++) {
      oneFormat(devices[i], files[i], true);
    }
    oneFormat("PNG", "raster_exact.png", false);

    // The virtual bitmap: no file; the program reads and writes the pixels.
    metafl("VIRT");
    scrmod("REVERS");
    zorini();
    errmod("PROT", "OFF");
    imgopt("ON", "ANTI");
    drawPage();
    getimg(nw, nh);
    imgini();
    rpixel(nw[0] / 2, nh[0] / 2, nclr);
    for (int i = 0; i < nw[0]; i++) { // a red line across the middle
      wpixel(i, nh[0] / 2, intrgb(1.0, 0.0, 0.0));
    }
    imgfin();
    System.out.print(String.format(Locale.ROOT, "virtual bitmap %d x %d, centre pixel 0x%08X\n",
        nw[0], nh[0], nclr[0]));
    System.out.flush();
    int n = rbfpng(new byte[1], 0); // the size first: nothing is written into 0 bytes
    if (n > 0) {
      byte[] png = new byte[n];
      if (rbfpng(png, n) == n) {
        Files.write(Paths.get("raster_memory.png"), png);
      }
    }
    wimage("raster_image.ps");
    zorfin();
  }
}
