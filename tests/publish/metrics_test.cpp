// Metrics as a server of metrics reads them, and as attackers ask for them.
// SPDX-License-Identifier: MIT
#include "publish/metrics.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <sstream>

#include "http_answer.h"
#include "numeric/runtime_error.h"
#include "publish/metric_families.h"
#include "support/heap_bytes.h"

namespace kestrel::publish {
namespace {

using namespace std::chrono_literals;

constexpr Moment kMoment{std::chrono::sys_days{std::chrono::year{2024} / 3 / 14}};

class MetricsServers : public testing::Test {
 protected:
  void Tell() {
    Levels levels{.of = names_};
    levels.axes[0] = {0.25, 1.5, 587.25, 2.8, "B"};
    levels.axes[1].rmsG = 0.5;
    metrics_.Tell(levels);
    metrics_.Tell(Status{.of = names_,
                         .state = State::Up,
                         .nextCapture = kMoment + 10s,
                         .lastRecord = kMoment,
                         .records = 12,
                         .missed = 3,
                         .incidentsOpen = 1,
                         .alarmsOn = 2});
    metrics_.Tell(Alarm{.event = AlarmEvent::Begin});
    metrics_.Tell(Alarm{.event = AlarmEvent::Begin});
    metrics_.Tell(Alarm{.event = AlarmEvent::End});
  }
  [[nodiscard]] int Port() const {
    const std::string& url = metrics_.Url();
    return std::stoi(url.substr(url.rfind(':') + 1));
  }
  // The lines with values, sorted.
  [[nodiscard]] std::vector<std::string> Lines() const {
    std::istringstream answer(AnswerTo(Port(), kRequest, 5s));
    std::vector<std::string> lines;
    for (std::string line; std::getline(answer, line);) {
      if (line.starts_with("kestrel_")) lines.push_back(line);
    }
    std::ranges::sort(lines);
    return lines;
  }

