// How a moment is taken apart into the fields of ISO 8601.
// SPDX-License-Identifier: MIT
#include "record/utc_time.h"

#include <iomanip>
#include <locale>
#include <sstream>

namespace kestrel {

std::string UtcText(std::chrono::system_clock::time_point moment) {
  using namespace std::chrono;
  const auto day = floor<days>(moment);
  const year_month_day date{day};
  const hh_mm_ss time{floor<milliseconds>(moment - day)};
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << std::setfill('0') << std::setw(4) << static_cast<int>(date.year()) << '-' << std::setw(2)
       << static_cast<unsigned>(date.month()) << '-' << std::setw(2)
       << static_cast<unsigned>(date.day()) << 'T' << std::setw(2) << time.hours().count() << ':'
       << std::setw(2) << time.minutes().count() << ':' << std::setw(2) << time.seconds().count()
       << '.' << std::setw(3) << time.subseconds().count() << 'Z';
  return text.str();
}

}  // namespace kestrel
