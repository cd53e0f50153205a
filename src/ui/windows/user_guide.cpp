// The places where the guide may lie, tried one by one.
// SPDX-License-Identifier: MIT
#include "ui/windows/user_guide.h"

#include <QDesktopServices>
#include <QUrl>
#include <algorithm>
#include <string>
#include <vector>

namespace kestrel {
namespace {

// Beside the program, as it is built and in the portable package; then as it is installed. As text
// where no page could be made of it.
std::vector<std::filesystem::path> Places(Files& files) {
  const std::filesystem::path program = files.ProgramFolder();
  const std::filesystem::path shared = program.parent_path() / "share" / "kestrel" / "guide";
  return {program / "guide" / "guide.html", shared / "guide.html", program / "guide" / "guide.md",
          shared / "guide.md"};
}

}  // namespace

bool OpenWithDesktop(const std::filesystem::path& file) {
  return QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(file.string())));
}

void OpenUserGuide(Files& files, Messages& messages, const FileOpener& open) {
  const std::vector<std::filesystem::path> places = Places(files);
  const auto found = std::ranges::find_if(
      places, [&](const std::filesystem::path& file) { return files.Read(file, 1).has_value(); });
  if (found == places.end()) {
    messages.Show("The user guide cannot be found. It should be\n" + places[0].string() + "\nor\n" +
                  places[1].string());
  } else if (!open(*found)) {
    messages.Show("There is no program to show the user guide with. Any web browser can open\n" +
                  found->string());
  }
}

}  // namespace kestrel
