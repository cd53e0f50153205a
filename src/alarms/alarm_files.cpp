// Saving, listing and loading alarm files, with the reason where one cannot be used.
// SPDX-License-Identifier: MIT
#include "alarms/alarm_files.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "alarms/alarm_file.h"
#include "app/file_name.h"
#include "numeric/runtime_error.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

constexpr std::size_t kMostNames = 100;
constexpr std::string_view kListedStart = "AlarmSpectrum";
constexpr std::string_view kListedEnd = ".csv";

// The message window for as long as a file is read, however that ends.
class ReadingSign {
 public:
  ReadingSign(AlarmFilesView& view, const std::string& text) : view_(view) {
    view_.ShowReading(text);
  }
  ~ReadingSign() { view_.HideReading(); }
  ReadingSign(const ReadingSign&) = delete;
  ReadingSign& operator=(const ReadingSign&) = delete;

 private:
  AlarmFilesView& view_;
};

}  // namespace

void AlarmFiles::cmdWriteFile_Click(const std::string& name) {
  if (!IsAlarmFileName(name)) {
    messages_.Show(
        "\nError while writting Alarm File"
        "\nFile Name = " +
            name +
            "\n\nThis program requires..."
            "\n\nA File name preface = AlarmSpectrum_ "
            "\n\nA file extension = .csv"
            "\n\nNo file written. Exiting the file write sub routine.",
        "Error");
    return;
  }
  const std::string problem = FileNameProblem(name);
  if (!problem.empty()) {
    throw RuntimeError("File Name = " + name + ": " + problem + ". No file written.");
  }
  const std::filesystem::path file = FolderOfUserFiles(files_) / PathOf(name);
  files_.ReplaceWhole(file, AlarmFileText(AlarmBandTable));
  inFile_ = AlarmBandTable;
  view_.SetMessage("24 bands saved to " + file.string() + ".");
}

std::array<std::filesystem::path, 2> AlarmFiles::Folders() {
  const std::filesystem::path own = FolderOfUserFiles(files_);
  const std::filesystem::path program = files_.ProgramFolder();
  return {own, own == program ? files_.DocumentsFolder() : program};
}

std::filesystem::path AlarmFiles::Find(const std::string& name) {
  const auto folders = Folders();
  for (const std::filesystem::path& folder : folders) {
    if (files_.Read(folder / PathOf(name), 1)) return folder / PathOf(name);
  }
  return folders.front() / PathOf(name);
}

std::string AlarmFiles::Shadowed(const std::filesystem::path& taken) {
  const std::filesystem::path other = Folders().back() / taken.filename();
  if (other == taken || !files_.Read(other, 1)) return "";
  return " Another file of this name, in " + other.parent_path().string() + ", was not loaded.";
}

// Entries before a bad line stay and are shown, like those of a whole file.
int AlarmFiles::Load(const std::filesystem::path& file) {
  const std::optional<std::string> content = files_.Read(file, kLargestAlarmFile + 1);
  if (!content) throw RuntimeError(file.string() + ": the file cannot be read.");
  if (content->size() > kLargestAlarmFile) {
    throw RuntimeError(file.string() + ": the file is too large to be an alarm file.");
  }
  const BandTable before = AlarmBandTable;
  int taken = 0;
  try {
    taken = ReadAlarmFileText(*content, ChangeableBands());
  } catch (const RuntimeError& error) {
    view_.DisplaySelected();
    if (AlarmBandTable != before) {
      view_.SetMessage("The lines before the bad one are loaded. Not yet written to the sensor.");
    }
    throw RuntimeError(file.string() + ", " + error.what());
  }
  // A file of fewer bands may not hold all of the table.
  BandTable alone;
  ReadAlarmFileText(*content, alone);
  inFile_ = alone;
  return taken;
}

int AlarmFiles::ReadFile(const std::string& name) {
  const std::filesystem::path file = Find(name);
  int taken = 0;
  {
    const ReadingSign sign(
        view_, "\r\n\r\nREADING FILE\r\nFile Name = " + name + "\r\nPath = " + file.string());
    loop_.YieldToPaint();
    taken = Load(file);
  }
  view_.DisplaySelected();
  view_.SetMessage(std::to_string(taken) + " bands loaded from " + file.string() +
                   ". Not yet written to the sensor." + Shadowed(file));
  return taken;
}

std::string AlarmFiles::NameToSaveUnder(const std::string& wished) {
  if (IsAlarmFileName(wished) && FileNameProblem(wished).empty()) return wished;
  std::vector<std::string> taken;
  for (const std::filesystem::path& folder : Folders()) {
    const std::vector<std::string> names = files_.List(folder);
    taken.insert(taken.end(), names.begin(), names.end());
  }
  const std::string proposed = kDefaultAlarmFile;
  std::string name = proposed;
  for (int i = 2; std::ranges::find(taken, name) != taken.end(); ++i) {
    name = proposed.substr(0, proposed.size() - kListedEnd.size()) + "_" + std::to_string(i) +
           std::string(kListedEnd);
  }
  return name;
}

std::vector<std::string> AlarmFiles::ListAlarmFiles() {
  std::vector<std::string> names;
  for (const std::filesystem::path& folder : Folders()) {
    for (const std::string& name : files_.List(folder)) {
      if (names.size() == kMostNames) return names;
      const bool listed = name.starts_with(kListedStart) && name.ends_with(kListedEnd);
      if (listed && std::ranges::find(names, name) == names.end()) names.push_back(name);
    }
  }
  return names;
}

std::string AlarmFiles::PlacesText() {
  const auto folders = Folders();
  const bool beside = folders.front() == files_.ProgramFolder();
  return folders.front().string() +
         (beside ? "" : ", nor beside the program in " + folders.back().string());
}

}  // namespace kestrel
