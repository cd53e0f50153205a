// Bands edited, taken back, saved and damaged at random.
// SPDX-License-Identifier: MIT
// Bands that are edited, taken back, saved and damaged at random.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "alarms/alarm_file.h"
#include "alarms/band_edits.h"
#include "numeric/runtime_error.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

constexpr std::array<double, 4> kLsbs{0.000015259, 0.0000763, 0.0003052, 0.0011921};

std::int32_t& Slot(BandTable& table, Random& random) {
  return table(random.Of(kBandFields), random.Between(1, kAlarmBands),
               random.Below(kSampleRateOptions));
}

BandTable RandomTable(Random& random) {
  BandTable table;
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      for (const int field : kBandFields) {
        table(field, band, option) =
            random.OneIn(2) ? random.Word() : random.Word() * 0x8000 - 0x40000000;
      }
    }
  }
  return table;
}

std::string RandomText(Random& random) {
  static const std::vector<std::string> kOdd{"", "x", "-3", "1e9", "99999999", "0,25", "1.5 g"};
  if (random.OneIn(4)) return random.Of(kOdd);
  return std::to_string(random.Below(300)) + (random.OneIn(2) ? "." : "") +
         (random.OneIn(2) ? std::to_string(random.Below(1000)) : "");
}

CellBlock RandomBlock(Random& random) {
  CellBlock block{{random.Between(1, kAlarmBands), random.Between(1, kBandColumns)}, {}};
  block.last = {random.Between(block.first.band, kAlarmBands),
                random.Between(block.first.column, kBandColumns)};
  return block;
}

// A user at the editor; keeps every state that undoing has to come back to.
class Editing {
 public:
  explicit Editing(Random& random) : random_(random), table_(RandomTable(random)) {
    edits_.History().Restart();
    states_.push_back(table_);
  }

  void Go() {
    for (int step = 0; step < 300 && !testing::Test::HasFailure(); ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      context_.option = random_.Below(kSampleRateOptions);
      const double gLsb = random_.OneIn(8) ? 0 : random_.Of(kLsbs);
      context_.scale = {gLsb, gLsb * 65535};
      context_.decimalMark = random_.OneIn(2) ? ',' : '.';
      if (random_.OneIn(4)) {
        Turn(random_.OneIn(2));
      } else {
        Edit();
      }
    }
    while (at_ > 0) Turn(true);
    EXPECT_EQ(table_, states_.front());
    EXPECT_EQ(edits_.History().NextUndo(), "");
    while (at_ + 1 < states_.size()) Turn(false);
    EXPECT_EQ(table_, states_.back());
    EXPECT_EQ(edits_.History().NextRedo(), "");
  }

 private:
  void Edit() {
    const BandTable before = table_;
    const bool byOthers = random_.OneIn(6);
    const EditOutcome outcome = byOthers ? Transfer() : AnyEdit();
    EXPECT_EQ(outcome.changed, table_ != before);
    if (!byOthers) CheckValues(before);
    if (table_ == before) return;
    states_.resize(at_ + 1);
    states_.push_back(table_);
    ++at_;
  }

  EditOutcome AnyEdit() {
    const int band = random_.Between(1, kAlarmBands);
    switch (random_.Below(5)) {
      case 0:
        return edits_.Zero(RandomBlock(random_), context_);
      case 1:
        return edits_.Paste(RandomBlock(random_), RandomSheet(), context_);
      case 2:
        return edits_.SetEdges(band, random_.Between(-20, 300), random_.Between(-20, 300),
                               context_);
      case 3:
        return edits_.SetLevel(band, random_.Between(1, 2), random_.Of(kAxes),
                               random_.Between(-10, 900) * 0.1, context_);
      default:
        return edits_.Enter({band, random_.Between(1, kBandColumns)}, RandomText(random_),
                            context_);
    }
  }

  // Somebody else changes the table: the sensor, or a file.
  EditOutcome Transfer() {
    for (int i = 0; i < 5; ++i) Slot(table_, random_) = random_.Word();
    return {.changed = edits_.History().Keep("transfer"), .message = "", .details = ""};
  }

  std::string RandomSheet() {
    std::string sheet;
    for (int row = random_.Below(8); row >= 0; --row) {
      for (int column = random_.Below(9); column > 0; --column) sheet += RandomText(random_) + "\t";
      sheet += RandomText(random_) + (row > 0 ? "\r\n" : "");
    }
    return sheet;
  }

  // Only the option that is edited changes, and only to values that its registers hold.
  void CheckValues(const BandTable& before) {
    for (int option = 0; option < kSampleRateOptions; ++option) {
      for (int band = 1; band <= kAlarmBands; ++band) {
        for (const int field : kBandFields) {
          const std::int32_t value = table_(field, band, option);
          if (value == before(field, band, option)) continue;
          EXPECT_EQ(option, context_.option);
          EXPECT_GE(value, 0);
          EXPECT_LE(value, 0xFFFF);
        }
      }
    }
  }

  // One step back, or one forth again.
  void Turn(bool back) {
    const bool possible = back ? at_ > 0 : at_ + 1 < states_.size();
    int option = context_.option;
    const EditOutcome outcome = back ? edits_.Undo(option) : edits_.Redo(option);
    EXPECT_EQ(outcome.changed, possible);
    if (possible) at_ = back ? at_ - 1 : at_ + 1;
    ASSERT_EQ(table_, states_[at_]);
  }

