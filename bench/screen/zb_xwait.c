/* Times a plotting program's window from outside, on the X display of $DISPLAY: it starts
 * the program, finds the window by its title and watches the window's pixels (the DAMAGE
 * extension reports each change; the pixels are then read back, through MIT-SHM when the
 * server has it). The same watch serves every program, whatever it draws with, so that a
 * window counts as drawn only when its last pixel is on the screen.
 *
 * usage: zb_xwait [-s PREFIX | -c PREFIX] [-r WxH] [-q MS] [-w MS] [-t S] TITLE --
 *                 PROGRAM [ARG...]
 *   -s PREFIX  record: once the pixels have been still for the quiet time, write them to
 *              PREFIX.show.ppm; with -r resize, wait again and write PREFIX.resize.ppm
 *   -c PREFIX  compare: the window is drawn the moment its pixels equal PREFIX.show.ppm,
 *              and repainted after the resize when they equal PREFIX.resize.ppm
 *   -r WxH     resize the window to W x H pixels once it is drawn (and has been left alone
 *              for the settle time, so that the program has finished what follows its
 *              drawing)
 *   -q MS      quiet time of -s (default 1500)
 *   -w MS      settle time before the resize (default 500)
 *   -t S       give up after S seconds (default 60)
 * Without -s and -c the program is only started and waited for (and a window it leaves
 * is closed).
 *
 * Prints one line: "show exit resize cpu peak": seconds from the start until drawn, until
 * the program's process ended, and from the resize request until repainted; the
 * processor seconds (user + system) and the peak resident KiB of the program's process
 * (not of processes it starts); "-" for what did not happen. With -s the times are those
 * of the last change before the quiet time. At the end the window is closed as a window
 * manager closes it (WM_DELETE_WINDOW); a program that does not end then is ended with
 * its process group, and a window left over is removed with its X client.
 * Exit status: 0, 1 when something timed out or did not match, 2 for bad usage. */
#define _GNU_SOURCE
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <X11/extensions/Xdamage.h>
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ipc.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static double now(void) {
  struct timespec t;
  clock_gettime(CLOCK_MONOTONIC, &t);
  return (double)t.tv_sec + (double)t.tv_nsec * 1e-9;
}

/* Requests on a window that vanished fail; the watch notices that by itself. */
static int x_failed;
static int on_x_error(Display* d, XErrorEvent* e) {
  (void)d;
  (void)e;
  x_failed = 1;
  return 0;
}

/* The program ============================================================================= */

static pid_t child = -1;
static double t_start, t_exit = -1.0;
static struct rusage child_usage;

static void spawn(char** argv) {
  t_start = now();
  child = fork();
  if (child < 0) {
    perror("fork");
    exit(2);
  }
  if (child == 0) {
    const int null = open("/dev/null", O_RDONLY);
    setpgid(0, 0);
    if (null >= 0) {
      dup2(null, 0);
      close(null);
    }
    execvp(argv[0], argv);
    perror(argv[0]);
    _exit(127);
  }
  setpgid(child, child); /* also here: no race with the first kill */
}

/* Notes the program's end; true when it has ended. */
static int reaped(void) {
  int status;
  if (t_exit >= 0.0) {
    return 1;
  }
  if (wait4(child, &status, WNOHANG, &child_usage) == child) {
    t_exit = now();
    return 1;
  }
  return 0;
}

/* The window ============================================================================== */

static Display* dpy;
static Window win;
static int shm_ok, damage_event;
static Damage damage;
static XImage* image;
static XShmSegmentInfo shm;
static int img_w, img_h;

static int has_title(Window w, const char* title) {
  XTextProperty p;
  int hit = 0;
  if (XGetWMName(dpy, w, &p) && p.value != NULL) {
    hit = p.nitems == strlen(title) && memcmp(p.value, title, p.nitems) == 0;
    XFree(p.value);
  }
  return hit;
}

