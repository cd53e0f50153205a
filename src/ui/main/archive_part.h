// What the main window has of the archive: a menu entry, a line, the question at the end.
// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>

#include "seams/messages.h"
#include "seams/mouse_pointer.h"
#include "ui/library/record_keeper.h"
#include "ui/main/main_menu.h"
#include "ui/parts/line_label.h"

namespace kestrel {

class ArchivePart : public QObject {
 public:
  struct Parts {
    RecordKeeper& keeper;
    MainMenu& menu;
    Messages& messages;
    MousePointer& pointer;
    QMainWindow& window;
  };

  explicit ArchivePart(const Parts& parts);

  // Waits a moment for records that are not on a disk yet; asks where some would be lost.
  [[nodiscard]] bool MayClose();

 private:
  void Show();
  [[nodiscard]] bool Finish(std::chrono::milliseconds patience);

  Parts parts_;
  LineLabel* lblArchive_;
};

}  // namespace kestrel
