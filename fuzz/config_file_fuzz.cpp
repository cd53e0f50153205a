// Arbitrary bytes read as CommPort.cfg.
// SPDX-License-Identifier: MIT
// Reads arbitrary bytes as CommPort.cfg.

#include "app/config_file.h"

#include <array>
#include <cmath>
#include <string>
#include <string_view>

#include "app/program_state.h"
#include "numeric/number_parse.h"
#include "require.h"
#include "support/given.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"

namespace kestrel {
namespace {

using State = std::array<std::int16_t, 3>;

constexpr const char* kFile = "/working/CommPort.cfg";

State Current() {
  return {InterfaceType, PortAddress, ProductNumber};
}

// The state after a file with this content, if it was `before`.
State Read(std::string_view content, const State& before, RecordingMessages& messages) {
  MemoryFiles files;
  files.contents[kFile] = content;
  Given(InterfaceType) = before[0];
  Given(PortAddress) = before[1];
  Given(ProductNumber) = before[2];
  Require(ReadConfigFile(files, messages), "a file that is there is read");
  Require(files.contents[kFile] == content, "reading leaves the file alone");
  return Current();
}

std::string Written() {
  MemoryFiles files;
  WriteConfigFile(files);
  return files.contents[kFile];
}

void CheckComplaint(const std::string& text, std::string_view content) {
  const std::string start = "Error reading CommPort.cfg\nLine ";
  Require(text.starts_with(start), "a complaint names file and line");
  Require(text.size() < 300, "it is short");
  const auto line = std::stoul(text.substr(start.size()));
  Require(line >= 1 && line <= content.size() + 1, "the line is one of the file's");
  for (const char c : text) Require(c == '\n' || (c >= ' ' && c < 0x7F), "it can be shown");
}

void CheckRead(std::string_view content) {
  const State one{-11111, -12222, -13333};
  const State other{21111, 22222, 23333};
  RecordingMessages messages;
  const State fromOne = Read(content, one, messages);
  Require(messages.Texts().size() <= 1, "one message a file at most");
  if (!messages.Texts().empty()) CheckComplaint(messages.Texts().front(), content);
  const State fromOther = Read(content, other, messages);
  for (std::size_t i = 0; i < one.size(); ++i) {
    const bool read = fromOne[i] == fromOther[i];
    const bool leftAlone = fromOne[i] == one[i] && fromOther[i] == other[i];
    Require(read || leftAlone, "a setting is read or left alone");
  }
  messages.Clear();

  const std::string written = Written();
  Require(Read(written, one, messages) == fromOther, "what was written is read");
  Require(Written() == written, "and written the same");
  const std::string both = std::string(content) + "\n" + written;
  constexpr std::size_t kReadLimit = 65536;
  Require(messages.Texts().empty(), "and nothing is wrong with it");
  if (both.size() > kReadLimit) return;
  Require(Read(both, one, messages) == fromOther, "the last value of a key counts");
}

// One line: its value counts where it is a number of 16 bits, rounded, and is told where it is not.
void CheckValue(std::string_view text) {
  const State before{-11111, -12222, -13333};
  RecordingMessages messages;
  const State after = Read("Port Address = " + std::string(text), before, messages);
  const double value = std::nearbyint(WholeTextNumber(text).value_or(1e9));
  const bool fits = value >= -32768 && value <= 32767;
  Require(after[0] == before[0] && after[2] == before[2], "other settings stay");
  Require(after[1] == (fits ? value : before[1]), "a value counts when it fits");
  Require(messages.Texts().empty() == fits, "and is told when it does not");
}

}  // namespace
}  // namespace kestrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view content(reinterpret_cast<const char*>(data), size);
  kestrel::CheckRead(content);
  kestrel::CheckValue(content.substr(content.find_last_of("=\n") + 1));
  return 0;
}
