// The page about messages and metrics tells what is published and served, no more and no less.
// SPDX-License-Identifier: MIT
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "publish/messages.h"
#include "publish/metric_families.h"

namespace kestrel::publish {
namespace {

// Rows of the table below a heading, as cells without backquotes.
std::vector<std::vector<std::string>> RowsBelow(const std::string& heading) {
  std::ifstream file(KESTREL_AFAR);
  std::vector<std::vector<std::string>> rows;
  bool isBelow = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("#")) isBelow = line == heading;
    if (!isBelow || !line.starts_with("| `")) continue;
    std::erase(line, '`');
    std::vector<std::string> cells;
    for (std::size_t at = 2, end = 0; (end = line.find(" |", at)) != std::string::npos;
         at = end + 3) {
      cells.push_back(line.substr(at, end - at));
    }
    rows.push_back(cells);
  }
  return rows;
}

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

std::string MembersOf(const std::string& json) {
  std::vector<std::string> names;
  const auto read = nlohmann::ordered_json::parse(json);
  for (const auto& [name, value] : read.items()) {
    names.push_back(name);
  }
  return Joined(names);
}

TEST(AfarPage, TellsTheMembersOfEveryMessage) {
  const std::vector<std::vector<std::string>> expected{
      {kStatusLeaf, MembersOf(JsonOf(Status{}))},
      {kLevelsLeaf, MembersOf(JsonOf(Levels{}))},
      {kAlarmLeaf, MembersOf(JsonOf(Alarm{}))},
      {kSpectrumLeaf, MembersOf(JsonOf(Spectrum{}))}};
  EXPECT_EQ(RowsBelow("### Members"), expected);
}

TEST(AfarPage, TellsEveryTopic) {
  std::set<std::string> topics;
  for (const auto& row : RowsBelow("## Messages")) topics.insert(row.at(0));
  EXPECT_EQ(topics, (std::set<std::string>{kStatusLeaf, kLevelsLeaf, kAlarmLeaf, kSpectrumLeaf,
                                           kSpectrumRequestLeaf}));
}

TEST(AfarPage, TellsEveryMetric) {
  MetricValues values{.levels = Levels{}, .status = Status{}, .publisher = {.hasBroker = true}};
  values.levels->axes[0] = {1, 1, 1, 1, "A"};
  values.status->lastRecord = values.status->nextCapture = Moment{};
  std::vector<std::vector<std::string>> served;
  for (const auto& family : FamiliesOf(values)) {
    std::vector<std::string> labels;
    for (const auto& label : family.metric.front().label) labels.push_back(label.name);
    served.push_back({family.name,
                      family.type == prometheus::MetricType::Counter ? "counter" : "gauge",
                      Joined(labels), family.help});
  }
  EXPECT_EQ(RowsBelow("## Metrics"), served);
}

}  // namespace
}  // namespace kestrel::publish
