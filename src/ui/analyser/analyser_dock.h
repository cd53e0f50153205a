// A dock of the analyser: title, a summary beside it, copy, float and close.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDockWidget>
#include <QLabel>
#include <QString>
#include <functional>

namespace kestrel {

class TextTable;

class AnalyserDock : public QDockWidget {
 public:
  AnalyserDock(const char* name, const QString& title, QWidget* content, QWidget* parent);

  // Beside the title, muted: "14 above 0.012 g".
  void SetSummary(const QString& summary);
  // A button before the others.
  void AddButton(const char* suffix, const char* icon, const QString& word,
                 std::function<void()> deed);
  // A table that the title's copy button copies.
  void SetCopied(TextTable* table);

 protected:
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void Colour();

  QWidget* bar_;
  QLabel* lblTitle_;
  QLabel* lblSummary_;
};

}  // namespace kestrel
