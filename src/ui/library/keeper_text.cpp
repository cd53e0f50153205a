// The words of a keeper's state.
// SPDX-License-Identifier: MIT
#include "ui/library/keeper_text.h"

#include <QCoreApplication>
#include <QStringList>

#include "ui/parts/local_time.h"

namespace kestrel {
namespace {

QString Words(const char* text) {
  return QCoreApplication::translate("KeeperText", text);
}

QString Records(std::int64_t count) {
  return CountOf(count, Words("record"), Words("records"));
}

QString PrunedText(const archive::Pruned& pruned) {
  QStringList parts;
  if (pruned.count > 0) {
    parts << Words("The size limit of the archive removed %1, of %2 to %3.")
                 .arg(Records(pruned.count), LocalTime(pruned.oldest), LocalTime(pruned.newest));
  }
  if (!pruned.isEnough) {
    parts << Words(
        "The archive is larger than its size limit, and all that is left has a note, a tag or an "
        "alarm. Raise the limit, or delete some records.");
  }
  return parts.join(' ');
}

}  // namespace

QString CountOf(std::int64_t count, const QString& one, const QString& many) {
  return QStringLiteral("%L1 %2").arg(count).arg(count == 1 ? one : many);
}

QString KeeperText(const archive::KeeperState& state) {
  QStringList parts;
  const bool isOne = state.unsafe == 1;
  if (state.unsafe > 0 && !state.trouble.empty()) {
    parts << Words(isOne ? "%1 is in memory only until it can be archived."
                         : "%1 are in memory only until they can be archived.")
                 .arg(Records(state.unsafe));
  }
  if (state.waiting > 0) {
    parts << Words(state.waiting == 1 ? "%1 waits to be brought to the archive."
                                      : "%1 wait to be brought to the archive.")
                 .arg(Records(state.waiting));
  }
  if (!state.trouble.empty()) parts << QString::fromStdString(state.trouble);
  const QString pruned = PrunedText(state.pruned);
  if (!pruned.isEmpty()) parts << pruned;
  return parts.join(' ');
}

}  // namespace kestrel
