// Every window of the program, filled, one after the other.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDockWidget>
#include <QLabel>
#include <QPointer>
#include <functional>
#include <string>

#include "ui/all_windows_bench.h"

namespace kestrel {

// Every window of the program, filled, one after the other.
class WindowWalk : public AllWindowsBench {
 protected:
  using Visit = std::function<void(QWidget&)>;

  // The main window after a capture, with and without a lost adapter, then the others.
  void EachWindow(const Visit& visit) {
    Start();
    ChooseShortCaptures();
    Press("cmdStart");
    Look(Window(), visit);
    for (const Item& item : kItems) {
      const QPointer<QWidget> window = &Open(item);  // one of them is deleted when it closes
      if (std::string(item.window) == "frmManualReg") Choose("cmboRegister", 20);
      Look(*window, visit);
      if (std::string(item.window) == "frmUSBselect") {
        Press("cmdDebugUsb");
        Look(Find<QDialog>("frmUSBdebug"), visit);
        Find<QDialog>("frmUSBdebug").close();
      }
      if (window) window->close();
      Settle();
    }
    hardware_.Adapter().Unplug(0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Find<QFrame>("lostNotice").isVisible(); }));
    Look(Window(), visit);
  }

  // What of a window can be seen, the window itself left out.
  static std::vector<QWidget*> Shown(const QWidget& window) {
    std::vector<QWidget*> shown;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
      if (widget->window() != &window || !widget->isVisibleTo(&window)) continue;
      if (!IsBehindATab(*widget)) shown.push_back(widget);
    }
    return shown;
  }

  // In a dock that another one covers.
  static bool IsBehindATab(const QWidget& widget) {
    for (const QWidget* at = &widget; at != nullptr; at = at->parentWidget()) {
      const auto* dock = qobject_cast<const QDockWidget*>(at);
      if (dock != nullptr && dock->visibleRegion().isEmpty()) return true;
    }
    return false;
  }

  // How a finding names a control.
  static std::string Told(const QWidget& widget) {
    std::string text = widget.objectName().toStdString();
    if (text.empty()) text = widget.metaObject()->className();
    const QVariant caption = widget.property("text");
    if (caption.isValid()) text += " '" + caption.toString().toStdString() + "'";
    return widget.window()->objectName().toStdString() + ": " + text;
  }

 private:
  void Look(QWidget& window, const Visit& visit) {
    Settle();
    visit(window);
  }
};

}  // namespace kestrel
