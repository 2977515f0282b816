#pragma once
// Numbered warnings and the message device. Every problem that a routine detects is
// one warning line, counted for the end-of-plot summary:
//   " <<<< Warning 2: Incorrect parameter in setpag!   ( 5)"

#include <concepts>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <string_view>

#include "core/fixed_string.h"

namespace zorvel {

struct GlobalBlock;

struct MessageState {
  FixedString<8> routine;         // public routine now running
  int output = 6;                 // 6 console or message file, 1 unit handle, 0 no messages
  std::FILE* handle = nullptr;    // where lines go; null = standard output
  bool warnings_on = true;        // errmod WARN
  bool checking = false;          // errmod CHEC: report coordinates outside the page
  int protocol = 1;               // errmod PROT: summary 0 OFF, 1 ON (default), 2 FILE
  int device = 0;                 // errdev: 0 CONS, 1 FILE, 2 APPE
  std::string file_name;          // errfil; "zorvel.err" when first used
  bool file_name_set = false;
  bool file_open = false;         // handle is our own message file
  bool file_tried = false;        // opening was attempted in this plot
  bool opening = false;           // guard: messages while the file is being opened
  int app_kind = 0;               // winapp: 0 CONS, 1 WIND
  int warnings = 0;               // numbered warnings since zorini ("Warnings")
};

// Every number's text is in core/warnings.def. A value of a warning fills the next "{}"
// of the text; a value without a place is printed in brackets after the routine.
// Warning by number alone: " <<<< Warning 36: File error in zorini!"
void warn(GlobalBlock& g, int number);
// Warning with a string value: "... in metafl!   (XYZ)"
void warn(GlobalBlock& g, int number, std::string_view value);
// Warning with an integer value, printed with one blank before it: "( 5)"
void warn(GlobalBlock& g, int number, int value);
// Warning with a floating-point value (shortest exact form, one blank before it).
void warn(GlobalBlock& g, int number, double value);
// Warning with several string values for the places of its text:
//   warn(g, 193, "Endpoint", " 3020", "  135") -> "Endpoint ( 3020/  135) out of page"
void warn_values(GlobalBlock& g, int number, std::initializer_list<std::string_view> values);
template <typename... V>
  requires(sizeof...(V) >= 2 && (std::convertible_to<const V&, std::string_view> && ...))
void warn(GlobalBlock& g, int number, const V&... values) {
  warn_values(g, number, {std::string_view(values)...});
}
// Warning with a text of the caller's in place of the table text. A negative number
// prints " <<<< text in routine!" and is not counted.
void warn_text(GlobalBlock& g, int number, std::string_view text);

// Warning given in the name of `routine` by code that runs outside the public routines
// (the Java binding checks its arguments before it calls a routine). The calling
// thread's block is fetched, and created with its defaults when it has none; the name
// of the running routine is left as it was. A non-empty `value` is treated as by warn.
void warn_in(std::string_view routine, int number, std::string_view value = {});

// Text of a message number of the table (" " for numbers without an entry).
std::string_view message_text(int number);

// Writes raw text to the message device (message handle, else standard output),
// opening the message file first when it is due. Nothing when messages are off.
void message_write(GlobalBlock& g, std::string_view text);
// Opens the message file now if the message settings ask for one (under the lock).
void open_message_file(GlobalBlock& g);
// Closes our own message file (after the summary of zorfin).
void close_message_file(GlobalBlock& g);

}  // namespace zorvel
