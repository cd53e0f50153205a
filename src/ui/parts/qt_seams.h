// The toolkit's message boxes and mouse pointer.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/messages.h"
#include "seams/mouse_pointer.h"

namespace kestrel {

// Real message boxes.
class QtMessages : public Messages {
 public:
  using Messages::Show;
  void Show(const std::string& text, const std::string& title) override;
  void ShowExplained(const std::string& text, const std::string& title,
                     const std::string& explanation) override;
  Unsaved AskToSave(const std::string& text) override;
  bool AskToGoOn(const std::string& text, const std::string& deed) override;
  EarlierFiles AskAboutEarlierFiles(const std::string& text) override;
};

// Messages on standard error, for runs without a display.
class ConsoleMessages : public Messages {
 public:
  using Messages::Show;
  void Show(const std::string& text, const std::string& title) override;
};

class QtMousePointer : public MousePointer {
 public:
  QtMousePointer() = default;
  ~QtMousePointer() override;
  QtMousePointer(const QtMousePointer&) = delete;
  QtMousePointer& operator=(const QtMousePointer&) = delete;

  void ShowHourglass() override;
  void ShowDefault() override;

 private:
  void Restore();

  bool hourglass_ = false;
};

}  // namespace kestrel
