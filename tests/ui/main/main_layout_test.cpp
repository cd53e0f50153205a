// The main window has room on the screens that it is made for.
// SPDX-License-Identifier: MIT
#include "ui/main/main_layout.h"

#include <QAccessible>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>

#include "ui/window_bench.h"

namespace kestrel {
namespace {

// Frame and panel of a desktop, in unscaled pixels.
constexpr int kOfADesktop = 40;

class MainWindowRoom : public WindowBench {
 protected:
  QSize Screen() { return QApplication::primaryScreen()->size(); }
  bool Scrolls() { return Window().findChild<QScrollArea*>("scrContent") != nullptr; }
  int Edge() { return Window().centralWidget()->layout()->contentsMargins().left(); }
};

TEST_F(MainWindowRoom, NothingScrollsOnAScreenOf1280By720AndUp) {
  if (Screen().width() < 1280 || Screen().height() < 720) GTEST_SKIP() << "a smaller screen";
  Start();
  EXPECT_FALSE(Scrolls());
  EXPECT_LE(Window().minimumSizeHint().height(), 660);
  EXPECT_EQ(Edge(), RoomySpacing().edge);
}

// 1920 by 1080 at 2x.
TEST_F(MainWindowRoom, NothingScrollsOnAScreenOf960By540AndThePartsStandCloser) {
  if (Screen() != QSize(960, 540)) GTEST_SKIP() << "another screen";
  Start();
  Press("cmdStart");
  QApplication::processEvents();
  EXPECT_FALSE(Scrolls());
  EXPECT_EQ(Edge(), TightSpacing().edge);
  EXPECT_LE(Window().minimumSizeHint().width(), Screen().width());
  EXPECT_LE(Window().minimumSizeHint().height(), Screen().height() - kOfADesktop);
  EXPECT_GE(Find<PictureBox>("pic1").width(), 400);
}

TEST_F(MainWindowRoom, SmallerScreensScroll) {
  if (Screen().width() > 800) GTEST_SKIP() << "a larger screen";
  Start();
  EXPECT_TRUE(Scrolls());
}

using MainWindowLooks = WindowBench;

TEST_F(MainWindowLooks, NoReadOutIsReachedByTabOrLooksLikeAField) {
  Start();
  for (const char* name : {"txtAlarm_1", "txtBand_2", "txtPK_3", "txtFreq_1", "txtFileCount"}) {
    SCOPED_TRACE(name);
    auto& box = Find<QLineEdit>(name);
    EXPECT_EQ(box.focusPolicy(), Qt::NoFocus);
    EXPECT_FALSE(box.hasFrame());
    QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&box);
    EXPECT_FALSE(told->text(QAccessible::Name).isEmpty());
    EXPECT_TRUE(told->state().readOnly);
    EXPECT_EQ(told->text(QAccessible::Value), box.text());
  }
}

TEST_F(MainWindowLooks, FlagsThatAreNotWellStandOutAndDataThatIsReadyDoesNot) {
  Start();
  Choose("cbxFFTAvgs", 255);
  During(80, [this] { Press("cmdStart"); });
  Press("cmdStart");
  ASSERT_EQ(Text("lblStatusFlag_4"), "FAIL");
  EXPECT_TRUE(Find<StateChip>("lblStatusFlag_4").StandsOut());
  EXPECT_FALSE(Find<StateChip>("lblStatusFlag_0").StandsOut());
  ChooseShortCaptures();
  Press("cmdStart");
  ASSERT_EQ(Text("lblStatusFlag_7"), "SET");
  EXPECT_FALSE(Find<StateChip>("lblStatusFlag_7").StandsOut());
}

TEST_F(MainWindowLooks, RowsOfFlagsAreAsHighAsTheirText) {
  Start();
  QApplication::processEvents();
  for (int bit = 1; bit < 15; ++bit) {
    const QLabel& name = Find<QLabel>(qPrintable(QString("lblStatusName_%1").arg(bit)));
    const QLabel& above = Find<QLabel>(qPrintable(QString("lblStatusName_%1").arg(bit - 1)));
    EXPECT_LE(name.y() - above.y(), name.fontMetrics().height() + RoomySpacing().line + 1) << bit;
  }
}

TEST_F(MainWindowLooks, ASimulatedSensorIsSaidInTheWindow) {
  Start();
  EXPECT_TRUE(Find<QLabel>("lblSimulated").isHidden());
  Trigger("mnuSimulated");
  EXPECT_TRUE(Find<QLabel>("lblSimulated").isVisible());
  EXPECT_EQ(Text("lblSimulated"), "Simulated sensor");
}

TEST_F(MainWindowLooks, TheSignOfACaptureStandsInItsGroupAndMovesNothing) {
  Start();
  QApplication::processEvents();
  const QRect before = Find<QPushButton>("cmdReadBuffer").geometry();
  QRect during;
  QRect sign;
  During(80, [&] {
    QApplication::processEvents();
    during = Find<QPushButton>("cmdReadBuffer").geometry();
    sign = Find<QLabel>("lblCapturingData").geometry();
  });
  Press("cmdStart");
  EXPECT_EQ(during, before);
  EXPECT_LT(sign.bottom(), Find<QPushButton>("cmdStart").y());
  EXPECT_GE(sign.width(), Find<QLabel>("lblCapturingData").sizeHint().width());
}

class FullScaleList : public WindowBench {
 protected:
  QMenu* List() { return Window().findChild<QMenu*>("mnuPlotScale"); }
  ScaleButton& Button() { return Find<ScaleButton>("cmdPlotScale"); }
  void ChooseScale(const QString& text) {
    for (QAction* action : List()->actions()) {
      if (action->text() == text) return action->trigger();
    }
    FAIL() << text.toStdString();
  }
};

TEST_F(FullScaleList, OpensWithTheOtherButtonAndWithAltDownAndNamesEveryScale) {
  Start();
  const QPoint at = Button().rect().center();
  QContextMenuEvent other(QContextMenuEvent::Mouse, at, Button().mapToGlobal(at));
  QApplication::sendEvent(&Button(), &other);
  ASSERT_NE(List(), nullptr);
  QStringList texts;
  for (const QAction* action : List()->actions()) {
    texts << action->text();
    EXPECT_EQ(action->isChecked(), action->text() == "1 g");
  }
  EXPECT_EQ(texts, (QStringList{"100 g", "50 g", "25 g", "10 g", "2 g", "1 g", "0.5 g", "0.25 g",
                                "0.1 g", "0.02 g"}));
  List()->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  ASSERT_EQ(List(), nullptr);
  QTest::keyClick(&Button(), Qt::Key_Down, Qt::AltModifier);
  ASSERT_NE(List(), nullptr);
  EXPECT_TRUE(List()->isVisible());
  List()->close();
}

TEST_F(FullScaleList, AChosenScaleIsTakenAsByPresses) {
  Start();
  Button().OpenList();
  ChooseScale("0.25 g");
  List()->close();
  EXPECT_EQ(Button().text(), "0.25");
  EXPECT_EQ(Text("lblYmax"), "0.25");
  EXPECT_EQ(Text("LbLYmid"), "0.125");
  EXPECT_EQ(Text("lblYmin"), "0");
  EXPECT_EQ(PlotScale, 0.25);
  Press("cmdPlotScale");
  EXPECT_EQ(Button().text(), "0.1");
}

TEST_F(FullScaleList, IsAnActionForAssistivePrograms) {
  Start();
  QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&Button());
  EXPECT_EQ(told->role(), QAccessible::Button);
  EXPECT_EQ(told->text(QAccessible::Name), "Full scale 1 g");
  QAccessibleActionInterface* actions = told->actionInterface();
  ASSERT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::showMenuAction()));
  actions->doAction(QAccessibleActionInterface::showMenuAction());
  ASSERT_NE(List(), nullptr);
  List()->close();
  actions->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(QTest::qWaitFor([this] { return Button().text() == "0.5"; }));
}

TEST_F(FullScaleList, TheButtonIsAsWideForEveryScale) {
  Start();
  const int width = Button().sizeHint().width();
  for (int i = 0; i < 10; ++i) {
    Press("cmdPlotScale");
    EXPECT_EQ(Button().sizeHint().width(), width);
  }
}

}  // namespace
}  // namespace kestrel
