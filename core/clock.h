#pragma once
// Date and time for the summary and file headers. When SOURCE_DATE_EPOCH is set, every
// date and time comes from it, in UTC, so that outputs can be reproduced byte for byte.

namespace zorvel {

struct DateTime {
  char date[11];  // "dd.mm.yyyy"
  char time[9];   // "hh:mm:ss"
};

DateTime current_date_time();

}  // namespace zorvel
