#pragma once
// Axis labels as text: the exponent forms, the label formatter for every label type
// and the calendar behind date labels. Nothing here draws or warns; the axis routine
// and the public routines do.
//
// Label texts hold the raise and return characters of the instruction alphabet around
// exponents and degree signs, and its command character in "{D}" (the multiplication
// sign); the caller passes the characters in force (label_chars, text/text.h) and draws
// the labels with draw_label, which lays them out with the instruction alphabet on.

#include <cstddef>
#include <string_view>

#include "axes/axis_state.h"
#include "text/text.h"

namespace zorvel {

// Bytes of a label buffer: enough for every form (a number of 100 digits and its sign,
// point and exponent), terminated.
inline constexpr std::size_t kLabelBuffer = 160;

// Exponent forms of `value` with `digits` decimals in the mantissa (EXP, XEXP, FEXP):
// "2.5*10[3$", "2.5{D}10[3$", "2.5E3" (with the default characters of `ch`). Returns
// the length written into buf (always terminated, never past size - 1).
int format_exponent(char* buf, std::size_t size, double value, int digits, int label_type,
                    const LabelChars& ch);

// How date labels are written: the caller picks the form from the label step.
enum DateForm : int {
  kDateFull = 0,   // "15 Mar 2024"
  kDateDay = 1,    // "15 Mar"
  kDateMonth = 2,  // "Mar 2024"
  kDateYear = 3,   // "2024"
};

// What the label formatter needs besides the value.
struct LabelRequest {
  int axis = kAxisX;         // 0 X, 1 Y, 2 Z
  bool log_axis = false;     // values are exponents of ten
  int digits = 1;            // decimals in force (automatic digits already resolved)
  int index = 0;             // 0-based index of the label along the axis (MYLA)
  int time_form = -1;        // time axes: -1 the label type's form, else kLabTime,
                             //   kLabHour or kLabSeco chosen by automatic scaling
  int date_form = kDateFull;
  LabelChars chars{kRaiseChar, kReturnChar, kCommandChar};  // raise, return, command
};

// The label of `value` on an axis with settings `s`, as the label type of `s` says;
// base date, date language and the hour separator come from `st`. Returns the length
// written into buf (always terminated). A MYLA index without a user label, a date
// without a base date and the type NONE give an empty text.
int format_label(const AxisState& st, const AxisSettings& s, const LabelRequest& r, double value,
                 char* buf, std::size_t size);

// Calendar. Day numbers count days from the base date (day 0); the Gregorian calendar
// is used throughout.
bool leap_year(int year);
int days_in_month(int month, int year);
// Day of the year (1..366) of a valid date.
int day_of_year(int day, int month, int year);
// Day number of a valid date relative to the base date of st.
long long day_number(const AxisState& st, int day, int month, int year);
// Date of day number n relative to the base date of st. Years stay within 1..9999 for
// any n (n is clamped); false when the result had to be clamped.
bool date_of_day(const AxisState& st, long long n, int& day, int& month, int& year);
// 1 Monday .. 7 Sunday.
int weekday(int day, int month, int year);

// Names in the date language of st: month 1..12, weekday 1..7 (Monday first). Full and
// three-letter short forms; ASCII only.
std::string_view month_name(int language, int month, bool short_form);
std::string_view weekday_name(int language, int weekday, bool short_form);

}  // namespace zorvel
