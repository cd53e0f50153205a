// What the user did to the archive, to be undone and done again.
// SPDX-License-Identifier: MIT
#pragma once

#include <QUndoCommand>
#include <memory>
#include <vector>

#include "ui/library/library.h"

namespace kestrel {

// What the archive holds is changed, whatever a list shows of it meanwhile.
class RemarksEdit : public QUndoCommand {
 public:
  RemarksEdit(Library& library, std::vector<ArchiveId> ids, archive::RemarksChange change);
  void undo() override { library_.TakeBack(change_, before_); }
  void redo() override { library_.ChangeRemarks(ids_, change_, before_); }

 private:
  Library& library_;
  std::vector<ArchiveId> ids_;
  archive::RemarksChange change_;
  std::shared_ptr<RemarksOf> before_ = std::make_shared<RemarksOf>();  // of the worker's thread
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
