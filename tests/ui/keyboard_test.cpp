// Every window can be operated without a pointer.
// SPDX-License-Identifier: MIT

#include <QButtonGroup>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QTableView>
#include <algorithm>
#include <map>
#include <set>

#include "ui/rendering.h"
#include "ui/window_walk.h"

namespace kestrel {
namespace {

class Keyboard : public WindowWalk {
 protected:
  // What somebody operates. A box that only shows, and a part of another control, is none.
  static bool IsOperable(const QWidget& widget) {
    if (!widget.isEnabled() || widget.focusProxy() != nullptr) return false;
    if (const auto* line = qobject_cast<const QLineEdit*>(&widget)) {
      return !line->isReadOnly() && qobject_cast<QComboBox*>(line->parentWidget()) == nullptr;
    }
    if (widget.inherits("QTableCornerButton")) return false;  // Ctrl+A does the same
    if (const auto* table = qobject_cast<const QTableView*>(&widget)) {
      return table->model()->rowCount() > 0;
    }
    return qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
           qobject_cast<const QComboBox*>(&widget) != nullptr ||
           qobject_cast<const QTableView*>(&widget) != nullptr ||
           qobject_cast<const QPlainTextEdit*>(&widget) != nullptr ||
           qobject_cast<const PictureBox*>(&widget) != nullptr;
  }

  // The controls in the order in which Tab comes to them, once around.
  static std::vector<QWidget*> TabRound(QWidget& window) {
    std::vector<QWidget*> round;
    constexpr int kMost = 400;  // a grid takes a press for each cell
    for (int i = 0; i < kMost; ++i) {
      QTest::keyClick(window.focusWidget() != nullptr ? window.focusWidget() : &window,
                      Qt::Key_Tab);
      QWidget* now = window.focusWidget();
      if (now == nullptr || (!round.empty() && now == round.back())) continue;
      if (std::find(round.begin(), round.end(), now) != round.end()) break;
      round.push_back(now);
    }
    return round;
  }

  // Of a group of options Tab comes to the selected one only, and the arrows to the others.
  static bool IsReached(const QWidget& widget, const std::set<const QWidget*>& reached) {
    if (reached.count(&widget) > 0) return true;
    const auto* option = qobject_cast<const QAbstractButton*>(&widget);
    const bool isOption = qobject_cast<const QRadioButton*>(&widget) != nullptr ||
                          (option != nullptr && option->group() != nullptr);
    if (!isOption) return false;
    const auto members = option->group() != nullptr
                             ? option->group()->buttons()
                             : option->parentWidget()->findChildren<QAbstractButton*>();
    return std::any_of(members.begin(), members.end(), [&](const QAbstractButton* other) {
      return other->isCheckable() && reached.count(other) > 0;
    });
  }

  // Rather than in the window itself, or in the content that scrolls in it.
  static bool IsInGroup(const QWidget& widget) {
    const QWidget* parent = widget.parentWidget();
    if (parent->isWindow()) return false;
    const QWidget* area = parent->parentWidget()->parentWidget();
    return area == nullptr || area->objectName() != "scrContent";
  }

