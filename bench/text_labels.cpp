// Workload W3 of the peer comparison: 20,000 short labels ("0.000" .. "19.999") on one
// A4 landscape page, 100 columns by 200 rows, each centred on its cell, characters about
// 2 pt (0.7 mm) high, one text call per label, PostScript output.
//
// Usage: bench_text_labels MODE OUTFILE
//   MODE  zoralf   the default stroke font
//         complx   the complex stroke font (many more strokes per character)
//         helve    the filled outline font
//         hwfont   the PostScript driver font (one character command per character)
//         number   zoralf, the labels formatted by the library's number routine
//         mixalf   zoralf with the instruction alphabet on (plain labels: at most 1.1
//                  times the time of zoralf)

#include <cstdio>
#include <cstring>

#include "zorvel.h"

namespace {

constexpr int kLabels = 20000;
constexpr int kColumns = 100;
constexpr int kRows = 200;
constexpr double kPageWidth = 2970.0;   // DA4L in plot units
constexpr double kPageHeight = 2100.0;
constexpr int kHeight = 7;              // 0.7 mm

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s zoralf|complx|helve|hwfont|number|mixalf OUTFILE\n",
                 argv[0]);
    return 2;
  }
  const char* mode = argv[1];
  metafl("PS");
  setfil(argv[2]);
  filmod("DELE");
  zorini();
  // Labels at the right edge reach past the page (as in the peers' runs); their warnings
  // and the summary are not part of the workload.
  errmod("WARN", "OFF");
  errmod("PROT", "OFF");
  if (std::strcmp(mode, "complx") == 0) {
    complx();
  } else if (std::strcmp(mode, "helve") == 0) {
    helve();
  } else if (std::strcmp(mode, "hwfont") == 0) {
    hwfont();
  } else if (std::strcmp(mode, "mixalf") == 0) {
    mixalf();
  }
  const bool use_number = std::strcmp(mode, "number") == 0;
  height(kHeight);
  txtjus("CENT");
  txtjus("MIDD");
  char text[32];
  for (int i = 0; i < kLabels; ++i) {
    const int col = i % kColumns;
    const int row = i / kColumns;
    const int x = static_cast<int>((col + 0.5) * kPageWidth / kColumns);
    const int y = static_cast<int>((row + 0.5) * kPageHeight / kRows);
    if (use_number) {
      number(i * 0.001, 3, x, y);
    } else {
      std::snprintf(text, sizeof text, "%.3f", i * 0.001);
      messag(text, x, y);
    }
  }
  zorfin();
  return 0;
}