/* A viewable window titled `title` among the root's children and grandchildren (a
 * reparenting window manager puts the program's window one level down). */
static Window find_window(const char* title) {
  Window root, parent, *kids = NULL, found = 0;
  unsigned n = 0;
  if (!XQueryTree(dpy, DefaultRootWindow(dpy), &root, &parent, &kids, &n)) {
    return 0;
  }
  for (unsigned i = 0; i < n && found == 0; i++) {
    Window *sub = NULL, w = kids[i];
    unsigned m = 0;
    if (has_title(w, title)) {
      found = w;
    } else if (XQueryTree(dpy, w, &root, &parent, &sub, &m)) {
      for (unsigned j = 0; j < m && found == 0; j++) {
        if (has_title(sub[j], title)) {
          found = sub[j];
        }
      }
      if (sub != NULL) {
        XFree(sub);
      }
    }
  }
  if (kids != NULL) {
    XFree(kids);
  }
  if (found != 0) {
    XWindowAttributes a;
    x_failed = 0;
    if (!XGetWindowAttributes(dpy, found, &a) || x_failed || a.map_state != IsViewable) {
      found = 0;
    }
  }
  return found;
}

static void drop_image(void) {
  if (image == NULL) {
    return;
  }
  if (shm_ok) {
    XShmDetach(dpy, &shm);
    XSync(dpy, False);
    shmdt(shm.shmaddr);
  }
  XDestroyImage(image);
  image = NULL;
}

/* Reads the window's pixels into `image`; 0 when the window is gone or not viewable. */
static int grab(void) {
  XWindowAttributes a;
  x_failed = 0;
  if (!XGetWindowAttributes(dpy, win, &a) || x_failed || a.map_state != IsViewable) {
    return 0;
  }
  if (image != NULL && (a.width != img_w || a.height != img_h)) {
    drop_image();
  }
  img_w = a.width;
  img_h = a.height;
  if (!shm_ok) {
    if (image != NULL) {
      XDestroyImage(image);
    }
    image = XGetImage(dpy, win, 0, 0, (unsigned)img_w, (unsigned)img_h, AllPlanes, ZPixmap);
    XSync(dpy, False);
    return image != NULL && !x_failed;
  }
  if (image == NULL) {
    image = XShmCreateImage(dpy, a.visual, (unsigned)a.depth, ZPixmap, NULL, &shm, (unsigned)img_w,
                            (unsigned)img_h);
    if (image == NULL) {
      return 0;
    }
    shm.shmid =
        shmget(IPC_PRIVATE, (size_t)image->bytes_per_line * (size_t)img_h, IPC_CREAT | 0600);
    shm.shmaddr = image->data = shmat(shm.shmid, NULL, 0);
    shm.readOnly = False;
    x_failed = 0;
    XShmAttach(dpy, &shm);
    XSync(dpy, False);
    shmctl(shm.shmid, IPC_RMID, NULL); /* freed once both sides detach */
    if (x_failed) {
      /* A server on another machine: GetImage from now on. */
      shmdt(shm.shmaddr);
      image->data = NULL;
      XDestroyImage(image);
      image = NULL;
      shm_ok = 0;
      return grab();
    }
  }
  XShmGetImage(dpy, win, image, 0, 0, AllPlanes);
  XSync(dpy, False);
  return !x_failed;
}

/* The grabbed pixels as RGB rows. */
static unsigned char* rgb;
static size_t rgb_size;

static int to_rgb(void) {
  const size_t need = (size_t)img_w * (size_t)img_h * 3;
  if (image->bits_per_pixel != 32) {
    fprintf(stderr, "zb_xwait: %d bits per pixel are not handled\n", image->bits_per_pixel);
    exit(2);
  }
  if (need > rgb_size) {
    free(rgb);
    rgb = malloc(need);
    rgb_size = need;
    if (rgb == NULL) {
      exit(2);
    }
  }
  unsigned char* o = rgb;
  for (int j = 0; j < img_h; j++) {
    const uint32_t* row =
        (const uint32_t*)(image->data + (size_t)j * (size_t)image->bytes_per_line);
    for (int i = 0; i < img_w; i++) {
      const uint32_t v = row[i];
      *o++ = (unsigned char)(v >> 16);
      *o++ = (unsigned char)(v >> 8);
      *o++ = (unsigned char)v;
    }
  }
  return 1;
}

