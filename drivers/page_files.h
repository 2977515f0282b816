#pragma once
// Files of the second and later pages of single-page formats (SVG, raster images): each
// page is a file of its own, named by the plot file's versions.

#include <cstdio>
#include <memory>
#include <string>

#include "drivers/driver.h"

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

}  // namespace zorvel
