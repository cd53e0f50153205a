// Hands every record that is read to the archive, and tells how that goes.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "archive/keeper.h"
#include "record/current_record.h"
#include "ui/library/kept_archive.h"

namespace kestrel {

// Where records are kept and what stands beside each. With no place nothing is kept.
struct ArchiveChoice {
  archive::Place place{};
  archive::Place usual{};  // beside which records wait for another one
  std::string program{};   // version
  std::string bench{};     // host name
};

class RecordKeeper : public QObject {
  Q_OBJECT

 public:
  RecordKeeper(CurrentRecord& record, ArchiveChoice choice);

  [[nodiscard]] bool HasPlace() const { return !choice_.place.text.empty(); }
  [[nodiscard]] const archive::Place& Place() const { return choice_.place; }
  [[nodiscard]] bool IsOn() const { return kept_.isOn && HasPlace(); }
  void SwitchOn(bool isOn);

  // Where the sensor sits now: goes into the remarks of the records to come.
  [[nodiscard]] const archive::Remarks& Site() const { return kept_.site; }
  void SetSite(const archive::Remarks& site);

  // The records to come belong to a wide spectrum; none: each stands for itself.
  void MarkAs(std::optional<archive::WideMark> mark) { mark_ = mark; }

  [[nodiscard]] std::optional<std::int64_t> Limit() const { return kept_.limit; }
  // Bytes; the oldest records go first.
  void SetLimit(std::optional<std::int64_t> bytes);

  [[nodiscard]] archive::KeeperState State() const;
  // Whether every record is on a disk within the time.
  [[nodiscard]] bool Finish(std::chrono::milliseconds patience);

 signals:
  void StateChanged();   // in this object's thread
  void ChoiceChanged();  // on or off, the limit, the site

 private:
  void Begin();
  void Take();
  void Remember();

  const CurrentRecord& record_;
  ArchiveChoice choice_;
  KeptArchive kept_;
  std::optional<archive::NewRecord> last_;
  std::optional<archive::WideMark> mark_;
  CurrentRecord::Listener listener_;
  std::unique_ptr<archive::Keeper> keeper_;  // its thread ends before the rest goes
};

}  // namespace kestrel
