// Records read in blocks: the same words, held against single ones, and given up where they differ.
// SPDX-License-Identifier: MIT
#include "acquisition/fast_readout.h"

#include <gmock/gmock.h>

#include "acquisition/capture_readout.h"
#include "support/capture_bench.h"
#include "support/given.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Axes = std::array<AxisRecord, 3>;
using Differences = std::vector<FastReadout::Difference>;

// Requests of a record of 256 points: the board is opened once, then two requests a block; REC_CNT,
// supply, temperature and REC_INFO; two accesses a sample; 1026 frames in blocks of 16.
constexpr int RequestsWith(int samplesOfAnAxis) {
  return 1 + 2 * (4 + 2 * 3 * samplesOfAnAxis + 65);
}
constexpr int kRequests = RequestsWith(3);
constexpr int kRequestsOfTheFirst = RequestsWith(32);

class Fast : public CaptureBench {
 protected:
  Fast() {
    readoutView.autoPlot = false;
    readout.Fast().OnRefused([this](const auto& difference) { refused.push_back(difference); });
    const std::array buffers{address::kXBuf, address::kYBuf, address::kZBuf};
    for (const Axis axis : kAxes) {
      sensor.OnRead(buffers[Index(axis)], [this, axis] {
        const auto at = static_cast<std::size_t>(sensor.Word(address::kBufPntr));
        return held[Index(axis)].at(at);
      });
    }
    Random random(1);
    HoldWordsOf(random);
  }

  void HoldWordsOf(Random& random) {
    for (auto& axis : held) {
      for (int& word : axis) word = random.Word();
    }
  }
  void ReadFast(bool fast) {
    readout.Fast().Choose(fast);
    ASSERT_TRUE(readout.ReadCaptureBuffer());
  }
  // The record at hand but for its moment.
  [[nodiscard]] Record Read() {
    EXPECT_TRUE(readout.ReadCaptureBuffer());
    Record record = core.record.Get();
    record.time = {};
    return record;
  }
  int RequestsOfARecord() {
    const int before = sensor.Requests();
    EXPECT_TRUE(readout.ReadCaptureBuffer());
    return sensor.Requests() - before;
  }
  // What the sensor holds, as points.
  [[nodiscard]] bool IsWhatTheSensorHolds(const Record& record) const {
    for (const Axis axis : kAxes) {
      for (int i = 0; i < static_cast<int>(record.Points()); ++i) {
        const int word = held[Index(axis)].at(static_cast<std::size_t>(i));
        const int expected =
            record.kind == RecordKind::Time ? static_cast<std::int16_t>(word) : word;
        if (record.Of(axis).raw(i) != expected) return false;
      }
    }
    return true;
  }

  std::array<std::array<int, 512>, 3> held{};
  Differences refused;
};

TEST_F(Fast, IsOffUntilItIsChosen) {
  EXPECT_FALSE(readout.Fast().InUse());
  readout.ReadCaptureBuffer();
  EXPECT_EQ(TakeFrames(), ReadoutFrames(255));
  readout.Fast().Choose(true);
  readout.Fast().Choose(false);
  readout.ReadCaptureBuffer();
  EXPECT_EQ(TakeFrames(), ReadoutFrames(255));
}

TEST_F(Fast, RandomRecordsOfBothKindsAreTheSameRecordsInEveryPart) {
  WithSeeds(10, [this](Random& random) {
    for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
      HoldWordsOf(random);
      sensor.Set(address::kRecCtrl, random.Below(4) << 4);
      gRecCtrl->ReadRecCtrl();
      readout.Expect(kind);
      ReadFast(false);
      const Record singly = Read();
      ReadFast(true);
      EXPECT_EQ(Read(), singly);
      EXPECT_TRUE(IsWhatTheSensorHolds(singly));
    }
  });
  EXPECT_THAT(refused, IsEmpty());
}

TEST_F(Fast, LeavesTheNamesAndThePointerAsTheOrdinaryReadOutDoes) {
  held[2][255] = 0xBEEF;
  const auto left = [this] {
    return std::tuple(RegValue, RegScaled, RegLowByte, RegHighByte, LptWord,
                      sensor.Word(address::kBufPntr));
  };
  ReadFast(false);
  const auto singly = left();
  Given(RegValue) = 0;
  Given(LptWord) = 0;
  ReadFast(true);
  EXPECT_EQ(left(), singly);
  EXPECT_EQ(RegValue, 0xBEEF);
}

TEST_F(Fast, TakesAFewRequestsAndOpensTheBoardOnce) {
  readout.Fast().Choose(true);
  EXPECT_EQ(RequestsOfARecord(), kRequestsOfTheFirst);
  EXPECT_EQ(RequestsOfARecord(), kRequests);
  const auto& transfers = sensor.Transfers();
  EXPECT_TRUE(std::ranges::all_of(transfers, [](const auto& t) { return t.frames.size() <= 16; }));
}

