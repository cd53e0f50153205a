// Metrics while the system's calls fail, and asked for in bytes that mean nothing.
// SPDX-License-Identifier: MIT
#include <cerrno>

#include "http_answer.h"
#include "numeric/runtime_error.h"
#include "publish/metrics.h"
#include "support/seeds.h"

namespace kestrel::publish {
namespace {

using namespace std::chrono_literals;

PublisherState NoState() {
  return {};
}

bool IsAnswered(int port) {
  return Eventually(
      [&] { return AnswerTo(port, kRequest, 3s).find("kestrel_build_info") != std::string::npos; });
}

struct Fault {
  const char* call;
  int error;
  bool isOfTheBeginning = false;  // may keep the server from beginning, which is told
};

class MetricsCallFaults : public testing::TestWithParam<Fault> {};

// Each call fails once, in turn, from the beginning to the end of the server.
TEST_P(MetricsCallFaults, AreToldAtTheBeginningAndOutlivedLater) {
  const auto [call, error, isOfTheBeginning] = GetParam();
  int refused = 0;
  bool isMet = true;
  int number = 1;
  for (; isMet && number < 60 && !testing::Test::HasFailure(); ++number) {
    SCOPED_TRACE(number);
    NetworkFaults faults(call, number, error);
    faults.Begin();
    try {
      const Metrics metrics({}, {"b", "s"}, "0", NoState);
      EXPECT_TRUE(IsAnswered(PortOf(metrics.Url())));
      EXPECT_TRUE(IsAnswered(PortOf(metrics.Url())));
    } catch (const RuntimeError& told) {
      ++refused;
      EXPECT_TRUE(std::string(told.what()).starts_with("metrics cannot be served at 127.0.0.1:0: "))
          << told.what();
      EXPECT_TRUE(std::string(told.what()).ends_with("choose another address or port in the plan"));
    }
    isMet = faults.IsMet();
  }
  EXPECT_GT(number, 2) << "the call is made";
  EXPECT_EQ(refused > 0, isOfTheBeginning) << refused;
}

INSTANTIATE_TEST_SUITE_P(AtEach, MetricsCallFaults,
                         testing::Values(Fault{"socket", EMFILE, true}, Fault{"bind", EACCES, true},
                                         Fault{"listen", EADDRINUSE, true},
                                         Fault{"setsockopt", ENOBUFS},
                                         Fault{"getsockname", ENOBUFS, true},
                                         Fault{"accept", EMFILE}, Fault{"poll", ENOMEM},
                                         Fault{"recv", ECONNRESET}, Fault{"send", EPIPE},
                                         Fault{"fcntl", EINVAL}, Fault{"connect", ENETUNREACH}),
                         [](const auto& test) { return std::string(test.param.call); });

// A request of random parts, most of them wrong.
std::string RandomRequest(Random& random) {
  static const std::vector<std::string> kParts{"GET ",
                                               "POST ",
                                               "/metrics",
                                               "/../../etc/passwd",
                                               " HTTP/1.1",
                                               "\r\n",
                                               "\r\n\r\n",
                                               "\n",
                                               "Host: x",
                                               "Content-Length: ",
                                               "4294967296",
                                               "-1",
                                               "Range: bytes=0-",
                                               "Transfer-Encoding: chunked",
                                               "Expect: 100-continue",
                                               "Accept-Encoding: gzip",
                                               "Upgrade: websocket",
                                               "%00",
                                               "%2e%2e/",
                                               "\xFF\xFE",
                                               "?",
                                               ":"};
  std::string request;
  const int parts = random.Below(24);
  for (int i = 0; i < parts; ++i) {
    if (random.OneIn(4)) {
      const int bytes = random.Below(200);
      for (int n = 0; n < bytes; ++n) request += static_cast<char>(random.Below(256));
    } else {
      request += random.Of(kParts);
    }
  }
  return request + (random.OneIn(2) ? "\r\n\r\n" : "");
}

TEST(MetricsTrouble, RandomRequestsTellNothingElseAndTheNextGoodOneIsAnswered) {
  const Metrics metrics({}, {"b", "s"}, "0", NoState);
  const int port = PortOf(metrics.Url());
  WithSeeds(4, [&](Random& random) {
    for (int i = 0; i < 100; ++i) {
      const std::string answer = AnswerTo(port, RandomRequest(random), 10ms);
      EXPECT_LT(answer.size(), 10'000U);
      const bool isGood = answer.find("kestrel_build_info") != std::string::npos;
      EXPECT_TRUE(!isGood || answer.starts_with("HTTP/1.")) << answer.substr(0, 100);
      EXPECT_EQ(answer.find("root:"), std::string::npos);
    }
    EXPECT_TRUE(IsAnswered(port));
  });
}

TEST(MetricsTrouble, ARequestThatComesByteByByteIsAnswered) {
  const Metrics metrics({}, {"b", "s"}, "0", NoState);
  const int connection = ConnectedTo(PortOf(metrics.Url()));
  ASSERT_GE(connection, 0);
  for (const char letter : kRequest) ASSERT_EQ(send(connection, &letter, 1, MSG_NOSIGNAL), 1);
  std::array<char, 15> answer{};
  EXPECT_EQ(recv(connection, answer.data(), answer.size(), MSG_WAITALL), 15);
  EXPECT_EQ(std::string(answer.data(), answer.size()), "HTTP/1.1 200 OK");
  close(connection);
}

TEST(MetricsTrouble, WhoAsksAndDoesNotListenHoldsNobodyUp) {
  const Metrics metrics({}, {"b", "s"}, "0", NoState);
  const int port = PortOf(metrics.Url());
  for (int i = 0; i < 50; ++i) {
    const int connection = ConnectedTo(port);
    ASSERT_GE(connection, 0);
    send(connection, kRequest.data(), kRequest.size(), MSG_NOSIGNAL);
    const linger atOnce{1, 0};  // a reset, no goodbye
    setsockopt(connection, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    close(connection);
  }
  EXPECT_TRUE(IsAnswered(port));
}

// Whether the server's library knows them is the system's choice.
TEST(MetricsTrouble, AddressesWithColonsAreServedOrRefusedInPlainWords) {
  std::string told;
  try {
    told = Metrics({.address = "::1"}, {"b", "s"}, "0", NoState).Url();
  } catch (const RuntimeError& error) {
    told = error.what();
  }
  EXPECT_TRUE(told.starts_with("http://[::1]:") ||
              told.find("[::1]:0: this machine's server knows older addresses only; choose") !=
                  std::string::npos ||
              told.find("[::1]:0: Cannot assign requested address; choose") != std::string::npos)
      << told;
}

}  // namespace
}  // namespace kestrel::publish
