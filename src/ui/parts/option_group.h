// Option buttons and groups of them, none selected included.
// SPDX-License-Identifier: MIT
#pragma once

#include <QButtonGroup>
#include <QRadioButton>
#include <optional>

namespace kestrel {

// An option button with its control's name.
[[nodiscard]] QRadioButton* MakeOption(const char* name, const QString& caption,
                                       const QString& toolTip);

// Selects one option of a group, or none at all. No click is seen. The tab key leads to the
// selected one, as it does after a click.
void SelectOption(QButtonGroup& group, const QRadioButton* option);

// Of a pair: the first for true, the second for false, none without a value.
void SelectPair(QButtonGroup& group, std::optional<bool> value, QRadioButton* first,
                QRadioButton* second);
[[nodiscard]] std::optional<bool> SelectedOf(const QRadioButton* first, const QRadioButton* second);

}  // namespace kestrel
