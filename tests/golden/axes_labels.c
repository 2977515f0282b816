/* Golden scene of the label types and axis options: four small axis systems on one
 * page. Upper left: FLOA labels with two decimals, LOG labels on a log axis, left
 * justified labels, name and title. Upper right: vertical TIME labels, EXP labels with
 * reversed ticks, coloured labels, line and name, and no frame. Lower left: MAP labels
 * with end labels, centred ticks and a right justified name. Lower right: user labels
 * (MYLA), integer labels without their first and last one, a right justified title. */
#include "zorvel.h"

int main(void) {
  metafl("PS");
  setfil("axes_labels.ps");
  zorini();
  height(28);
  axslen(1000, 600);

  /* FLOA with labdig, LOG on a log Y axis. */
  axspos(300, 850);
  labdig(2, "X");
  axsscl("LOG", "Y");
  labels("LOG", "Y");
  labjus("LEFT", "Y");
  namjus("LEFT", "X");
  name("Strain", "X");
  name("Rate", "Y");
  titjus("LEFT");
  titlin("FLOA and LOG", 1);
  graf(0, 0.5, 0, 0.1, -2, 2, -2, 1);
  title();
  endgrf();
  labdig(-2, "X");
  axsscl("LIN", "Y");
  labels("FLOA", "Y");
  labjus("AUTO", "Y");
  namjus("CENT", "X");

  /* TIME labels standing upright, EXP labels, reversed ticks, colours. */
  axspos(1750, 850);
  labels("TIME", "X");
  labtyp("VERT", "X");
  labels("EXP", "Y");
  ticpos("REVE", "Y");
  axclrs(intrgb(0.8, 0.0, 0.0), "LABE", "X");
  axclrs(intrgb(0.0, 0.0, 0.8), "LINE", "Y");
  frame(0); /* the frame would cover the coloured line */
  axclrs(intrgb(0.0, 0.5, 0.0), "NAME", "Y");
  name("Time", "X");
  name("Count", "Y");
  titjus("CENT");
  titlin("TIME and EXP", 1);
  graf(0, 21600, 0, 3600, 0, 4e4, 0, 1e4);
  title();
  endgrf();
  labtyp("HORI", "X");
  ticpos("LABE", "Y");
  axclrs(-1, "ALL", "XY");
  frame(1);

  /* MAP labels, forced end labels, centred ticks, a right justified name. */
  axspos(300, 1850);
  labels("MAP", "XY");
  axends("ENDS", "X");
  ticpos("CENT", "X");
  namjus("RIGH", "Y");
  name("Longitude", "X");
  name("Latitude", "Y");
  titlin("MAP", 1);
  graf(-180, 180, -120, 60, -60, 60, -60, 30);
  title();
  grid(1, 1);
  endgrf();
  labels("FLOA", "XY");
  axends("NONE", "X");
  ticpos("LABE", "X");
  namjus("CENT", "Y");

  /* User labels and integer labels without their ends. */
  axspos(1750, 1850);
  labels("MYLA", "X");
  mylab("Mon", 1, "X");
  mylab("Tue", 2, "X");
  mylab("Wed", 3, "X");
  mylab("Thu", 4, "X");
  mylab("Fri", 5, "X");
  labdig(-1, "Y");
  axends("NOEN", "Y");
  name("Day", "X");
  name("Orders", "Y");
  titjus("RIGH");
  titlin("MYLA", 1);
  graf(0.5, 5.5, 1, 1, 0, 500, 0, 100);
  title();
  endgrf();
  zorfin();
  return 0;
}
