// Set-ups listed, loaded, saved and deleted as files.
// SPDX-License-Identifier: MIT
#include "setup/setup_store.h"

#include <algorithm>
#include <string_view>

#include "app/file_name.h"
#include "exchange/texts.h"
#include "numeric/runtime_error.h"
#include "setup/setup_file.h"

namespace kestrel::setup {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 100;  // bytes, so that every system takes the file's name

std::string TextOf(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace

fs::path SetupFolderBeside(const archive::Place& usualArchive) {
  if (usualArchive.text.empty()) return {};
  return archive::PathOf(usualArchive).parent_path() / "setups";
}

fs::path UsualSetupFolder(const std::function<std::string(const char* name)>& environment) {
  return SetupFolderBeside(archive::UsualPlace(environment));
}

exchange::Exchanged<Setup> LoadSetup(Files& files, const fs::path& file) {
  const auto bytes = files.Read(file, kLargestSetupFile + 1);
  if (!bytes) return exchange::Fault{.file = TextOf(file), .what = "the file cannot be read"};
  return ReadSetupFile(TextOf(file), *bytes);
}

void WriteSetup(Files& files, const fs::path& file, const Setup& setup) {
  files.ReplaceWhole(file, SetupFileText(setup));
}

std::string SetupStore::ProblemOf(const std::string& name) const {
  if (folder_.empty()) return "no folder for the user's data is known; name a file instead";
  if (name.find_first_not_of(' ') == std::string::npos) return "a set-up needs a name";
  if (name.size() > kLongestName) return "the name is too long";
  if (!exchange::IsUtf8(name)) return "the name is not UTF-8 text";
  if (name.front() == '.' || name.front() == ' ' || name.back() == ' ') {
    return "it must not begin with a point or a blank, nor end with a blank";
  }
  return FileNameProblem(name);
}

fs::path SetupStore::FileOf(const std::string& name) const {
  const std::string file = name + kSetupExtension;
  return folder_ / fs::path(std::u8string(file.begin(), file.end()));
}

std::vector<SetupStore::Entry> SetupStore::List() {
  std::vector<Entry> entries;
  if (folder_.empty()) return entries;
  std::vector<std::string> names = files_.List(folder_);
  std::ranges::sort(names);
  for (const std::string& file : names) {
    if (!file.ends_with(kSetupExtension)) continue;
    const std::string name = file.substr(0, file.size() - std::string_view(kSetupExtension).size());
    const auto setup = Load(name);
    if (setup) {
      entries.push_back({name, *setup, ""});
    } else {
      entries.push_back({name, std::nullopt, setup.Why().Text()});
    }
  }
  return entries;
}

bool SetupStore::Has(const std::string& name) {
  return !folder_.empty() && files_.Read(FileOf(name), 0).has_value();
}

// The file's name is the set-up's, whoever gave it.
exchange::Exchanged<Setup> SetupStore::Load(const std::string& name) {
  if (!Has(name)) {
    return exchange::Fault{.what =
                               "There is no set-up \"" + name + "\" in " + TextOf(folder_) + "."};
  }
  auto setup = LoadSetup(files_, FileOf(name));
  if (!setup) return setup;
  Setup named = *setup;
  named.name = name;
  return named;
}

void SetupStore::Save(const Setup& setup) {
  const std::string problem = ProblemOf(setup.name);
  if (!problem.empty()) throw RuntimeError("The name \"" + setup.name + "\": " + problem);
  files_.MakeFolder(folder_);
  WriteSetup(files_, FileOf(setup.name), setup);
}

void SetupStore::Delete(const std::string& name) {
  files_.Remove(FileOf(name));
}

}  // namespace kestrel::setup
