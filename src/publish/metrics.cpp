// The library's server, held to what a machine can spare: few threads, short patience.
// SPDX-License-Identifier: MIT
#include "publish/metrics.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <prometheus/collectable.h>
#include <prometheus/exposer.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <mutex>
#include <utility>
#include <vector>

#include "numeric/runtime_error.h"
#include "publish/metric_families.h"

namespace kestrel::publish {
namespace {

std::string AddressText(const MetricsSettings& settings, int port) {
  const bool isSix = settings.address.find(':') != std::string::npos;
  return (isSix ? "[" + settings.address + "]" : settings.address) + ":" + std::to_string(port);
}

// A whole request, its headers included, has to come within 2 s; there is one a connection.
std::vector<std::string> OptionsOf(const MetricsSettings& settings) {
  return {"listening_ports",    AddressText(settings, settings.port),
          "num_threads",        "4",
          "request_timeout_ms", "2000",
          "enable_keep_alive",  "no",
          "max_request_size",   "8192"};
}

// Why the address cannot be had, since the library does not say it; 0 where it can.
int BindFault(const MetricsSettings& settings) {
  sockaddr_in four{
      .sin_family = AF_INET, .sin_port = htons(settings.port), .sin_addr{}, .sin_zero{}};
  sockaddr_in6 six{};
  six.sin6_family = AF_INET6;
  six.sin6_port = htons(settings.port);
  const bool isFour = inet_pton(AF_INET, settings.address.c_str(), &four.sin_addr) == 1;
  if (!isFour && inet_pton(AF_INET6, settings.address.c_str(), &six.sin6_addr) != 1) return EINVAL;
  const int trial = socket(isFour ? AF_INET : AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (trial < 0) return errno;
  const int yes = 1;
  setsockopt(trial, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  const void* address = isFour ? static_cast<const void*>(&four) : &six;
  const bool isFree =
      bind(trial, static_cast<const sockaddr*>(address), isFour ? sizeof four : sizeof six) == 0 &&
      listen(trial, 1) == 0;
  const int fault = isFree ? 0 : errno;
  close(trial);
  return fault;
}

[[noreturn]] void Refuse(const MetricsSettings& settings, int fault) {
  const std::string why = fault == EADDRINUSE ? "the port is taken by another program"
                          : fault == 0        ? "the port cannot be opened"
                                              : std::strerror(fault);
  throw RuntimeError("metrics cannot be served at " + AddressText(settings, settings.port) + ": " +
                     why + "; choose another address or port in the plan");
}

}  // namespace

// What is told last, as metrics.
class Metrics::Values : public prometheus::Collectable {
 public:
  Values(MetricValues values, std::function<PublisherState()> state)
      : values_(std::move(values)), state_(std::move(state)) {}

  std::vector<prometheus::MetricFamily> Collect() const override {
    MetricValues values = [&] {
      const std::lock_guard lock(mutex_);
      return values_;
    }();
    values.publisher = state_();
    return FamiliesOf(values);
  }
  void Change(const std::function<void(MetricValues&)>& change) {
    const std::lock_guard lock(mutex_);
    change(values_);
  }

 private:
  mutable std::mutex mutex_;
  MetricValues values_;
  const std::function<PublisherState()> state_;
};

class Metrics::Server {
 public:
  explicit Server(const MetricsSettings& settings) : exposer_(OptionsOf(settings)) {}
  prometheus::Exposer& operator*() { return exposer_; }

 private:
  prometheus::Exposer exposer_;
};

Metrics::Metrics(const MetricsSettings& settings, const Names& names, const std::string& version,
                 std::function<PublisherState()> state)
    : values_(std::make_shared<Values>(MetricValues{.names = names, .version = version},
                                       std::move(state))) {
  const int fault = BindFault(settings);
  if (fault != 0) Refuse(settings, fault);
  // The server's threads take no signals: these are for the program's own.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, &before);
  try {
    server_ = std::make_unique<Server>(settings);
  } catch (const std::exception&) {
    server_.reset();
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  if (!server_) Refuse(settings, 0);
  (**server_).RegisterCollectable(values_);
  url_ = "http://" + AddressText(settings, (**server_).GetListeningPorts().at(0)) + "/metrics";
}

Metrics::~Metrics() = default;

void Metrics::Tell(const Levels& levels) {
  values_->Change([&](MetricValues& values) {
    // Severity is judged of some records only: what was judged last stays.
    const std::optional<Levels> before = std::exchange(values.levels, levels);
    for (const Axis axis : kAxes) {
      std::optional<double>& severity = values.levels->axes[Index(axis)].severityMms;
      if (!severity && before) severity = before->axes[Index(axis)].severityMms;
    }
  });
}

void Metrics::Tell(const Status& status) {
  values_->Change([&](MetricValues& values) { values.status = status; });
}

void Metrics::Tell(const Alarm& alarm) {
  values_->Change([&](MetricValues& values) {
    ++(alarm.event == AlarmEvent::Begin ? values.alarmsBegun : values.alarmsEnded);
  });
}

}  // namespace kestrel::publish
