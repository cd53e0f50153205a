// Records with anything in them, through every format and back.
// SPDX-License-Identifier: MIT
#include <charconv>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

#include "exchange/facts.h"
#include "exchange/round_trip.h"
#include "exchange/texts.h"
#include "record/frequency.h"
#include "support/random_records.h"
#include "support/seeds.h"

namespace kestrel::exchange {
namespace {

using std::chrono::floor;
using std::chrono::milliseconds;
using testing::IsEmpty;
using testing::SizeIs;

// Such as users and other programs write, and such as would end a line, a cell or a dataset.
std::string RandomText(Random& random) {
  static const std::vector<std::string> kParts{
      "a",    "Pump 3", " ",         "-1",     "    -1\n",   "\n",   "\r\n",
      "\t",   "\"",     "'",         ",",      ";",          "\\n",  "\\",
      "NONE", "{}",     "K\u00FChl", "\u05D0", "\U0001F527", "\x7F", "KESTREL1 INFO=0",
      "#",    "=1+1",   "\x01"};
  std::string text;
  for (int parts = random.Below(12); parts > 0; --parts) text += random.Of(kParts);
  return text;
}

double RandomSpeed(Random& random) {
  static const std::vector<double> kExtremes{
      0.1, 1e-300, 1e300, std::numeric_limits<double>::max(), 1480.5, 3e-324, 0};
  return random.Of(kExtremes);
}

NotedRecord RandomNoted(Random& random) {
  RandomRecords records(static_cast<unsigned>(random.Below(1'000'000)));
  NotedRecord noted{.record = records.Next(), .note = {}};
  // The ends of what words can be, on every axis.
  for (AxisRecord& axis : noted.record.axes) {
    const bool isTime = noted.record.kind == RecordKind::Time;
    axis.raw(0) = isTime ? -32768 : 0;
    axis.raw(noted.record.Width()) = isTime ? 32767 : 65535;
    for (const int i : {0, int{noted.record.Width()}}) {
      axis.data(i) = axis.raw(i) * noted.record.lsbWeight;
    }
  }
  RecordNote& note = noted.note;
  for (std::string* text :
       {&note.machine, &note.point, &note.orientation, &note.note, &note.sensor, &note.program}) {
    *text = RandomText(random);
  }
  if (random.OneIn(2)) note.speedRpm = RandomSpeed(random);
  for (int tags = random.Below(3); tags > 0; --tags) note.tags.push_back(RandomText(random));
  return noted;
}

std::vector<NotedRecord> SeveralNoted(Random& random) {
  std::vector<NotedRecord> records;
  for (int count = random.Between(1, 3); count > 0; --count) {
    records.push_back(RandomNoted(random));
  }
  return records;
}

void ExpectTheSameWords(const Record& found, const Record& wanted) {
  ASSERT_EQ(found.kind, wanted.kind);
  EXPECT_EQ(found.lsbWeight, wanted.lsbWeight);
  for (const Axis axis : kAxes) {
    ASSERT_TRUE(std::ranges::equal(found.Values(axis), wanted.Values(axis))) << Letter(axis);
    ASSERT_TRUE(std::ranges::equal(found.Of(axis).raw.First(wanted.Points()),
                                   wanted.Of(axis).raw.First(wanted.Points())))
        << Letter(axis);
  }
}

class RandomRoundTrips : public testing::TestWithParam<ExportFormat> {};

TEST_P(RandomRoundTrips, GiveEveryBitOfWordsSettingsAndConditionsBack) {
  WithSeeds(40, [](Random& random) {
    const std::vector<NotedRecord> records = SeveralNoted(random);
    const auto file = Imported("f.uff", BytesOf(records, GetParam()));
    ASSERT_TRUE(file) << file.Why().Text();
    ASSERT_THAT(file->records, SizeIs(records.size()));
    EXPECT_THAT(file->notices, IsEmpty());
    for (std::size_t i = 0; i < records.size(); ++i) {
      const Record& wanted = records[i].record;
      ASSERT_THAT(UnknownsOf(file->records[i]), IsEmpty());
      const auto found = RecordOf(file->records[i], {});
      ASSERT_TRUE(found) << found.Why().Text();
      ExpectTheSameWords(*found, wanted);
      EXPECT_EQ(found->settings, wanted.settings);
      EXPECT_EQ(found->scaledRange, wanted.scaledRange);
      EXPECT_EQ(found->conditions, wanted.conditions);
      EXPECT_EQ(found->status, wanted.status.known ? wanted.status : StatusFlags{});
      EXPECT_EQ(found->time, floor<milliseconds>(wanted.time));
      EXPECT_TRUE(IsUtf8(file->records[i].note));
    }
  });
}

INSTANTIATE_TEST_SUITE_P(UniversalFiles, RandomRoundTrips,
                         testing::Values(ExportFormat::Uff58, ExportFormat::Uff58b),
                         [](const auto& tested) { return NameOf(tested.param); });

TEST(RandomWavFiles, GiveEveryWordAndItsWeightBack) {
  if (!IsBuiltIn(ExportFormat::Wav)) GTEST_SKIP() << "built without libsndfile";
  WithSeeds(60, [](Random& random) {
    NotedRecord noted = RandomNoted(random);
    while (noted.record.kind != RecordKind::Time) noted = RandomNoted(random);
    const auto file = Imported("f.wav", BytesOf({noted}, ExportFormat::Wav));
    ASSERT_TRUE(file) << file.Why().Text();
    const auto found = RecordOf(file->records.front(), {});
    ASSERT_TRUE(found) << found.Why().Text();
    ExpectTheSameWords(*found, noted.record);
    EXPECT_EQ(found->settings.option, noted.record.settings.option);
    EXPECT_EQ(found->scaledRange, noted.record.scaledRange);
  });
}

TEST(RandomDataLogs, GiveEveryWordBackWhereTheirRangeIsSaid) {
  WithSeeds(40, [](Random& random) {
    const Record wanted = RandomNoted(random).record;
    Said said{.option = wanted.settings.option,
              .range = wanted.scaledRange,
              .window = static_cast<std::int16_t>(random.Below(3))};
    for (const DataLogValues values : {DataLogValues::Scaled, DataLogValues::RawWords}) {
      said.words = values == DataLogValues::RawWords;
      const char mark = random.OneIn(2) ? ',' : '.';
      const auto file = Imported("f.csv", DataLogOf(wanted, mark, values));
      ASSERT_TRUE(file) << file.Why().Text();
      const auto found = RecordOf(file->records.front(), said);
      ASSERT_TRUE(found) << found.Why().Text();
      ExpectTheSameWords(*found, wanted);
      EXPECT_EQ(found->conditions.supplyV, wanted.conditions.supplyV);
      EXPECT_EQ(found->conditions.temperatureC, wanted.conditions.temperatureC);
    }
  });
}

TEST(RandomJson, HoldsEveryBitAndEveryText) {
  WithSeeds(20, [](Random& random) {
    const std::vector<NotedRecord> records = SeveralNoted(random);
    const auto json = nlohmann::json::parse(BytesOf(records, ExportFormat::Json));
    ASSERT_EQ(json["records"].size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
      const Record& wanted = records[i].record;
      const nlohmann::json& found = json["records"][i];
      const bool isTime = wanted.kind == RecordKind::Time;
      const auto places = found[isTime ? "time_s" : "frequency_hz"].get<std::vector<double>>();
      ASSERT_EQ(places.size(), wanted.Points());
      for (std::size_t at = 0; at < places.size(); ++at) EXPECT_EQ(places[at], PlaceOf(wanted, at));
      for (const Axis axis : kAxes) {
        const nlohmann::json& points = found["axes"][std::string(1, Letter(axis))];
        ASSERT_TRUE(
            std::ranges::equal(points["data_g"].get<std::vector<double>>(), wanted.Values(axis)));
        ASSERT_TRUE(std::ranges::equal(points["raw"].get<std::vector<double>>(),
                                       wanted.Of(axis).raw.First(wanted.Points())));
      }
      const RecordNote& note = records[i].note;
      const auto text = [&](const char* name) {
        return found[name].is_null() ? "" : found[name].get<std::string>();
      };
      EXPECT_EQ(text("machine"), note.machine);
      EXPECT_EQ(text("note"), note.note);
      EXPECT_EQ(found["tags"].get<std::vector<std::string>>(), note.tags);
      EXPECT_EQ(found["supply_v"].get<float>(), wanted.conditions.supplyV);
      EXPECT_EQ(found["temperature_c"].get<float>(), wanted.conditions.temperatureC);
      EXPECT_EQ(found["rec_info"], wanted.settings.recInfo);
      EXPECT_EQ(found["speed_rpm"].is_null(), !note.speedRpm.has_value());
      if (note.speedRpm) {
        EXPECT_EQ(found["speed_rpm"].get<double>(), *note.speedRpm);
      }
    }
  });
}

// As the head of the file says that it is undone.
std::string Unescaped(const std::string& line) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] != '\\') {
      text += line[i];
      continue;
    }
    const char next = line.at(++i);
    text += next == 'n' ? '\n' : next == 'r' ? '\r' : next;
  }
  return text;
}

