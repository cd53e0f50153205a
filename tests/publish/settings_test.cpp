// Settings of a plan, and every mistake in them.
// SPDX-License-Identifier: MIT
#include "publish/settings.h"

#include "numeric/runtime_error.h"
#include "publish/names.h"
#include "support/temporary_folder.h"

namespace kestrel::publish {
namespace {

std::vector<SettingLine> Lines(const std::vector<std::pair<std::string, std::string>>& texts) {
  std::vector<SettingLine> lines;
  for (const auto& [key, value] : texts) lines.push_back({lines.size() + 11, key, value});
  return lines;
}

Settings Good(const std::vector<std::pair<std::string, std::string>>& texts) {
  const auto result = SettingsOf(Lines(texts));
  if (const auto* mistakes = std::get_if<1>(&result)) ADD_FAILURE() << mistakes->front().what;
  return std::holds_alternative<Settings>(result) ? std::get<Settings>(result) : Settings{};
}

std::vector<SettingMistake> Mistakes(
    const std::vector<std::pair<std::string, std::string>>& texts) {
  const auto result = SettingsOf(Lines(texts));
  return std::holds_alternative<Settings>(result) ? std::vector<SettingMistake>{}
                                                  : std::get<1>(result);
}

TEST(PublishSettings, NothingIsAskedForWithoutLines) {
  EXPECT_TRUE(Good({}).IsNothing());
}

TEST(PublishSettings, TellTheBroker) {
  const Settings settings = Good({{"broker", "broker.example"},
                                  {"user", "bench 1"},
                                  {"password_file", "/etc/kestrel/password"},
                                  {"tls", "yes"},
                                  {"ca", "/etc/ssl/ca.crt"}});
  EXPECT_EQ(settings.broker, (BrokerSettings{.host = "broker.example",
                                             .port = 8883,
                                             .user = "bench 1",
                                             .passwordFile = "/etc/kestrel/password",
                                             .tls = true,
                                             .ca = "/etc/ssl/ca.crt"}));
  EXPECT_EQ(Good({{"broker", "10.0.0.1"}}).broker->port, 1883);
  EXPECT_EQ(Good({{"broker", "10.0.0.1:99"}}).broker->port, 99);
  EXPECT_EQ(Good({{"port", "98"}, {"broker", "h"}}).broker->port, 98);
  EXPECT_EQ(Good({{"broker", "[::1]:97"}}).broker->host, "::1");
  EXPECT_EQ(Good({{"broker", "fe80::1"}}).broker->host, "fe80::1");
}

TEST(PublishSettings, MetricsAreOfThisMachineUnlessToldOtherwise) {
  EXPECT_EQ(Good({{"metrics", "9105"}}).metrics, (MetricsSettings{"127.0.0.1", 9105}));
  EXPECT_EQ(Good({{"metrics", "0.0.0.0:9105"}}).metrics, (MetricsSettings{"0.0.0.0", 9105}));
  EXPECT_EQ(Good({{"metrics", "[::]:9105"}}).metrics, (MetricsSettings{"::", 9105}));
}

TEST(PublishSettings, ACommandIsWords) {
  const auto command = Good({{"command", R"(/bin/mail -s "two words" $HOME "a\"b" "")"}}).command;
  EXPECT_EQ(command->words,
            (std::vector<std::string>{"/bin/mail", "-s", "two words", "$HOME", "a\"b", ""}));
  EXPECT_EQ(command->limit, std::chrono::seconds(30));
  EXPECT_EQ(Good({{"command_limit", "5"}, {"command", "x"}}).command->limit,
            std::chrono::seconds(5));
}

TEST(PublishSettings, EveryMistakeIsToldWithItsLineAndValue) {
  const std::vector<SettingMistake> expected{
      {11, R"(broker: "a b" names no host: broker.example or 10.0.0.1:8883)"},
      {12, R"(port: "70000" is not a port from 1 to 65535)"},
      {13, "user: is empty"},
      {14, R"(tls: "maybe" is neither yes nor no)"},
      {15,
       R"(metrics: "here:9105" is not a port, nor an address of this machine with a port: 9105 or 0.0.0.0:9105)"},
      {16, R"(command: a quote is not closed in ""x")"},
      {17, R"(command_limit: "0" is not a number of seconds from 1 to 3600)"},
      {18,
       R"("brokr" is not one of broker, port, user, password_file, tls, ca, metrics, command, command_limit)"},
      {19, R"("broker" stands here a second time)"}};
  EXPECT_EQ(Mistakes({{"broker", "a b"},
                      {"port", "70000"},
                      {"user", ""},
                      {"tls", "maybe"},
                      {"metrics", "here:9105"},
                      {"command", "\"x"},
                      {"command_limit", "0"},
                      {"brokr", "h"},
                      {"broker", "h"}}),
            expected);
}

TEST(PublishSettings, WhatDoesNotGoTogetherIsAMistake) {
  EXPECT_EQ(Mistakes({{"broker", "h"}, {"ca", "f"}}).front().what,
            "ca: is used with tls = yes only");
  EXPECT_EQ(Mistakes({{"broker", "h"}, {"password_file", "f"}}).front().what,
            "password_file: needs a user");
  EXPECT_EQ(Mistakes({{"user", "u"}}).front().what, "user: needs a broker");
  EXPECT_EQ(Mistakes({{"command_limit", "3"}}).front().what, "command_limit: needs a command");
  EXPECT_EQ(Mistakes({{"broker", "h:1"}, {"port", "2"}}).front().what,
            "port: the port is told twice");
}

TEST(PublishSettings, AHostileValueIsToldInOneShortLine) {
  const std::string what = Mistakes({{"metrics", "\n" + std::string(10'000, 'x')}}).front().what;
  EXPECT_LT(what.size(), 300U);
  EXPECT_EQ(what.find('\n'), std::string::npos);
}

TEST(PublishSettings, AHostileKeyIsToldInShortLinesOfCharacters) {
  const std::string key = "\x9C\xE1\n" + std::string(10'000, 'x');
  const auto mistakes = Mistakes({{key, "1"}, {key, "1"}});
  ASSERT_EQ(mistakes.size(), 2U);
  EXPECT_TRUE(mistakes[0].what.ends_with("command_limit")) << mistakes[0].what;
  EXPECT_TRUE(mistakes[1].what.ends_with(" stands here a second time")) << mistakes[1].what;
  for (const SettingMistake& mistake : mistakes) {
    EXPECT_LT(mistake.what.size(), 300U);
    EXPECT_EQ(CleanText(mistake.what, mistake.what.size()), mistake.what);
  }
}

std::optional<std::string> NoVariable(const char*) {
  return {};
}

TEST(Passwords, ComeFromTheFirstLineOfAFileOrTheEnvironment) {
  const TemporaryFolder folder;
  BrokerSettings broker{.host = "h", .user = "u"};
  EXPECT_EQ(PasswordFor(broker, NoVariable), "");
  EXPECT_EQ(
      PasswordFor(broker, [](const char* name) { return std::optional(name + std::string("!")); }),
      "KESTREL_MQTT_PASSWORD!");
  broker.passwordFile = folder.Write("password", "se cret\r\nmore\n").string();
  EXPECT_EQ(PasswordFor(broker, NoVariable), "se cret");
  broker.user.clear();
  EXPECT_EQ(PasswordFor(broker, NoVariable), "");
}

TEST(Passwords, ThatCannotBeReadAreAFaultThatNamesTheFileAlone) {
  const TemporaryFolder folder;
  for (const char* content : {"", "\n", "\nsecret"}) {
    const BrokerSettings broker{
        .host = "h", .user = "u", .passwordFile = folder.Write("password", content).string()};
    try {
      (void)PasswordFor(broker, NoVariable);
      ADD_FAILURE();
    } catch (const RuntimeError& error) {
      const std::string what = error.what();
      EXPECT_NE(what.find(broker.passwordFile), std::string::npos);
      EXPECT_EQ(what.find("secret"), std::string::npos);
    }
  }
  EXPECT_THROW((void)PasswordFor({.host = "h", .user = "u", .passwordFile = "/none"}, NoVariable),
               RuntimeError);
}

}  // namespace
}  // namespace kestrel::publish
