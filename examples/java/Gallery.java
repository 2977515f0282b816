// The output of a gallery example, as examples/gallery.h chooses it for the C examples:
// the example's own PostScript device and file, or with ZORVEL_GALLERY_FORMAT=SVG, PDF,
// IPE, CGM, WMF, EMF, HPGL, GKSL or PNG that format, the file's extension .eps or .ps replaced. PNG pages are anti-aliased
// (unless ZORVEL_GALLERY_ANTIALIAS is OFF), dark on white paper, at 100 dots per inch. Not an example itself: the gallery's runner
// leaves it out.
import static zorvel.Zorvel.*;

final class Gallery {
  private Gallery() {}

  static void output(String device, String file) {
    String format = System.getenv("ZORVEL_GALLERY_FORMAT");
    String ext = null;
    boolean png = false;
    if (format != null && !format.isEmpty()) {
      if (format.equalsIgnoreCase("SVG")) {
        device = "SVG";
        ext = ".svg";
      } else if (format.equalsIgnoreCase("PDF")) {
        device = "PDF";
        ext = ".pdf";
      } else if (format.equalsIgnoreCase("IPE")) {
        device = "IPE";
        ext = ".ipe";
      } else if (format.equalsIgnoreCase("CGM")) {
        device = "CGM";
        ext = ".cgm";
      } else if (format.equalsIgnoreCase("WMF")) {
        device = "WMF";
        ext = ".wmf";
      } else if (format.equalsIgnoreCase("EMF")) {
        device = "EMF";
        ext = ".emf";
      } else if (format.equalsIgnoreCase("HPGL")) {
        device = "HPGL";
        ext = ".hpg";
      } else if (format.equalsIgnoreCase("GKSL")) {
        device = "GKSL";
        ext = ".met";
      } else if (format.equalsIgnoreCase("PNG")) {
        device = "PNG";
        ext = ".png";
        png = true;
      } else if (!format.equalsIgnoreCase("PS") && !format.equalsIgnoreCase("EPS")) {
        System.err.println("ZORVEL_GALLERY_FORMAT=" + format
            + " is none of SVG, PDF, IPE, CGM, WMF, EMF, HPGL, GKSL, PNG, PS, EPS: writing " + file);
      }
    }
    if (ext != null) {
      int dot = file.lastIndexOf('.');
      String old = dot < 0 ? "" : file.substring(dot);
      String stem = old.equals(".eps") || old.equals(".ps") ? file.substring(0, dot) : file;
      file = stem + ext;
    }
    metafl(device);
    if (device.equals("HPGL")) {
      String two = System.getenv("ZORVEL_GALLERY_HPGL2");
      hpmode(two != null && two.startsWith("1") ? "HPG2" : "HPGL");
    }
    setfil(file);
    if (png) {
      scrmod("REVERS");
      imgdpi(100);
      String smooth = System.getenv("ZORVEL_GALLERY_ANTIALIAS");
      if (smooth == null || !smooth.equalsIgnoreCase("OFF")) {
        imgopt("ON", "ANTI");
      }
    }
  }
}
