#pragma once
// Files of the second and later pages of single-page formats (SVG, raster images): each
// page is a file of its own, named by the plot file's versions.

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "drivers/driver.h"
#include "drivers/sink.h"

namespace zorvel {

// Whether the name is an existing regular file (not a device or pipe, which are never
// versioned).
bool is_regular_file(const std::string& name);

struct FileCloser {
  void operator()(std::FILE* f) const { std::fclose(f); }
};
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

// Creates the file of the next page: the first free name of the plot file's versions by
// the naming rules of filmod and filopt ("COUN" cuts the stem so that stem and number
// keep within eight characters). Null when none is free or the file cannot be created;
// `name` then holds the last name tried.
FilePtr create_version(const std::string& plot_file, const DriverSetup::Versions& rules,
                       std::string& name);

// The files of a single-page format's pages: the first page goes to the plot file the core
// opened, each further one to a version of its own. Without a regular plot file (a device,
// a pipe, memory) there are no further files, and later pages draw over the first.
class PageFiles {
 public:
  // At open: the plot file's name and the naming rules; `out` the plot file's sink.
  void start(Sink* out, std::string_view plot_file, const DriverSetup::Versions& rules);
  // Whether further pages have files of their own.
  bool versioned() const { return !plot_file_.empty(); }
  // Where the current page goes (null when its file could not be created).
  Sink* current() const { return page_sink_ ? (page_file_ ? page_sink_.get() : nullptr) : first_; }
  // Closes the current page's version file and creates the next page's; false when one
  // of them failed (the next page is then drawn into nothing).
  bool next();
  // Closes the last version file; false when that failed.
  bool close();

 private:
  Sink* first_ = nullptr;
  std::string plot_file_;
  DriverSetup::Versions rules_;
  FilePtr page_file_;
  std::unique_ptr<FileSink> page_sink_;
};

}  // namespace zorvel
