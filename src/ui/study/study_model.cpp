// How changes of the study reach those who show it.
// SPDX-License-Identifier: MIT
#include "ui/study/study_model.h"

#include <utility>

#include "ui/parts/local_time.h"

namespace kestrel {

StudyModel::StudyModel(QObject* parent)
    : QObject(parent), study_([](auto time) { return LocalTime(time).toStdString(); }) {}

void StudyModel::Change(const Edit& edit) {
  study::StudyChoice choice = study_.Choice();
  edit(choice);
  study_.Choose(std::move(choice));
  emit Changed();
}

void StudyModel::MoveCursor(study::CursorKind kind, const study::CursorPlaces& places) {
  study::StudyChoice choice = study_.Choice();
  choice.cursor = kind;
  choice.Places() = places;
  study_.Choose(std::move(choice));
  emit CursorMoved();
}

void StudyModel::MoveCursor(const study::CursorPlaces& places) {
  const study::CursorKind kind = Choice().cursor;
  MoveCursor(kind == study::CursorKind::None ? study::CursorKind::Single : kind, places);
}

void StudyModel::Take(study::RecordPointer record) {
  study_.Take(std::move(record));
  emit RecordsChanged();
  emit Changed();
}

void StudyModel::AddGap(const std::string& reason) {
  study_.AddGap(reason);
  emit RecordsChanged();
}

void StudyModel::SetSensorBands(const std::map<int, study::SensorBands>& bands) {
  for (const auto& [option, ofOption] : bands) study_.SetSensorBands(option, ofOption);
  emit Changed();
}

void StudyModel::Select(const std::vector<study::RecordId>& ids) {
  study_.Select(ids);
  emit RecordsChanged();
  emit Changed();
}

std::vector<study::RecordId> StudyModel::Bring(const std::vector<study::RecordPointer>& records) {
  std::vector<study::RecordId> ids;
  for (const study::RecordPointer& record : records) ids.push_back(study_.Bring(record));
  emit RecordsChanged();
  return ids;
}

std::string StudyModel::Gather(const std::vector<study::RecordId>& ids) {
  std::string why = study_.Gather(ids);
  emit RecordsChanged();
  emit Changed();
  return why;
}

void StudyModel::Hold(bool held) {
  study_.Hold(held);
  emit Changed();
}

void StudyModel::ToggleHold() {
  const bool isNewest = study_.IsLive() && !study_.IsHeld();
  if (!study_.IsLive()) Select({});
  Hold(isNewest);
}

void StudyModel::Freeze() {
  study_.Freeze();
  emit Changed();
}

void StudyModel::TakeReference() {
  study_.TakeReference();
  emit Changed();
}

void StudyModel::RestartAccumulation() {
  study_.RestartAccumulation();
  emit Changed();
}

}  // namespace kestrel
