// The list of full scales, and how it is opened.
// SPDX-License-Identifier: MIT
#include "ui/plot/scale_button.h"

#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>

#include "plot/spectrum_plot.h"

namespace kestrel {
namespace {

// A button that also has a list to show.
class ScaleAccessible : public QAccessibleWidget {
 public:
  explicit ScaleAccessible(ScaleButton* button)
      : QAccessibleWidget(button, QAccessible::Button), button_(button) {}

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.hasPopup = true;
    return state;
  }
  [[nodiscard]] QStringList actionNames() const override {
    return QStringList{pressAction(), showMenuAction()} + QAccessibleWidget::actionNames();
  }
  void doAction(const QString& action) override {
    if (action == pressAction()) return button_->animateClick();
    if (action == showMenuAction()) return button_->OpenList();
    QAccessibleWidget::doAction(action);
  }
  [[nodiscard]] QStringList keyBindingsForAction(const QString& action) const override {
    if (action == showMenuAction()) return {QKeySequence(Qt::ALT | Qt::Key_Down).toString()};
    return QAccessibleWidget::keyBindingsForAction(action);
  }

 private:
  ScaleButton* button_;
};

QAccessibleInterface* Present(const QString& /*className*/, QObject* object) {
  auto* button = qobject_cast<ScaleButton*>(object);
  return button == nullptr ? nullptr : new ScaleAccessible(button);
}

}  // namespace

ScaleButton::ScaleButton(const QString& name, const QString& scale) : QPushButton(scale) {
  setObjectName(name);
  setToolTip(
      tr("Vertical full scale in g; each press takes the next step. A right click or Alt+Down "
         "lists all of them"));
  QAccessible::installFactory(&Present);  // once, however often it is asked for
}

void ScaleButton::OpenList() {
  auto* list = new QMenu(this);
  list->setObjectName("mnuPlotScale");
  list->setAccessibleName(tr("Full scale"));
  list->setAttribute(Qt::WA_DeleteOnClose);
  for (const std::string& each : PlotScales()) {
    const QString scale = QString::fromStdString(each);
    QAction* action = list->addAction(tr("%1 g").arg(scale));
    action->setCheckable(true);
    action->setChecked(scale == text());
    if (action->isChecked()) list->setActiveAction(action);
    connect(action, &QAction::triggered, this, [this, scale] { emit ScaleChosen(scale); });
  }
  list->popup(mapToGlobal(rect().bottomLeft()));
}

void ScaleButton::contextMenuEvent(QContextMenuEvent* event) {
  OpenList();
  event->accept();
}

void ScaleButton::keyPressEvent(QKeyEvent* event) {
  const bool opens = event->key() == Qt::Key_Down && event->modifiers().testFlag(Qt::AltModifier);
  opens ? OpenList() : QPushButton::keyPressEvent(event);
}

// As wide as the widest scale needs, so that nothing moves from one to the next.
QSize ScaleButton::sizeHint() const {
  constexpr int kBeside = 28;  // of the style, with the focus's frame
  int widest = 0;
  for (const std::string& each : PlotScales()) {
    widest = std::max(widest, fontMetrics().horizontalAdvance(QString::fromStdString(each)));
  }
  return {widest + kBeside, QPushButton::sizeHint().height()};
}

}  // namespace kestrel
