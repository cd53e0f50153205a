// Where nothing can be published, whoever asks for it is told so; nor is there a service manager.
// SPDX-License-Identifier: MIT
#include "numeric/runtime_error.h"
#include "publish/publisher.h"
#include "publish/service_manager.h"

namespace kestrel::publish {

std::unique_ptr<Publisher> MakePublisher(const PublisherChoice& /*choice*/) {
  throw RuntimeError(
      "the program publishes nothing on this system: broker, metrics and command are left out of "
      "it. "
      "Leave the section \"publish\" out of the plan");
}

bool TellReady(const std::string& /*status*/) {
  return true;
}
void TellStopping() {}
void TellAlive() {}
std::optional<std::chrono::microseconds> WatchdogPeriod() {
  return {};
}

}  // namespace kestrel::publish
