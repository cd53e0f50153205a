// What the user did to the archive, to be undone and done again.
// SPDX-License-Identifier: MIT
#pragma once

#include <QUndoCommand>
#include <utility>
#include <vector>

#include "ui/library/library.h"

namespace kestrel {

using RemarksOf = std::vector<std::pair<ArchiveId, archive::Remarks>>;

class RemarksEdit : public QUndoCommand {
 public:
  RemarksEdit(Library& library, RemarksOf before, RemarksOf after);
  void undo() override { library_.SetRemarks(before_); }
  void redo() override { library_.SetRemarks(after_); }

 private:
  Library& library_;
  RemarksOf before_;
  RemarksOf after_;
};

class Deletion : public QUndoCommand {
 public:
  Deletion(Library& library, std::vector<ArchiveId> ids);
  void undo() override { library_.BringBack(ids_); }
  void redo() override { library_.Delete(ids_); }

 private:
  Library& library_;
  std::vector<ArchiveId> ids_;
};

}  // namespace kestrel
