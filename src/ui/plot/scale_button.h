// The button of the plot's full scale: a press takes the next one, a list offers all of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace kestrel {

// Its text is the full scale in g. The list opens with the pointer's other button, with Alt+Down
// and with the keyboard's menu key, and assistive programs have it as an action.
class ScaleButton : public QPushButton {
  Q_OBJECT

 public:
  ScaleButton(const QString& name, const QString& scale);

  void OpenList();

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 signals:
  void ScaleChosen(const QString& scale);

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace kestrel
