// How the pieces of all views over the archive are made.
// SPDX-License-Identifier: MIT
#include "ui/library/archive_widgets.h"

#include <QSignalBlocker>
#include <QVariant>

namespace kestrel {

void FillChoices(QComboBox& list, const QString& all, const std::vector<std::string>& texts,
                 const QString& none) {
  const QVariant chosen = list.currentData();
  const QSignalBlocker blocker(list);
  list.clear();
  list.addItem(all);
  for (const std::string& text : texts) {
    list.addItem(QString::fromStdString(text), QString::fromStdString(text));
  }
  list.addItem(none, QString(""));
  const int again = chosen.isValid() ? list.findData(chosen) : 0;
  if (again < 0) list.insertItem(1, chosen.toString(), chosen);  // of a record that is gone
  list.setCurrentIndex(again < 0 ? 1 : again);
}

QLabel* MakeNoArchive(const char* name, const QString& text) {
  auto* none = new QLabel(text);
  none->setObjectName(name);
  none->setWordWrap(true);
  none->setMargin(24);
  none->setAlignment(Qt::AlignTop);
  return none;
}

}  // namespace kestrel
