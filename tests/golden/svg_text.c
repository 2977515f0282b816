/* Golden scene of the SVG driver's text: the device font with markup characters, quotes,
 * accented letters (bytes of ISO-8859-1) and Greek (character references), turned,
 * stretched and in colour. Catches escaping, the text groups' font attributes and sizes,
 * and the placing of characters by their centres. */
#include "zorvel.h"

int main(void) {
  metafl("SVG");
  setfil("svg_text.svg");
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  hwfont();
  chacod("UTF8");
  height(48);
  messag("if (a < b && c > d) say \"yes\" or 'no'", 100, 150);
  messag("\xC3\x84rger \xC3\xBC" "ber Stra\xC3\x9F" "e \xC2\xA9 caf\xC3\xA9", 100, 300);
  basalf("GREE");
  messag("abgd ABGD", 100, 450);
  basalf("ITAL");
  messag("Italic, rotated", 1800, 1200);
  basalf("STAN");
  angle(90);
  messag("Up the page", 1500, 1800);
  angle(30);
  color("BLUE");
  messag("Turned by 30 degrees", 1800, 1800);
  angle(0);
  chawth(1.6);
  color("RED");
  messag("Stretched", 100, 600);
  zorfin();
  return 0;
}