  Random& random_;
  BandTable table_;
  BandEdits edits_{table_};
  BandEdits::Context context_;
  std::vector<BandTable> states_;
  std::size_t at_ = 0;
};

TEST(RandomBands, EveryEditCanBeTakenBackAndDoneAgain) {
  WithSeeds(20, [](Random& random) { Editing(random).Go(); });
}

// The text of a cell, entered again, is the same code, in any range.
TEST(RandomBands, WhatACellShowsIsWhatItHolds) {
  for (const double gLsb : kLsbs) {
    const BandScale scale{gLsb, gLsb * 65535};
    for (std::int32_t code = 0; code <= 0xFFFF; code += code < 300 ? 1 : 29) {
      const int column = code <= 255 && code % 3 == 0 ? 1 : 3 + code % 6;
      const CheckedEntry entry =
          CheckEntry(column, CellText(column, code, scale), scale, code % 2 == 0 ? '.' : ',');
      ASSERT_EQ(entry.value, code) << CellText(column, code, scale);
      ASSERT_EQ(entry.correction, "");
    }
  }
}

struct Damage {
  int line = 0;  // 1 is the header
  std::string text;
};

// Makes one field of a file one that cannot be, or its line too short or too long.
Damage DamageALine(std::vector<std::string>& lines, Random& random) {
  static const std::vector<std::string> kNoNumbers{"",   "ten",   "1 2", "0x10",       "--1",
                                                   "1e", "#REF!", "nan", "2147483648", "1E+99"};
  const int at = random.Between(1, static_cast<int>(lines.size()) - 1);
  std::string& line = lines[static_cast<std::size_t>(at)];
  const int field = random.Below(12);
  std::size_t from = 0;
  for (int comma = 0; comma < field && comma < 10; ++comma) from = line.find(',', from) + 1;
  if (field == 10) {
    line.erase(line.rfind(','));
  } else if (field == 11) {
    line += ",0";
  } else {
    const std::size_t end = std::min(line.find(',', from), line.size());
    const bool slot = field < 2 && random.OneIn(2);
    line.replace(from, end - from, slot ? (field == 0 ? "5" : "8") : random.Of(kNoNumbers));
  }
  return {at + 1, line};
}

TEST(RandomBands, ADamagedFileIsRefusedWithTheNumberOfTheLine) {
  WithSeeds(300, [](Random& random) {
    const BandTable table = RandomTable(random);
    std::vector<std::string> lines;
    for (std::string rest = AlarmFileText(table); !rest.empty();) {
      const std::size_t end = rest.find("\r\n");
      lines.push_back(rest.substr(0, end));
      rest.erase(0, end + 2);
    }
    const Damage damage = DamageALine(lines, random);
    const std::vector<std::string> ends{"\r\n", "\n", "\r"};
    const std::string& end = random.Of(ends);
    std::string content = random.OneIn(3) ? "\xEF\xBB\xBF" : "";
    for (const std::string& line : lines) content += line + end;
    BandTable read;
    try {
      ReadAlarmFileText(content, read);
      ADD_FAILURE() << damage.text << " was taken";
    } catch (const RuntimeError& error) {
      const std::string start = "line " + std::to_string(damage.line) + ": ";
      EXPECT_TRUE(std::string(error.what()).starts_with(start)) << error.what() << damage.text;
    }
    // The lines before it are in the table, those from it on are not.
    for (int number = 2; number <= static_cast<int>(lines.size()); ++number) {
      const int option = (number - 2) / kAlarmBands;
      const int band = (number - 2) % kAlarmBands + 1;
      for (const int field : kBandFields) {
        EXPECT_EQ(read(field, band, option), number < damage.line ? table(field, band, option) : 0);
      }
    }
  });
}

// Whatever bytes a file holds: it is read or refused, and a refusal names a line there is.
TEST(RandomBands, AnyBytesAreReadOrRefusedWithALineThatIsThere) {
  WithSeeds(400, [](Random& random) {
    std::string content = AlarmFileText(RandomTable(random));
    for (int changes = random.Between(1, 12); changes > 0; --changes) {
      const auto at = static_cast<std::size_t>(random.Below(static_cast<int>(content.size())));
      if (random.OneIn(3)) {
        content.erase(at, static_cast<std::size_t>(random.Between(1, 40)));
      } else {
        content.insert(at, 1, static_cast<char>(random.Below(256)));
      }
    }
    BandTable read;
    try {
      EXPECT_GE(ReadAlarmFileText(content, read), 0);
    } catch (const RuntimeError& error) {
      const std::string text = error.what();
      ASSERT_TRUE(text.starts_with("line ")) << text;
      const int line = std::stoi(text.substr(5));
      const auto breaks = std::count_if(content.begin(), content.end(),
                                        [](char c) { return c == '\r' || c == '\n'; });
      EXPECT_GE(line, 1);
      EXPECT_LE(line, breaks + 1);
      EXPECT_LT(text.size(), 400U);
    }
  });
}

}  // namespace
}  // namespace kestrel
