#pragma once
// Life-cycle state of a plot: level, output device, plot file and its naming rules.

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "core/fixed_string.h"

namespace zorvel {

struct GlobalBlock;

// Longest plot or message file name; longer names are cut.
inline constexpr std::size_t kMaxFileName = 256;

struct FileCloser {
  void operator()(std::FILE* f) const { std::fclose(f); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

// A plot file kept in memory (memfil). While the plot is open, `data` and `size` are the
// buffer of open_memstream (malloc'ed, updated when the stream is flushed or closed);
// after zorfin the file is in `bytes` and the buffer is freed.
struct MemoryFile {
  bool next = false;              // memfil ON: the next plot's file goes to memory
  bool open = false;              // the open plot writes into the buffer
  bool kept = false;              // `bytes` holds the file of the last plot
  char* data = nullptr;
  std::size_t size = 0;
  std::string bytes;
};

struct CoreState {
  int level = 0;                  // 0 before zorini, 1 plot open, 2 in 2D axes, 3 in 3D axes
  int device = 0;                 // device code chosen by metafl; 0 = not chosen yet
  FixedString<4> device_key;      // metafl keyword, upper case, blank-padded ("Fileformat")
  bool metafl_called = false;     // a device was chosen explicitly

  int vectors = 0;                // pen-down points sent to the device ("Vectors")
  int nans = 0;                   // coordinates that were not numbers ("NaN")

  std::string plot_file;          // set by setfil or formed by zorini; at most 256 chars
  int file_name_state = 0;        // 0 default name, 1 set by setfil, 2 name taken over
  bool has_plot_file = false;     // the current plot writes a file
  bool metafile_deleted = false;  // metcnv "DELE" removed the metafile of the last plot
  MemoryFile memory;              // memfil, rbffil
  FileHandle plot_handle;         // open plot file; closed by zorfin
  bool file_watched = false;      // a regular plot file: zorfin checks that its name still
  std::uint64_t file_device = 0;  //   leads to this file (device and inode numbers)
  std::uint64_t file_inode = 0;
  int record_length = 80;         // line length of the text formats

  int file_mode = 0;              // filmod: 0 COUN, 1 DELE, 2 BREA, 3 VERS
  int version_separator = 0;      // filopt SEPA: 0 underscore, 1 hyphen, 2 none
  bool version_long = false;      // filopt NUMB: zero-pad the version number
  int version_digits = 4;         // filopt DIGI: 2..6
  int scaling_option = 0;         // filopt SCAL: 0 OFF, 1 PAGE (also ON), 2 VIEW

  int screen_mode = 4;            // scrmod: 0 ERAS, 1 NOER, 2 REVE, 4 AUTO (NORE stored as 0)
  int remembered_screen_mode = -1;  // first effective mode, -1 = never set
  int effective_screen_mode = 0;  // screen mode of the open plot, AUTO resolved

  int window_width = 0;           // screen window size in pixels, set by zorini
  int window_height = 0;
  bool window_size_set = false;   // the user chose a window size ...
  bool window_pos_set = false;    // ... and a position
  int user_window_width = 0;
  int user_window_height = 0;

  double pi = 3.1415927410125732;          // single-precision pi, widened
  double deg_to_rad = 0.01745329277777778;
  double tiny = 1e-35;                     // smallest significant magnitude
};

// Checks a name for a new output file against existing files as the file mode says
// (delete, refuse, or find the next free version) and replaces it by the name to use.
// False after warning 168, 169 or 170: no file may be opened.
bool resolve_file_name(GlobalBlock& g, std::string& name);

// Reversed screen mode of the open plot (black on white on paper devices).
bool screen_reversed(const GlobalBlock& g);

}  // namespace zorvel
