// The lines of the log, the newest kept.
// SPDX-License-Identifier: MIT
#include "transport/wire_log.h"

#include <utility>

#include "numeric/number_format.h"
#include "transport/typed_word.h"

namespace kestrel {
namespace {

constexpr const char* kLineBreak = "\r\n";
constexpr int kFirstTransferCommand = 13;
constexpr std::size_t kFrameDigits = 4;
constexpr std::size_t kByteDigits = 2;

std::string Words(const std::vector<std::uint16_t>& words, std::size_t digits) {
  std::string text;
  for (const std::uint16_t word : words) {
    if (!text.empty()) text += ' ';
    text += PaddedHex(word, digits);
  }
  return text;
}

std::string Line(std::int64_t number, std::chrono::nanoseconds since, const WireEntry& entry) {
  const std::size_t digits = entry.command >= kFirstTransferCommand ? kFrameDigits : kByteDigits;
  return std::to_string(number) + "\t" +
         FixedNumber(std::chrono::duration<double>(since).count(), 3) + "\t" +
         std::to_string(entry.command) + "\t" + Words(entry.sent, digits) + "\t" +
         (entry.failed ? "failed" : Words(entry.received, digits)) + kLineBreak;
}

}  // namespace

void WireLog::Add(WireEntry entry) {
  entries_.push_back(std::move(entry));
  if (entries_.size() <= kMostEntries) return;
  entries_.pop_front();
  ++dropped_;
}

void WireLog::Clear() {
  entries_.clear();
  dropped_ = 0;
}

std::string WireLog::Text() const {
  std::string text = std::string("No.\tTime/s\tCommand\tSent\tReceived") + kLineBreak;
  std::int64_t number = dropped_;
  for (const WireEntry& entry : entries_) {
    text += Line(++number, entry.at - entries_.front().at, entry);
  }
  return text;
}

}  // namespace kestrel
