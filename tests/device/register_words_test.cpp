// Rules that hold for every word a register can hold.
// SPDX-License-Identifier: MIT
// Rules that hold for every word a register can hold.

#include <algorithm>
#include <bit>
#include <set>

#include "device/alm_ctrl.h"
#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "device/register_fields.h"
#include "regmap/register_table.h"
#include "support/given.h"
#include "support/register_bench.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

constexpr int kWords = 0x10000;

class EveryWord : public RegisterBench {
 protected:
  // What ReadReg makes of a word on the wire.
  std::int32_t ValueOf(std::int16_t row, int word) {
    sensor.Set(RegAddr[row], word);
    core.registers.ReadReg(row);
    sensor.ClearFrames();
    return RegValue;
  }
  void Hold(int address, int word) {
    sensor.Set(address, word);
    sensor.ClearFrames();
  }
};

// The mask that a field's bits, "13:12" or "7", stand for.
int MaskOf(const cBitFieldProp& field) {
  const std::string& bits = field.BFRange();
  const std::size_t colon = bits.find(':');
  const int highest = std::stoi(bits);
  const int lowest = colon == std::string::npos ? highest : std::stoi(bits.substr(colon + 1));
  return (2 << highest) - (1 << lowest);
}

// A number's low bits: the distance from 0, or, where they are signed, the nearer way round.
std::int32_t LowBits(std::int32_t word, int bits, bool isSigned) {
  const std::int64_t turn = std::int64_t{1} << bits;
  std::int64_t value = word % turn;
  if (isSigned && 2 * value >= turn) value -= turn;
  return static_cast<std::int32_t>(value);
}

// One row of each shape, since all rows take the same road.
TEST_F(EveryWord, IsReadInTheWidthAndSignOfItsRow) {
  Given(RegSigned)[row::Y_BUF] = true;  // as a time record has it
  std::set<std::pair<int, bool>> shapes;
  for (std::int16_t row = 0; row <= RegCount; ++row) {
    if (!RegReadable[row] || !shapes.insert({RegBits[row], RegSigned[row]}).second) continue;
    for (int word = 0; word < kWords; ++word) {
      ASSERT_EQ(ValueOf(row, word), LowBits(word, RegBits[row], RegSigned[row]))
          << RegName[row] << std::hex << " " << word;
      ASSERT_EQ(RegHighByte * 256 + RegLowByte, word);
    }
  }
  EXPECT_GE(shapes.size(), 5U);
}

// Narrow and signed rows do not exist today; the decoding is ready for them.
TEST_F(EveryWord, IsReadInAnyWidth) {
  for (std::int16_t bits = 1; bits <= 16; ++bits) {
    for (const bool isSigned : {false, true}) {
      Given(RegBits)[row::SCRATCH_A] = bits;
      Given(RegSigned)[row::SCRATCH_A] = isSigned;
      for (int word = 0; word < kWords; word += 41) {
        ASSERT_EQ(ValueOf(row::SCRATCH_A, word), LowBits(word, bits, isSigned)) << bits;
      }
    }
  }
}

// COMMAND acts on one byte, so it is left out.
TEST_F(EveryWord, ThatIsWrittenIsHeldByTheRegister) {
  WithSeeds(4, [this](Random& random) {
    for (int i = 0; i < 4000; ++i) {
      const auto row = static_cast<std::int16_t>(random.Below(RegCount + 1));
      if (row == row::COMMAND) continue;
      const int word = random.Word();
      core.registers.WriteReg(row, word);
      ASSERT_EQ(sensor.Word(RegAddr[row]), word) << RegName[row];
      sensor.ClearFrames();
    }
  });
}

TEST_F(EveryWord, OfRecCtrlIsWrittenBackWithoutItsUndefinedBits) {
  for (int word = 0; word < kWords; ++word) {
    Hold(address::kRecCtrl, word);
    gRecCtrl->ReadRecCtrl();
    gRecCtrl->WriteRecCtrl();
    ASSERT_EQ(sensor.Word(address::kRecCtrl), word & 0x3FBF) << std::hex << word;
  }
}

TEST_F(EveryWord, OfAlmCtrlIsWrittenBackWithoutItsUndefinedBits) {
  for (int word = 0; word < kWords; ++word) {
    Hold(address::kAlmCtrl, word);
    gAlmCtrl->ReadAlmCtrl();
    EXPECT_EQ(static_cast<std::uint16_t>(gAlmCtrl->ReadWord()), word);
    gAlmCtrl->WriteAlmCtrl();
    ASSERT_EQ(sensor.Word(address::kAlmCtrl), word & 0x0FFF) << std::hex << word;
  }
}

template <typename Model>
struct Setter {
  void (Model::*set)(std::int16_t);
  int lowest;
  int mask;
};

// Sets random fields of words that were read, and reads each back: no other bit changes.
template <typename Model, std::size_t count, typename Read, typename Write>
void SetRandomFields(Random& random, const std::array<Setter<Model>, count>& setters, Model& model,
                     int defined, Read read, Write write, ScriptedSensor& sensor, int address) {
  for (int i = 0; i < 3000; ++i) {
    int word = random.Word() & defined;
    sensor.Set(address, word);
    (model.*read)();
    for (int changes = random.Between(1, 3); changes > 0; --changes) {
      const Setter<Model>& field = random.Of(setters);
      const int code = random.Below((field.mask >> field.lowest) + 1);
      (model.*field.set)(static_cast<std::int16_t>(code));
      word = (word & ~field.mask) | code << field.lowest;
    }
    (model.*write)();
    ASSERT_EQ(sensor.Word(address), word) << "step " << i;
    sensor.ClearFrames();
  }
}

