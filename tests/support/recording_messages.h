// Message boxes that are dismissed at once, kept for the test.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "seams/messages.h"

namespace kestrel {

// Message boxes that are dismissed at once, kept for the test.
class RecordingMessages : public Messages {
 public:
  using Messages::Show;

  void Show(const std::string& text, const std::string& title) override {
    texts_.push_back(text);
    titles_.push_back(title);
    if (whileShown_) whileShown_();
  }

  void ShowExplained(const std::string& text, const std::string& title,
                     const std::string& explanation) override {
    explanations.push_back(explanation);
    Show(text, title);
  }

  bool AskToGoOn(const std::string& text, const std::string& deed) override {
    questions.push_back(text + " [" + deed + "]");
    return goesOn;
  }

  Unsaved AskToSave(const std::string& text) override {
    questions.push_back(text);
    return answer;
  }

  EarlierFiles AskAboutEarlierFiles(const std::string& text) override {
    questions.push_back(text);
    return earlierFiles;
  }

  std::vector<std::string> explanations;  // of the boxes that may have one
  std::vector<std::string> questions;
  bool goesOn = true;
  Unsaved answer = Unsaved::Discard;
  EarlierFiles earlierFiles = EarlierFiles::GoOn;

  [[nodiscard]] const std::vector<std::string>& Texts() const { return texts_; }
  [[nodiscard]] const std::vector<std::string>& Titles() const { return titles_; }

  void Clear() {
    texts_.clear();
    titles_.clear();
    explanations.clear();
  }

  // Runs while a box is open.
  void WhileShown(std::function<void()> action) { whileShown_ = std::move(action); }

 private:
  std::vector<std::string> texts_;
  std::vector<std::string> titles_;
  std::function<void()> whileShown_;
};

}  // namespace kestrel