TEST_F(Fast, ComparesManyWordsAfterEveryConnection) {
  readout.Fast().Choose(true);
  RequestsOfARecord();
  core.registers.Use(kUsbAdapter);
  EXPECT_EQ(RequestsOfARecord(), kRequestsOfTheFirst);
  readout.Fast().Choose(false);
  readout.Fast().Choose(true);
  EXPECT_EQ(RequestsOfARecord(), kRequestsOfTheFirst);
  readout.Fast().Choose(true);
  EXPECT_EQ(RequestsOfARecord(), kRequests) << "it was chosen already";
}

TEST_F(Fast, ComparesAtOtherPlacesEachTimeAndAtTheSameOnesFromTheSameSeed) {
  readout.Fast().Choose(true);
  const auto framesOf = [this] {
    TakeFrames();
    readout.ReadCaptureBuffer();
    return TakeFrames();
  };
  framesOf();
  readout.Fast().Seed(5);
  const Frames first = framesOf();
  const Frames second = framesOf();
  readout.Fast().Seed(5);
  EXPECT_EQ(framesOf(), first);
  EXPECT_NE(second, first);
}

TEST_F(Fast, TellsProgressFromTheBeginningToTheEnd) {
  for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
    readout.Expect(kind);
    readoutView.progress.clear();
    ReadFast(true);
    ASSERT_GE(readoutView.progress.size(), 6U);
    EXPECT_EQ(readoutView.progress.front(), 0);
    EXPECT_TRUE(std::ranges::is_sorted(readoutView.progress));
    EXPECT_LT(readoutView.progress.back(), readoutView.progressTotal);
    EXPECT_GT(readoutView.progress.back(), readoutView.progressTotal * 8 / 10);
  }
}

// Odd requests but the first receive: the board is opened once.
void ExpectOneMessage(const RecordingMessages& messages, int request) {
  const bool receives = request % 2 == 1 && request > 1;
  ASSERT_EQ(messages.Texts(), Words{receives ? "Error Reading SPI" : "Error Writing SPI"});
}

TEST_F(Fast, ASensorLostAtAnyRequestKeepsTheEarlierRecord) {
  for (const int requests : {kRequestsOfTheFirst, kRequests}) {
    readout.Expect(RecordKind::Spectrum);
    if (requests == kRequests) ReadFast(true);
    KeepARecord(RecordKind::Time);
    const Kept earlier = TheRecord();
    for (int request = 1; request <= requests; ++request) {
      SCOPED_TRACE(request);
      if (requests == kRequestsOfTheFirst) {
        readout.Fast().Choose(false);
        readout.Fast().Choose(true);
      }
      readout.Expect(RecordKind::Spectrum);
      messages.Clear();
      sensor.UnplugAtRequest(request);
      ASSERT_FALSE(readout.ReadCaptureBuffer());
      ExpectOneMessage(messages, request);
      ASSERT_EQ(TheRecord(), earlier);
      ASSERT_EQ(sensor.Opened(), 0);
      ASSERT_TRUE(WindowIsIdle());
      sensor.PlugInAgain();
      core.usb.SelectUsbAdapter();
    }
  }
  EXPECT_THAT(refused, IsEmpty()) << "a lost sensor proves nothing";
  readout.Expect(RecordKind::Spectrum);
  EXPECT_TRUE(IsWhatTheSensorHolds(Read()));
}

TEST_F(Fast, AnAnswerOneByteShortAnywhereCountsAsALostSensor) {
  KeepARecord();
  readout.Fast().Choose(true);
  readout.ReadCaptureBuffer();
  const Kept earlier = TheRecord();
  for (int k = 1; k <= (kRequests - 1) / 2; ++k) {
    SCOPED_TRACE(k);
    messages.Clear();
    sensor.AnswerShort(k);
    ASSERT_FALSE(readout.ReadCaptureBuffer());
    ASSERT_EQ(TheRecord(), earlier);
    ASSERT_EQ(messages.Texts(), Words{"Error Reading SPI"});
    ASSERT_EQ(sensor.Opened(), 0);
    core.usb.SelectUsbAdapter();
  }
}

// What boards may do wrong with several accesses in one block, in answers longer than two words.
struct Fault {
  const char* name;
  std::function<void(std::vector<int>&)> spoil;
};

void PrintTo(const Fault& fault, std::ostream* out) {
  *out << fault.name;
}

class FastOverAFaultyBoard : public Fast, public testing::WithParamInterface<Fault> {};

