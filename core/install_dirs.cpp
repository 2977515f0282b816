#include "core/install_dirs.h"

#include <cstdlib>

#include "core/platform.h"

namespace zorvel {

std::filesystem::path env_directory() {
  const char* dir = std::getenv("ZORVEL");
  return dir != nullptr && *dir != '\0' ? std::filesystem::path(dir) : std::filesystem::path{};
}

std::filesystem::path installed_data_directory() {
  if (std::filesystem::path sys = platform::system_install_directory(); !sys.empty()) {
    return sys;  // Windows: the data lies in the installation directory itself
  }
  const std::filesystem::path lib = platform::library_file();
  return lib.empty() ? lib : lib.parent_path().parent_path() / "share" / "zorvel";
}

}  // namespace zorvel