  Names names_{"bench 1", "pump"};
  Metrics metrics_{
      {}, names_, "0.1.0", [] { return PublisherState{.hasBroker = true, .waitingAlarms = 4}; }};
};

TEST_F(MetricsServers, TellWhatIsKnown) {
  Tell();
  const std::string of = R"({bench="bench 1",sensor="pump")";
  EXPECT_EQ(
      Lines(),
      (std::vector<std::string>{
          R"(kestrel_alarm_events_total)" + of + R"(,event="begin"} 2)",
          R"(kestrel_alarm_events_total)" + of + R"(,event="end"} 1)",
          "kestrel_alarms_on" + of + "} 2", "kestrel_broker_connected" + of + "} 0",
          "kestrel_build_info" + of + R"(,version="0.1.0"} 1)",
          "kestrel_incidents_open" + of + "} 1",
          "kestrel_last_record_timestamp_seconds" + of + "} 1710374400",
          "kestrel_missed_captures_total" + of + "} 3",
          "kestrel_next_capture_timestamp_seconds" + of + "} 1710374410",
          "kestrel_peak_g" + of + R"(,axis="x"} 1.5)", "kestrel_records_total" + of + "} 12",
          "kestrel_rms_g" + of + R"(,axis="x"} 0.25)", "kestrel_rms_g" + of + R"(,axis="y"} 0.5)",
          "kestrel_severity_mm_per_second" + of + R"(,axis="x"} 2.8)",
          "kestrel_top_frequency_hertz" + of + R"(,axis="x"} 587.25)", "kestrel_up" + of + "} 1",
          "kestrel_waiting_alarms" + of + "} 4"}));
}

TEST_F(MetricsServers, LeaveOutWhatIsNotKnown) {
  for (const std::string& line : Lines()) {
    EXPECT_TRUE(
        line.starts_with("kestrel_build_info") || line.starts_with("kestrel_alarm_events") ||
        line.starts_with("kestrel_broker_connected") || line.starts_with("kestrel_waiting_alarms"))
        << line;
  }
}

TEST_F(MetricsServers, SeverityStaysWhenTheNextRecordIsNotJudged) {
  Tell();
  metrics_.Tell(Levels{.of = names_});
  const auto lines = Lines();
  EXPECT_EQ(
      std::ranges::count_if(
          lines, [](const std::string& line) { return line.starts_with("kestrel_severity"); }),
      1);
  EXPECT_EQ(std::ranges::count_if(
                lines, [](const std::string& line) { return line.starts_with("kestrel_rms"); }),
            0);
}

// The checker of the metrics' own makers; without it this fails.
TEST_F(MetricsServers, AreAcceptedByTheCheckerWhateverTheNamesHold) {
  Tell();
  Metrics hostile({}, {"a\"b\\\n\xFF{x=\"y\"} 1", std::string(10'000, '\r')}, "0",
                  [] { return PublisherState{.hasBroker = true}; });
  hostile.Tell(Status{});
  for (const Metrics* metrics : {&metrics_, &hostile}) {
    const TemporaryFolder folder;
    ChildProcess check({"bash", "-c",
                        "set -o pipefail; curl -sf '" + metrics->Url() +
                            "' | promtool check metrics && echo accepted"},
                       folder.path() / "output");
    ASSERT_TRUE(Eventually([&] { return !check.IsRunning(); }));
    EXPECT_EQ(folder.Content("output"), "accepted\n");
  }
}

TEST_F(MetricsServers, AreOfThisMachineAlone) {
  EXPECT_TRUE(metrics_.Url().starts_with("http://127.0.0.1:"));
  std::ifstream sockets("/proc/net/tcp");
  std::array<char, 16> everywhere{};
  std::snprintf(everywhere.data(), everywhere.size(), "00000000:%04X", Port());
  std::stringstream text;
  text << sockets.rdbuf();
  EXPECT_EQ(text.str().find(everywhere.data()), std::string::npos);
}

TEST_F(MetricsServers, SayThatAPortIsTaken) {
  const MetricsSettings same{.port = static_cast<std::uint16_t>(Port())};
  try {
    const Metrics second(same, names_, "0", [] { return PublisherState{}; });
    ADD_FAILURE();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.what(),
              "metrics cannot be served at 127.0.0.1:" + std::to_string(Port()) +
                  ": the port is taken by another program; choose another address or port in the "
                  "plan");
  }
}

TEST_F(MetricsServers, SayThatAnAddressIsNotOfThisMachine) {
  for (const char* address : {"192.0.2.1", "1.2", "2001:db8::1"}) {
    EXPECT_THROW(Metrics({.address = address}, names_, "0", [] { return PublisherState{}; }),
                 RuntimeError)
        << address;
  }
}

TEST_F(MetricsServers, AnswerTenThousandRequestsWithoutGrowing) {
  Tell();
  const auto ask = [&](int count) {
    for (int i = 0; i < count; ++i) {
      ASSERT_TRUE(AnswerTo(Port(), kRequest, 5s).starts_with("HTTP/1.1 200")) << i;
    }
  };
  ask(1000);
  const auto before = static_cast<std::int64_t>(HeapBytes());
  ask(9000);
  EXPECT_LT(static_cast<std::int64_t>(HeapBytes()) - before, 256 << 10);
}

TEST_F(MetricsServers, OutliveMalformedRequests) {
  const std::vector<std::string> malformed{
      "\r\n\r\n",
      "GET\r\n\r\n",
      "GET /metrics HTTP/9.9\r\n\r\n",
      std::string("\x16\x03\x01\x02\x00\x01\x00\x01\xFC\x03\x03", 11) + "\r\n\r\n",
      "GET /" + std::string(100'000, 'a') + " HTTP/1.1\r\n\r\n",
      "POST /metrics HTTP/1.1\r\nContent-Length: 99999999999\r\n\r\nx",
      "GET /../../etc/passwd HTTP/1.1\r\nHost: x\r\n\r\n",
      std::string(50'000, '\n'),
      "GET /metrics HTTP/1.1\r\n" + std::string(20'000, 'h') + ": x\r\n\r\n"};
  for (const std::string& request : malformed) {
    EXPECT_EQ(AnswerTo(Port(), request, 5s).find("root:"), std::string::npos);
    EXPECT_TRUE(AnswerTo(Port(), kRequest, 10s).starts_with("HTTP/1.1 200"))
        << request.substr(0, 40);
  }
}

// Eight who never end their request, two for each thread, hold nobody else up for long.
TEST_F(MetricsServers, AnswerOthersWhileSomeAreSlow) {
  std::vector<int> slow;
  for (int i = 0; i < 8; ++i) {
    slow.push_back(ConnectedTo(Port()));
    ASSERT_GE(slow.back(), 0);
    send(slow.back(), "GET /met", 8, MSG_NOSIGNAL);
  }
  std::atomic<bool> isOver = false;
  std::thread trickle([&] {
    while (!isOver) {
      for (const int one : slow) send(one, "r", 1, MSG_NOSIGNAL);
      std::this_thread::sleep_for(200ms);
    }
  });
  EXPECT_TRUE(AnswerTo(Port(), kRequest, 90s).starts_with("HTTP/1.1 200"));
  isOver = true;
  trickle.join();
  for (const int one : slow) close(one);
  EXPECT_TRUE(AnswerTo(Port(), kRequest, 60s).starts_with("HTTP/1.1 200"));
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("Threads:")) {
      EXPECT_LT(std::stoi(line.substr(8)), 12);
    }
  }
}

TEST_F(MetricsServers, EndAtOnce) {
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 5; ++i) Metrics({}, names_, "0", [] { return PublisherState{}; });
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
}

// Who never ends a request does not hold up the end of the program either.
TEST_F(MetricsServers, EndWhileSomeAreSlow) {
  std::vector<int> slow;
  {
    const Metrics other({}, names_, "0", [] { return PublisherState{}; });
    const std::string& url = other.Url();
    const int port = std::stoi(url.substr(url.rfind(':') + 1));
    for (int i = 0; i < 100; ++i) {
      slow.push_back(ConnectedTo(port));
      ASSERT_GE(slow.back(), 0);
      send(slow.back(), "GET /met", 8, MSG_NOSIGNAL);
    }
    std::this_thread::sleep_for(300ms);
  }
  for (const int one : slow) close(one);
}

}  // namespace
}  // namespace kestrel::publish
