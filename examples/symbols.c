/* The symbol chart, "symbol_chart.eps": the 24 built-in symbols, each at the heights 96,
 * 48 and 24 with its number below, and a symbol of one's own made with mysymb. Open
 * shapes 0..7 come filled as 12..19. */
#include "gallery.h"
#include "zorvel.h"

static const int kHeights[3] = {96, 48, 24};

/* One column of the chart: symbol n at the three heights, its number below. */
static void column(int n, int x, int y) {
  int i;
  const int ys[3] = {y, y + 105, y + 165};
  for (i = 0; i < 3; ++i) {
    hsymbl(kHeights[i]);
    symbol(n, x, ys[i]);
  }
  number(n, -1, x, y + 205);
}

int main(void) {
  /* An arrow pointing up, in units of the symbol height, centred at 0. */
  static const double ax[7] = {0.0, 0.5, 0.16, 0.16, -0.16, -0.16, -0.5};
  static const double ay[7] = {0.5, 0.0, 0.0, -0.5, -0.5, 0.0, 0.0};
  int n;
  gallery_output("EPS", "symbol_chart.eps");
  page(2600, 1150);
  pagmod("NONE");
  filmod("DELE");
  zorini();
  helve();

  height(44);
  messag("Zorvel symbols", 100, 40);

  txtjus("CENT");
  height(30);
  for (n = 0; n < 24; ++n) {
    column(n, 200 + (n % 12) * 200, 190 + (n / 12) * 330);
  }

  mysymb(ax, ay, 7, 24, 1);
  column(24, 200, 850);
  txtjus("LEFT");
  messag("mysymb: a filled arrow", 300, 1045);

  zorfin();
  return 0;
}
