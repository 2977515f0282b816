// Formulas: forty formulas in a grid (sums, integrals, fractions, roots, matrices, cases,
// accents, Greek letters, delimiters), each centred in its cell, and a framed formula in
// display style. Written to text_formulas.ps. The Java twin of examples/text_formulas.c.
import static zorvel.Zorvel.*;

public final class TextFormulas {
  private TextFormulas() {}

  static final String[] FORMULAS = {
    "$\\sum_{i=1}^{n} x_i^2$",
    "$$\\sum_{k=0}^{\\infty} \\frac{x^k}{k!}$$",
    "$$\\prod_{j=1}^{m} (1 + a_j)$$",
    "$\\int_0^1 f(x)\\,dx$",
    "$$\\int_{-\\infty}^{\\infty} e^{-x^2} dx = \\sqrt{\\pi}$$",
    "$\\oint_C \\vec{E} \\cdot d\\vec{l}$",
    "$\\frac{a}{b} + \\frac{c}{d}$",
    "$$\\frac{1}{1 + \\frac{1}{x}}$$",
    "$\\dfrac{\\partial u}{\\partial t}$",
    "$\\binom{n}{k} = \\frac{n!}{k!(n-k)!}$",
    "$\\sqrt{x^2 + y^2}$",
    "$\\sqrt[3]{1 + \\sqrt{2}}$",
    "$$x = \\frac{-b \\pm \\sqrt{b^2 - 4ac}}{2a}$$",
    "$\\lim_{x \\to 0} \\frac{\\sin x}{x} = 1$",
    "$$\\lim_{n \\to \\infty} \\left(1 + \\frac{1}{n}\\right)^n$$",
    "$\\max_{i} |a_i| \\leq \\|a\\|$",
    "$\\begin{matrix} a & b \\\\ c & d \\end{matrix}$",
    "$\\begin{pmatrix} 1 & 0 \\\\ 0 & 1 \\end{pmatrix}$",
    "$\\begin{bmatrix} x_{11} & x_{12} \\\\ x_{21} & x_{22} \\end{bmatrix}$",
    "$|x| = \\begin{cases} x & x \\geq 0 \\\\ -x & x < 0 \\end{cases}$",
    "$\\hat{x} + \\bar{y} + \\vec{v}$",
    "$\\dot{x} = \\ddot{y} - \\tilde{z}$",
    "$\\overline{z_1 z_2} = \\bar z_1 \\bar z_2$",
    "$\\underline{a + b}$",
    "$\\alpha + \\beta = \\gamma$",
    "$\\Gamma(\\nu) \\approx \\Delta\\Omega$",
    "$\\sigma^2 = \\frac{1}{N} \\sum (x_i - \\mu)^2$",
    "$e^{i\\pi} + 1 = 0$",
    "$\\left[ \\frac{a}{b} \\right]$",
    "$\\left\\{ x \\in A : x > 0 \\right\\}$",
    "$\\left\\langle \\psi | \\phi \\right\\rangle$",
    "$\\big( \\Big( \\bigg( \\Bigg($",
    "$\\nabla \\times \\vec{B} = \\mu_0 \\vec{J}$",
    "$\\forall x \\exists y: x \\neq y$",
    "$A \\subset B \\cup C$",
    "$a \\Rightarrow b \\rightarrow c$",
    "$\\sin^2\\theta + \\cos^2\\theta = 1$",
    "$\\log_2 n, \\; \\exp(x)$",
    "$\\mathbf{F} = m\\mathbf{a}, \\mathcal{L}$",
    "$f'(x) \\text{ for } x_1, \\ldots, x_n$",
  };

  public static void main(String[] args) {
    Gallery.output("PS", "text_formulas.ps");
    filmod("DELE");
    setpag("DA4L");
    zorini();
    complx();
    texmod("ON");

    height(50);
    txtjus("CENT");
    messag("Formulas", 1485, 60);

    // Four columns of ten formulas, each centred in its cell.
    height(30);
    for (int i = 0; i < 40; ++i) {
      final int col = i / 10;
      final int row = i % 10;
      final int x = 380 + col * 740;
      final int y = 190 + row * 160;
      txtjus("CENT");
      txtjus("MIDD");
      messag(FORMULAS[i], x, y);
    }

    // A framed display formula.
    txtjus("CENT");
    txtjus("MIDD");
    height(40);
    frmess(2);
    messag("$$s^2 = \\frac{1}{n-1} \\sum_{i=1}^{n} (x_i - \\bar x)^2$$", 1485, 1900);
    frmess(0);
    zorfin();
  }
}
