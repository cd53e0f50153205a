// The small window that tells what the program is busy with.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>
#include <QWidget>
#include <string>

namespace kestrel {

// The small window that tells what the program is busy with.
class frmMsg : public QWidget {
 public:
  frmMsg();

  // Shows the window and returns once its text is on the screen, or after a second without one.
  // What the user does meanwhile stays queued.
  void ShowPainted(const std::string& caption, const std::string& text);
  void SetText(const std::string& text);

 private:
  QPlainTextEdit* txtMsg_;
};

}  // namespace kestrel
