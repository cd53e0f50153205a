// Every text of every window has room.
// SPDX-License-Identifier: MIT
// Every text of every window has room, whatever the scale of the screen and the size of the font.

#include <QGroupBox>
#include <QHeaderView>
#include <QScreen>
#include <QScrollArea>
#include <QStyleOptionComboBox>
#include <QStyleOptionGroupBox>
#include <QTableView>
#include <algorithm>

#include "ui/parts/fit_screen.h"
#include "ui/parts/line_label.h"
#include "ui/window_walk.h"

namespace kestrel {
namespace {

class TextRoom : public WindowWalk, public ::testing::WithParamInterface<double> {
 protected:
  TextRoom() : usual_(QApplication::font()) {
    QFont large = usual_;
    large.setPointSizeF(usual_.pointSizeF() * GetParam());
    QApplication::setFont(large);
  }
  ~TextRoom() override {
    windows_.reset();
    QApplication::setFont(usual_);
  }

  static void Expect(const QWidget& widget, int has, int needs, const char* what) {
    EXPECT_GE(has, needs) << Told(widget) << ": " << what;
  }

  static void CheckLabel(const QLabel& label) {
    if (label.text().trimmed().isEmpty()) return;
    const auto* line = dynamic_cast<const LineLabel*>(&label);
    if (line != nullptr && line->IsCut()) {
      EXPECT_TRUE(label.toolTip().startsWith(label.text())) << Told(label);
    } else if (label.wordWrap()) {
      Expect(label, label.height(), label.heightForWidth(label.width()), "wrapped lines");
    } else {
      Expect(label, label.width(), label.sizeHint().width(), "width");
      Expect(label, label.height(), label.sizeHint().height(), "height");
    }
  }

  static void CheckButton(const QAbstractButton& button) {
    Expect(button, button.width(), button.sizeHint().width(), "width");
    Expect(button, button.height(), button.sizeHint().height(), "height");
  }

  // Not only the item that is shown now. An editable box scrolls.
  static void CheckComboBox(const QComboBox& box) {
    if (box.isEditable()) return;
    QStyleOptionComboBox option;
    option.initFrom(&box);
    option.editable = false;
    const QRect field = box.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                    QStyle::SC_ComboBoxEditField, &box);
    int widest = 0;
    for (int i = 0; i < box.count(); ++i) {
      widest = std::max(widest, box.fontMetrics().horizontalAdvance(box.itemText(i)));
    }
    Expect(box, field.width(), widest, "items");
    Expect(box, field.height(), box.fontMetrics().height(), "height");
  }

  static void CheckLineEdit(const QLineEdit& box) {
    constexpr int kMargins = 4;  // the line edit's own, beside the text
    const int frame = box.hasFrame() ? box.style()->pixelMetric(QStyle::PM_DefaultFrameWidth) : 0;
    const int room = box.width() - 2 * frame - kMargins;
    Expect(box, room, box.fontMetrics().horizontalAdvance(box.displayText()), "content");
    Expect(box, box.height(), box.fontMetrics().height() + 2 * frame, "height");
  }

  static void CheckTable(const QTableView& table) {
    const QHeaderView& head = *table.horizontalHeader();
    const QAbstractItemModel& model = *table.model();
    for (int column = 0; column < model.columnCount(); ++column) {
      if (table.isColumnHidden(column)) continue;
      Expect(table, head.sectionSize(column), head.sectionSizeHint(column), "heading");
      for (int row = 0; row < model.rowCount(); ++row) {
        const QSize needs = table.sizeHintForIndex(model.index(row, column));
        Expect(table, table.columnWidth(column), needs.width(), "cell");
        Expect(table, table.rowHeight(row), needs.height(), "row");
      }
    }
  }

  static void CheckGroupBox(const QGroupBox& box) {
    Expect(box, box.width(), box.fontMetrics().horizontalAdvance(box.title()), "title");
  }

  // A part beyond its parent's edge is cut off; only what scrolls is larger than what shows it.
  static void CheckInside(const QWidget& widget) {
    const QWidget* parent = widget.parentWidget();
    if (parent == nullptr || qobject_cast<QScrollArea*>(parent->parentWidget()) != nullptr) return;
    if (qobject_cast<QAbstractScrollArea*>(parent->parentWidget()) != nullptr) return;
    EXPECT_TRUE(parent->rect().contains(widget.geometry()))
        << Told(widget) << " sticks out of " << Told(*parent);
  }

  static void CheckText(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) CheckLabel(*label);
    if (const auto* box = qobject_cast<const QComboBox*>(&widget)) CheckComboBox(*box);
    if (const auto* table = qobject_cast<const QTableView*>(&widget)) CheckTable(*table);
    if (const auto* box = qobject_cast<const QGroupBox*>(&widget)) CheckGroupBox(*box);
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    if (button != nullptr && !button->text().isEmpty()) CheckButton(*button);
    const auto* line = qobject_cast<const QLineEdit*>(&widget);
    if (line != nullptr && qobject_cast<QComboBox*>(line->parentWidget()) == nullptr) {
      CheckLineEdit(*line);
    }
  }

 private:
  QFont usual_;
};

TEST_P(TextRoom, NothingIsClippedAndEveryWindowFitsTheScreen) {
  EachWindow([](QWidget& window) {
    SCOPED_TRACE(window.objectName().toStdString());
    const QSize room = RoomOnScreen(window);
    // Made for 1280 x 720 and up: with a larger font or scale it needs more than that.
    constexpr int kAnalyserRoom = 1200;
    const bool isCramped = GetParam() > 1 || room.width() < kAnalyserRoom;
    if (window.objectName() == "frmAnalyser" && isCramped) return;
    EXPECT_LE(window.width(), room.width());
    EXPECT_LE(window.height(), room.height());
    for (const QWidget* widget : Shown(window)) {
      CheckInside(*widget);
      CheckText(*widget);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Fonts, TextRoom, ::testing::Values(1.0, 1.5, 2.0));

// With the usual font at the usual scale there is nothing to scroll.
TEST_F(WindowWalk, OnAUsualScreenNoWindowScrolls) {
  if (Start().screen()->size() != QSize(1280, 720)) GTEST_SKIP() << "at another scale";
  windows_.reset();
  EachWindow([](QWidget& window) {
    EXPECT_EQ(window.findChild<QScrollArea*>("scrContent"), nullptr)
        << window.objectName().toStdString();
  });
}

}  // namespace
}  // namespace kestrel
