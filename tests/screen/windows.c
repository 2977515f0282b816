/* Screen windows under a virtual X server: the window shows exactly the pixels of the PPM
   file of the same plot, also after the window is resized (drawn again from the display
   list); clicks, drags and keys sent through XTest come back from the cursor routines in
   plot and user coordinates; with the argument "threads", two threads keep two windows
   apart, each with its own window callback; with "embed", a plot made in a widget
   callback draws in the widget window's drawing area (wgdraw), equal to its PPM file.
   Exit 0 when all checks pass, 1 otherwise. */
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <math.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>
#include <zorvel.h>

static int failures = 0;
#define CHECK(cond, ...)                         \
  do {                                           \
    if (!(cond)) {                               \
      printf("FAIL line %d: ", __LINE__);        \
      printf(__VA_ARGS__);                       \
      printf("\n");                              \
      ++failures;                                \
    }                                            \
  } while (0)

static Display *dpy;

static void scene(void) {
  double x[200], y[200];
  int i;
  for (i = 0; i < 200; ++i) {
    x[i] = i / 20.0;
    y[i] = sin(x[i]) * 4 + 5;
  }
  name("X axis", "X");
  name("Y axis", "Y");
  titlin("A curve, a filled circle and text", 1);
  graf(0, 10, 0, 2, 0, 10, 0, 2);
  title();
  color("RED");
  linwid(8);
  curve(x, y, 200);
  color("BLUE");
  shdpat(16);
  {
    double xp[3] = {3.0, 7.0, 5.0}, yp[3] = {3.0, 3.0, 7.0};
    rlarea(xp, yp, 3);
  }
  color("FORE");
  messag("Text", 400, 400);
  endgrf();
}

/* The plot once to a PPM file of w x h pixels; its pixels, or NULL. */
static unsigned char *ppm_plot(const char *file, int w, int h) {
  FILE *f;
  int fw = 0, fh = 0, maxv = 0;
  unsigned char *px;
  metafl("PPM");
  setfil(file);
  filmod("DELE");
  winsiz(w, h);
  zorini();
  scene();
  zorfin();
  f = fopen(file, "rb");
  if (f == NULL || fscanf(f, "P6 %d %d %d", &fw, &fh, &maxv) != 3 || fw != w || fh != h) {
    if (f) fclose(f);
    return NULL;
  }
  fgetc(f);
  px = malloc((size_t)w * h * 3);
  if (fread(px, 3, (size_t)w * h, f) != (size_t)w * h) {
    free(px);
    px = NULL;
  }
  fclose(f);
  return px;
}

/* Pixels of the window that differ from the file's; -1 when the window's size differs. */
static long differing(Window win, const unsigned char *px, int w, int h) {
  XWindowAttributes a;
  XImage *im;
  long n = 0;
  int i, j;
  XSync(dpy, False);
  if (!XGetWindowAttributes(dpy, win, &a) || a.width != w || a.height != h) return -1;
  im = XGetImage(dpy, win, 0, 0, w, h, AllPlanes, ZPixmap);
  if (im == NULL) return -1;
  for (j = 0; j < h; ++j) {
    for (i = 0; i < w; ++i) {
      unsigned long p = XGetPixel(im, i, j);
      const unsigned char *q = px + ((size_t)j * w + i) * 3;
      if ((int)((p >> 16) & 255) != q[0] || (int)((p >> 8) & 255) != q[1] || (int)(p & 255) != q[2]) ++n;
    }
  }
  XDestroyImage(im);
  return n;
}

/* ---- cursor input through XTest, sent from a second thread while the plot waits ---- */

struct Gesture {
  Window win;
  int kind; /* 0 click, 1 two clicks and the right button, 2 drag, 3 key 'q', 4 close */
  int x0, y0, x1, y1;
  volatile int done;
};

static void move_to(Window win, int x, int y) {
  int rx, ry;
  Window child;
  XTranslateCoordinates(dpy, win, DefaultRootWindow(dpy), x, y, &rx, &ry, &child);
  XTestFakeMotionEvent(dpy, -1, rx, ry, 0);
}

