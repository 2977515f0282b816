#include "axes/labels.h"

#include <cmath>
#include <cstring>

#include "core/format.h"

namespace zorvel {
namespace {

// Appends to a label buffer; everything past size - 1 is dropped and the text stays
// terminated after every step. A buffer of size 0 is never touched.
class LabelWriter {
 public:
  LabelWriter(char* buf, std::size_t size) : buf_(buf), cap_(size == 0 ? 0 : size - 1) {
    if (size > 0) {
      buf_[0] = '\0';
    }
  }

  void put(char c) {
    if (len_ < cap_) {
      buf_[len_++] = c;
      buf_[len_] = '\0';
    }
  }

  void put(std::string_view s) {
    const std::size_t room = cap_ - len_;
    const std::size_t n = s.size() < room ? s.size() : room;
    if (n > 0) {
      std::memcpy(buf_ + len_, s.data(), n);
      len_ += n;
      buf_[len_] = '\0';
    }
  }

  void number(double v, int digits) {
    char tmp[kLabelBuffer];
    const int n = format_number(tmp, sizeof tmp, v, digits);
    put(std::string_view(tmp, static_cast<std::size_t>(n)));
  }

  void integer(long long v) {
    char tmp[kNumberBuffer];
    put(std::string_view(tmp, static_cast<std::size_t>(format_int(tmp, v) - tmp)));
  }

  // Two-digit field of a clock time (0..99).
  void two_digits(int v) {
    put(static_cast<char>('0' + v / 10 % 10));
    put(static_cast<char>('0' + v % 10));
  }

  int length() const { return static_cast<int>(len_); }

