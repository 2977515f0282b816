#pragma once
// What differs between the systems the library runs on, in one place: files by UTF-8
// names, file identity, broken-down time, a stream whose bytes stay in memory, and where
// the library itself lies. POSIX and Windows (mingw-w64) implement it in platform.cpp.
//
// On Windows text files are opened in text mode, so the lines of the text formats
// (PostScript, SVG, ...) end in CR LF there; binary formats are byte for byte the same.

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>

namespace zorvel::platform {

// fopen with a UTF-8 file name; mode as for fopen, with "x" (fail when the file exists)
// after "w".
std::FILE* open_file(const std::string& path, const char* mode);

struct FileStatus {
  bool exists = false;
  bool regular = false;        // a regular file (not a device, pipe or directory)
  std::uint64_t device = 0;    // identity of the file, where the system has one
  std::uint64_t inode = 0;
};
FileStatus file_status(const std::string& path);
FileStatus stream_status(std::FILE* f);

// t as local or UTC time; false when it cannot be converted.
bool broken_down_time(std::time_t t, bool utc, std::tm& out);

// A stream whose bytes end up in *data (malloc'ed) and *size: call settle_memory_stream
// before closing it, then the bytes are there after the close.
std::FILE* open_memory_stream(char** data, std::size_t* size);
void settle_memory_stream(std::FILE* f, char** data, std::size_t* size);

// The file of the library holding this code (empty when unknown).
std::filesystem::path library_file();
// The installation directory named by the system (Windows: the registry value "Path"
// under SOFTWARE\Zorvel, else c:\zorvel); empty on POSIX, where data lies beside the
// library.
std::filesystem::path system_install_directory();

// A symbol of a library loaded at run time (dlopen, LoadLibraryW); null when the file or
// the symbol cannot be found. The library stays loaded for the rest of the process.
void* library_symbol(const std::filesystem::path& file, const char* symbol);

}  // namespace zorvel::platform
