#pragma once
// State of the charts: bar graphs, pie charts and the polar axis system. Each part keeps
// its settings in a struct of its own; zorini resets them to
// their defaults (curve_defaults).
// Fill patterns (shdpat, myptrn) belong to the pipeline (draw/), since every filled area
// uses them.

namespace zorvel {

// Bar graphs (bars, bartyp, barwth, bargrp, barclr, baropt, labpos "BAR").
struct BarState {
  int label_position = 0;  // labpos "BAR": 0 OUTS, 1 INSI, 2 CENT
};

// Pie charts (piegrf, pietyp, pieopt, pieang, pierad, pieexp, pieclr, labpos "PIE").
struct PieState {
  int label_position = 0;  // labpos "PIE": 0 INTE, 1 EXTE, 2 ALIG
};

// The polar axis system (grafp, polopt, polgrd).
struct PolarState {};

struct ChartState {
  BarState bars;
  PieState pie;
  PolarState polar;
};

}  // namespace zorvel
