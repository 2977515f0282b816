/* The instruction alphabet: exponents and indices, every {...} command, alphabet
 * switches, national letters, a text box with a background and a frame, and an axis
 * system whose XEXP labels are written with the multiplication sign and a raised
 * exponent. Written to text_instructions.ps. */
#include "gallery.h"
#include "zorvel.h"

static const char* const kRows[] = {
    "Exponents and indices: E = mc[2$, H]2$O, e[x[2$, x]i]j$",
    "{H1.6}Big{H1} and {H0.6}small{H1} height, {W1.6}wide{W1} and {W0.6}narrow{W1} width",
    "Colours of the table: {C250}red, {C145}green, {C40}blue{C} and back",
    "Fonts: {F7}gothic {F11}helve {F14}serif {F4}simplx {F}complx",
    "Raised {R0.4}by 0.4{R-0.4}, moved {M1.5}on by 1.5 heights and {M-0.25}back",
    "{T1}Tabs:{T2}first{T3}second{T4}third",
    "Symbols at text size: {S0} {S1} {S2} {S3} {S13} {S15} {S17}",
    "Codes: {N64} {N35} {N38}, times: 3{D}4 = 12, {{braces}",
    "{I}Slanted{I} upright, {U}underlined{U}, {O}overlined{O}, {U}{O}both{O}{U}",
    "Switches: @abgd$ (Greek), &ABC$ (script), #ABC$ (Russian)",
    "National letters: M!unchen, Gr!u!se, caf'e, r^ole, gar%con, ni~no, *a, /o",
};

int main(void) {
  static const int tabs[] = {100, 700, 1000, 1300};
  static const double xs[] = {0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
  static const double ys[] = {0.0, 1.1e5, 1.9e5, 3.2e5, 3.6e5, 4.5e5, 5.8e5};
  static const double fit[] = {0.0, 1.6e4, 6.4e4, 1.44e5, 2.56e5, 4.0e5, 5.76e5};
  char cbuf[2 * 40 + 1];
  int i;
  gallery_output("PS", "text_instructions.ps");
  filmod("DELE");
  zorini();
  complx();

  /* The line of the feature's request, with the default instruction characters. */
  height(50);
  mixalf();
  messag("E = mc[2$, H]2$O, {C3}red{C}, {S2} data", 300, 100);

  /* Every command, one per row. */
  height(36);
  settab(tabs, 4);
  setmix("@", "GREE");
  setmix("&", "SCRI");
  setmix("#", "RUSS");
  eushft("GERM", "!");
  eushft("ACUT", "'");
  eushft("CIRC", "^");
  eushft("CEDI", "%");
  eushft("TILD", "~");
  eushft("RING", "*");
  eushft("SLAS", "/");
  for (i = 0; i < 11; ++i) {
    messag(kRows[i], 100, 250 + i * 85);
  }

  /* A text box: background, margin and a frame around a formula. */
  txtbgd(intrgb(0.85, 0.92, 1.0));
  txtmar(12);
  frmess(2);
  height(44);
  messag("x[2$ + y[2$ = r[2$, a]1$ + a]2$", 100, 1250);
  txtbgd(-1);
  frmess(0);
  txtmar(-1);

  /* Raised scripts with other sizes: mixval. */
  mixval(0.5, "RAIS");
  mixval(0.5, "SIZE");
  height(36);
  messag("mixval: 10[-3$ and x]k$ at half size", 100, 1400);
  mixval(0.6, "RAIS");
  mixval(0.7, "SIZE");

  /* Rotated, with its box; and the device font of hwfont. */
  txtbgd(intrgb(1.0, 0.93, 0.8));
  angle(12);
  messag("Rotated: {U}a[n$ + b[n${U} at 12[o$", 150, 1750);
  angle(0);
  txtbgd(-1);
  hwfont();
  height(40);
  messag("Device font: E = mc[2$, H]2$O, {I}italic{I}, 3{D}4", 100, 1850);
  complx();

  /* Axes: XEXP labels on Y; names and the legend with instructions. */
  axspos(2050, 1900);
  axslen(800, 650);
  labels("XEXP", "Y");
  labdig(-1, "X");
  labdig(1, "Y");
  name("Time t in 10[3$ s", "X");
  name("Flux {I}F{I}]0$ in m[-2$s[-1$", "Y");
  titlin("XEXP labels", 1);
  legini(cbuf, 2, 40);
  legtit("Flux");
  leglin(cbuf, "measured {I}F{I}", 1);
  leglin(cbuf, "fit 1.6{D}10[4$ t[2$", 2);
  height(30);
  graf(0.0, 6.0, 0.0, 1.0, 0.0, 6.0e5, 0.0, 1.5e5);
  title();
  color("BLUE");
  curve(xs, ys, 7);
  color("RED");
  curve(xs, fit, 7);
  color("FORE");
  legend(cbuf, 8);
  endgrf();
  zorfin();
  return 0;
}
