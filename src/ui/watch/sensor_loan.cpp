// How the sensor is given away, and found again afterwards.
// SPDX-License-Identifier: MIT
#include "ui/watch/sensor_loan.h"

#include <utility>

#include "app/program_state.h"
#include "ui/repeat/quiet_deed.h"

namespace kestrel {
namespace {

constexpr std::chrono::milliseconds kSeekEvery{500};
constexpr int kMostLooks = 40;

}  // namespace

SensorLoan::SensorLoan(Core& core, HandlerEdge& edge, SettingsExchange& settings, Deeds deeds)
    : core_(core), edge_(edge), settings_(settings), deeds_(std::move(deeds)), return_(core) {
  seek_.setInterval(kSeekEvery);
  connect(&seek_, &QTimer::timeout, this, &SensorLoan::Seek);
}

bool SensorLoan::Lend() {
  if (IsLent()) return true;
  if (!edge_.Resting() || deeds_.isBusy()) return false;
  seek_.stop();
  isLost_ = false;
  if (InterfaceType == kNoInterface) return true;
  before_ = settings_.LastRead();
  return_.NoteRoad();
  core_.registers.Use(kNoInterface);
  deeds_.letGo();
  occupation_.emplace(edge_);
  emit Changed();
  return true;
}

void SensorLoan::TakeBack() {
  if (!IsLent()) return;
  occupation_.reset();
  SeekAgain();
}

void SensorLoan::Close() {
  seek_.stop();
}

void SensorLoan::SeekAgain() {
  looks_ = 0;
  isLost_ = false;
  seek_.start();
  Seek();
}

// Somebody may have chosen an interface meanwhile; its sensor keeps its settings.
void SensorLoan::Seek() {
  if (!edge_.Resting()) return;
  bool isBack = false;
  static_cast<void>(Quietly(core_.messages, edge_, [&] {
    edge_.Run("MonitorTakeBack", [&] {
      isBack = return_.Look() && core_.registers.Reachable();
      if (isBack && return_.SameRoad()) deeds_.giveSettingsBack(before_);
    });
  }));
  if (isBack || ++looks_ >= kMostLooks) seek_.stop();
  isLost_ = !isBack && !seek_.isActive();
  emit Changed();
}

}  // namespace kestrel
