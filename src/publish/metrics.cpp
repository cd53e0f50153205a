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
#include <cstring>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "numeric/runtime_error.h"
#include "publish/metric_families.h"
#include "publish/no_signals.h"

namespace kestrel::publish {
namespace {

constexpr std::chrono::milliseconds kBetweenKnocks{10};

// "::1" and its like.
bool IsNewer(const MetricsSettings& settings) {
  return settings.address.find(':') != std::string::npos;
}

std::string AddressText(const MetricsSettings& settings, int port) {
  return (IsNewer(settings) ? "[" + settings.address + "]" : settings.address) + ":" +
         std::to_string(port);
}

// A whole request, its headers included, has to come within 2 s; there is one a connection.
std::vector<std::string> OptionsOf(const MetricsSettings& settings) {
  return {"listening_ports",    AddressText(settings, settings.port),
          "num_threads",        "4",
          "request_timeout_ms", "2000",
          "enable_keep_alive",  "no",
          "max_request_size",   "8192"};
}

struct Address {
  sockaddr_storage bytes{};
  socklen_t size = 0;  // 0: it is none
  [[nodiscard]] const sockaddr* Get() const { return reinterpret_cast<const sockaddr*>(&bytes); }
};

Address AddressOf(const MetricsSettings& settings, int port) {
  Address address;
  auto& four = reinterpret_cast<sockaddr_in&>(address.bytes);
  auto& six = reinterpret_cast<sockaddr_in6&>(address.bytes);
  if (inet_pton(AF_INET, settings.address.c_str(), &four.sin_addr) == 1) {
    address.bytes.ss_family = AF_INET;
    four.sin_port = htons(static_cast<std::uint16_t>(port));
    address.size = sizeof four;
  } else if (inet_pton(AF_INET6, settings.address.c_str(), &six.sin6_addr) == 1) {
    address.bytes.ss_family = AF_INET6;
    six.sin6_port = htons(static_cast<std::uint16_t>(port));
    address.size = sizeof six;
  }
  return address;
}

// Why the address cannot be had, since the library does not say it; 0 where it can.
int BindFault(const MetricsSettings& settings) {
  const Address address = AddressOf(settings, settings.port);
  if (address.size == 0) return EINVAL;
  const int trial = socket(address.bytes.ss_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (trial < 0) return errno;
  const int yes = 1;
  setsockopt(trial, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  const bool isFree = bind(trial, address.Get(), address.size) == 0 && listen(trial, 1) == 0;
  const int fault = isFree ? 0 : errno;
  close(trial);
  return fault;
}

// Connects and leaves.
void Knock(const Address& address) {
  const int guest = socket(address.bytes.ss_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (guest < 0) return;
  (void)connect(guest, address.Get(), address.size);
  close(guest);
}

[[noreturn]] void Refuse(const MetricsSettings& settings, int fault) {
  const std::string why = fault == EADDRINUSE ? "the port is taken by another program"
                          : fault != 0        ? std::strerror(fault)
                          : IsNewer(settings) ? "this machine's server knows older addresses only"
                                              : "the port cannot be opened";
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
  explicit Server(const MetricsSettings& settings)
      : settings_(settings), exposer_(std::make_unique<prometheus::Exposer>(OptionsOf(settings))) {}
  // Who listens looks every 2 s whether it is to end, or when somebody comes.
  ~Server() {
    const std::jthread knocking(
        [address = AddressOf(settings_, Port())](const std::stop_token& end) {
          while (!end.stop_requested()) {
            std::this_thread::sleep_for(kBetweenKnocks);
            Knock(address);
          }
        });
    exposer_.reset();
  }
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  prometheus::Exposer& operator*() { return *exposer_; }
  [[nodiscard]] int Port() const { return exposer_->GetListeningPorts().at(0); }

 private:
  const MetricsSettings settings_;
  std::unique_ptr<prometheus::Exposer> exposer_;
};

Metrics::Metrics(const MetricsSettings& settings, const Names& names, const std::string& version,
                 std::function<PublisherState()> state)
    : values_(std::make_shared<Values>(MetricValues{.names = names, .version = version},
                                       std::move(state))) {
  const int fault = BindFault(settings);
  if (fault != 0) Refuse(settings, fault);
  try {
    const NoSignals here;
    server_ = std::make_unique<Server>(settings);
  } catch (const std::exception&) {
    server_.reset();
  }
  if (!server_) Refuse(settings, 0);
  (**server_).RegisterCollectable(values_);
  url_ = "http://" + AddressText(settings, server_->Port()) + "/metrics";
}

Metrics::~Metrics() {
  const NoSignals here;
  server_.reset();
}

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
