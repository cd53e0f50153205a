// Controls as all windows use them.
// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QColor>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <functional>
#include <optional>

namespace kestrel {

// Controls as the windows use them. The object name is the control's name; a member of a control
// array adds "_" and its index.

[[nodiscard]] QString ArrayName(const char* name, int index);

// A colour value with red in the low byte.
[[nodiscard]] QColor ToColour(double value);

[[nodiscard]] QPushButton* MakeButton(const char* name, const QString& caption,
                                      const QString& toolTip);
[[nodiscard]] QCheckBox* MakeCheckBox(const QString& name, const QString& caption,
                                      const QString& toolTip);
// With `last`, a list of numbers that will go up to it.
[[nodiscard]] QComboBox* MakeComboBox(const char* name, const QString& accessibleName,
                                      const QString& toolTip, std::optional<int> last = {});
// Tells each choice of an item: another one, however it came, and the one that was chosen already,
// as a user does with it. Not what the window fills in with the list's signals blocked.
void OnChosen(QComboBox* list, QObject* context, std::function<void(int index)> chosen);
[[nodiscard]] QLabel* MakeLabel(const QString& name, const QString& text);
// A caption beside a control, whose mnemonic leads to it.
[[nodiscard]] QLabel* MakeCaption(const QString& text, QWidget* buddy);
// Names a control that has no room for a caption to those who are told about it. A combo box tells
// its current item only; its name is what labels it.
void NameUnseen(const QString& text, QWidget* control);
// A text box that only shows.
// Its text can be selected and copied.
[[nodiscard]] QLineEdit* MakeReadOut(const QString& name, const QString& accessibleName);
// Flat, without a ground of its own; nobody comes to it by Tab or a click.
void ClearGround(QLineEdit& readOut);

// Text on a coloured ground, black or white, whichever reads better.
void PaintGround(QWidget* widget, const QColor& ground);

// The layout keeps the widget's room while it is hidden.
void KeepPlaceWhileHidden(QWidget* widget);

// "0", "1" ... "last".
[[nodiscard]] QStringList Numbers(int last);

// A list of numbers up to `last`. Its width is that of the digits of the last one; an ordinary list
// measures every item, which takes hundreds of times as long.
class NumberBox : public QComboBox {
 public:
  explicit NumberBox(int last) : last_(last) {}
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 private:
  int last_;
};

}  // namespace kestrel
