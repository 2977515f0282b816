#include "core/clock.h"

#include <cerrno>
#include <cstdlib>
#include <ctime>

#include "core/platform.h"

namespace zorvel {
namespace {

void two(char* p, int v) {
  p[0] = static_cast<char>('0' + (v / 10) % 10);
  p[1] = static_cast<char>('0' + v % 10);
}

}  // namespace

DateTime current_date_time() {
  std::time_t t = std::time(nullptr);
  bool utc = false;
  if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH"); epoch != nullptr && *epoch != '\0') {
    char* end = nullptr;
    errno = 0;
    const long long v = std::strtoll(epoch, &end, 10);
    if (errno == 0 && *end == '\0' && v >= 0) {
      t = static_cast<std::time_t>(v);
      utc = true;
    }
  }
  std::tm tm{};
  platform::broken_down_time(t, utc, tm);
  DateTime d{};
  two(d.date, tm.tm_mday);
  d.date[2] = '.';
  two(d.date + 3, tm.tm_mon + 1);
  d.date[5] = '.';
  const int year = (tm.tm_year + 1900) % 10000;
  two(d.date + 6, year / 100);
  two(d.date + 8, year % 100);
  d.date[10] = '\0';
  two(d.time, tm.tm_hour);
  d.time[2] = ':';
  two(d.time + 3, tm.tm_min);
  d.time[5] = ':';
  two(d.time + 6, tm.tm_sec);
  d.time[8] = '\0';
  return d;
}

}  // namespace zorvel
