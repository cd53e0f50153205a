// What went over the wire can be read off the waveform again.
// SPDX-License-Identifier: MIT
#include "exchange/wire_vcd.h"

#include <map>
#include <sstream>

namespace kestrel::exchange {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// A frame as a logic analyser would tell it: levels at rising edges of the clock while selected.
struct Heard {
  std::int64_t at = 0;  // steps, when the frame began
  std::string mosi{};
  std::string miso{};
};

std::vector<Heard> HeardIn(const std::string& vcd) {
  std::vector<Heard> frames;
  std::map<char, char> levels;
  std::istringstream lines(vcd.substr(vcd.find("$enddefinitions $end\n") + 21));
  std::int64_t now = 0;
  std::int64_t before = -1;
  for (std::string line; std::getline(lines, line);) {
    if (line[0] == '#') {
      now = std::stoll(line.substr(1));
      EXPECT_GT(now, before);
      before = now;
      continue;
    }
    const char level = line[0];
    const char name = line[1];
    const bool rises = levels[name] == '0' && level == '1';
    levels[name] = level;
    if (name != 'c' || levels['s'] != '0') continue;
    if (!rises) {
      if (frames.empty() || frames.back().mosi.size() == 16) frames.push_back({.at = now});
      continue;
    }
    frames.back().mosi += levels['o'];
    frames.back().miso += levels['i'];
  }
  return frames;
}

std::string VcdOf(const std::vector<WireFrame>& frames, nanoseconds bit = microseconds(1)) {
  const auto vcd = WireVcd(frames, bit);
  EXPECT_TRUE(vcd) << vcd.Why().Text();
  return vcd ? *vcd : "";
}

std::size_t Times(const std::string& text, const std::string& part) {
  std::size_t times = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++times;
  }
  return times;
}

TEST(WireVcd, FramesAreHeardAsTheyWere) {
  const auto frames = HeardIn(VcdOf({{.at = milliseconds(5), .mosi = 0x8F12, .miso = 0x0000},
                                     {.at = milliseconds(6), .mosi = 0x0001, .miso = 0xFFFE}}));
  ASSERT_EQ(frames.size(), 2U);
  EXPECT_EQ(frames[0].mosi, "1000111100010010");
  EXPECT_EQ(frames[0].miso, "0000000000000000");
  EXPECT_EQ(frames[1].mosi, "0000000000000001");
  EXPECT_EQ(frames[1].miso, "1111111111111110");
  EXPECT_EQ(frames[1].at - frames[0].at, 10'000);  // 1 ms
}

TEST(WireVcd, AnAnswerThatDidNotComeIsUnknown) {
  const auto frames = HeardIn(VcdOf({{.mosi = 0x1234}}));
  ASSERT_EQ(frames.size(), 1U);
  EXPECT_EQ(frames[0].miso, std::string(16, 'x'));
}

TEST(WireVcd, ChipSelectRisesBehindEachFrameOrIsHeldDown) {
  const auto count = [](bool held) {
    return Times(VcdOf({{.mosi = 1, .selectedOn = held}, {.mosi = 2}, {.mosi = 3}}), "\n1s\n");
  };
  EXPECT_EQ(count(false), 4U);  // at rest, and behind three frames
  EXPECT_EQ(count(true), 3U);
}

TEST(WireVcd, FramesNeverOverlapAndThoseMovedAreCounted) {
  const std::string vcd = VcdOf({{.mosi = 1}, {.mosi = 2}, {.at = milliseconds(1), .mosi = 3}});
  EXPECT_EQ(HeardIn(vcd).size(), 3U);
  EXPECT_THAT(vcd, HasSubstr("$comment Frames put off because the one ahead had not ended: 1."));
  EXPECT_THAT(VcdOf({{.mosi = 1}, {.at = milliseconds(1), .mosi = 3}}), Not(HasSubstr("put off")));
}

TEST(WireVcd, BitsOfAnyLengthAreDrawn) {
  for (const auto bit : {nanoseconds(200), nanoseconds(250), nanoseconds(milliseconds(2))}) {
    EXPECT_EQ(HeardIn(VcdOf({{.mosi = 0xA5A5}}, bit)).front().mosi, "1010010110100101");
  }
  EXPECT_THAT(WireVcd(std::vector<WireFrame>{{}}, nanoseconds(100)).Why().Text(),
              HasSubstr("A bit takes 100 ns"));
}

TEST(WireVcd, NothingIsDrawnOfNothing) {
  EXPECT_EQ(WireVcd({}).Why().Text(), "Nothing has gone over the wire.");
}

TEST(WireVcd, AnAdaptersLogGivesTheFramesOfItsTransfers) {
  WireLog log;
  log.Add({milliseconds(1), 11, {25}, {}, false});
  log.Add({milliseconds(2), 13, {0x8F12, 0x8E34}, {0x0001, 0x0002}, false});
  log.Add({milliseconds(3), 14, {0x0E00, 0x0000}, {}, true});
  EXPECT_THAT(FramesOf(log),
              ElementsAre(WireFrame{.at = milliseconds(2), .mosi = 0x8F12, .miso = 0x0001},
                          WireFrame{.at = milliseconds(2), .mosi = 0x8E34, .miso = 0x0002},
                          WireFrame{.at = milliseconds(3), .mosi = 0x0E00, .selectedOn = true},
                          WireFrame{.at = milliseconds(3), .mosi = 0x0000}));
}

TEST(WireVcd, AnAnswerOfATransferThatFailedOrWasCutShortIsUnknown) {
  WireLog log;
  log.Add({milliseconds(1), 13, {0x1234}, {0x0001}, true});
  log.Add({milliseconds(2), 13, {0x1234, 0x5678}, {0x0001}, false});
  EXPECT_THAT(FramesOf(log),
              ElementsAre(WireFrame{.at = milliseconds(1), .mosi = 0x1234},
                          WireFrame{.at = milliseconds(2), .mosi = 0x1234, .miso = 0x0001},
                          WireFrame{.at = milliseconds(2), .mosi = 0x5678}));
}

TEST(WireVcd, ABitOfMoreThanASecondIsNotDrawn) {
  const std::vector<WireFrame> one{{.mosi = 1}};
  EXPECT_TRUE(WireVcd(one, std::chrono::seconds(1)));
  EXPECT_THAT(WireVcd(one, std::chrono::seconds(1) + nanoseconds(1)).Why().Text(),
              HasSubstr("200 ns to 1 s can be drawn"));
}

}  // namespace
}  // namespace kestrel::exchange