/* References ============================================================================== */

struct Ppm {
  int w, h;
  unsigned char* rgb;
};

static void write_ppm(const char* path) {
  FILE* f = fopen(path, "wb");
  if (f == NULL) {
    perror(path);
    exit(2);
  }
  fprintf(f, "P6\n%d %d\n255\n", img_w, img_h);
  fwrite(rgb, 3, (size_t)img_w * (size_t)img_h, f);
  if (fclose(f) != 0) {
    perror(path);
    exit(2);
  }
}

static struct Ppm read_ppm(const char* path) {
  struct Ppm p = {0, 0, NULL};
  int max = 0;
  FILE* f = fopen(path, "rb");
  if (f == NULL || fscanf(f, "P6 %d %d %d", &p.w, &p.h, &max) != 3 || fgetc(f) == EOF || p.w < 1 ||
      p.h < 1 || p.w > 20000 || p.h > 20000 || max != 255) {
    fprintf(stderr, "zb_xwait: %s is no reference of ours\n", path);
    exit(2);
  }
  const size_t n = (size_t)p.w * (size_t)p.h * 3;
  p.rgb = malloc(n);
  if (p.rgb == NULL || fread(p.rgb, 1, n, f) != n) {
    fprintf(stderr, "zb_xwait: %s is short\n", path);
    exit(2);
  }
  fclose(f);
  return p;
}

/* The watch =============================================================================== */

/* Waits until the pixels equal `ref` (compare) or, without `ref`, have been still for
 * `quiet` seconds (record); returns when they reached that state, or -1 after `deadline`
 * or when the window is gone. A change is looked for at every damage report and, should
 * one go astray, every kRecheck seconds. */
static const double kRecheck = 0.05;
static unsigned char* prev; /* record: the pixels read before */

static double watch(const char* title, const struct Ppm* ref, double quiet, double deadline) {
  const size_t cap = (size_t)10000 * 10000 * 3;
  double last_change = -1.0, last_grab = -1.0;
  size_t prev_size = 0;
  int dirty = 1;
  for (;;) {
    while (XPending(dpy) > 0) {
      XEvent ev;
      XNextEvent(dpy, &ev);
      if (ev.type == damage_event + XDamageNotify) {
        dirty = 1;
      } else if (ev.type == DestroyNotify && ev.xdestroywindow.window == win) {
        return -1.0;
      }
    }
    if (dirty || now() - last_grab >= kRecheck) {
      /* What was drawn before this moment is in the pixels read now. */
      const double t_seen = now();
      XDamageSubtract(dpy, damage, None, None);
      dirty = 0;
      last_grab = t_seen;
      if (!grab()) {
        if (find_window(title) == win) {
          /* Viewable, yet GetImage fails: the window reaches beyond the screen. */
          fprintf(stderr, "zb_xwait: the window cannot be read (is it partly off the screen?)\n");
          return -1.0;
        }
        if (t_exit >= 0.0 || reaped()) {
          return -1.0;
        }
        dirty = 1; /* not viewable yet */
      } else {
        const size_t n = (size_t)img_w * (size_t)img_h * 3;
        to_rgb();
        if (ref != NULL) {
          if (ref->w == img_w && ref->h == img_h && memcmp(ref->rgb, rgb, n) == 0) {
            return t_seen;
          }
        } else if (n != prev_size || memcmp(prev, rgb, n) != 0) {
          if (n > cap || (n != prev_size && (prev = realloc(prev, n)) == NULL)) {
            exit(2);
          }
          memcpy(prev, rgb, n);
          prev_size = n;
          last_change = t_seen;
        }
      }
    }
    if (ref == NULL && last_change >= 0.0 && now() - last_change >= quiet) {
      return last_change;
    }
    if (now() > deadline) {
      return -1.0;
    }
    struct pollfd p = {ConnectionNumber(dpy), POLLIN, 0};
    poll(&p, 1, 2);
    if (t_exit < 0.0) {
      reaped();
    }
  }
}

