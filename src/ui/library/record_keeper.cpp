// The records of the main window on their way to the archive.
// SPDX-License-Identifier: MIT
#include "ui/library/record_keeper.h"

#include <utility>

#include "study/measured.h"

namespace kestrel {

RecordKeeper::RecordKeeper(CurrentRecord& record, ArchiveChoice choice)
    : record_(record), choice_(std::move(choice)), kept_(ReadKeptArchive()) {
  if (!HasPlace()) return;
  listener_ = record.OnChange([this] { Take(); });
  Begin();
}

// The keeper tells from its own thread, and never after it has ended.
void RecordKeeper::Begin() {
  archive::KeeperChoice choice = archive::ChoiceFor(choice_.place, choice_.usual);
  choice.limit = kept_.limit;
  choice.told = [this](const archive::KeeperState&) {
    QMetaObject::invokeMethod(
        this, [this] { emit StateChanged(); }, Qt::QueuedConnection);
  };
  keeper_ = std::make_unique<archive::Keeper>(std::move(choice));
}

void RecordKeeper::SwitchOn(bool isOn) {
  if (kept_.isOn == isOn) return;
  kept_.isOn = isOn;
  Remember();
  Take();
}

void RecordKeeper::SetSite(const archive::Remarks& site) {
  if (kept_.site == site) return;
  kept_.site = site;
  Remember();
}

void RecordKeeper::SetLimit(std::optional<std::int64_t> bytes) {
  if (kept_.limit == bytes) return;
  kept_.limit = bytes;
  Remember();
  if (!keeper_) return;
  keeper_.reset();
  Begin();
}

void RecordKeeper::Remember() {
  WriteKeptArchive(kept_);
  emit ChoiceChanged();
}

archive::KeeperState RecordKeeper::State() const {
  return keeper_ ? keeper_->State() : archive::KeeperState{};
}

bool RecordKeeper::Finish(std::chrono::milliseconds patience) {
  return !keeper_ || keeper_->Finish(patience);
}

// The alarm state comes a moment after the points: the same capture again amends what is kept.
void RecordKeeper::Take() {
  const Record& record = record_.Get();
  if (!keeper_ || !kept_.isOn || !record.Taken() || !record.IsNew()) return;
  if (last_ && last_->record == record) return;
  if (last_ && study::IsSameCapture(last_->record, record)) {
    last_->record = record;
  } else {
    last_ = archive::NewRecord{archive::NewUid(), record,        kept_.site,
                               choice_.program,   choice_.bench, mark_};
  }
  keeper_->Keep(*last_);
}

}  // namespace kestrel
