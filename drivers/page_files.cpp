#include "drivers/page_files.h"

#include <algorithm>

#include "core/format.h"
#include "core/platform.h"

namespace zorvel {
namespace {

// Longest version name that "COUN" numbering keeps, stem and number together.
constexpr std::size_t kVersionName = 8;

}  // namespace

bool is_regular_file(const std::string& name) {
  return !name.empty() && platform::file_status(name).regular;
}

FilePtr create_version(const std::string& plot_file, const DriverSetup::Versions& rules,
                       std::string& name) {
  const std::size_t slash = plot_file.find_last_of("/\\");
  const std::size_t dot = plot_file.rfind('.');
  const std::size_t ext_at = dot != std::string::npos && (slash == std::string::npos || dot > slash)
                                 ? dot
                                 : plot_file.size();
  const std::size_t dir_len = slash == std::string::npos ? 0 : slash + 1;
  const std::string base = plot_file.substr(dir_len, ext_at - dir_len);
  long limit = 1;
  for (int i = 0; i < std::clamp(rules.digits, 1, 9); ++i) {
    limit *= 10;
  }
  for (long v = 1; v < limit; ++v) {
    std::string number;
    char digits[24];
    number.assign(digits, format_int(digits, v));
    if (rules.zero_padded && static_cast<int>(number.size()) < rules.digits) {
      number.insert(0, static_cast<std::size_t>(rules.digits) - number.size(), '0');
    }
    std::string suffix;
    if (rules.separator != '\0') {
      suffix += rules.separator;
    }
    suffix += number;
    std::string stem = base;
    if (rules.short_names && stem.size() + suffix.size() > kVersionName) {
      const std::size_t keep =
          suffix.size() < kVersionName ? kVersionName - suffix.size() : 1;
      stem.resize(std::max<std::size_t>(1, std::min(stem.size(), keep)));
    }
    name = plot_file.substr(0, dir_len) + stem + suffix + plot_file.substr(ext_at);
    // "x": created only when no such file exists, so that two plots never share one.
    if (FilePtr f{platform::open_file(name, "wx")}) {
      return f;
    }
    if (!platform::file_status(name).exists) {
      return nullptr;  // not taken, yet not creatable: no later version would be either
    }
  }
  return nullptr;
}

void PageFiles::start(Sink* out, std::string_view plot_file, const DriverSetup::Versions& rules) {
  first_ = out;
  const std::string name(plot_file);
  plot_file_ = out != nullptr && is_regular_file(name) ? name : std::string();
  rules_ = rules;
}

bool PageFiles::next() {
  bool ok = close();
  page_sink_.reset();
  std::string name;
  page_file_ = create_version(plot_file_, rules_, name);
  ok = ok && page_file_ != nullptr;
  page_sink_ = std::make_unique<FileSink>(page_file_.get());
  return ok;
}

bool PageFiles::close() {
  return !page_file_ || std::fclose(page_file_.release()) == 0;
}

}  // namespace zorvel
