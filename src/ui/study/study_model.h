// The study of one analyser window, and who is told when it changes.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "study/study.h"

namespace kestrel {

// Every control changes the choice through here; every view draws what Get() holds when told.
class StudyModel : public QObject {
  Q_OBJECT

 public:
  using Edit = std::function<void(study::StudyChoice&)>;

  explicit StudyModel(QObject* parent = nullptr);

  [[nodiscard]] const study::Study& Get() const { return study_; }
  [[nodiscard]] const study::StudyChoice& Choice() const { return study_.Choice(); }

  void Change(const Edit& edit);
  // The cursor alone: cheap enough for every movement of the pointer.
  void MoveCursor(study::CursorKind kind, const study::CursorPlaces& places);
  // A cursor that there is none of yet begins as a single one.
  void MoveCursor(const study::CursorPlaces& places);

  // The capture at hand told again, with more known of it, is no other one.
  void Take(study::RecordPointer record);
  void Take(const Record& record) { Take(std::make_shared<const Record>(record)); }
  void AddGap(const std::string& reason);
  // By rate option. Bands that stay the same need not be told.
  void SetSensorBands(const std::map<int, study::SensorBands>& bands);
  void Select(const std::vector<study::RecordId>& ids);
  // Records of an archive, beside those of the session.
  std::vector<study::RecordId> Bring(const std::vector<study::RecordPointer>& records);
  // Why some are left out of averages and holds; empty where none is.
  std::string Gather(const std::vector<study::RecordId>& ids);
  void Hold(bool held);
  // Holds what is shown; from a held or selected record it leads back to the newest.
  void ToggleHold();
  void Freeze();
  void TakeReference();
  void RestartAccumulation();

 signals:
  void Changed();         // what is shown, the cursor included
  void CursorMoved();     // the cursor alone
  void RecordsChanged();  // which records there are, or which are selected

 private:
  study::Study study_;
};

}  // namespace kestrel
