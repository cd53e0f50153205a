// Lines of a plan become settings, or mistakes that name the value.
// SPDX-License-Identifier: MIT
#include "publish/settings.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <set>
#include <utility>

#include "numeric/runtime_error.h"
#include "publish/names.h"

namespace kestrel::publish {
namespace {

constexpr std::size_t kLongestPassword = 1024;
constexpr std::size_t kLongestInMessage = 80;
constexpr std::uint16_t kTlsPort = 8883;
constexpr int kLongestLimit = 3600;  // s

template <typename Number>
std::optional<Number> NumberOf(const std::string& text, int from, int to) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return {};
  if (value < from || value > to) return {};
  return static_cast<Number>(value);
}

bool IsHost(const std::string& text) {
  return !text.empty() && text.size() <= 255 && std::ranges::all_of(text, [](char letter) {
    return static_cast<unsigned char>(letter) > 0x20 && letter != 0x7F && letter != '/';
  });
}

struct HostAndPort {
  std::string host;
  std::string port;  // empty: not said
};

// "host", "host:port", "[::1]:port"; an address with several colons and no brackets has no port.
std::optional<HostAndPort> Parted(const std::string& text) {
  if (text.starts_with('[')) {
    const std::size_t end = text.find(']');
    if (end == std::string::npos) return {};
    const std::string rest = text.substr(end + 1);
    if (!rest.empty() && (rest.front() != ':' || rest.size() < 2)) return {};
    return HostAndPort{text.substr(1, end - 1), rest.empty() ? "" : rest.substr(1)};
  }
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos || text.find(':', colon + 1) != std::string::npos) {
    return HostAndPort{text, ""};
  }
  if (colon + 1 == text.size()) return {};
  return HostAndPort{text.substr(0, colon), text.substr(colon + 1)};
}

std::string Quoted(const std::string& text) {
  const std::string clean = CleanText(text, kLongestInMessage);
  return "\"" + clean + (clean.size() < text.size() ? "…" : "") + "\"";
}

// What the lines say, whatever their order; a broker's settings count with a broker only.
class Reader {
 public:
  void Take(const SettingLine& line) {
    line_ = line;
    if (!seen_.insert(line.key).second) return SayOfKey("stands here a second time");
    if (!TakeBroker(line) && !TakeOther(line)) {
      SayOfKey(
          "is not one of broker, port, user, password_file, tls, ca, metrics, command, "
          "command_limit");
    }
  }

  std::variant<Settings, std::vector<SettingMistake>> Result() {
    CheckWhole();
    if (!mistakes_.empty()) {
      std::ranges::stable_sort(mistakes_, {}, &SettingMistake::line);
      return mistakes_;
    }
    if (seen_.contains("broker")) settings_.broker = broker_;
    if (settings_.command && limit_) settings_.command->limit = *limit_;
    return settings_;
  }

 private:
  void Say(const std::string& what) { mistakes_.push_back({line_.line, line_.key + ": " + what}); }

  // Of a key that may be anything.
  void SayOfKey(const std::string& what) {
    mistakes_.push_back({line_.line, Quoted(line_.key) + " " + what});
  }

  bool TakeBroker(const SettingLine& line) {
    if (line.key == "broker") {
      TakeHost();
    } else if (line.key == "port") {
      TakePort(line.value);
    } else if (line.key == "user") {
      line.value.empty() ? Say("is empty") : void(broker_.user = line.value);
    } else if (line.key == "password_file") {
      TakeFile(broker_.passwordFile);
    } else if (line.key == "ca") {
      TakeFile(broker_.ca);
    } else if (line.key == "tls") {
      const bool isKnown = line.value == "yes" || line.value == "no";
      isKnown ? void(broker_.tls = line.value == "yes")
              : Say(Quoted(line.value) + " is neither yes nor no");
    } else {
      return false;
    }
    return true;
  }

  bool TakeOther(const SettingLine& line) {
    if (line.key == "metrics") {
      TakeMetrics();
    } else if (line.key == "command") {
      TakeCommand();
    } else if (line.key == "command_limit") {
      const auto seconds = NumberOf<int>(line.value, 1, kLongestLimit);
      seconds ? void(limit_ = std::chrono::seconds(*seconds))
              : Say(Quoted(line.value) + " is not a number of seconds from 1 to 3600");
    } else {
      return false;
    }
    return true;
  }

