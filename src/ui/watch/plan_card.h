// A plan that is written: its text, and the list of what is wrong with it.
// SPDX-License-Identifier: MIT
#pragma once

#include <QListWidget>
#include <QWidget>
#include <filesystem>
#include <optional>

#include "monitor/plan/plan.h"
#include "seams/files.h"
#include "ui/watch/plan_editor.h"
#include "ui/workbench/bench_card.h"

namespace kestrel {

// Files that the plan names are looked for beside its own.
class PlanCard : public QWidget {
  Q_OBJECT

 public:
  explicit PlanCard(Files& files);

  // Another text, of the file or of none yet; it counts as saved where it `isSaved`.
  void Show(const QString& text, const std::filesystem::path& file, bool isSaved);
  void SetSaved();
  void SetRunning(bool isRunning);

  [[nodiscard]] QString Text() const { return editor_->toPlainText(); }
  // None while something is wrong with it.
  [[nodiscard]] const std::optional<monitor::Plan>& Plan() const { return plan_; }
  [[nodiscard]] const monitor::Mistakes& Mistakes() const { return mistakes_; }
  [[nodiscard]] bool IsSaved() const { return isSaved_; }
  void GoToFirstMistake();
  void FocusText() { editor_->setFocus(); }

 signals:
  void Changed();  // the text, or whether it is saved

 private:
  void Check();
  void ShowSummary();

  Files& files_;
  std::filesystem::path file_;
  std::optional<monitor::Plan> plan_;
  monitor::Mistakes mistakes_;
  bool isSaved_ = true;
  PlanEditor* editor_;
  QListWidget* list_;
  BenchCard* card_;
};

}  // namespace kestrel
