// The page about the archive's tables tells what is there, and its queries give what they promise.
// SPDX-License-Identifier: MIT
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "archive/archive.h"
#include "support/random_records.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using Columns = std::map<std::string, std::set<std::string>>;

std::string Page() {
  std::ifstream file(KESTREL_AFAR);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

// Names between backquotes in the first cell of each row, below the headings of tables.
Columns Documented() {
  Columns columns;
  std::istringstream lines(Page());
  std::string table;
  bool isInTables = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("## ")) isInTables = line == "## The archive's tables";
    if (isInTables && line.starts_with("### ")) table = line.substr(4);
    if (!isInTables || !line.starts_with("| `")) continue;
    const std::string cell = line.substr(0, line.find(" | "));
    const std::regex name("`([a-z_0-9]+)`");
    for (std::sregex_iterator at(cell.begin(), cell.end(), name), end; at != end; ++at) {
      columns[table].insert((*at)[1]);
    }
  }
  return columns;
}

std::vector<std::string> Queries() {
  std::vector<std::string> queries;
  const std::string page = Page();
  const std::string begin = "```sql\n";
  for (std::size_t at = page.find(begin); at != std::string::npos; at = page.find(begin, at)) {
    at += begin.size();
    queries.push_back(page.substr(at, page.find(";\n```", at) - at));
  }
  return queries;
}

class AfarOnAServer : public testing::Test {
 protected:
  // A spectrum with one level in all bins.
  void Keep(const std::string& machine, double level, std::chrono::hours ago) {
    NewRecord kept{.uid = NewUid(), .record = records_.Next(), .program = "0.1.0", .bench = "b"};
    kept.record.kind = RecordKind::Spectrum;
    kept.record.settings = SettingsFromWords(0x1D01, 0);
    kept.record.time = std::chrono::system_clock::now() - ago;
    kept.remarks = {.machine = machine, .point = "drive-end"};
    const auto id = archive_.Keep(kept);
    archive_.Connection().Run(
        "update record set rms_x = $1, rms_y = null, rms_z = $2 where id = $3",
        {level, level / 2, id});
  }
  std::vector<database::Values> Run(const std::string& query) {
    std::vector<database::Values> rows;
    // The connection reads the types that the program uses; others come as text.
    archive_.Connection().Run(
        "select row_to_json(q)::text from (" + query + ") as q", {},
        [&](database::Row row) { rows.emplace_back(row.begin(), row.end()); });
    return rows;
  }
  static std::string TextOfRow(const database::Values& row) { return database::Text(row.at(0)); }

  TemporarySchema schema_;
  Archive archive_{schema_.Connect()};
  RandomRecords records_{1};
};

TEST_F(AfarOnAServer, EveryTableAndColumnIsOnThePage) {
  Columns real;
  archive_.Connection().Run(
      "select table_name::text, column_name::text from information_schema.columns "
      "where table_schema = current_schema()",
      {}, [&](database::Row row) { real[database::Text(row[0])].insert(database::Text(row[1])); });
  EXPECT_GE(real.size(), 4U);
  EXPECT_EQ(Documented(), real);
}

TEST_F(AfarOnAServer, QueriesGiveWhatTheyPromise) {
  const auto queries = Queries();
  ASSERT_GE(queries.size(), 4U);
  for (int i = 0; i < 12; ++i) {
    Keep("pump-" + std::to_string(i), 9, std::chrono::hours(30));
    Keep("pump-" + std::to_string(i), 0.5 * i, std::chrono::hours(2));
  }
  EXPECT_EQ(Run(queries[0]).size(), 12U);
  EXPECT_NE(TextOfRow(Run(queries[0])[0]).find(R"("machine":"pump-0")"), std::string::npos);
  EXPECT_NE(TextOfRow(Run(queries[0])[0]).find(R"("rms_x":0,)"), std::string::npos);
  const auto worst = Run(queries[1]);
  ASSERT_EQ(worst.size(), 10U);
  EXPECT_NE(TextOfRow(worst[0]).find(R"("machine":"pump-11")"), std::string::npos);
  EXPECT_NE(TextOfRow(worst[0]).find(R"("rms_g":5.5})"), std::string::npos);
  EXPECT_NE(TextOfRow(worst[9]).find(R"("machine":"pump-2")"), std::string::npos);
  const auto trend = Run(queries[2]);
  ASSERT_EQ(trend.size(), 2U);
  EXPECT_NE(TextOfRow(trend[0]).find(R"("records":1,"mean_g":9,"largest_g":9)"), std::string::npos)
      << TextOfRow(trend[0]);
  EXPECT_NE(TextOfRow(trend[1]).find(R"("mean_g":0.5)"), std::string::npos);
  for (std::size_t i = 3; i < queries.size(); ++i) EXPECT_NO_THROW(Run(queries[i])) << queries[i];
}

}  // namespace
}  // namespace kestrel::archive
