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

TEST(PublishSettings, WhatIsNoHostIsRefused) {
  const std::vector<std::string> wrong{
      "",     "a b",       "a\tb",   "a/b",   "a\x7F", std::string(256, 'h'),
      "[::1", "[::1]1883", "[::1]:", "host:", "[]",    "[]:1"};
  for (const std::string& host : wrong) {
    const auto mistakes = Mistakes({{"broker", host}});
    ASSERT_EQ(mistakes.size(), 1U) << host;
    EXPECT_NE(mistakes.front().what.find("names no host"), std::string::npos) << host;
  }
  EXPECT_EQ(Good({{"broker", std::string(255, 'h')}}).broker->host.size(), 255U);
  EXPECT_EQ(Good({{"broker", "[::1]"}}).broker->port, 1883);
}

TEST(PublishSettings, WhatIsNoPortIsRefused) {
  for (const char* port : {"0", "65536", "12x", "x", "-1", "+1", " 1", "99999999999999999999"}) {
    EXPECT_NE(Mistakes({{"broker", "h"}, {"port", port}}).front().what.find("is not a port from 1"),
              std::string::npos)
        << port;
    EXPECT_NE(Mistakes({{"broker", std::string("h:") + port}}).front().what.find("is not a port"),
              std::string::npos)
        << port;
  }
  EXPECT_EQ(Good({{"broker", "h:1"}}).broker->port, 1);
  EXPECT_EQ(Good({{"broker", "h:65535"}}).broker->port, 65535);
  EXPECT_EQ(Good({{"metrics", "0"}}).metrics->port, 0) << "any that is free";
  for (const char* metrics :
       {"", "x", ":9105", "[::]", "[::", "::", "1.2.3.4:x", "[g]:1", "65536"}) {
    EXPECT_NE(Mistakes({{"metrics", metrics}}).front().what.find("is not a port, nor an address"),
              std::string::npos)
        << metrics;
  }
}

TEST(PublishSettings, ThatAreEmptyAreRefusedByTheirNames) {
  EXPECT_EQ(Mistakes({{"broker", "h"}, {"password_file", ""}}).front().what,
            "password_file: names no file");
  EXPECT_EQ(Mistakes({{"broker", "h"}, {"ca", ""}}).front().what, "ca: names no file");
  EXPECT_EQ(Mistakes({{"command", ""}}).front().what, "command: names no program");
  EXPECT_EQ(Mistakes({{"command", " \t "}}).front().what, "command: names no program");
}

TEST(PublishSettings, OfABrokerNeedOne) {
  for (const auto& [key, value] : std::vector<std::pair<std::string, std::string>>{
           {"port", "1"}, {"user", "u"}, {"tls", "yes"}, {"tls", "no"}}) {
    const auto mistakes = Mistakes({{key, value}});
    ASSERT_EQ(mistakes.size(), 1U) << key;
    EXPECT_EQ(mistakes.front(), (SettingMistake{0, key + ": needs a broker"}));
  }
}

TEST(PublishSettings, EncryptionHasItsOwnPortUnlessOneIsTold) {
  EXPECT_EQ(Good({{"broker", "h"}, {"tls", "no"}}).broker->port, 1883);
  EXPECT_EQ(Good({{"broker", "h:1"}, {"tls", "yes"}}).broker->port, 1);
  EXPECT_EQ(Good({{"tls", "yes"}, {"broker", "h"}}).broker->port, 8883);
  EXPECT_FALSE(Good({{"broker", "h"}, {"tls", "no"}}).broker->tls);
}

TEST(PublishSettings, TheLimitOfACommandIsASecondToAnHour) {
  for (const char* limit : {"0", "3601", "1.5", "x", ""}) {
    EXPECT_EQ(Mistakes({{"command", "x"}, {"command_limit", limit}}).size(), 1U) << limit;
  }
  EXPECT_EQ(Good({{"command", "x"}, {"command_limit", "1"}}).command->limit.count(), 1);
  EXPECT_EQ(Good({{"command", "x"}, {"command_limit", "3600"}}).command->limit.count(), 3600);
}

TEST(PublishSettings, AnyOfThemAloneIsSomething) {
  EXPECT_FALSE(Good({{"broker", "h"}}).IsNothing());
  EXPECT_FALSE(Good({{"metrics", "1"}}).IsNothing());
  EXPECT_FALSE(Good({{"command", "x"}}).IsNothing());
}

TEST(CommandWords, AreParted) {
  using Words = std::vector<std::string>;
  EXPECT_EQ(WordsOf(""), Words{});
  EXPECT_EQ(WordsOf(" \ta\tb  c "), (Words{"a", "b", "c"}));
  EXPECT_EQ(WordsOf("a\\b \"c\\\\d\" \"\\\"\""), (Words{"a\\b", "c\\d", "\""}));
  EXPECT_EQ(WordsOf("a\"b c\"d"), (Words{"ab cd"}));
  EXPECT_EQ(WordsOf("\"a\tb\""), (Words{"a\tb"}));
  EXPECT_EQ(WordsOf("\"a"), std::nullopt);
  EXPECT_EQ(WordsOf("\"a\\"), std::nullopt) << "it ends with what keeps the next one";
  EXPECT_EQ(WordsOf("\"a\\\""), std::nullopt) << "the last quote is kept";
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
  BrokerSettings broker{.host = "h", .user = "u"};
  broker.passwordFile = folder.Write("password", std::string(1025, 'p') + "\n").string();
  EXPECT_THROW((void)PasswordFor(broker, NoVariable), RuntimeError);
  folder.Write("password", std::string(1024, 'p'));
  EXPECT_EQ(PasswordFor(broker, NoVariable), std::string(1024, 'p'));
  folder.Write("password", "\r\n");
  EXPECT_THROW((void)PasswordFor(broker, NoVariable), RuntimeError);
}

}  // namespace
}  // namespace kestrel::publish