/* Closes the window as a window manager does and ends what is left of the program. */
static void finish(void) {
  if (win != 0) {
    XEvent ev;
    memset(&ev, 0, sizeof ev);
    ev.xclient.type = ClientMessage;
    ev.xclient.window = win;
    ev.xclient.message_type = XInternAtom(dpy, "WM_PROTOCOLS", False);
    ev.xclient.format = 32;
    ev.xclient.data.l[0] = (long)XInternAtom(dpy, "WM_DELETE_WINDOW", False);
    ev.xclient.data.l[1] = CurrentTime;
    x_failed = 0;
    XSendEvent(dpy, win, False, NoEventMask, &ev);
    XSync(dpy, False);
  }
  const double until = now() + 3.0;
  while (!reaped() && now() < until) {
    usleep(5000);
  }
  if (!reaped()) {
    kill(-child, SIGTERM);
    usleep(300000);
    if (!reaped()) {
      kill(-child, SIGKILL);
      wait4(child, NULL, 0, &child_usage);
      t_exit = now();
    }
  }
  /* A helper process of the program (gnuplot's window) may hold the window still. */
  if (win != 0) {
    const double gone = now() + 3.0;
    XWindowAttributes a;
    x_failed = 0;
    while (now() < gone && XGetWindowAttributes(dpy, win, &a) && !x_failed) {
      usleep(10000);
      XSync(dpy, False);
    }
    if (!x_failed) {
      XKillClient(dpy, win);
      XSync(dpy, False);
    }
  }
  /* Collect what the program left behind (ours as the subreaper); its group is not
   * signalled once the program is collected, as its number may be another's by then. */
  for (const double reap_until = now() + 1.0; now() < reap_until;) {
    const pid_t p = waitpid(-1, NULL, WNOHANG);
    if (p < 0 && errno == ECHILD) {
      break;
    }
    if (p <= 0) {
      usleep(5000);
    }
  }
}

static void put_time(double t) {
  if (t < 0.0) {
    printf(" -");
  } else {
    printf(" %.3f", t);
  }
}

