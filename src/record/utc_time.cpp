// A moment taken apart into the fields of ISO 8601, and put together from them.
// SPDX-License-Identifier: MIT
#include "record/utc_time.h"

#include <iomanip>
#include <locale>
#include <sstream>
#include <string_view>

namespace kestrel {
namespace {

// Takes a text apart from its beginning.
class Reading {
 public:
  explicit Reading(const std::string& text) : rest_(text) {}

  // That many digits.
  std::optional<int> Number(std::size_t digits) {
    if (rest_.size() < digits) return std::nullopt;
    int number = 0;
    for (const char digit : rest_.substr(0, digits)) {
      if (digit < '0' || digit > '9') return std::nullopt;
      number = number * 10 + (digit - '0');
    }
    rest_.remove_prefix(digits);
    return number;
  }
  // The letter and a number behind it.
  std::optional<int> Number(char letter, std::size_t digits) {
    if (!Skip(letter)) return std::nullopt;
    return Number(digits);
  }
  bool Skip(char letter) {
    if (!rest_.starts_with(letter)) return false;
    rest_.remove_prefix(1);
    return true;
  }
  [[nodiscard]] bool Ended() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

std::optional<std::chrono::sys_days> DayFrom(Reading& reading) {
  using namespace std::chrono;
  const auto years = reading.Number(4);
  const auto months = reading.Number('-', 2);
  const auto days = reading.Number('-', 2);
  if (!years || !months || !days) return std::nullopt;
  const year_month_day date{year{*years}, month{static_cast<unsigned>(*months)},
                            day{static_cast<unsigned>(*days)}};
  // Years that the clock's nanoseconds can tell.
  if (!date.ok() || *years < 1678 || *years > 2261) return std::nullopt;
  return sys_days{date};
}

std::optional<std::chrono::nanoseconds> TimeOfDayFrom(Reading& reading) {
  using namespace std::chrono;
  const auto hour = reading.Number(2);
  const auto minute = reading.Number(':', 2);
  if (!hour || !minute || *hour > 23 || *minute > 59) return std::nullopt;
  nanoseconds time = hours{*hour} + minutes{*minute};
  if (const auto second = reading.Number(':', 2)) {
    if (*second > 59) return std::nullopt;
    time += seconds{*second};
  }
  if (reading.Skip('.')) {
    for (nanoseconds unit = milliseconds{100}; unit.count() > 0; unit /= 10) {
      const auto digit = reading.Number(1);
      if (!digit) break;
      time += *digit * unit;
    }
  }
  return time;
}

}  // namespace

double SecondsOf(std::chrono::system_clock::time_point moment) {
  return std::chrono::duration<double>(moment.time_since_epoch()).count();
}

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

std::optional<std::chrono::system_clock::time_point> UtcFrom(const std::string& text) {
  using std::chrono::system_clock;
  Reading reading(text);
  const auto day = DayFrom(reading);
  if (!day || reading.Ended()) return day;
  if (!reading.Skip('T') && !reading.Skip(' ')) return std::nullopt;
  const auto time = TimeOfDayFrom(reading);
  reading.Skip('Z');
  if (!time || !reading.Ended()) return std::nullopt;
  return *day + std::chrono::duration_cast<system_clock::duration>(*time);
}

}  // namespace kestrel
