// The program's real windows over the simulated sensor, set up for pictures of the documents.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QFrame>
#include <QPixmap>
#include <QPushButton>
#include <map>
#include <stdexcept>

#include "../bench/program.h"
#include "support/memory_files.h"
#include "ui/analyser/frmAnalyser.h"

namespace kestrel {

// An installed program's: none of the machine's own paths shows.
class UserFiles : public MemoryFiles {
 public:
  UserFiles() { readOnly.insert(ProgramFolder()); }
  [[nodiscard]] std::filesystem::path DocumentsFolder() override { return "/home/me/Documents"; }
};

// Windows read the sensor once they are painted.
inline void Settle(int ms = 300) {
  QElapsedTimer passed;
  passed.start();
  while (passed.elapsed() < ms) QApplication::processEvents(QEventLoop::AllEvents, 10);
}

// Throws where it does not come true, so that no picture is drawn of something half done.
template <typename Condition>
void WaitUntil(const char* what, Condition&& isSo, int seconds = 60) {
  QElapsedTimer passed;
  passed.start();
  while (!isSo()) {
    if (passed.elapsed() > seconds * 1000)
      throw std::runtime_error(std::string("waited for ") + what);
    Settle(50);
  }
}

class Studio {
 public:
  explicit Studio(const Scenario& scenario, const ArchiveChoice& archive = {},
                  const WatchChoice& watch = {})
      : program_(scenario, &files_, archive, watch) {
    Expose(program_.Window());
  }

  frm1& Window() { return program_.Window(); }
  UserFiles& TheFiles() { return files_; }
  void Press(const char* button) { program_.Press(button); }
  void Choose(const char* list, int index) { Find<QComboBox>(list).setCurrentIndex(index); }
  void ChooseMode(const char* mode) {
    auto& list = Find<QComboBox>("cbxRecMode");
    list.setCurrentIndex(list.findText(mode));
  }
  void Capture(int count, const char* scaleG) {
    for (int i = 0; i < count; ++i) program_.Press("cmdStart");
    auto& scale = Find<QPushButton>("cmdPlotScale");
    while (scale.text() != scaleG) scale.click();
  }
  void Trigger(const char* item) { Find<QAction>(item).trigger(); }
  static frmAnalyser& Analyser() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (auto* analyser = dynamic_cast<frmAnalyser*>(top)) return *analyser;
    }
    throw std::runtime_error("no analyser");
  }
  frmAnalyser& OpenAnalyser(QSize size) {
    Trigger("mnuAnalyser");
    Analyser().resize(size);
    Settle();
    return Analyser();
  }
  template <typename Control>
  Control& Find(const char* name) {
    return *Window().findChild<Control*>(name);
  }
  // A window by its menu item, loaded.
  QDialog& Open(const char* item, const char* window) {
    Trigger(item);
    Settle();
    return Find<QDialog>(window);
  }
  void LoseAdapter() {
    program_.Unplug();
    while (Find<QFrame>("lostNotice").isHidden()) Settle(50);
  }

 private:
  UserFiles files_;
  Program program_;
};

// Where pictures are hung.
class Gallery {
 public:
  explicit Gallery(const QString& folder) : folder_(folder) {}

  void Add(const char* name, QWidget& window) {
    Settle();
    AddPicture(name, window.grab());
  }
  // As a small file.
  void AddPicture(const char* name, const QPixmap& picture);
  // Whether every picture of the list was drawn, and no other.
  [[nodiscard]] bool Complete() const;

 private:
  QString folder_;
  std::map<std::string, bool> drawn_;
};

}  // namespace kestrel
