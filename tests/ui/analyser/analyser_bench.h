// The analyser as the program opens it, over the simulated sensor in swift time.
// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>
#include <QTableView>
#include <QToolButton>
#include <stdexcept>
#include <utility>

#include "ui/analyser/frmAnalyser.h"
#include "ui/window_bench.h"

namespace kestrel {

class AnalyserBench : public WindowBench {
 protected:
  frmAnalyser& Open() {
    Start();
    ChooseShortCaptures();
    Trigger("mnuAnalyser");
    Settle();
    return Analyser();
  }
  frmAnalyser& Analyser() { return Find<frmAnalyser>("frmAnalyser"); }
  StudyModel& Model() { return Analyser().Model(); }
  const study::Study& Study() { return Model().Get(); }
  const study::StudyChoice& Choice() { return Model().Choice(); }
  AnalyserPlot& Plot() { return Analyser().Area().Plot(); }

  template <typename Control = QWidget>
  Control& In(const char* name) {
    auto* control = Analyser().template findChild<Control*>(name);
    if (control == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *control;
  }
  // An entry of a button's menu, as it stands when the menu opens.
  QAction& Entry(const char* button, const char* entry) {
    QMenu* menu = In<QToolButton>(button).menu();
    emit menu->aboutToShow();
    auto* action = menu->findChild<QAction*>(entry);
    if (action == nullptr) throw std::runtime_error(std::string("no entry ") + entry);
    return *action;
  }
  void Capture() { Press("cmdStart"); }
  void Click(const char* button) { In<QAbstractButton>(button).click(); }
  void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&Plot(), static_cast<Qt::Key>(key), modifiers);
  }
  // In the window, whatever has the focus; also while it is not the active one.
  void WindowKey(int key, Qt::KeyboardModifiers modifiers = {}) {
    Analyser().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&Analyser()));
    QTest::keyClick(&Analyser(), static_cast<Qt::Key>(key), modifiers);
  }
  bool Gets(const std::function<bool()>& state) { return QTest::qWaitFor(state, 20'000); }
  // As soon as a capture is waited for.
  void AtCapture(std::function<void()> deed) {
    QObject::connect(&poll_, &QTimer::timeout, &Window(), [this, deed = std::move(deed)] {
      if (Find<QPushButton>("cmdStart").text() != "Stop") return;
      poll_.stop();
      deed();
    });
    poll_.start(0);
  }
  QAbstractItemModel& Rows(const char* table) { return *In<QTableView>(table).model(); }
  QString Cell(const char* table, int row, int column) {
    return Rows(table).index(row, column).data().toString();
  }
  QString Said() { return Analyser().statusBar()->currentMessage(); }
  static void Settle() {
    for (int i = 0; i < 10; ++i) QApplication::processEvents();
  }

  QTimer poll_;
};

}  // namespace kestrel
