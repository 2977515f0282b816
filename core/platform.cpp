#include "core/platform.h"

#include <sys/stat.h>

#include <cstdlib>
#include <cstring>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace zorvel::platform {

#ifdef _WIN32

namespace {

std::wstring wide(const std::string& s) {
  if (s.empty()) {
    return {};
  }
  const int n = MultiByteToWideChar(CP_UTF8, 0, s.data(), static_cast<int>(s.size()), nullptr, 0);
  if (n <= 0) {
    return {};
  }
  std::wstring w(static_cast<std::size_t>(n), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, s.data(), static_cast<int>(s.size()), w.data(), n);
  return w;
}

}  // namespace

std::FILE* open_file(const std::string& path, const char* mode) {
  const std::wstring name = wide(path);
  if (name.empty()) {
    return nullptr;
  }
  const bool binary = std::strchr(mode, 'b') != nullptr;
  if (std::strchr(mode, 'x') != nullptr) {
    // The C library has no "x": create the file exclusively, then take a stream on it.
    const int fd = _wopen(name.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_TRUNC |
                                            (binary ? _O_BINARY : _O_TEXT),
                          _S_IREAD | _S_IWRITE);
    if (fd < 0) {
      return nullptr;
    }
    std::FILE* f = _wfdopen(fd, binary ? L"wb" : L"w");
    if (f == nullptr) {
      _close(fd);
    }
    return f;
  }
  return _wfopen(name.c_str(), wide(mode).c_str());
}

namespace {

// The file's identity: its volume and its index on the volume (the C library's stat has
// no inode numbers on Windows).
void identify(HANDLE h, FileStatus& s) {
  BY_HANDLE_FILE_INFORMATION info{};
  if (h != INVALID_HANDLE_VALUE && GetFileInformationByHandle(h, &info) != 0) {
    s.device = info.dwVolumeSerialNumber;
    s.inode = (static_cast<std::uint64_t>(info.nFileIndexHigh) << 32) | info.nFileIndexLow;
  }
}

}  // namespace

FileStatus file_status(const std::string& path) {
  FileStatus s;
  const std::wstring name = wide(path);
  struct _stat64 st {};
  if (name.empty() || _wstat64(name.c_str(), &st) != 0) {
    return s;
  }
  s.exists = true;
  s.regular = (st.st_mode & _S_IFMT) == _S_IFREG;
  HANDLE h = CreateFileW(name.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                         nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  identify(h, s);
  if (h != INVALID_HANDLE_VALUE) {
    CloseHandle(h);
  }
  return s;
}

FileStatus stream_status(std::FILE* f) {
  FileStatus s;
  struct _stat64 st {};
  if (f == nullptr || _fstat64(_fileno(f), &st) != 0) {
    return s;
  }
  s.exists = true;
  s.regular = (st.st_mode & _S_IFMT) == _S_IFREG;
  identify(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(f))), s);
  return s;
}

bool broken_down_time(std::time_t t, bool utc, std::tm& out) {
  return (utc ? gmtime_s(&out, &t) : localtime_s(&out, &t)) == 0;
}

std::FILE* open_memory_stream(char** data, std::size_t* size) {
  // A temporary file that the system deletes when it is closed.
  *data = nullptr;
  *size = 0;
  wchar_t dir[MAX_PATH + 1];
  wchar_t name[MAX_PATH + 1];
  const DWORD n = GetTempPathW(MAX_PATH + 1, dir);
  if (n == 0 || n > MAX_PATH || GetTempFileNameW(dir, L"zor", 0, name) == 0) {
    return nullptr;
  }
  return _wfopen(name, L"w+bD");
}

void settle_memory_stream(std::FILE* f, char** data, std::size_t* size) {
  if (f == nullptr || std::fflush(f) != 0 || _fseeki64(f, 0, SEEK_END) != 0) {
    return;
  }
  const long long n = _ftelli64(f);
  if (n < 0 || _fseeki64(f, 0, SEEK_SET) != 0) {
    return;
  }
  char* buf = static_cast<char*>(std::malloc(static_cast<std::size_t>(n) + 1));
  if (buf == nullptr) {
    return;
  }
  const std::size_t got = std::fread(buf, 1, static_cast<std::size_t>(n), f);
  std::free(*data);
  *data = buf;
  *size = got;
}

std::filesystem::path library_file() {
  HMODULE module = nullptr;
  if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                             GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                         reinterpret_cast<LPCWSTR>(&library_file), &module) == 0) {
    return {};
  }
  wchar_t name[32768];
  const DWORD n = GetModuleFileNameW(module, name, 32768);
  return n == 0 || n >= 32768 ? std::filesystem::path{} : std::filesystem::path(name);
}

std::filesystem::path system_install_directory() {
  for (HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    wchar_t value[MAX_PATH + 1];
    DWORD bytes = sizeof value;
    if (RegGetValueW(root, L"SOFTWARE\\Zorvel", L"Path", RRF_RT_REG_SZ, nullptr, value,
                     &bytes) == ERROR_SUCCESS &&
        value[0] != L'\0') {
      return std::filesystem::path(value);
    }
  }
  return std::filesystem::path(L"c:\\zorvel");
}

void* library_symbol(const std::filesystem::path& file, const char* symbol) {
  HMODULE module = LoadLibraryW(file.wstring().c_str());
  if (module == nullptr) {
    return nullptr;
  }
  return reinterpret_cast<void*>(GetProcAddress(module, symbol));
}

#else  // POSIX

std::FILE* open_file(const std::string& path, const char* mode) {
  return std::fopen(path.c_str(), mode);
}

FileStatus file_status(const std::string& path) {
  FileStatus s;
  struct stat st {};
  if (::stat(path.c_str(), &st) == 0) {
    s.exists = true;
    s.regular = S_ISREG(st.st_mode);
    s.device = static_cast<std::uint64_t>(st.st_dev);
    s.inode = static_cast<std::uint64_t>(st.st_ino);
  }
  return s;
}

FileStatus stream_status(std::FILE* f) {
  FileStatus s;
  struct stat st {};
  if (f != nullptr && ::fstat(fileno(f), &st) == 0) {
    s.exists = true;
    s.regular = S_ISREG(st.st_mode);
    s.device = static_cast<std::uint64_t>(st.st_dev);
    s.inode = static_cast<std::uint64_t>(st.st_ino);
  }
  return s;
}

bool broken_down_time(std::time_t t, bool utc, std::tm& out) {
  return (utc ? gmtime_r(&t, &out) : localtime_r(&t, &out)) != nullptr;
}

std::FILE* open_memory_stream(char** data, std::size_t* size) {
  return ::open_memstream(data, size);
}

void settle_memory_stream(std::FILE* /*f*/, char** /*data*/, std::size_t* /*size*/) {}

std::filesystem::path library_file() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&library_file), &info) == 0 || info.dli_fname == nullptr) {
    return {};
  }
  std::error_code ec;
  const std::filesystem::path p = std::filesystem::canonical(info.dli_fname, ec);
  return ec ? std::filesystem::path{} : p;
}

std::filesystem::path system_install_directory() { return {}; }

void* library_symbol(const std::filesystem::path& file, const char* symbol) {
  void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  return handle != nullptr ? dlsym(handle, symbol) : nullptr;
}

#endif

}  // namespace zorvel::platform
