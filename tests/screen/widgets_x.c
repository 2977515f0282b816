/* Widget windows driven by xdotool under a private X server (run_widgets.sh). Faults it
 * would catch: values the user changed not reaching the block (text, check button,
 * scale, list, table cell), callbacks missing, called for the wrong widget or through
 * the wrong kind, a setter from a callback not reaching the widget or coming back as an
 * event, a nested wgfin or a late widget that hangs instead of giving 224, unknown ids
 * not giving 223, values lost after wgfin, a Quit that does not end the program with
 * status 0, and itmcnt/itmncat miscounting or overflowing their buffer.
 *
 * Mode "nodisplay": without a display every routine gives one warning 222 and the
 * dialogs return their defaults, quickly. */
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "zorvel.h"

static int warnings[64];
static int nwarnings = 0;
static int events[64];
static int nevents = 0;
static int id_text, id_check, id_scale, id_list, id_press, id_table, id_click, id_entry;

static void on_message(int number, const char* line) {
  (void)line;
  if (nwarnings < 64) {
    warnings[nwarnings++] = number;
  }
}

static void show_warnings(const char* what) {
  int i;
  printf("%s warnings:", what);
  for (i = 0; i < nwarnings; ++i) {
    printf(" %d", warnings[i]);
  }
  printf("\n");
  nwarnings = 0;
}

static void record(int v) {
  if (nevents < 64) {
    events[nevents++] = v;
  }
}

static void show_events(const char* what) {
  int i;
  printf("%s events:", what);
  for (i = 0; i < nevents; ++i) {
    printf(" %d", events[i]);
  }
  printf("\n");
  nevents = 0;
}

/* Runs a step of the driver. Its exit status says little (xdotool fails on a window that
 * closes while it looks at it): the values the program reads tell what happened, and a
 * step that missed leaves a window open until the test's timeout. */
static void sh(const char* cmd) {
  int status = system(cmd);
  (void)status;
}

/* Each step finds its window (waiting for it to appear), puts the pointer inside it and
 * gives it the keyboard (there is no window manager to do so). */
#define FIND(title) \
  "timeout 10 xdotool search --sync --onlyvisible --name '^" title "$' sleep 0.3" \
  " mousemove --window %1 4 4 windowfocus %1 sleep 0.2"

/* Window A is driven at the places of its widgets in the default theme (no window manager:
 * the window lies at the top left). A click gives each widget the focus. */
#define AT(x, y) " mousemove --window %1 " #x " " #y " click 1 sleep 0.2"
static void* drive_a(void* arg) {
  (void)arg;
  sh(FIND("wtest-A") AT(125, 22) " key ctrl+a type hello");
  sh(FIND("wtest-A") " key Return" AT(18, 54) AT(145, 100) " key Right Right sleep 0.2" AT(40, 150));
  sh(FIND("wtest-A") AT(68, 202) AT(46, 241) " type 3.5");
  sh(FIND("wtest-A") " key Return sleep 0.2" AT(189, 202));
  return NULL;
}

static void* drive_b(void* arg) {
  (void)arg;
  /* A menu bar above two buttons side by side that fill the 300 x 80 window: "Click" on
   * the left, OK right. The menu opens below "Menu" (the window lies at 0, 0). */
  sh(FIND("wtest-B") " mousemove --window %1 20 10 sleep 0.3 click 1 sleep 0.5"
     " mousemove 40 40 sleep 0.3 click 1 sleep 0.5");
  sh(FIND("wtest-B") " mousemove --window %1 75 55 sleep 0.3 click 1"
     " sleep 0.3 mousemove --window %1 225 55 sleep 0.3 click 1");
  return NULL;
}

static void* drive_d(void* arg) {
  (void)arg;
  sh(FIND("wtest-D1") " sleep 0.3 key ctrl+a type typed");
  sh(FIND("wtest-D1") " key Return");
  sh(FIND("wtest-D2") " sleep 0.3 key Escape");
  sh(FIND("wtest-D3") " sleep 0.3 key Escape");
  return NULL;
}

static void* drive_c(void* arg) {
  (void)arg;
  sh(FIND("wtest-C") " mousemove --window %1 100 30 sleep 0.3 click 1");
  return NULL;
}

/* The callback of the push button, and through it (the first registered) of every widget
 * without one of its own. */
static void on_event(int id) {
  char buf[32];
  record(id);
  if (id != id_press) {
    return;
  }
  swgtxt(id_text, "from-cb");
  gwgtxt(id_text, buf, (int)sizeof buf);
  printf("in callback: text %s, scale %.1f\n", buf, gwgscl(id_scale));
  wgfin();          /* nested: 224, returns at once */
  wglab(1, "late"); /* the window is built: 224 */
  show_warnings("in callback");
}

static void on_value(int id, int value) {
  record(id);
  record(value);
}

static void on_cell(int id, int row, int col) {
  record(id);
  record(row * 10 + col);
}

static void on_click(int id) { record(id == id_click ? 1000 : id == id_entry ? 2000 : -1); }