double NumberIn(const std::string& cell) {
  double number = 0;
  const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), number);
  EXPECT_TRUE(error == std::errc{} && end == cell.data() + cell.size()) << cell;
  return number;
}

TEST(RandomCsv, HoldsEveryBitAndEveryText) {
  WithSeeds(20, [](Random& random) {
    const NotedRecord noted = RandomNoted(random);
    const Record& wanted = noted.record;
    std::istringstream file(BytesOf({noted}, ExportFormat::Csv));
    std::map<std::string, std::string> facts;
    std::size_t point = 0;
    for (std::string line; std::getline(file, line);) {
      ASSERT_TRUE(line.ends_with('\r'));
      line.pop_back();
      const std::string begin = "# record 1, ";
      if (line.starts_with(begin)) {
        const std::size_t colon = line.find(':');
        facts[line.substr(begin.size(), colon - begin.size())] =
            line.substr(std::min(colon + 2, line.size()));
      } else if (line[0] >= '0' && line[0] <= '9') {
        std::vector<std::string> cells{""};
        for (const char c : line) c == ',' ? cells.emplace_back() : cells.back() += c;
        ASSERT_THAT(cells, SizeIs(9));
        ASSERT_EQ(NumberIn(cells[1]), static_cast<double>(point));
        ASSERT_EQ(NumberIn(cells[2]), PlaceOf(wanted, point));
        for (const Axis axis : kAxes) {
          ASSERT_EQ(NumberIn(cells[3 + Index(axis)]), wanted.Values(axis)[point]);
          ASSERT_EQ(NumberIn(cells[6 + Index(axis)]), wanted.Of(axis).raw(static_cast<int>(point)));
        }
        ++point;
      }
    }
    EXPECT_EQ(point, wanted.Points());
    EXPECT_EQ(Unescaped(facts["machine"]), noted.note.machine);
    EXPECT_EQ(Unescaped(facts["note"]), noted.note.note);
    EXPECT_EQ(Unescaped(facts["orientation"]), noted.note.orientation);
    EXPECT_EQ(NumberIn(facts["lsb_weight_g"]), wanted.lsbWeight);
  });
}

TEST(RandomNumbers, AreReadAsTheyWereWritten) {
  WithSeeds(300, [](Random& random) {
    std::uint64_t bits = 0;
    for (int word = 0; word < 4; ++word) {
      bits = bits << 16U | static_cast<std::uint64_t>(random.Word());
    }
    const auto number = std::bit_cast<double>(bits);
    if (!std::isfinite(number)) return;
    EXPECT_EQ(NumberIn(ExactText(number)), number);
    const auto single = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    if (std::isfinite(single)) {
      EXPECT_EQ(static_cast<float>(NumberIn(ExactText(single))), single);
    }
  });
}

}  // namespace
}  // namespace kestrel::exchange