static void button(int b, int down) { XTestFakeButtonEvent(dpy, (unsigned)b, down, 0); }

static void *gesture(void *arg) {
  struct Gesture *g = arg;
  /* Repeated until the waiting routine has it: the first may come before it waits. */
  while (!g->done) {
    usleep(400000);
    if (g->done) break;
    switch (g->kind) {
      case 0:
        move_to(g->win, g->x0, g->y0);
        button(1, True);
        button(1, False);
        break;
      case 1:
        move_to(g->win, g->x0, g->y0);
        button(1, True);
        button(1, False);
        move_to(g->win, g->x1, g->y1);
        button(1, True);
        button(1, False);
        button(3, True);
        button(3, False);
        break;
      case 2:
        move_to(g->win, g->x0, g->y0);
        button(1, True);
        XSync(dpy, False);
        move_to(g->win, (g->x0 + g->x1) / 2, (g->y0 + g->y1) / 2);
        move_to(g->win, g->x1, g->y1);
        button(1, False);
        break;
      case 4: { /* what a window manager sends when the user closes the window */
        XEvent ev;
        memset(&ev, 0, sizeof ev);
        ev.xclient.type = ClientMessage;
        ev.xclient.window = g->win;
        ev.xclient.message_type = XInternAtom(dpy, "WM_PROTOCOLS", False);
        ev.xclient.format = 32;
        ev.xclient.data.l[0] = (long)XInternAtom(dpy, "WM_DELETE_WINDOW", False);
        ev.xclient.data.l[1] = CurrentTime;
        XSendEvent(dpy, g->win, False, NoEventMask, &ev);
        break;
      }
      default:
        move_to(g->win, g->x0, g->y0);
        XTestFakeKeyEvent(dpy, XKeysymToKeycode(dpy, XK_q), True, 0);
        XTestFakeKeyEvent(dpy, XKeysymToKeycode(dpy, XK_q), False, 0);
        break;
    }
    XSync(dpy, False);
  }
  return NULL;
}

static pthread_t start_gesture(struct Gesture *g, int kind, int x0, int y0, int x1, int y1) {
  pthread_t t;
  g->win = (Window)getxid("WIND");
  g->kind = kind;
  g->x0 = x0;
  g->y0 = y0;
  g->x1 = x1;
  g->y1 = y1;
  g->done = 0;
  pthread_create(&t, NULL, gesture, g);
  return t;
}

static void end_gesture(struct Gesture *g, pthread_t t) {
  g->done = 1;
  pthread_join(t, NULL);
}

/* Window pixels to plot units on the default 853 x 603 window of an A4 landscape page. */
static int plot_unit(int pixel) {
  const double s = fmin(853.0 / 2970.0, 603.0 / 2100.0);
  return (int)lround(pixel / s);
}

