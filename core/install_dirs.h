#pragma once
// Where the library's installed data lives: the directory named by the environment
// variable ZORVEL, else <prefix>/share/zorvel beside the shared library that holds this
// code (so an installation can be moved as a whole); on Windows the installation
// directory of the registry value "Path" under SOFTWARE\Zorvel, else c:\zorvel.

#include <filesystem>

namespace zorvel {

// $ZORVEL, or empty when it is unset or empty.
std::filesystem::path env_directory();
// The installed data directory (see above), or empty when it cannot be known.
std::filesystem::path installed_data_directory();

}  // namespace zorvel
