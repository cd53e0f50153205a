// Message boxes taken aside while nobody may be there to dismiss them.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "seams/messages.h"

namespace kestrel {

// Passes messages on, except while an Aside exists. Questions always reach the user.
class MessagesAside : public Messages {
 public:
  using Messages::Show;

  // Keeps the messages for which `taken` says so, as long as it exists.
  class Aside {
   public:
    Aside(MessagesAside& messages, std::function<bool()> taken)
        : messages_(messages), taken_(std::move(taken)), outer_(messages.aside_) {
      messages_.aside_ = this;
    }
    ~Aside() { messages_.aside_ = outer_; }
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;

    [[nodiscard]] const std::vector<std::string>& Texts() const { return texts_; }

   private:
    friend class MessagesAside;
    MessagesAside& messages_;
    std::function<bool()> taken_;
    Aside* outer_;
    std::vector<std::string> texts_;
  };

  explicit MessagesAside(Messages& shown) : shown_(shown) {}

  void Show(const std::string& text, const std::string& title) override {
    if (!Took(text)) shown_.Show(text, title);
  }
  void ShowExplained(const std::string& text, const std::string& title,
                     const std::string& explanation) override {
    if (!Took(text)) shown_.ShowExplained(text, title, explanation);
  }
  bool AskToGoOn(const std::string& text, const std::string& deed) override {
    return shown_.AskToGoOn(text, deed);
  }
  Unsaved AskToSave(const std::string& text) override { return shown_.AskToSave(text); }
  EarlierFiles AskAboutEarlierFiles(const std::string& text) override {
    return shown_.AskAboutEarlierFiles(text);
  }

 private:
  bool Took(const std::string& text) {
    if (aside_ == nullptr || !aside_->taken_()) return false;
    aside_->texts_.push_back(text);
    return true;
  }

  Messages& shown_;
  Aside* aside_ = nullptr;
};

}  // namespace kestrel