int main(int argc, char** argv) {
  const char *record = NULL, *compare = NULL;
  int rw = 0, rh = 0, opt;
  double quiet = 1.5, settle = 0.5, timeout = 60.0;
  while ((opt = getopt(argc, argv, "+s:c:r:q:w:t:")) != -1) {
    switch (opt) {
      case 's':
        record = optarg;
        break;
      case 'c':
        compare = optarg;
        break;
      case 'r':
        if (sscanf(optarg, "%dx%d", &rw, &rh) != 2 || rw < 1 || rh < 1 || rw > 10000 ||
            rh > 10000) {
          fprintf(stderr, "zb_xwait: bad size %s\n", optarg);
          return 2;
        }
        break;
      case 'q':
        quiet = atof(optarg) / 1000.0;
        break;
      case 'w':
        settle = atof(optarg) / 1000.0;
        break;
      case 't':
        timeout = atof(optarg);
        break;
      default:
        return 2;
    }
  }
  if (optind + 2 >= argc || strcmp(argv[optind + 1], "--") != 0) {
    fprintf(stderr,
            "usage: zb_xwait [-s PREFIX | -c PREFIX] [-r WxH] [-q MS] [-w MS] [-t S] TITLE -- "
            "PROGRAM [ARG...]\n");
    return 2;
  }
  const char* title = argv[optind];
  char path[4096];
  struct Ppm show_ref = {0, 0, NULL}, resize_ref = {0, 0, NULL};
  if (compare != NULL) {
    snprintf(path, sizeof path, "%s.show.ppm", compare);
    show_ref = read_ppm(path);
    if (rw > 0) {
      snprintf(path, sizeof path, "%s.resize.ppm", compare);
      resize_ref = read_ppm(path);
    }
  }
  /* A busy server may refuse a connection for a moment. */
  for (int tries = 0; (dpy = XOpenDisplay(NULL)) == NULL && tries < 20; tries++) {
    usleep(50000);
  }
  if (dpy == NULL) {
    fprintf(stderr, "zb_xwait: cannot open the display\n");
    return 2;
  }
  XSetErrorHandler(on_x_error);
  int damage_error;
  if (!XDamageQueryExtension(dpy, &damage_event, &damage_error)) {
    fprintf(stderr, "zb_xwait: the display has no DAMAGE extension\n");
    return 2;
  }
  shm_ok = XShmQueryExtension(dpy);
  if (find_window(title) != 0) {
    fprintf(stderr, "zb_xwait: a window titled \"%s\" is open already\n", title);
    return 2;
  }
  signal(SIGPIPE, SIG_IGN);
  /* Processes the program leaves behind (gnuplot's window) become ours to collect. */
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  spawn(argv + optind + 2);
  const double deadline = t_start + timeout;
  int status = 0;
  double shown = -1.0, resized = -1.0;
  if (record == NULL && compare == NULL) {
    while (!reaped() && now() < deadline) {
      usleep(1000);
    }
    status = t_exit >= 0.0 ? 0 : 1;
    win = find_window(title); /* one that outlives the program is closed below */
  } else {
    /* The window may come from another process of the program, after it has ended. */
    while ((win = find_window(title)) == 0 && now() < deadline &&
           !(reaped() && now() - t_exit > 2.0)) {
      usleep(1000);
    }
  }
  if (win != 0 && (record != NULL || compare != NULL)) {
    XSelectInput(dpy, win, StructureNotifyMask);
    damage = XDamageCreate(dpy, win, XDamageReportNonEmpty);
    const double t = watch(title, compare != NULL ? &show_ref : NULL, quiet, deadline);
    shown = t >= 0.0 ? t - t_start : -1.0;
    if (shown >= 0.0 && record != NULL) {
      snprintf(path, sizeof path, "%s.show.ppm", record);
      write_ppm(path);
    }
    if (shown >= 0.0 && rw > 0) {
      for (const double until = now() + settle; now() < until;) {
        reaped();
        usleep(1000);
      }
      const double t_request = now();
      XResizeWindow(dpy, win, (unsigned)rw, (unsigned)rh);
      XFlush(dpy);
      const double r = watch(title, compare != NULL ? &resize_ref : NULL, quiet, now() + timeout);
      resized = r >= 0.0 ? r - t_request : -1.0;
      if (resized >= 0.0 && record != NULL) {
        snprintf(path, sizeof path, "%s.resize.ppm", record);
        write_ppm(path);
      }
      status = resized >= 0.0 ? 0 : 1;
    }
    status = shown >= 0.0 ? status : 1;
  } else if (record != NULL || compare != NULL) {
    fprintf(stderr, "zb_xwait: no window titled \"%s\"\n", title);
    status = 1;
  }
  const double ended = reaped() ? t_exit - t_start : -1.0; /* before it was told to */
  finish();
  put_time(shown);
  put_time(ended);
  put_time(resized);
  printf(" %.3f %ld\n",
         (double)child_usage.ru_utime.tv_sec + child_usage.ru_utime.tv_usec * 1e-6 +
             (double)child_usage.ru_stime.tv_sec + child_usage.ru_stime.tv_usec * 1e-6,
         child_usage.ru_maxrss);
  drop_image();
  XCloseDisplay(dpy);
  return status;
}
