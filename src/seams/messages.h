// Message boxes, and what the user answers.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kestrel {

// What the user wants done with changes that would be lost.
enum class Unsaved { Save, Discard, Cancel };

// What the user wants done with files of earlier days that the next ones would replace.
enum class EarlierFiles { GoOn, Replace, OtherName };

// Message boxes; they return once the user has dismissed them.
class Messages {
 public:
  virtual ~Messages() = default;

  virtual void Show(const std::string& text, const std::string& title) = 0;
  void Show(const std::string& text) { Show(text, ""); }

  // A box with an explanation of its text: why, and what can be done about it. An empty one is left
  // out.
  virtual void ShowExplained(const std::string& text, const std::string& title,
                             const std::string& explanation) {
    Show(explanation.empty() ? text : text + "\n\n" + explanation, title);
  }

  // Whether something that cannot be taken back is to be done: `deed` is the button's caption,
  // "&Delete". Where nobody can be asked, it is not.
  virtual bool AskToGoOn(const std::string& /*text*/, const std::string& /*deed*/) { return false; }

  // Where nobody can be asked, changes are discarded.
  virtual Unsaved AskToSave(const std::string& /*text*/) { return Unsaved::Discard; }

  // Where nobody can be asked, no file is replaced.
  virtual EarlierFiles AskAboutEarlierFiles(const std::string& /*text*/) {
    return EarlierFiles::GoOn;
  }
};

}  // namespace kestrel