TEST_F(EveryWord, OfRecCtrlChangesOnlyInTheFieldsThatAreSet) {
  constexpr std::array<Setter<cRecCtrl>, 5> kSetters{{{&cRecCtrl::Windowing, 12, 0x3000},
                                                      {&cRecCtrl::SampleRate, 8, 0x0F00},
                                                      {&cRecCtrl::RangeFS, 4, 0x0030},
                                                      {&cRecCtrl::StrogeMethod, 2, 0x000C},
                                                      {&cRecCtrl::RecModeCode, 0, 0x0003}}};
  WithSeeds(3, [&](Random& random) {
    SetRandomFields(random, kSetters, *gRecCtrl, 0x3FBF, &cRecCtrl::ReadRecCtrl,
                    &cRecCtrl::WriteRecCtrl, sensor, address::kRecCtrl);
  });
}

TEST_F(EveryWord, OfAlmCtrlChangesOnlyInTheFieldsThatAreSet) {
  constexpr std::array<Setter<cALMCtrl>, 9> kSetters{
      {{&cALMCtrl::ResponseDelay, 8, 0x0F00},
       {&cALMCtrl::LatchSTATUSRegisterAlarmFlagsEnable, 7, 0x0080},
       {&cALMCtrl::EnableAlarm1Alarm2onDIO1DIO2, 6, 0x0040},
       {&cALMCtrl::SystemAlarmComparisonPolarity, 5, 0x0020},
       {&cALMCtrl::SystemAlarmSource, 4, 0x0010},
       {&cALMCtrl::SystemAlarmEnable, 3, 0x0008},
       {&cALMCtrl::SpectralAlarmZEnable, 2, 0x0004},
       {&cALMCtrl::SpectralAlarmYEnable, 1, 0x0002},
       {&cALMCtrl::SpectralAlarmXEnable, 0, 0x0001}}};
  WithSeeds(3, [&](Random& random) {
    SetRandomFields(random, kSetters, *gAlmCtrl, 0x0FFF, &cALMCtrl::ReadAlmCtrl,
                    &cALMCtrl::WriteAlmCtrl, sensor, address::kAlmCtrl);
  });
}

// The fields of a word put together are the word; no two share a bit. The one exception: an average
// count of 0 is told as 1.
TEST_F(EveryWord, IsDescribedByFieldsThatMakeItUp) {
  struct Described {
    std::int16_t row;
    int defined;
  };
  const Described registers[] = {
      {row::REC_CTRL, 0x3FBF},   {row::REC_PRD, 0x03FF},    {row::ALM_PNTR, 0xFFFF},
      {row::ALM_CTRL, 0x0FFF},   {row::DIO_CTRL, 0x003F},   {row::GPIO_CTRL, 0x0303},
      {row::STATUS, 0x7FFF},     {row::COMMAND, 0xFFFF},    {row::ALM_X_STAT, 0xFFF7},
      {row::ALM_Y_STAT, 0xFFF7}, {row::ALM_Z_STAT, 0xFFF7}, {row::REC_INFO, 0xFDFF}};
  for (const Described& described : registers) {
    for (int word = 0; word < kWords; word += 13) {
      int defined = 0;
      int made = 0;
      for (const cBitFieldProp& field : DescribeRegister(described.row, word)) {
        const int mask = MaskOf(field);
        ASSERT_EQ(defined & mask, 0) << field.BFTitle();
        defined |= mask;
        const bool isZeroAverages = field.BFTitle() == "FFT Averages" && (word & mask) == 0;
        if (isZeroAverages) {
          ASSERT_EQ(field.BFValue(), 1);
        } else {
          made |= field.BFValue() << std::countr_zero(static_cast<unsigned>(mask));
        }
      }
      ASSERT_EQ(defined, described.defined) << RegName[described.row];
      ASSERT_EQ(made, word & defined) << RegName[described.row] << std::hex << " " << word;
    }
  }
}

TEST_F(EveryWord, OfRecInfoIsKeptWholeAndInFields) {
  for (int word = 0; word < kWords; ++word) {
    Hold(address::kRecInfo, word);
    gRecInfo->ReadRec_Info();
    ASSERT_EQ(gRecInfo->DecimalReadWord(), word);
    ASSERT_EQ(gRecInfo->SampleRateOption().BFValue(), word >> 14);
    ASSERT_EQ(gRecInfo->Windowing().BFValue(), word >> 12 & 3);
    ASSERT_EQ(gRecInfo->SignalRange().BFValue(), word >> 10 & 3);
    ASSERT_EQ(gRecInfo->FFTAverages().BFValue(), std::max(word & 0x1FF, 1));
  }
}

TEST_F(EveryWord, IsSixteenBitsInText) {
  for (int word = 0; word < kWords; ++word) {
    std::string bits = BitText(word);
    ASSERT_EQ(bits.size(), 19U);
    std::erase(bits, ' ');
    ASSERT_EQ(std::stoi(bits, nullptr, 2), word);
  }
}

}  // namespace
}  // namespace kestrel
