// Metrics over HTTP, for whoever asks for them.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "publish/messages.h"
#include "publish/publisher.h"
#include "publish/settings.h"

namespace kestrel::publish {

// Answers at "/metrics" from threads of its own. From any thread.
class Metrics {
 public:
  // `state` is asked at every request. Throws RuntimeError where the address cannot be had.
  Metrics(const MetricsSettings& settings, const Names& names, const std::string& version,
          std::function<PublisherState()> state);
  ~Metrics();
  Metrics(const Metrics&) = delete;
  Metrics& operator=(const Metrics&) = delete;

  void Tell(const Levels& levels);
  void Tell(const Status& status);
  void Tell(const Alarm& alarm);
  // "http://127.0.0.1:9105/metrics"
  [[nodiscard]] const std::string& Url() const { return url_; }

 private:
  class Values;
  class Server;
  std::shared_ptr<Values> values_;
  std::unique_ptr<Server> server_;
  std::string url_;
};

}  // namespace kestrel::publish
