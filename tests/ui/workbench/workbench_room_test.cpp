// The workbench's parts have the room that they need, and every control is reached by keys.
// SPDX-License-Identifier: MIT
#include <QListWidget>
#include <QRadioButton>
#include <QScrollArea>
#include <set>

#include "ui/parts/clear_style.h"
#include "ui/parts/line_label.h"
#include "ui/workbench/workbench_bench.h"

namespace kestrel {
namespace {

class WorkbenchRoom : public WorkbenchBench {
 protected:
  WorkbenchRoom() { ClearStyle::Use(); }
  void OpenAt(QSize size) {
    OpenFilled(20, 4, 3);
    Analyser().resize(size);
    Settle();
  }
  std::vector<QWidget*> Shown() {
    std::vector<QWidget*> shown;
    for (QWidget* widget : View().findChildren<QWidget*>()) {
      if (widget->isVisibleTo(&View()) && widget->window() == &Analyser()) shown.push_back(widget);
    }
    return shown;
  }
  static std::string Told(const QWidget& widget) {
    return widget.objectName().toStdString() + " " + widget.metaObject()->className();
  }
};

TEST_F(WorkbenchRoom, NothingIsCutOnTheSmallestScreen) {
  OpenAt({1280, 720});
  EXPECT_EQ(Analyser().size(), QSize(1280, 720));
  auto& scroll = In<QScrollArea>("workbenchScroll");
  EXPECT_EQ(scroll.widget()->size(), scroll.viewport()->size()) << "nothing has to be scrolled";
  for (const QWidget* widget : Shown()) {
    SCOPED_TRACE(Told(*widget));
    const QWidget* parent = widget->parentWidget();
    const bool scrolls = qobject_cast<QAbstractScrollArea*>(parent->parentWidget()) != nullptr;
    if (!scrolls) {
      EXPECT_TRUE(parent->rect().contains(widget->geometry())) << "sticks out";
    }
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
      const auto* line = dynamic_cast<const LineLabel*>(label);
      if (label->text().isEmpty()) continue;
      if (line != nullptr) {
        EXPECT_TRUE(!line->IsCut() || label->toolTip() == label->text());
      } else if (label->wordWrap()) {
        EXPECT_GE(label->height(), label->heightForWidth(label->width()));
      } else {
        EXPECT_GE(label->width(), label->sizeHint().width());
      }
    } else if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
      if (button->text().isEmpty()) continue;
      EXPECT_GE(button->width(), button->sizeHint().width());
      EXPECT_GE(button->height(), button->sizeHint().height());
    } else if (const auto* spin = qobject_cast<const QAbstractSpinBox*>(widget)) {
      EXPECT_GE(spin->width(), spin->minimumSizeHint().width());
    }
  }
}

TEST_F(WorkbenchRoom, NoTwoControlsOfAPartLieOverEachOther) {
  for (const QSize size : {QSize(1280, 720), QSize(1440, 900)}) {
    if (windows_ == nullptr) {
      OpenAt(size);
    } else {
      Analyser().resize(size);
      Settle();
    }
    const std::vector<QWidget*> shown = Shown();
    for (const QWidget* one : shown) {
      for (const QWidget* other : shown) {
        if (one == other || one->parentWidget() != other->parentWidget()) continue;
        if (qobject_cast<const QAbstractScrollArea*>(one->parentWidget()) != nullptr) continue;
        const bool isHandle =
            one->inherits("QSplitterHandle") || other->inherits("QSplitterHandle");
        if (isHandle) continue;
        EXPECT_FALSE(one->geometry().intersects(other->geometry()))
            << Told(*one) << " over " << Told(*other);
      }
    }
  }
}

TEST_F(WorkbenchRoom, TabComesToEveryPart) {
  OpenAt({1280, 720});
  Analyser().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&Analyser()));
  View().FocusFirst();
  std::set<std::string> reached;
  for (int i = 0; i < 80 && Analyser().focusWidget() != nullptr; ++i) {
    reached.insert(Analyser().focusWidget()->objectName().toStdString());
    QTest::keyClick(Analyser().focusWidget(), Qt::Key_Tab);
  }
  for (const char* name : {"tblDistributions",
                           "detailPlot",
                           "spnBandFrom",
                           "spnBandTo",
                           "tblReplay",
                           "tblProposal",
                           "cmdTakeOverBands",
                           "cmdWriteBands",
                           "cmdBandReport",
                           "lstSets",
                           "cmdAddGood",
                           "cmdAddBad",
                           "spnK",
                           "spnAtLeast",
                           "spnFaultAbove",
                           "spnM",
                           "spnN",
                           "cbxBenchOption",
                           "cmdShowNow",
                           "cmdShowBad",
                           "optMeanSigma"}) {
    EXPECT_TRUE(reached.contains(name)) << name;
  }
}

TEST_F(WorkbenchRoom, EveryControlHasANameThatCanBeSaid) {
  OpenAt({1280, 720});
  for (QWidget* widget : Shown()) {
    if (widget->focusPolicy() == Qt::NoFocus || !widget->isEnabled()) continue;
    if (widget->inherits("QSplitterHandle") || widget->objectName().startsWith("qt_")) continue;
    QAccessibleInterface* speaker = QAccessible::queryAccessibleInterface(widget);
    ASSERT_NE(speaker, nullptr) << Told(*widget);
    EXPECT_FALSE(widget->objectName().isEmpty()) << Told(*widget);
    EXPECT_FALSE(speaker->text(QAccessible::Name).isEmpty()) << Told(*widget);
  }
}

}  // namespace
}  // namespace kestrel
