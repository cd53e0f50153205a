// A state on its colour: small while all is well, as wide as its place where it is not.
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QLabel>

namespace kestrel {

// The label's palette holds the ground and the text on it. A chip whose state was never shown has
// no ground.
class StateChip : public QLabel {
  Q_OBJECT

 public:
  StateChip(const QString& name, const QString& text);

  // `standsOut`: as wide as the chip's place, and bold. The place itself never changes its size.
  void ShowState(const QColor& ground, bool standsOut);
  // What was shown is not known now.
  void Grey();

  [[nodiscard]] bool StandsOut() const { return standsOut_; }
  // What is painted on the ground, in the chip's own coordinates.
  [[nodiscard]] QRect Ground() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QFont BoldFont() const;

  bool isShown_ = false;
  bool standsOut_ = false;
};

}  // namespace kestrel
