// The names of edits.
// SPDX-License-Identifier: MIT
#include "ui/library/library_edits.h"

#include <QCoreApplication>

#include "ui/library/keeper_text.h"

namespace kestrel {
namespace {

QString Records(std::size_t count) {
  return CountOf(static_cast<std::int64_t>(count),
                 QCoreApplication::translate("LibraryEdits", "record"),
                 QCoreApplication::translate("LibraryEdits", "records"));
}

}  // namespace

RemarksEdit::RemarksEdit(Library& library, std::vector<ArchiveId> ids,
                         archive::RemarksChange change)
    : library_(library), ids_(std::move(ids)), change_(std::move(change)) {
  setText(QCoreApplication::translate("LibraryEdits", "remarks of %1").arg(Records(ids_.size())));
}

Deletion::Deletion(Library& library, std::vector<ArchiveId> ids)
    : library_(library), ids_(std::move(ids)) {
  setText(QCoreApplication::translate("LibraryEdits", "deletion of %1").arg(Records(ids_.size())));
}

}  // namespace kestrel
