// Reading and restoring set-ups, watched and interruptible.
// SPDX-License-Identifier: MIT
#include "station/sensor_setups.h"

#include "acquisition/sensor_identity.h"

namespace kestrel {

template <typename Work>
auto SensorSetups::Watched(Work work) {
  bool isWanted = true;
  loop_.OnInterrupt([&isWanted] { isWanted = false; });
  const auto outcome = work([&](const std::string& activity, int done, int total) {
    watch_.Tell({activity, done, total});
    return isWanted;
  });
  loop_.Forget();
  return outcome;
}

Result<setup::Setup> SensorSetups::Read(const std::string& name, const std::string& program) {
  auto read = Watched([this](const setup::Follow& follow) {
    return setup::ReadSetup({core_.registers, core_.delay, loop_}, follow);
  });
  if (const auto* stopped = std::get_if<setup::Stopped>(&read)) {
    switch (stopped->why) {
      case setup::Stopped::Why::Lost:
        return end_.Lost();
      case setup::Stopped::Why::Cancelled:
        return end_.Failed(FailureKind::Interrupted, stopped->text);
      default:
        return end_.Failed(FailureKind::Refused, stopped->text);
    }
  }
  auto setup = std::get<setup::Setup>(read);
  setup.name = name;
  setup.program = program;
  setup.when = std::chrono::floor<std::chrono::milliseconds>(core_.seams.clock.UtcNow());
  setup.sensor = PresentSensor(core_);
  setup.sensor.product = setup.product;
  return setup;
}

setup::RestoreReport SensorSetups::Restore(const setup::Setup& saved,
                                           const setup::RestoreChoice& choice) {
  return Watched([&](const setup::Follow& follow) {
    return setup::Restore({core_.registers, core_.delay, loop_}, saved, choice, follow);
  });
}

}  // namespace kestrel
