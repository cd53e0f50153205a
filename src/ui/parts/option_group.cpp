// Making, selecting and asking option buttons.
// SPDX-License-Identifier: MIT
#include "ui/parts/option_group.h"

namespace kestrel {

QRadioButton* MakeOption(const char* name, const QString& caption, const QString& toolTip) {
  auto* option = new QRadioButton(caption);
  option->setObjectName(name);
  option->setToolTip(toolTip);
  return option;
}

// An exclusive group keeps its last option selected.
void SelectOption(QButtonGroup& group, const QRadioButton* option) {
  group.setExclusive(false);
  for (QAbstractButton* button : group.buttons()) {
    const bool reached = option == nullptr || button == option;
    button->setFocusPolicy(reached ? Qt::StrongFocus : Qt::ClickFocus);
    button->setChecked(button == option);
  }
  group.setExclusive(true);
}

void SelectPair(QButtonGroup& group, std::optional<bool> value, QRadioButton* first,
                QRadioButton* second) {
  QRadioButton* chosen = value.value_or(false) ? first : second;
  SelectOption(group, value.has_value() ? chosen : nullptr);
}

std::optional<bool> SelectedOf(const QRadioButton* first, const QRadioButton* second) {
  if (first->isChecked()) return true;
  if (second->isChecked()) return false;
  return std::nullopt;
}

}  // namespace kestrel
