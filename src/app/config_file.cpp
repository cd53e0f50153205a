// Reading CommPort.cfg line by line, with a word about the first wrong line, and writing it whole.
// SPDX-License-Identifier: MIT
#include "app/config_file.h"

#include <array>
#include <string>
#include <string_view>

#include "app/program_state.h"
#include "numeric/conversions.h"
#include "numeric/number_parse.h"
#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

struct Setting {
  std::string_view key;
  const std::int16_t& value;
  void (*choose)(std::int16_t value);
};

std::array<Setting, 3> Settings() {
  return {{{"Interface", InterfaceType, ChooseInterface},
           {"Port Address", PortAddress, ChoosePort},
           {"ProductNumber", ProductNumber, ChooseProduct}}};
}

// Far more than any settings file; keeps a wrong file of that name from filling the memory.
constexpr std::size_t kReadLimit = 65536;
constexpr std::size_t kShownLength = 60;

std::int16_t ParseInteger(std::string_view text) {
  const auto number = WholeTextNumber(text);
  if (!number) throw RuntimeError(kTypeMismatch);
  return ToInteger(*number);
}

std::string Printable(std::string_view text) {
  std::string shown;
  for (const char c : text.substr(0, kShownLength)) {
    const auto code = static_cast<unsigned char>(c);
    shown += code >= 0x20 && code < 0x7F ? c : '?';
  }
  return text.size() > kShownLength ? shown + "..." : shown;
}

// Takes one line over; returns why its value cannot be, or nothing. The key ends one character (the
// blank) before the "=", the value begins one after it.
std::string TakeLine(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || equals < 1) return {};
  const std::string_view key = line.substr(0, equals - 1);
  const std::string_view value = line.substr(std::min(equals + 2, line.size()));
  for (const Setting& setting : Settings()) {
    if (key != setting.key) continue;
    try {
      setting.choose(ParseInteger(value));
    } catch (const RuntimeError& error) {
      return error.what();
    }
  }
  return {};
}

std::string_view NextLine(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\n'), rest.size());
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::string Complaint(int number, std::string_view line, const std::string& reason) {
  return std::string("Error reading ") + kConfigFileName + "\nLine " + std::to_string(number) +
         ": " + Printable(line) + "\n" + reason +
         ". The value must be a whole number from -32768 to 32767; this line was ignored.";
}

}  // namespace

bool ReadConfigFile(Files& files, Messages& messages) {
  const auto content = files.Read(files.WorkingFolder() / kConfigFileName, kReadLimit);
  if (!content) return false;
  std::string_view rest = *content;
  if (rest.starts_with("\xEF\xBB\xBF")) rest.remove_prefix(3);  // byte-order mark of some editors
  std::string complaint;
  for (int number = 1; !rest.empty(); ++number) {
    const std::string_view line = NextLine(rest);
    const std::string reason = TakeLine(line);
    if (complaint.empty() && !reason.empty()) complaint = Complaint(number, line, reason);
  }
  if (!complaint.empty()) messages.Show(complaint);
  return true;
}

void WriteConfigFile(Files& files) {
  std::string content;
  for (const Setting& setting : Settings()) {
    content += std::string(setting.key) + " = " + std::to_string(setting.value) + "\n";
  }
  try {
    files.ReplaceWhole(files.WorkingFolder() / kConfigFileName, content);
  } catch (const RuntimeError&) {
    // The selection still holds for this run; the next start simply asks again.
    return;
  }
}

}  // namespace kestrel
