// The wheel over a control that has no focus changes nothing, on every window.
// SPDX-License-Identifier: MIT
#include <QtTest/qtestspontaneevent.h>
#include <QAbstractSpinBox>
#include <QWheelEvent>

#include "ui/window_walk.h"

namespace kestrel {
namespace {

class Wheel : public WindowWalk {
 protected:
  static void Turn(QWidget& widget, int steps) {
    const QPointF middle = QRectF(widget.rect()).center();
    QWheelEvent event(middle, widget.mapToGlobal(middle), {}, QPoint(0, 120 * steps), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    QApplication::sendEvent(&widget, &event);
    Settle();
  }
};

TEST_F(Wheel, ChangesNoListWithoutFocusAndWritesNothing) {
  int lists = 0;
  EachWindow([&](QWidget& window) {
    for (QWidget* widget : Shown(window)) {
      auto* list = qobject_cast<QComboBox*>(widget);
      if (list == nullptr || !list->isEnabled()) continue;
      ++lists;
      if (window.focusWidget() != nullptr) window.focusWidget()->clearFocus();
      const QString before = list->currentText();
      frames.clear();
      for (const int steps : {1, -1, -1}) {
        Turn(*list, steps);
        EXPECT_EQ(list->currentText(), before) << Told(*list);
        EXPECT_NE(window.focusWidget(), list) << Told(*list) << " takes the focus by the wheel";
      }
      EXPECT_EQ(Writes(), std::vector<int>{}) << Told(*list);
      if (list->isEditable()) Turn(*list->lineEdit(), -1);
      EXPECT_EQ(list->currentText(), before) << Told(*list);
    }
    for (QWidget* widget : Shown(window)) {
      const auto* spin = qobject_cast<QAbstractSpinBox*>(widget);
      if (spin == nullptr) continue;
      const QString before = spin->text();
      Turn(*widget, 1);
      EXPECT_EQ(spin->text(), before) << Told(*widget);
    }
  });
  EXPECT_GE(lists, 12);
}

TEST_F(Wheel, StillChangesTheListThatHasTheFocus) {
  Start();
  auto& list = Find<QComboBox>("cbxRecPntr");
  Window().activateWindow();
  list.setFocus();
  Turn(list, -1);
  EXPECT_EQ(list.currentIndex(), 1);
}

constexpr std::size_t kFramesOfAWrite = 2;  // low and high byte

TEST_F(Wheel, ChoosingTheChosenItemWritesAgain) {
  Start();
  auto& list = Find<QComboBox>("cbxSignalRange");
  Settle();
  frames.clear();
  list.showPopup();
  Settle();
  QTest::keyClick(list.view(), Qt::Key_Return);
  EXPECT_EQ(Writes().size(), kFramesOfAWrite);
  list.setCurrentIndex(1);
  frames.clear();
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_EQ(Writes().size(), kFramesOfAWrite) << "a change is told once";
}

}  // namespace
}  // namespace kestrel
