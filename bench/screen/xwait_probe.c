/* A window whose timing is known, for test_xwait.sh: it appears white at once, shows its
 * final picture (a black bar across the middle) only SHOW ms after the start, and after a
 * resize repaints the bar at the new size REPAINT ms after the size changed (until then
 * the window shows its white background). It ends when the window is closed
 * (WM_DELETE_WINDOW).
 * usage: xwait_probe TITLE SHOW REPAINT */
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

static void pause_ms(int ms) {
  struct timespec t = {ms / 1000, (long)(ms % 1000) * 1000000L};
  nanosleep(&t, NULL);
}

static void paint(Display* d, Window w, GC gc, int width, int height) {
  XSetForeground(d, gc, WhitePixel(d, DefaultScreen(d)));
  XFillRectangle(d, w, gc, 0, 0, (unsigned)width, (unsigned)height);
  XSetForeground(d, gc, BlackPixel(d, DefaultScreen(d)));
  XFillRectangle(d, w, gc, width / 8, height * 3 / 8, (unsigned)(width * 3 / 4),
                 (unsigned)(height / 4));
  XSync(d, False);
}

int main(int argc, char** argv) {
  if (argc < 4) {
    fprintf(stderr, "usage: xwait_probe TITLE SHOW REPAINT\n");
    return 2;
  }
  const int show = atoi(argv[2]);
  const int repaint = atoi(argv[3]);
  Display* d = XOpenDisplay(NULL);
  if (d == NULL) {
    return 2;
  }
  const int s = DefaultScreen(d);
  int width = 400;
  int height = 300;
  Window w = XCreateSimpleWindow(d, RootWindow(d, s), 0, 0, (unsigned)width, (unsigned)height, 0,
                                 BlackPixel(d, s), WhitePixel(d, s));
  Atom del = XInternAtom(d, "WM_DELETE_WINDOW", False);
  XStoreName(d, w, argv[1]);
  XSetWMProtocols(d, w, &del, 1);
  XSelectInput(d, w, StructureNotifyMask);
  XMapWindow(d, w);
  GC gc = XCreateGC(d, w, 0, NULL);
  XSync(d, False);
  pause_ms(show);
  paint(d, w, gc, width, height);
  for (;;) {
    XEvent ev;
    XNextEvent(d, &ev);
    if (ev.type == ConfigureNotify &&
        (ev.xconfigure.width != width || ev.xconfigure.height != height)) {
      width = ev.xconfigure.width;
      height = ev.xconfigure.height;
      pause_ms(repaint);
      paint(d, w, gc, width, height);
    } else if (ev.type == ClientMessage && (Atom)ev.xclient.data.l[0] == del) {
      break;
    }
  }
  XCloseDisplay(d);
  return 0;
}
