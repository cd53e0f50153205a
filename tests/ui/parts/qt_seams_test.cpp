// Message boxes, pointer and event loop of the toolkit.
// SPDX-License-Identifier: MIT
#include "ui/parts/qt_seams.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "ui/parts/qt_event_loop.h"

namespace kestrel {
namespace {

TEST(QtMessages, ShowsARealMessageBoxWithTheExactText) {
  QString text;
  QString title;
  int buttons = 0;
  QTimer::singleShot(0, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    text = box->text();
    title = box->windowTitle();
    buttons = static_cast<int>(box->buttons().size());
    box->accept();
  });
  QtMessages messages;
  messages.Show("The required I/O drivers could not be installed.", "Error");
  EXPECT_EQ(text, "The required I/O drivers could not be installed.");
  EXPECT_EQ(title, "Error");
  EXPECT_EQ(buttons, 1);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(QtMessages, ABoxWithoutATitleHasNoneAndAnExplanationStandsBelowTheText) {
  QString text;
  QString title = "not seen";
  QString explanation;
  QTimer::singleShot(0, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    text = box->text();
    title = box->windowTitle();
    explanation = box->informativeText();
    box->accept();
  });
  QtMessages messages;
  messages.ShowExplained("Error Reading SPI", "", "The board did not answer.");
  EXPECT_EQ(text, "Error Reading SPI");
  EXPECT_EQ(title, "");
  EXPECT_EQ(explanation, "The board did not answer.");
}

TEST(QtMousePointer, SeveralHourglassesAreEndedByOneDefault) {
  QtMousePointer pointer;
  pointer.ShowHourglass();
  pointer.ShowHourglass();
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  pointer.ShowDefault();
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(QtEventLoop, TheTimerTicksWhileTheLoopIsYieldedTo) {
  QtEventLoop loop;
  int ticks = 0;
  QElapsedTimer passed;
  passed.start();
  loop.StartTimer(std::chrono::milliseconds{20}, [&] { ++ticks; });
  while (ticks == 0 && passed.elapsed() < 2000) loop.YieldUntilEvent();
  EXPECT_EQ(ticks, 1);
  EXPECT_GE(passed.elapsed(), 19);
  loop.StopTimer();
}

TEST(QtEventLoop, YieldingToPaintPaintsWhatChanged) {
  class Counted : public QWidget {
   public:
    int paints = 0;

   protected:
    void paintEvent(QPaintEvent* /*event*/) override { ++paints; }
  } widget;
  QtEventLoop loop;
  widget.show();
  loop.Yield();
  const int before = widget.paints;
  widget.update();
  loop.YieldToPaint();
  EXPECT_EQ(widget.paints, before + 1);
}

TEST(QtMessages, AskedToSaveTheUserHasThreeAnswers) {
  QtMessages messages;
  const std::pair<QMessageBox::StandardButton, Unsaved> answers[] = {
      {QMessageBox::Save, Unsaved::Save},
      {QMessageBox::Discard, Unsaved::Discard},
      {QMessageBox::Cancel, Unsaved::Cancel}};
  for (const auto& [button, answer] : answers) {
    QTimer::singleShot(0, [button = button] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      EXPECT_EQ(box->text(), "Save them?");
      box->button(button)->click();
    });
    EXPECT_EQ(messages.AskToSave("Save them?"), answer);
  }
  QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
  EXPECT_EQ(messages.AskToSave("Save them?"), Unsaved::Cancel);
}

TEST(ConsoleMessages, WhereNobodyCanBeAskedChangesAreDiscarded) {
  ConsoleMessages messages;
  EXPECT_EQ(messages.AskToSave("Save them?"), Unsaved::Discard);
}

}  // namespace
}  // namespace kestrel
