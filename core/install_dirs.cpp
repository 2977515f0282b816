#include "core/install_dirs.h"

#include <dlfcn.h>

#include <cstdlib>

namespace zorvel {
namespace {

// The directory of the shared library holding this code.
std::filesystem::path library_directory() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&library_directory), &info) == 0 ||
      info.dli_fname == nullptr) {
    return {};
  }
  std::error_code ec;
  const std::filesystem::path p = std::filesystem::canonical(info.dli_fname, ec);
  return ec ? std::filesystem::path{} : p.parent_path();
}

}  // namespace

std::filesystem::path env_directory() {
  const char* dir = std::getenv("ZORVEL");
  return dir != nullptr && *dir != '\0' ? std::filesystem::path(dir) : std::filesystem::path{};
}

std::filesystem::path installed_data_directory() {
  const std::filesystem::path lib = library_directory();
  return lib.empty() ? lib : lib.parent_path() / "share" / "zorvel";
}

}  // namespace zorvel
