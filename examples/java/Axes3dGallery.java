// 3D axis systems, one EPS file per page, each on an A4 landscape page:
//   axes3d_default.eps  the box from the default viewpoint with a mesh of lines over the
//                       surface z = sin(x) cos(y), axis names and a title
//   axes3d_above.eps    the same mesh straight from above: the x and y axes as in a map,
//                       the z axis seen end-on and left unlabelled
//   axes3d_ortho.eps    the orthographic projection from behind and to the left, with
//                       grid lines on the three back planes
//   axes3d_helix.eps    a helix drawn with a symbol at every fifth point and a second,
//                       dashed helix turning the other way
//   axes3d_planes.eps   a helix in the box and its three projections, each drawn as a 2D
//                       plot with its own axes on one of the back planes
// The Java twin of examples/axes3d_gallery.c.
import static zorvel.Zorvel.*;

public final class Axes3dGallery {
  private Axes3dGallery() {}

  private static final double PI = 3.14159265358979;
  private static final int HELIX = 241;

  // A new page in its own EPS file. The settings of the 3D view are kept from one plot to
  // the next: every page but the first, which shows the defaults, sets all of them.
  private static void start(String file) {
    Gallery.output("EPS", file);
    filmod("DELE");
    pagmod("NONE");
    zorini();
    helve();
  }

  // The box's side lengths, the projection and the view angle of a page.
  private static void box(double xlen, double ylen, double zlen, String projection,
                          double angle) {
    axis3d(xlen, ylen, zlen);
    proj3d(projection);
    vang3d(angle);
    vscl3d(1);
  }

  // The mesh of z = sin(x) cos(y) over -pi..pi: lines of constant x, then of constant y.
  private static void mesh() {
    for (int i = 0; i <= 16; i++) {
      double x = -PI + i * PI / 8;
      strt3d(x, -PI, Math.sin(x) * Math.cos(-PI));
      for (int j = 1; j <= 48; j++) {
        double y = -PI + j * PI / 24;
        conn3d(x, y, Math.sin(x) * Math.cos(y));
      }
    }
    for (int j = 0; j <= 16; j++) {
      double y = -PI + j * PI / 8;
      strt3d(-PI, y, Math.sin(-PI) * Math.cos(y));
      for (int i = 1; i <= 48; i++) {
        double x = -PI + i * PI / 24;
        conn3d(x, y, Math.sin(x) * Math.cos(y));
      }
    }
  }

  private static void meshAxes() {
    name("X axis", "X");
    name("Y axis", "Y");
    name("Z axis", "Z");
    graf3d(-3, 3, -3, 1, -3, 3, -3, 1, -1, 1, -1, 0.5);
  }

  private static void defaultPage() {
    start("axes3d_default.eps");
    titlin("z = sin(x) cos(y)", 1);
    titlin("From the default viewpoint", 3);
    meshAxes();
    title();
    color("BLUE");
    mesh();
    color("FORE");
    endgrf();
    zorfin();
  }

  private static void abovePage() {
    start("axes3d_above.eps");
    // Seen from close above, the top of the box fills the area: a flatter box and a wider
    // view angle leave room for the labels and the title.
    box(2, 2, 1, "PERS", 40);
    view3d(0, 0, 5, "ABS");
    titlin("Straight from above", 1);
    meshAxes();
    title();
    color("BLUE");
    mesh();
    color("FORE");
    endgrf();
    zorfin();
  }

  private static void orthoPage() {
    start("axes3d_ortho.eps");
    box(2, 2, 2, "ORTH", 28.07);
    view3d(-35, 25, 10, "ANGL");
    titlin("Orthographic projection with grid3d", 1);
    meshAxes();
    title();
    dot();
    grid3d(1, 1, "ALL");
    solid();
    color("RED");
    mesh();
    color("FORE");
    endgrf();
    zorfin();
  }

  private static void helix(double[] x, double[] y, double[] z, double turn) {
    for (int i = 0; i < HELIX; i++) {
      double t = i * 6 * PI / (HELIX - 1);
      x[i] = Math.cos(turn * t);
      y[i] = Math.sin(turn * t);
      z[i] = t / PI;
    }
  }

  private static void helixPage() {
    double[] x = new double[HELIX];
    double[] y = new double[HELIX];
    double[] z = new double[HELIX];
    start("axes3d_helix.eps");
    box(2, 2, 3, "PERS", 28.07);
    view3d(5, -6.5, 5, "ABS");
    name("X", "X");
    name("Y", "Y");
    name("Height", "Z");
    titlin("Two helices", 1);
    graf3d(-1, 1, -1, 0.5, -1, 1, -1, 0.5, 0, 6, 0, 1);
    title();
    color("BLUE");
    helix(x, y, z, 1.0);
    marker(21);
    hsymbl(20);
    incmrk(5);
    curv3d(x, y, z, HELIX);
    incmrk(0);
    color("RED");
    dash();
    helix(x, y, z, -0.5);
    curv3d(x, y, z, HELIX);
    solid();
    color("FORE");
    endgrf();
    zorfin();
  }

  private static void planesPage() {
    double[] x = new double[HELIX];
    double[] y = new double[HELIX];
    double[] z = new double[HELIX];
    start("axes3d_planes.eps");
    box(2, 2, 2, "PERS", 28.07);
    view3d(-140, 25, 7, "ANGL");
    name("X", "X");
    name("Y", "Y");
    name("Z", "Z");
    titlin("A helix and its projections onto the back planes", 1);
    graf3d(-1, 1, -1, 0.5, -1, 1, -1, 0.5, 0, 6, 0, 1);
    title();
    helix(x, y, z, 1.0);
    // Seen from the front left (negative x and y), the back planes are y = 1, x = 1 and
    // the floor z = 0. Each carries a 2D plot of the curve's projection. The whole page
    // maps onto the plane, so the plots' text is larger, and their axis systems leave room
    // for it on the page. On the plane x = 1, y runs from right to left as seen: its plot
    // has a descending axis.
    height(130);
    grfini(-1, 1, 0, 1, 1, 0, 1, 1, 6);
    axspos(650, 1650);
    axslen(2000, 1400);
    name("x", "X");
    name("z", "Y");
    graf(-1, 1, -1, 0.5, 0, 6, 0, 2);
    color("GREEN");
    curve(x, z, HELIX);
    color("FORE");
    endgrf();
    grffin();
    grfini(1, 1, 0, 1, -1, 0, 1, -1, 6);
    name("y", "X");
    graf(1, -1, 1, -0.5, 0, 6, 0, 2);
    color("MAGE");
    curve(y, z, HELIX);
    color("FORE");
    endgrf();
    grffin();
    grfini(-1, -1, 0, 1, -1, 0, 1, 1, 0);
    name("x", "X");
    name("y", "Y");
    graf(-1, 1, -1, 0.5, -1, 1, -1, 0.5);
    color("ORAN");
    curve(x, y, HELIX);
    color("FORE");
    endgrf();
    grffin();
    color("BLUE");
    curv3d(x, y, z, HELIX);
    color("FORE");
    endgrf();
    zorfin();
  }

  public static void main(String[] args) {
    defaultPage();
    abovePage();
    orthoPage();
    helixPage();
    planesPage();
  }
}
