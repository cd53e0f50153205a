// Small pieces that all views over the archive show alike.
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QLabel>
#include <string>
#include <vector>

namespace kestrel {

// The first item, without a value, stands for all, the last, of an empty value, for none told. What
// is chosen stays chosen, also where no text is it any more.
void FillChoices(QComboBox& list, const QString& all, const std::vector<std::string>& texts,
                 const QString& none);

// What stands in place of a view where there is no archive.
[[nodiscard]] QLabel* MakeNoArchive(const char* name, const QString& text);

}  // namespace kestrel