  void TakeHost() {
    const auto parted = Parted(line_.value);
    if (!parted || !IsHost(parted->host)) {
      return Say(Quoted(line_.value) + " names no host: broker.example or 10.0.0.1:8883");
    }
    broker_.host = parted->host;
    if (!parted->port.empty()) TakePort(parted->port);
  }

  void TakePort(const std::string& text) {
    const auto port = NumberOf<std::uint16_t>(text, 1, 65535);
    if (!port) return Say(Quoted(text) + " is not a port from 1 to 65535");
    if (hasPort_) return Say("the port is told twice");
    broker_.port = *port;
    hasPort_ = true;
  }

  void TakeFile(std::string& file) {
    line_.value.empty() ? Say("names no file") : void(file = line_.value);
  }

  void TakeMetrics() {
    const bool isPortAlone = line_.value.find(':') == std::string::npos;
    const auto parted = isPortAlone ? HostAndPort{"127.0.0.1", line_.value} : Parted(line_.value);
    const auto port = parted ? NumberOf<std::uint16_t>(parted->port, 0, 65535) : std::nullopt;
    const auto isOfAddress = [](char letter) {
      return std::string_view("0123456789abcdefABCDEF.:").find(letter) != std::string_view::npos;
    };
    if (!parted || !port || parted->host.empty() ||
        !std::ranges::all_of(parted->host, isOfAddress)) {
      return Say(Quoted(line_.value) +
                 " is not a port, nor an address of this machine with a port: "
                 "9105 or 0.0.0.0:9105");
    }
    settings_.metrics = MetricsSettings{parted->host, *port};
  }

  void TakeCommand() {
    const auto words = WordsOf(line_.value);
    if (!words) return Say("a quote is not closed in " + Quoted(line_.value));
    if (words->empty()) return Say("names no program");
    settings_.command = CommandSettings{.words = *words};
  }

  void CheckWhole() {
    if (broker_.tls && !hasPort_) broker_.port = kTlsPort;
    if (!broker_.ca.empty() && !broker_.tls) {
      mistakes_.push_back({0, "ca: is used with tls = yes only"});
    }
    if (!broker_.passwordFile.empty() && broker_.user.empty()) {
      mistakes_.push_back({0, "password_file: needs a user"});
    }
    for (const char* key : {"port", "user", "tls"}) {
      if (seen_.contains(key) && !seen_.contains("broker")) {
        mistakes_.push_back({0, std::string(key) + ": needs a broker"});
      }
    }
    if (limit_ && !seen_.contains("command")) {
      mistakes_.push_back({0, "command_limit: needs a command"});
    }
  }

  SettingLine line_;
  Settings settings_;
  BrokerSettings broker_;
  bool hasPort_ = false;
  std::optional<std::chrono::seconds> limit_;
  std::set<std::string> seen_;
  std::vector<SettingMistake> mistakes_;
};

}  // namespace

std::variant<Settings, std::vector<SettingMistake>> SettingsOf(
    const std::vector<SettingLine>& lines) {
  Reader reader;
  for (const SettingLine& line : lines) reader.Take(line);
  return reader.Result();
}

std::optional<std::vector<std::string>> WordsOf(const std::string& text) {
  std::vector<std::string> words;
  bool isInWord = false;
  bool isQuoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char letter = text[i];
    const bool isBlank = letter == ' ' || letter == '\t';
    if (isBlank && !isQuoted) {
      isInWord = false;
      continue;
    }
    if (!isInWord) words.emplace_back();
    isInWord = true;
    if (letter == '"') {
      isQuoted = !isQuoted;
    } else if (letter == '\\' && isQuoted && i + 1 < text.size()) {
      words.back() += text[++i];
    } else {
      words.back() += letter;
    }
  }
  if (isQuoted) return {};
  return words;
}

std::string PasswordFor(
    const BrokerSettings& broker,
    const std::function<std::optional<std::string>(const char* name)>& environment) {
  if (broker.user.empty()) return {};
  if (broker.passwordFile.empty()) return environment(kPasswordVariable).value_or("");
  std::ifstream file(broker.passwordFile, std::ios::binary);
  std::string password;
  if (!file || !std::getline(file, password)) {
    throw RuntimeError("the password file " + broker.passwordFile +
                       " cannot be read, or is empty: its first line has to be the password");
  }
  if (password.ends_with('\r')) password.pop_back();
  if (password.empty() || password.size() > kLongestPassword) {
    throw RuntimeError("the first line of the password file " + broker.passwordFile +
                       " is not a password: it has 1 to 1024 characters");
  }
  return password;
}

}  // namespace kestrel::publish
