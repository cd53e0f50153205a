// Buttons of the analyser: flat, with an icon and a word, alone or as segments of a choice.
// SPDX-License-Identifier: MIT
#pragma once

#include <QButtonGroup>
#include <QToolButton>
#include <vector>

namespace kestrel {

// Painted in the colours of Look. What is checked is underlined in the accent, not told by colour
// alone.
class FlatButton : public QToolButton {
 public:
  enum class Place { Alone, First, Middle, Last };

  FlatButton(const QString& name, const QString& text, const QString& icon = {},
             QWidget* parent = nullptr);

  void SetPlace(Place place);
  // Opens at a press.
  void SetMenu(QMenu* menu);
  // The one main button of a window.
  void SetMain(bool isMain);
  // The swatch of a trace in the place of an icon.
  void SetSwatch(int ink);
  void SetCaption(const QString& text, const QString& icon);
  // Where there is little room the icon alone stands; the word is in the tool tip.
  void SetWordShown(bool isShown);
  [[nodiscard]] bool IsWordShown() const { return isWordShown_; }
  // What the button is wider by with its word.
  [[nodiscard]] int WordWidth() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] int WidthWith(bool hasWord) const;
  [[nodiscard]] bool ShowsWord() const { return isWordShown_ && !text().isEmpty(); }

  QString icon_;
  Place place_ = Place::Alone;
  int swatch_ = -1;
  bool isMain_ = false;
  bool isWordShown_ = true;
};

// A button with a tool tip. One without a word is called by its tip, without the key in brackets.
FlatButton* MakeFlatButton(const QString& name, const QString& text, const QString& icon,
                           const QString& tip);
// The same, which stays pressed until it is pressed again.
FlatButton* MakeFlatToggle(const QString& name, const QString& text, const QString& icon,
                           const QString& tip);

// A choice of one of a few, side by side.
class Segments : public QWidget {
  Q_OBJECT

 public:
  struct Item {
    QString name;  // object name
    QString text;
    QString icon = {};
    QString tip = {};
    int swatch = -1;
  };

  Segments(const QString& name, const QString& accessibleName, const std::vector<Item>& items);

  void Choose(int index);
  [[nodiscard]] int Index() const { return group_.checkedId(); }
  [[nodiscard]] FlatButton& Button(int index) const;

 signals:
  void Chosen(int index);  // by the user

 private:
  QButtonGroup group_;
};

}  // namespace kestrel