static void lists(void) {
  char buf[12] = "";
  char small[4] = "ab";
  printf("itmcnt: %d %d %d\n", itmcnt(""), itmcnt("a"), itmcnt("a||b"));
  itmncat(buf, (int)sizeof buf, "one");
  itmncat(buf, (int)sizeof buf, "");
  itmncat(buf, (int)sizeof buf, "two");
  itmncat(buf, (int)sizeof buf, "x"); /* "one||two|x" needs 11 bytes: fits */
  itmncat(buf, (int)sizeof buf, "y"); /* would need 13: refused */
  itmncat(small, (int)sizeof small, "c"); /* "ab|c" needs 5: refused, "ab" kept */
  printf("itmncat: [%s] %d [%s]\n", buf, itmcnt(buf), small);
  show_warnings("lists");
}

static void no_display(void) {
  char buf[16];
  int ip = wgini("VERT");
  printf("wgini %d, wglab %d\n", ip, wglab(ip, "x"));
  wgfin();
  dwgtxt("label", "default", buf, (int)sizeof buf);
  printf("dwgtxt [%s], dwgbut %d, dwglis %d\n", buf, dwgbut("q", 1), dwglis("l", "a|b", 2));
  show_warnings("no display");
}

static void window_a(void) {
  pthread_t t;
  char buf[32];
  int ip, h;
  wglab(1, "early"); /* no wgini yet: 224 */
  swgtit("wtest-A");
  ip = wgini("VERT");
  id_text = wgtxt(ip, "abc");
  id_check = wgbut(ip, "check", 0);
  id_scale = wgscl(ip, "scale", 0.0, 10.0, 5.0, 1);
  id_list = wglis(ip, "red|green|blue", 1);
  h = wgbas(ip, "HORI");
  id_press = wgpbut(h, "Press");
  wgok(h);
  id_table = wgtbl(ip, 2, 2);
  swgtbf(id_table, 7.25, 2, 2, 2);
  swgcbk(id_press, on_event);
  swgcb3(id_scale, on_value);
  swgcb2(id_table, on_cell);
  wglab(id_text, "x"); /* a text field holds no widgets: 223 */
  show_warnings("before A");
  pthread_create(&t, NULL, drive_a, NULL);
  wgfin();
  pthread_join(t, NULL);
  show_events("A");
  gwgtxt(id_text, buf, (int)sizeof buf);
  printf("after A: text %s, check %d, scale %.1f, list %d, cells %.2f %.2f %.2f\n", buf,
         gwgbut(id_check), gwgscl(id_scale), gwglis(id_list), gwgtbf(id_table, 1, 1),
         gwgtbf(id_table, 1, 2), gwgtbf(id_table, 2, 2));
  wglab(ip, "late"); /* after wgfin: 224 */
  gwgbut(0);
  gwgbut(-1);
  gwgbut(99);
  gwgscl(id_text); /* not a scale: 223 */
  swglis(id_list, 4); /* no item 4: 2 */
  swglis(id_list, 3);
  printf("list set after A: %d\n", gwglis(id_list));
  show_warnings("after A");
}

static void window_b(void) {
  pthread_t t;
  int ip;
  swgtit("wtest-B");
  swgsiz(300, 80);
  ip = wgini("HORI");
  id_entry = wgapp(wgpop(ip, "Menu"), "Entry");
  id_click = wgpbut(ip, "Click");
  wgok(ip);
  swgcbk(id_click, on_click);
  swgcbk(id_entry, on_click);
  wgapp(ip, "x"); /* an entry outside a menu: 223 */
  pthread_create(&t, NULL, drive_b, NULL);
  wgfin();
  pthread_join(t, NULL);
  show_events("B");
  show_warnings("B");
}

/* Dialogs: OK with a typed text, then two cancelled ones giving their defaults. */
static void dialogs(void) {
  pthread_t t;
  char buf[16];
  int isel, yes;
  swgtit("wtest-D1");
  pthread_create(&t, NULL, drive_d, NULL);
  dwgtxt("Text:", "default", buf, (int)sizeof buf);
  swgtit("wtest-D2");
  isel = dwglis("Item:", "a|b|c", 3);
  swgtit("wtest-D3");
  yes = dwgbut("Sure?", 1);
  pthread_join(t, NULL);
  printf("dialogs: [%s] %d %d\n", buf, isel, yes);
  show_warnings("dialogs");
}

static void window_c(void) {
  pthread_t t;
  int ip;
  swgtit("wtest-C");
  swgsiz(200, 60);
  ip = wgini("HORI");
  wgquit(ip);
  pthread_create(&t, NULL, drive_c, NULL);
  printf("before Quit\n");
  fflush(stdout);
  wgfin();
  printf("after Quit: not reached\n");
}

int main(int argc, char** argv) {
  msgcbk(on_message, "ONLY");
  setvbuf(stdout, NULL, _IOLBF, 0);
  lists();
  if (argc > 1 && strcmp(argv[1], "nodisplay") == 0) {
    no_display();
    return 0;
  }
  window_a();
  window_b();
  dialogs();
  window_c();
  return 1;
}
