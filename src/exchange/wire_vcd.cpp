// How frames become edges of four lines, and edges the text of a value change dump.
// SPDX-License-Identifier: MIT
#include "exchange/wire_vcd.h"

#include <algorithm>

#include "transport/adapter_blocks.h"

namespace kestrel::exchange {
namespace {

using Steps = std::int64_t;

constexpr std::int64_t kStep = 100;  // ns
constexpr int kBits = 16;
constexpr Steps kHalvesAFrame = 2 * kBits + 4;  // with chip select before, behind, and its pause

constexpr char kSelect = 's';
constexpr char kClock = 'c';
constexpr char kToSensor = 'o';
constexpr char kFromSensor = 'i';

// When each frame begins, in steps from the dump's beginning.
struct Places {
  std::vector<Steps> starts{};
  std::size_t putOff = 0;
};

Places PlacesOf(std::span<const WireFrame> frames, Steps half) {
  Places places;
  Steps free = 0;
  for (const WireFrame& frame : frames) {
    const Steps wanted = (frame.at - frames.front().at).count() / kStep + half * 2;
    places.starts.push_back(std::max(wanted, free));
    if (wanted < free) ++places.putOff;
    free = places.starts.back() + kHalvesAFrame * half;
  }
  return places;
}

// The text of a dump; a line is written when it changes.
class Dump {
 public:
  void At(Steps time) { time_ = time; }
  void Set(char line, char level) {
    char& now = Level(line);
    if (now == level) return;
    now = level;
    if (time_ != written_) text_ += "#" + std::to_string(time_) + "\n";
    written_ = time_;
    text_ += level;
    text_ += line;
    text_ += '\n';
  }
  [[nodiscard]] std::string Take() { return std::move(text_); }

 private:
  char& Level(char line) {
    switch (line) {
      case kSelect:
        return select_;
      case kClock:
        return clock_;
      case kToSensor:
        return toSensor_;
      default:
        return fromSensor_;
    }
  }

  std::string text_;
  Steps time_ = 0;
  Steps written_ = -1;
  char select_ = 0;
  char clock_ = 0;
  char toSensor_ = 0;
  char fromSensor_ = 0;
};

char LevelOf(std::uint16_t word, int bit) {
  return (word >> bit & 1) != 0 ? '1' : '0';
}

void DrawFrame(Dump& dump, const WireFrame& frame, Steps start, Steps half) {
  dump.At(start);
  dump.Set(kSelect, '0');
  Steps now = start + half;
  for (int bit = kBits - 1; bit >= 0; --bit) {
    dump.At(now);
    dump.Set(kClock, '0');
    dump.Set(kToSensor, LevelOf(frame.mosi, bit));
    dump.Set(kFromSensor, frame.miso ? LevelOf(*frame.miso, bit) : 'x');
    dump.At(now + half);
    dump.Set(kClock, '1');
    now += 2 * half;
  }
  if (frame.selectedOn) return;
  dump.At(now);
  dump.Set(kSelect, '1');
}

std::string Head(std::size_t putOff) {
  std::string text =
      "$version kestrel $end\n$comment Edges within a frame are drawn at an even pace. $end\n";
  if (putOff > 0) {
    text +=
        "$comment Frames put off because the one ahead had not ended: " + std::to_string(putOff) +
        ". $end\n";
  }
  text += "$timescale 100 ns $end\n$scope module spi $end\n";
  const auto line = [&text](char mark, const char* name) {
    text += std::string("$var wire 1 ") + mark + " " + name + " $end\n";
  };
  line(kSelect, "cs");
  line(kClock, "sclk");
  line(kToSensor, "mosi");
  line(kFromSensor, "miso");
  return text + "$upscope $end\n$enddefinitions $end\n";
}

}  // namespace

std::vector<WireFrame> FramesOf(const WireLog& log) {
  std::vector<WireFrame> frames;
  for (const WireEntry& entry : log.Entries()) {
    if (entry.command != kCommandTransferPerWord && entry.command != kCommandTransfer) continue;
    for (std::size_t i = 0; i < entry.sent.size(); ++i) {
      WireFrame frame{.at = entry.at, .mosi = entry.sent[i]};
      if (!entry.failed && i < entry.received.size()) frame.miso = entry.received[i];
      frame.selectedOn = entry.command == kCommandTransfer && i + 1 < entry.sent.size();
      frames.push_back(frame);
    }
  }
  return frames;
}

Exchanged<std::string> WireVcd(std::span<const WireFrame> frames, std::chrono::nanoseconds bit) {
  if (frames.empty()) return Fault{.what = "Nothing has gone over the wire."};
  if (bit.count() < 2 * kStep || bit > std::chrono::seconds(1)) {
    return Fault{.what = "A bit takes " + std::to_string(bit.count()) +
                         " ns; 200 ns to 1 s can be drawn."};
  }
  const Steps half = bit.count() / (2 * kStep);
  const Places places = PlacesOf(frames, half);
  Dump dump;
  dump.Set(kSelect, '1');
  dump.Set(kClock, '1');
  dump.Set(kToSensor, '0');
  dump.Set(kFromSensor, 'x');
  for (std::size_t i = 0; i < frames.size(); ++i) {
    DrawFrame(dump, frames[i], places.starts[i], half);
  }
  const Steps end = places.starts.back() + kHalvesAFrame * half;
  return Head(places.putOff) + dump.Take() + "#" + std::to_string(end) + "\n";
}

}  // namespace kestrel::exchange
