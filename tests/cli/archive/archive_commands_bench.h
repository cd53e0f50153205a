// The words about an archive that is the usual one, in a folder of the test's own.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "cli/program_bench.h"
#include "support/temporary_folder.h"

namespace kestrel {

using Words = std::vector<std::string>;

class ArchiveCommands : public ProgramBench {
 protected:
  ArchiveCommands() { usualArchive = {(folder_.path() / "data" / "archive.db").string()}; }

  void Capture(const Words& more = {}) {
    Words words{"capture", "--averages", "1"};
    words.insert(words.end(), more.begin(), more.end());
    EXPECT_EQ(Simulate(words), ExitCode::Success) << error.str();
    EXPECT_EQ(error.str(), "");
  }
  nlohmann::json RunJson(Words arguments) {
    arguments.insert(arguments.begin(), "--json");
    EXPECT_EQ(Run(arguments), ExitCode::Success) << error.str();
    return nlohmann::json::parse(out.str());
  }
  nlohmann::json Ids(const Words& more = {}) {
    Words words{"archive", "list"};
    words.insert(words.end(), more.begin(), more.end());
    nlohmann::json ids = nlohmann::json::array();
    for (const nlohmann::json& record : RunJson(words)) ids.push_back(record["id"]);
    return ids;
  }
  TemporaryFolder folder_;
};

}  // namespace kestrel