static void check_cursor(void) {
  struct Gesture g;
  pthread_t t;
  int nx = 0, ny = 0, nx2 = 0, ny2 = 0, n = 0, iret = 0, key;
  int xs[8], ys[8];
  double xu = 0, yu = 0;

  metafl("XWND");
  winmod("NONE");
  zorini();
  graf(0, 10, 0, 2, 0, 10, 0, 2);

  t = start_gesture(&g, 0, 100, 200, 0, 0);
  csrpt1(&nx, &ny);
  end_gesture(&g, t);
  CHECK(nx == plot_unit(100) && ny == plot_unit(200), "csrpt1 %d %d", nx, ny);

  t = start_gesture(&g, 1, 300, 150, 500, 450);
  csrpts(xs, ys, 8, &n, &iret);
  end_gesture(&g, t);
  CHECK(n >= 2 && iret == 0 && xs[0] == plot_unit(300) && ys[1] == plot_unit(450),
        "csrpts n=%d iret=%d %d %d", n, iret, xs[0], ys[1]);

  t = start_gesture(&g, 2, 200, 100, 600, 500);
  csrrec(&nx, &ny, &nx2, &ny2);
  end_gesture(&g, t);
  CHECK(nx == plot_unit(200) && ny == plot_unit(100) && nx2 == plot_unit(600) && ny2 == plot_unit(500),
        "csrrec %d %d %d %d", nx, ny, nx2, ny2);

  t = start_gesture(&g, 2, 100, 100, 300, 200);
  csrmov(xs, ys, 8, &n, &iret);
  end_gesture(&g, t);
  CHECK(n >= 2 && iret == 0 && xs[0] == plot_unit(100) && xs[n - 1] == plot_unit(300) &&
            ys[n - 1] == plot_unit(200),
        "csrmov n=%d iret=%d", n, iret);

  move_to(g.win, 50, 60);
  XSync(dpy, False);
  {
    const int buttons = csrpos(&nx, &ny);
    CHECK(buttons == 0 && nx == plot_unit(50) && ny == plot_unit(60), "csrpos %d: %d %d", buttons, nx, ny);
  }

  t = start_gesture(&g, 3, 400, 300, 0, 0);
  key = csrkey();
  end_gesture(&g, t);
  CHECK(key == 'q', "csrkey %d", key);

  /* User coordinates: the axis system's corners come back as its limits. */
  {
    int px = (int)lround(plot_unit(0) + 0), py;
    (void)px;
    px = nxposn(10.0);
    py = nyposn(0.0);
    t = start_gesture(&g, 0, (int)lround(px * fmin(853.0 / 2970.0, 603.0 / 2100.0)),
                      (int)lround(py * fmin(853.0 / 2970.0, 603.0 / 2100.0)), 0, 0);
    csrusr(&xu, &yu);
    end_gesture(&g, t);
    CHECK(fabs(xu - 10.0) < 0.05 && fabs(yu) < 0.05, "csrusr %g %g", xu, yu);
  }
  endgrf();
  zorfin();

  /* pagorg("BOTT"): plot y grows upwards from the bottom. */
  metafl("XWND");
  zorini();
  pagorg("BOTT");
  t = start_gesture(&g, 0, 100, 200, 0, 0);
  csrpt1(&nx, &ny);
  end_gesture(&g, t);
  CHECK(nx == plot_unit(100) && ny == 2099 - plot_unit(200), "csrpt1 BOTT %d %d", nx, ny);
  pagorg("TOP");
  zorfin();

  /* A turned page (pagmod "PORT"): window x runs along plot y, window y against plot x. */
  metafl("XWND");
  pagmod("PORT");
  zorini();
  t = start_gesture(&g, 0, 100, 200, 0, 0);
  csrpt1(&nx, &ny);
  end_gesture(&g, t);
  {
    const double s = fmin(853.0 / 2100.0, 603.0 / 2970.0);
    CHECK(nx == (int)lround(2969 - 200 / s) && ny == (int)lround(100 / s), "csrpt1 PORT %d %d", nx, ny);
  }
  zorfin();
  pagmod("LAND");

  /* winmod "STAN": zorfin waits for a click; a window closed while a cursor routine
     waits ends the wait with -1, and the next zorfin does not wait for it. */
  metafl("XWND");
  winmod("STAN");
  zorini();
  t = start_gesture(&g, 0, 10, 10, 0, 0);
  zorfin();
  end_gesture(&g, t);
  zorini();
  t = start_gesture(&g, 4, 0, 0, 0, 0);
  csrpt1(&nx, &ny);
  end_gesture(&g, t);
  CHECK(nx == -1 && ny == -1, "csrpt1 in a closed window %d %d", nx, ny);
  zorfin();
  winmod("HOLD");
}

/* ---- two threads, two windows, each block's window callback ---- */

static int events_seen[2];

static void on_window(int id, int nx, int ny, int nw, int nh) {
  (void)id; (void)nx; (void)ny;
  if (nw == 300 && nh == 200) ++events_seen[0];
  if (nw == 400 && nh == 250) ++events_seen[1];
}

static Window thread_xid[2];

static void *thread_plot(void *arg) {
  const int k = *(int *)arg;
  metafl("XWND");
  winmod("HOLD");
  winsiz(k == 0 ? 300 : 400, k == 0 ? 200 : 250);
  wincbk(on_window);
  zorini();
  scene();
  zorfin();
  thread_xid[k] = (Window)getxid("WIND");
  return NULL;
}