  static QChar Mnemonic(const QString& text) {
    const QKeySequence keys = QKeySequence::mnemonic(text);
    return keys.isEmpty() ? QChar() : QChar(static_cast<char16_t>(keys[0].key()));
  }
};

TEST_F(Keyboard, TabReachesEveryControlOfEveryWindowAndComesAround) {
  EachWindow([](QWidget& window) {
    SCOPED_TRACE(window.objectName().toStdString());
    window.activateWindow();
    Settle();
    const std::vector<QWidget*> round = TabRound(window);
    const std::set<const QWidget*> reached(round.begin(), round.end());
    int operable = 0;
    for (const QWidget* widget : Shown(window)) {
      if (!IsOperable(*widget)) continue;
      ++operable;
      EXPECT_TRUE(IsReached(*widget, reached)) << Told(*widget);
    }
    EXPECT_GE(operable, 2);
  });
}

// Within a group box or a column nothing jumps up again; from group to group it may.
TEST_F(Keyboard, TabGoesDownEachGroup) {
  EachWindow([](QWidget& window) {
    SCOPED_TRACE(window.objectName().toStdString());
    window.activateWindow();
    Settle();
    const std::vector<QWidget*> round = TabRound(window);
    for (std::size_t i = 1; i < round.size(); ++i) {
      const QWidget* from = round[i - 1];
      const QWidget* to = round[i];
      if (from->parentWidget() != to->parentWidget() || !IsInGroup(*to)) continue;
      const QRect upper = from->geometry();
      const QRect lower = to->geometry();
      const bool isRound = to == round.front();
      const bool isNextColumn = lower.left() > upper.right();
      EXPECT_TRUE(isRound || isNextColumn || lower.center().y() >= upper.top())
          << Told(*from) << " leads up to " << Told(*to);
    }
  });
}

TEST_F(Keyboard, MnemonicsAreUniqueWithinAWindow) {
  EachWindow([](QWidget& window) {
    SCOPED_TRACE(window.objectName().toStdString());
    std::map<QChar, std::string> taken;
    const auto take = [&](const QString& text, const std::string& who) {
      const QChar key = Mnemonic(text);
      if (key.isNull()) return;
      EXPECT_EQ(taken.count(key), 0U)
          << who << " and " << taken[key] << " are both Alt+" << QString(key).toStdString();
      taken[key] = who;
    };
    for (const QWidget* widget : Shown(window)) {
      if (const auto* bar = qobject_cast<const QMenuBar*>(widget)) {
        for (const QAction* menu : bar->actions()) {
          if (menu->isVisible()) take(menu->text(), menu->text().toStdString());
        }
      }
      const auto* label = qobject_cast<const QLabel*>(widget);
      if (label != nullptr && label->buddy() == nullptr) continue;
      if (widget->property("text").isValid() && qobject_cast<const QLineEdit*>(widget) == nullptr) {
        take(widget->property("text").toString(), Told(*widget));
      }
      if (widget->property("title").isValid()) {
        take(widget->property("title").toString(), Told(*widget));
      }
    }
  });
}

// Also those that show at times only: notices, the menu of the simulated sensor.
TEST_F(Keyboard, NoTwoControlsOfAWindowShareAMnemonicEvenWhereTheyAreHidden) {
  EachWindow([](QWidget& window) {
    SCOPED_TRACE(window.objectName().toStdString());
    std::map<QChar, std::string> taken;
    const auto take = [&](const QString& text, const std::string& who) {
      const QChar key = Mnemonic(text);
      if (key.isNull()) return;
      EXPECT_EQ(taken.count(key), 0U)
          << who << " and " << taken[key] << " are both Alt+" << QString(key).toStdString();
      taken[key] = who;
    };
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
      if (widget->window() != &window) continue;
      if (const auto* bar = qobject_cast<const QMenuBar*>(widget)) {
        for (const QAction* menu : bar->actions()) take(menu->text(), menu->text().toStdString());
      } else if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
        take(button->text(), Told(*button));
      } else if (const auto* box = qobject_cast<const QGroupBox*>(widget)) {
        take(box->title(), Told(*box));
      } else if (const auto* label = qobject_cast<const QLabel*>(widget)) {
        if (label->buddy() != nullptr) take(label->text(), Told(*label));
      }
    }
  });
}

TEST_F(Keyboard, MnemonicsOfAMenuAreUniqueAndEveryItemHasOne) {
  Start();
  Trigger("mnuSimulated");
  for (const QAction* top : Window().menuBar()->actions()) {
    EXPECT_FALSE(Mnemonic(top->text()).isNull()) << top->text().toStdString();
    std::set<QChar> taken;
    for (const QAction* item : top->menu()->actions()) {
      if (item->isSeparator() || item->objectName() == "mnu31407") continue;
      EXPECT_TRUE(taken.insert(Mnemonic(item->text())).second) << item->text().toStdString();
      EXPECT_FALSE(Mnemonic(item->text()).isNull()) << item->text().toStdString();
    }
  }
}

TEST_F(Keyboard, EscapeClosesEveryWindowButThoseWhereItEndsACapture) {
  EachWindow([this](QWidget& window) {
    if (&window == &Window() || window.objectName() == "frmAnalyser") return;
    SCOPED_TRACE(window.objectName().toStdString());
    const QPointer<QWidget> watched = &window;
    window.activateWindow();
    QTest::keyClick(&window, Qt::Key_Escape);
    Settle();
    EXPECT_FALSE(watched && watched->isVisible());
  });
  EXPECT_TRUE(Window().isVisible());
}

// The picture of a control with the focus differs from the one without.
TEST_F(Keyboard, TheFocusIsSeen) {
  EachWindow([](QWidget& window) {
    SCOPED_TRACE(window.objectName().toStdString());
    window.activateWindow();
    Settle();
    for (QWidget* widget : TabRound(window)) {
      if (!IsOperable(*widget)) continue;
      widget->setFocus(Qt::TabFocusReason);
      const QImage with = RenderOf(*widget, 1);
      widget->clearFocus();
      const QImage without = RenderOf(*widget, 1);
      EXPECT_NE(with, without) << Told(*widget);
    }
  });
}

// Whoever does not find a key finds it in the tip of what it does.
TEST_F(Keyboard, TipsNameTheKeys) {
  EachWindow([](QWidget& window) {
    for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
      const QString key = button->shortcut().toString();
      if (key.isEmpty() || key.startsWith("Alt+")) continue;
      EXPECT_TRUE(button->toolTip().contains(key)) << Told(*button) << ": " << key.toStdString();
    }
  });
}

}  // namespace
}  // namespace kestrel
