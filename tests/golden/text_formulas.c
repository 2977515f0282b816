/* Golden scene of the formula mode: one formula of every kind of box (scripts, limits,
 * fractions, radicals, accents, delimiters, matrices, cases, macros) in a stroke font, an
 * outline font and the driver font, a rotated and a framed display formula, and text
 * around formulas, on one PostScript page. Catches any change in the placement of boxes,
 * rules and drawn signs. */
#include "zorvel.h"

int main(void) {
  static void (*const fonts[])(void) = {complx, helve, hwfont};
  static const char* const formulas[] = {
      "$$\\sum_{i=1}^{n} \\frac{(x_i-\\bar x)^2}{\\sigma^2}$$",
      "$\\int_0^\\infty e^{-\\alpha t}\\,dt = \\frac{1}{\\alpha}$",
      "$\\sqrt[3]{x^2+y^2} \\leq \\left(\\frac{a}{b}\\right)^{\\!2}$",
      "$\\hat{x}\\,\\vec{v}\\,\\tilde{n}\\,\\dot{q}\\,\\ddot{q}\\,\\overline{AB}$",
      "$\\begin{pmatrix} 1 & \\lambda \\\\ 0 & \\mu_2 \\end{pmatrix} \\ne \\R^2$",
      "$|x| = \\begin{cases} x & x \\geq 0 \\\\ -x & \\text{else} \\end{cases}$"};
  int i;
  int j;
  metafl("PS");
  setfil("text_formulas.ps");
  zorini();
  texmod("ON");
  texmac("R", "\\mathbf{R}");
  height(36);
  for (i = 0; i < 3; ++i) {
    fonts[i]();
    for (j = 0; j < 6; ++j) {
      messag(formulas[j], 80 + i * 620, 120 + j * 240);
    }
  }
  complx();
  texopt("DISP", "STYL");
  angle(30);
  messag("Rotated: $\\lim_{x\\to 0}\\frac{\\sin x}{x} = 1$", 300, 1850);
  angle(0);
  texopt("TEXT", "STYL");
  texopt("OFF", "ITAL");
  frmess(2);
  txtjus("CENT");
  messag("Mass $m = 3\\,\\mathrm{kg}$ and \\$5", 2000, 1900);
  zorfin();
  return 0;
}