static void check_threads(void) {
  pthread_t t[2];
  int k[2] = {0, 1};
  XWindowAttributes a, b;
  thrini(2);
  pthread_create(&t[0], NULL, thread_plot, &k[0]);
  pthread_create(&t[1], NULL, thread_plot, &k[1]);
  pthread_join(t[0], NULL);
  pthread_join(t[1], NULL);
  CHECK(thread_xid[0] != 0 && thread_xid[1] != 0 && thread_xid[0] != thread_xid[1], "two windows");
  XGetWindowAttributes(dpy, thread_xid[0], &a);
  XGetWindowAttributes(dpy, thread_xid[1], &b);
  CHECK(a.width == 300 && b.width == 400, "window sizes %d %d", a.width, b.width);
  CHECK(events_seen[0] > 0 && events_seen[1] > 0, "window callbacks %d %d", events_seen[0], events_seen[1]);
  thrfin();
}

/* ---- a plot in the drawing area of a widget window (wgdraw) ---- */

static volatile int embed_x = -1, embed_y, embed_w, embed_h, embed_done;
static int embed_ok;

static void embed_plot(int id) {
  int nx, ny, nw = 0, nh = 0;
  (void)id;
  metafl("XWND");
  winmod("HOLD");
  zorini();
  scene();
  zorfin();
  getwin(&nx, &ny, &nw, &nh);
  embed_w = nw;
  embed_h = nh;
  embed_y = ny;
  embed_x = nx;
}

struct EmbedDriver {
  Window top;
  unsigned char *ppm;
};

static void click_at(Window win, int x, int y) {
  move_to(win, x, y);
  button(1, True);
  button(1, False);
  XSync(dpy, False);
}

/* Clicks "Plot", compares the area with the PPM of the plot at the area's size, clicks
   "OK". The buttons are stacked at the window's left edge. */
static void *drive_embed(void *arg) {
  struct EmbedDriver *e = arg;
  int i;
  for (i = 0; i < 50 && embed_x < 0; ++i) {
    usleep(200000);
    if (embed_x < 0) click_at(e->top, 20, 12);
  }
  usleep(500000);
  if (embed_x >= 0 && e->ppm != NULL) {
    XImage *im = XGetImage(dpy, DefaultRootWindow(dpy), embed_x, embed_y, (unsigned)embed_w,
                           (unsigned)embed_h, AllPlanes, ZPixmap);
    long n = 0;
    int x, y;
    for (y = 0; im != NULL && y < embed_h; ++y) {
      for (x = 0; x < embed_w; ++x) {
        unsigned long p = XGetPixel(im, x, y);
        const unsigned char *q = e->ppm + ((size_t)y * embed_w + x) * 3;
        if ((int)((p >> 16) & 255) != q[0] || (int)((p >> 8) & 255) != q[1] || (int)(p & 255) != q[2]) ++n;
      }
    }
    if (im != NULL) XDestroyImage(im);
    embed_ok = im != NULL && n == 0;
    if (!embed_ok) printf("embedded plot at %d %d: %ld pixels differ\n", embed_x, embed_y, n);
  }
  for (i = 0; i < 25 && !embed_done; ++i) { /* OK below "Plot" until wgfin returns */
    click_at(e->top, 20, 50);
    usleep(200000);
  }
  return NULL;
}

static void check_embed(void) {
  struct EmbedDriver e;
  pthread_t t;
  int ip, iv, ib, ok, id;
  e.ppm = ppm_plot("screen_embed.ppm", 400, 300);
  ip = wgini("HORI");
  iv = wgbas(ip, "VERT");
  ib = wgpbut(iv, "Plot");
  ok = wgok(iv);
  id = wgdraw(ip);
  swgcbk(ib, embed_plot);
  (void)ok;
  (void)id;
  /* Without a window manager the widget window lies at the screen's corner. */
  e.top = DefaultRootWindow(dpy);
  pthread_create(&t, NULL, drive_embed, &e);
  wgfin();
  embed_done = 1;
  pthread_join(t, NULL);
  CHECK(embed_w == 400 && embed_h == 300, "drawing area %d x %d", embed_w, embed_h);
  CHECK(embed_ok, "the plot in the drawing area equals the PPM file");
  free(e.ppm);
}

