// A window over a scripted sensor, with an edge of its own.
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest/QTest>
#include <memory>
#include <set>

#include "app/handler_edge.h"
#include "support/register_bench.h"
#include "support/reset_program.h"
#include "ui/parts/sensor_window.h"

namespace kestrel {

// A window over a scripted sensor, with an edge of its own.
template <typename Window>
class SensorWindowBench : public RegisterBench {
 protected:
  SensorWindowBench() : RegisterBench(ResetProgram) {}

  // Shows the window; it becomes active.
  Window& Open() {
    window_ = std::make_unique<Window>(core, edge, nullptr);
    Activate();
    return *window_;
  }
  // As when the user comes back from another window.
  void Activate() {
    window_->ShowInFront();
    QApplication::processEvents();
    if (!shown_) {
      shown_ = true;
      return;
    }
    QEvent activate(QEvent::WindowActivate);
    QApplication::sendEvent(window_.get(), &activate);
  }

  template <typename Control = QWidget>
  Control& Find(const char* name) {
    auto* control = window_->template findChild<Control*>(name);
    if (control == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *control;
  }
  bool Checked(const char* button) { return Find<QAbstractButton>(button).isChecked(); }
  void Press(const char* button) { Find<QAbstractButton>(button).click(); }
  QString Text(const char* label) { return Find<QLabel>(label).text(); }
  QString BoxText(const char* box) { return Find<QLineEdit>(box).text(); }
  void Key(QWidget& control, Qt::Key key) { QTest::keyClick(&control, key); }

  // Every mnemonic of the window, in capitals; one that is used twice is a failure.
  std::set<QChar> Mnemonics() {
    std::set<QChar> letters;
    const auto add = [&](const QString& text) {
      const QKeySequence sequence = QKeySequence::mnemonic(text);
      if (sequence.isEmpty()) return;
      EXPECT_TRUE(letters.insert(sequence.toString().back()).second) << text.toStdString();
    };
    for (const auto* button : window_->template findChildren<QAbstractButton*>()) {
      add(button->text());
    }
    for (const auto* box : window_->template findChildren<QGroupBox*>()) add(box->title());
    for (const auto* label : window_->template findChildren<QLabel*>()) {
      if (label->buddy() != nullptr) add(label->text());
    }
    return letters;
  }

  // Every control that the tab key leads to from here, until it comes round.
  std::vector<QString> TabOrder(QWidget& first) {
    std::vector<QString> names;
    first.setFocus();
    const QWidget* at = &first;
    do {
      names.push_back(at->objectName());
      QTest::keyClick(window_.get(), Qt::Key_Tab);
      at = window_->focusWidget();
    } while (at != &first && names.size() < 40);
    return names;
  }

  bool busy = false;
  bool idle = true;
  HandlerEdge edge{messages,
                   {.busy = [this] { return busy; },
                    .refused = [] {},
                    .after = [] {},
                    .idle = [this] { return idle; }}};
  std::unique_ptr<Window> window_;
  bool shown_ = false;
};

}  // namespace kestrel