 private:
  char* buf_;
  std::size_t cap_;
  std::size_t len_ = 0;
};

// x * 10^-e without an overflow or underflow of the power itself (|e| reaches 324 for
// the smallest subnormals).
double scale_down(double x, int e) {
  int k = -e;
  while (k > 300) {
    x *= 1e300;
    k -= 300;
  }
  while (k < -300) {
    x /= 1e300;
    k += 300;
  }
  return x * std::pow(10.0, k);
}

bool starts_with(std::string_view s, std::string_view prefix) {
  return s.substr(0, prefix.size()) == prefix;
}

// Days since 1970-01-01 of a proleptic Gregorian date; exact for any int year.
constexpr long long days_from_civil(long long y, long long m, long long d) {
  y -= m <= 2 ? 1 : 0;
  const long long era = (y >= 0 ? y : y - 399) / 400;
  const long long yoe = y - era * 400;                                    // 0..399
  const long long doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;  // 0..365
  const long long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;            // 0..146096
  return era * 146097 + doe - 719468;
}

void civil_from_days(long long z, int& day, int& month, int& year) {
  z += 719468;
  const long long era = (z >= 0 ? z : z - 146096) / 146097;
  const long long doe = z - era * 146097;
  const long long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const long long mp = (5 * doy + 2) / 153;
  day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  year = static_cast<int>(yoe + era * 400 + (month <= 2 ? 1 : 0));
}

// The first and last day that date labels reach: 1 Jan 1 and 31 Dec 9999.
constexpr long long kFirstDay = days_from_civil(1, 1, 1);
constexpr long long kLastDay = days_from_civil(9999, 12, 31);

long long base_days(const AxisState& st) {
  return days_from_civil(st.base_year, st.base_month, st.base_day);
}

constexpr std::string_view kMonths[3][2][12] = {
    {{"January", "February", "March", "April", "May", "June", "July", "August", "September",
      "October", "November", "December"},
     {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"}},
    {{"Januar", "Februar", "Maerz", "April", "Mai", "Juni", "Juli", "August", "September",
      "Oktober", "November", "Dezember"},
     {"Jan", "Feb", "Mrz", "Apr", "Mai", "Jun", "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"}},
    {{"enero", "febrero", "marzo", "abril", "mayo", "junio", "julio", "agosto", "septiembre",
      "octubre", "noviembre", "diciembre"},
     {"ene", "feb", "mar", "abr", "may", "jun", "jul", "ago", "sep", "oct", "nov", "dic"}},
};

constexpr std::string_view kWeekdays[3][7] = {
    {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"},
    {"Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag", "Sonntag"},
    {"lunes", "martes", "miercoles", "jueves", "viernes", "sabado", "domingo"},
};

int language_index(int language) { return language >= 0 && language <= 2 ? language : 0; }

// 10^value for the values of a log axis.
double power_of_ten(double value) { return std::pow(10.0, value); }

void write_date(LabelWriter& w, const AxisState& st, const LabelRequest& r, double value) {
  if (!st.base_date_set) {
    return;
  }
  // Far beyond the 1..9999 years that date_of_day keeps; NaN counts as the base date.
  double v = std::isnan(value) ? 0.0 : value;
  v = v > 1e8 ? 1e8 : (v < -1e8 ? -1e8 : v);
  int day = 1;
  int month = 1;
  int year = 1;
  date_of_day(st, static_cast<long long>(std::round(v)), day, month, year);
  const std::string_view mon = month_name(st.date_language, month, true);
  switch (r.date_form) {
    case kDateDay:
      w.integer(day);
      w.put(' ');
      w.put(mon);
      break;
    case kDateMonth:
      w.put(mon);
      w.put(' ');
      w.integer(year);
      break;
    case kDateYear:
      w.integer(year);
      break;
    default:
      w.integer(day);
      w.put(' ');
      w.put(mon);
      w.put(' ');
      w.integer(year);
      break;
  }
}

void write_time(LabelWriter& w, const AxisState& st, int type, double seconds) {
  double v = std::round(seconds);  // halves away from zero
  if (!std::isfinite(v)) {
    v = 0.0;
  }
  // fmod is exact, so even 1e300 lands on its true second of the day.
  v = std::fmod(v, 86400.0);
  if (v < 0.0) {
    v += 86400.0;
  }
  long long secs = static_cast<long long>(v);
  if (secs < 0 || secs >= 86400) {
    secs = 0;
  }
  long long hours = secs / 3600;
  const long long rest = secs % 3600;
  if (type == kLabHour) {
    w.two_digits(static_cast<int>((secs + 1800) / 3600 % 24));
    return;
  }
  long long minutes = type == kLabSeco ? rest / 60 : (rest + 30) / 60;
  const long long sec = rest % 60;
  if (minutes == 60) {
    minutes = 0;
    ++hours;
  }
  w.two_digits(static_cast<int>(hours % 24));
  if (st.hour_separator) {
    w.put(':');
  }
  w.two_digits(static_cast<int>(minutes));
  if (type == kLabSeco) {
    if (st.hour_separator) {
      w.put(':');
    }
    w.two_digits(static_cast<int>(sec));
  }
}

void write_map(LabelWriter& w, const LabelChars& ch, int type, int axis, double value,
               int digits) {
  const int form = type == kLabDmap ? 1 : (type == kLabLmap ? 3 : 2);
  double v = value;
  if (form != 1) {
    if (axis == kAxisX) {
      if (v > 180.001 || v < -180.001) {
        v = std::fmod(v, 360.0);  // exact; NaN and infinities stay NaN
        v = v > 180.001 ? v - 360.0 : (v < -180.001 ? v + 360.0 : v);
      }
    } else {
      // Reflecting twice is a turn of 360: take the turns off first, then reflect once.
      if (v > 180.001 || v < -180.001) {
        v = std::fmod(v, 360.0);
        v = v > 180.001 ? v - 360.0 : (v < -180.001 ? v + 360.0 : v);
      }
      if (v > 90.001) {
        v = 180.0 - v;
      } else if (v < -90.001) {
        v = -180.0 - v;
      }
    }
  }
  w.number(form == 1 ? v : std::fabs(v), digits);
  if (type != kLabMapn) {
    w.put(ch.raise);
    w.put('o');
    w.put(ch.back);
  }
  const bool x = axis == kAxisX;
  if (v > 0.001) {
    w.put(' ');
    if (form != 1) {
      w.put(form == 2 ? (x ? 'E' : 'N') : (x ? 'e' : 'n'));
    }
  } else if (v < -0.001) {
    w.put(' ');
    if (form != 1) {
      w.put(form == 2 ? (x ? 'W' : 'S') : (x ? 'w' : 's'));
    }
  } else if (axis == kAxisY && form != 1) {
    w.put("  ");
    w.put(ch.back);
  }
}

}  // namespace

int format_exponent(char* buf, std::size_t size, double value, int digits, int label_type,
                    const LabelChars& ch) {
  LabelWriter w(buf, size);
  double m = std::isfinite(value) ? value : 0.0;
  int e = 0;
  if (m != 0.0) {
    e = static_cast<int>(std::floor(std::log10(std::fabs(m))));
    m = scale_down(value, e);
    // log10 and the power may be off by one ulp near a power of ten.
    if (std::fabs(m) >= 10.0) {
      m /= 10.0;
      ++e;
    } else if (std::fabs(m) < 1.0) {
      m *= 10.0;
      --e;
    }
  }
  char mant[kLabelBuffer];
  int n = format_number(mant, sizeof mant, m, digits);
  std::string_view text(mant, static_cast<std::size_t>(n));
  const bool rounded_up = digits < 0 ? (text == "10" || text == "-10")
                                     : (starts_with(text, "10.") || starts_with(text, "-10."));
  if (rounded_up) {
    m /= 10.0;
    ++e;
    n = format_number(mant, sizeof mant, m, digits);
    text = std::string_view(mant, static_cast<std::size_t>(n));
  }
  w.put(text);
  if (label_type == kLabFexp) {
    w.put('E');
    w.integer(e);
    return w.length();
  }
  if (label_type == kLabXexp) {
    w.put(ch.command);
    w.put("D}10");
  } else {
    w.put("*10");
  }
  w.put(ch.raise);
  w.integer(e);
  w.put(ch.back);
  return w.length();
}

int format_label(const AxisState& st, const AxisSettings& s, const LabelRequest& r, double value,
                 char* buf, std::size_t size) {
  LabelWriter w(buf, size);
  const int type = s.label_type;
  switch (type) {
    case kLabNone:
      return 0;
    case kLabMyla:
      if (r.index >= 0 && r.index < s.user_label_count && r.index < kMaxUserLabels) {
        w.put(s.user_labels[static_cast<std::size_t>(r.index)].view());
      }
      return w.length();
    case kLabDate:
      write_date(w, st, r, value);
      return w.length();
    case kLabExp:
    case kLabXexp:
    case kLabFexp:
      return format_exponent(buf, size, r.log_axis ? power_of_ten(value) : value, r.digits, type,
                             r.chars);
    default:
      break;
  }

  if (r.log_axis && s.log_form == kLogPower) {
    w.put("10");
    w.put(r.chars.raise);
    w.number(value, r.digits);
    w.put(r.chars.back);
    return w.length();
  }

  switch (type) {
    case kLabFloa:
    case kLabLog:
    case kLabClog:
    case kLabElog:
      w.number(r.log_axis && s.log_form != kLogExponent ? power_of_ten(value) : value, r.digits);
      break;
    case kLabTime:
    case kLabHour:
    case kLabSeco: {
      const int form = r.time_form == kLabTime || r.time_form == kLabHour || r.time_form == kLabSeco
                           ? r.time_form
                           : type;
      write_time(w, st, form, r.log_axis ? power_of_ten(value) : value);
      break;
    }
    case kLabMap:
    case kLabDmap:
    case kLabLmap:
    case kLabMapn:
      write_map(w, r.chars, type, r.axis, value, r.digits);
      break;
    default:
      break;
  }
  return w.length();
}

bool leap_year(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int days_in_month(int month, int year) {
  static constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) {
    return 0;
  }
  return month == 2 && leap_year(year) ? 29 : kDays[month - 1];
}

int day_of_year(int day, int month, int year) {
  static constexpr int kBefore[12] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  if (month < 1 || month > 12) {
    return day;
  }
  return kBefore[month - 1] + day + (month > 2 && leap_year(year) ? 1 : 0);
}

long long day_number(const AxisState& st, int day, int month, int year) {
  return days_from_civil(year, month, day) - base_days(st);
}

bool date_of_day(const AxisState& st, long long n, int& day, int& month, int& year) {
  const long long base = base_days(st);
  // Compared before adding, so that no n overflows the sum.
  const long long lo = kFirstDay - base;
  const long long hi = kLastDay - base;
  bool inside = true;
  if (n < lo) {
    n = lo;
    inside = false;
  } else if (n > hi) {
    n = hi;
    inside = false;
  }
  civil_from_days(base + n, day, month, year);
  return inside;
}

int weekday(int day, int month, int year) {
  // 1 Jan 1970 was a Thursday (4).
  const long long z = days_from_civil(year, month, day);
  const long long w = ((z + 3) % 7 + 7) % 7;
  return static_cast<int>(w) + 1;
}

std::string_view month_name(int language, int month, bool short_form) {
  if (month < 1 || month > 12) {
    return {};
  }
  return kMonths[language_index(language)][short_form ? 1 : 0][month - 1];
}

std::string_view weekday_name(int language, int weekday, bool short_form) {
  if (weekday < 1 || weekday > 7) {
    return {};
  }
  const std::string_view name = kWeekdays[language_index(language)][weekday - 1];
  return short_form ? name.substr(0, 3) : name;
}

}  // namespace zorvel
