// A part of the workbench with its title: what it is, muted beside it what it shows, its buttons.
// SPDX-License-Identifier: MIT
#pragma once

#include <QHBoxLayout>
#include <QWidget>

#include "ui/parts/line_label.h"
#include "ui/study/flat_button.h"

namespace kestrel {

class BenchCard : public QWidget {
 public:
  BenchCard(const QString& name, const QString& title, QWidget* content);

  void SetTitle(const QString& title) { lblTitle_->setText(title); }
  void SetSummary(const QString& summary);
  // Right in the title.
  void AddToHead(QWidget* widget);
  FlatButton* AddButton(const QString& name, const QString& icon, const QString& word);

 protected:
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void Colour();

  QWidget* head_;
  QHBoxLayout* row_;
  QLabel* lblTitle_;
  LineLabel* lblSummary_;
};

// Small muted words over a hairline, between the parts of a card.
class BenchHeading : public QLabel {
 public:
  BenchHeading(const QString& name, const QString& text);

 protected:
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

// A muted text of several lines, in a size smaller.
class BenchNote : public QLabel {
 public:
  explicit BenchNote(const QString& name, const QString& text = {});
  // In the colour of a warning.
  void SetWarning(bool isWarning);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Colour();
  bool isWarning_ = false;
};

}  // namespace kestrel