TEST_P(FastOverAFaultyBoard, IsGivenUpAtTheFirstRecordAndTheRecordIsRightAllTheSame) {
  sensor.OnBlock([](std::vector<int>& words) {
    if (words.size() > 2) GetParam().spoil(words);
  });
  readout.Fast().Choose(true);
  EXPECT_TRUE(IsWhatTheSensorHolds(Read()));
  ASSERT_THAT(refused, SizeIs(1));
  EXPECT_NE(refused[0].single, refused[0].inBlock);
  EXPECT_THAT(readout.Fast().Refused(), ElementsAre(refused[0].road));
  EXPECT_FALSE(readout.Fast().InUse());
  EXPECT_TRUE(readout.Fast().Chosen());
  TakeFrames();
  EXPECT_TRUE(IsWhatTheSensorHolds(Read()));
  EXPECT_EQ(TakeFrames(), ReadoutFrames(255));
  EXPECT_THAT(messages.Texts(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, FastOverAFaultyBoard,
    testing::Values(
        Fault{"one frame late", [](auto& w) { std::rotate(w.begin(), w.end() - 1, w.end()); }},
        Fault{"one frame early", [](auto& w) { std::rotate(w.begin(), w.begin() + 1, w.end()); }},
        Fault{"bytes swapped",
              [](auto& w) {
                for (int& x : w) x = (x & 255) << 8 | x >> 8;
              }},
        Fault{"silent after eight",
              [](auto& w) {
                if (w.size() > 8) std::fill(w.begin() + 8, w.end(), 0);
              }},
        Fault{"last word lost", [](auto& w) { w.back() = 0; }},
        Fault{"first word lost", [](auto& w) { w.front() = 0; }},
        Fault{"one bit stuck",
              [](auto& w) {
                for (int& x : w) x |= 0x0010;
              }}),
    [](const auto& fault) {
      std::string name = fault.param.name;
      std::ranges::replace(name, ' ', '_');
      return name;
    });

// A block in four has one wrong word of axis Y: of 768 words 16 are wrong.
TEST_F(Fast, AFaultThatBeginsLaterIsFoundAtRandomBeforeLong) {
  int found = 0;
  WithSeeds(20, [&](Random& random) {
    sensor.OnBlock({});
    readout.Fast().Refuse({});
    readout.Fast().Seed(static_cast<std::uint32_t>(random.Word()));
    ReadFast(true);
    sensor.OnBlock([block = 0](std::vector<int>& words) mutable {
      if (words.size() == 16 && ++block % 4 == 0) words[8] ^= 0x8000;
    });
    for (int records = 0; records < 60 && readout.Fast().InUse(); ++records)
      readout.ReadCaptureBuffer();
    if (!readout.Fast().InUse()) {
      ++found;
      EXPECT_TRUE(IsWhatTheSensorHolds(Read()));
    }
  });
  EXPECT_GE(found, 19)
      << "60 records with 9 samples each miss 16 of 768 words once in 90,000 times";
}

TEST_F(Fast, ARecordThatTheSensorTookMeanwhileProvesNothingAgainstTheBoard) {
  ReadFast(true);
  int read = 0;
  sensor.OnRead(address::kXBuf, [&] { return ++read > 20 ? 5 : 6; });
  sensor.SetAtRead(address::kRecCnt, 2, 8);
  EXPECT_TRUE(readout.ReadCaptureBuffer());
  EXPECT_EQ(RawX(0), 5);
  EXPECT_EQ(RawX(255), 5) << "all of one record";
  EXPECT_THAT(refused, IsEmpty());
  EXPECT_TRUE(readout.Fast().InUse());
}

TEST_F(Fast, ChosenAnewItIsTriedAgain) {
  sensor.OnBlock([](std::vector<int>& words) {
    if (words.size() > 2) std::ranges::reverse(words);
  });
  ReadFast(true);
  ASSERT_FALSE(readout.Fast().InUse());
  readout.Fast().Choose(true);
  EXPECT_FALSE(readout.Fast().InUse()) << "it was chosen already";
  sensor.OnBlock({});
  readout.Fast().Choose(false);
  readout.Fast().Choose(true);
  EXPECT_TRUE(readout.Fast().InUse());
  EXPECT_EQ(RequestsOfARecord(), kRequestsOfTheFirst);
}

TEST_F(Fast, AnotherRoadIsNotRefusedWithIt) {
  readout.Fast().Choose(true);
  readout.Fast().Refuse({"Ezusb-1, Cx"});
  EXPECT_TRUE(readout.Fast().InUse());
  readout.Fast().Refuse({"Ezusb-0, Cx"});
  EXPECT_FALSE(readout.Fast().InUse());
  Given(InterfaceType) = kParallelPort;
  Given(PortAddress) = 0x378;
  EXPECT_TRUE(readout.Fast().InUse());
}

TEST_F(Fast, TheTextTellsWhichWordItWas) {
  EXPECT_EQ(TextOf({"Ezusb-0, Board 7", {Axis::Y, 17}, 640, 812}),
            "The fast read-out is switched off for Ezusb-0, Board 7: point 17 of axis Y came as "
            "812 in a block and as 640 by itself. The record was read again in the ordinary way.");
}

}  // namespace
}  // namespace kestrel