int main(int argc, char **argv) {
  unsigned char *ppm, *ppm2;
  Window win;
  long d = 0;
  int i, nw = 0, nh = 0, nx = 0, ny = 0;
  dpy = XOpenDisplay(NULL);
  if (dpy == NULL) {
    printf("no display\n");
    return 77;
  }
  if (argc > 1 && strcmp(argv[1], "embed") == 0) {
    check_embed();
    printf("%d failures\n", failures);
    return failures == 0 ? 0 : 1;
  }
  if (argc > 1 && strcmp(argv[1], "threads") == 0) {
    check_threads(); /* thread mode comes before every other routine */
    printf("%d failures\n", failures);
    return failures == 0 ? 0 : 1;
  }

  /* The window equals the file, then after a resize the file of the new size. */
  ppm = ppm_plot("screen_windows.ppm", 853, 603);
  ppm2 = ppm_plot("screen_windows_2.ppm", 700, 400);
  CHECK(ppm != NULL && ppm2 != NULL, "PPM files");
  metafl("XWND");
  winmod("HOLD");
  winsiz(853, 603);
  zorini();
  scene();
  zorfin();
  win = (Window)getxid("WIND");
  CHECK(win != 0, "getxid");
  if (ppm != NULL && win != 0) {
    d = differing(win, ppm, 853, 603);
    CHECK(d == 0, "window and PPM: %ld pixels differ", d);
  }
  if (ppm2 != NULL && win != 0) {
    XResizeWindow(dpy, win, 700, 400);
    for (i = 0; i < 50; ++i) { /* until it is drawn again, at most 5 s */
      usleep(100000);
      d = differing(win, ppm2, 700, 400);
      if (d >= 0 && d < 700 * 400 / 1000) break;
    }
    printf("resized window and PPM: %ld of %d pixels differ\n", d, 700 * 400);
    CHECK(d >= 0 && d < 700 * 400 / 1000, "after the resize %ld pixels differ", d);
  }
  getwin(&nx, &ny, &nw, &nh);
  CHECK(nw == 700 && nh == 400, "getwin %d %d", nw, nh);
  getscr(&nw, &nh);
  CHECK(nw == 1280 && nh == 1024, "getscr %d %d", nw, nh);
  /* Numbered windows: "XWI1" is a window of its own; within its plot, opnwin(2) draws
     into a second window and selwin(1) returns to the first, which keeps its page. */
  if (ppm != NULL && win != 0) {
    Window w1, w2;
    metafl("XWI1");
    winmod("HOLD");
    winsiz(853, 603);
    zorini();
    scene();
    opnwin(2);
    w2 = (Window)getxid("WIND");
    color("RED");
    line(0, 0, 2970, 2100);
    selwin(1);
    w1 = (Window)getxid("WIND");
    zorfin();
    CHECK(w1 != win && w2 != w1 && w2 != 0, "numbered windows %lu %lu %lu", win, w1, w2);
    /* The windows lie on top of each other (no window manager places them). */
    XRaiseWindow(dpy, w1);
    for (i = 0; i < 50; ++i) {
      usleep(100000);
      if ((d = differing(w1, ppm, 853, 603)) == 0) break;
    }
    CHECK(d == 0, "window 1 after selwin: %ld pixels differ", d);
    XRaiseWindow(dpy, w2);
    for (i = 0; i < 50; ++i) {
      usleep(100000);
      if ((d = differing(w2, ppm, 853, 603)) > 10000) break;
    }
    d = differing(w2, ppm, 853, 603);
    CHECK(d > 10000, "window 2 holds the line, not the scene: %ld pixels differ", d);
  }
  free(ppm);
  free(ppm2);
  winsiz(853, 603);

  check_cursor();
  printf("%d failures\n", failures);
  return failures == 0 ? 0 : 1;
}
