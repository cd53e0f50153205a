// Where to publish, as a plan says it; passwords stay outside.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kestrel::publish {

struct BrokerSettings {
  std::string host{};  // a name or an address
  std::uint16_t port = 1883;
  std::string user{};          // empty: none
  std::string passwordFile{};  // its first line; empty: KESTREL_MQTT_PASSWORD of the environment
  bool tls = false;
  std::string ca{};  // file of certificates to trust; empty: those of the system
  bool operator==(const BrokerSettings&) const = default;
};

struct MetricsSettings {
  std::string address = "127.0.0.1";
  std::uint16_t port = 0;  // 0: any that is free
  bool operator==(const MetricsSettings&) const = default;
};

struct CommandSettings {
  // Program and arguments, handed over as they are.
  std::vector<std::string> words{};
  std::chrono::seconds limit{30};
  bool operator==(const CommandSettings&) const = default;
};

// What is none is not done.
struct Settings {
  std::optional<BrokerSettings> broker{};
  std::optional<MetricsSettings> metrics{};
  std::optional<CommandSettings> command{};
  [[nodiscard]] bool IsNothing() const { return !broker && !metrics && !command; }
  bool operator==(const Settings&) const = default;
};

// A line "key = value", as it stands in a plan.
struct SettingLine {
  std::size_t line = 0;  // from 1
  std::string key{};
  std::string value{};
};
struct SettingMistake {
  std::size_t line = 0;  // 0: of something that is missing
  std::string what{};    // names key and value
  bool operator==(const SettingMistake&) const = default;
};

// Keys: broker (host, its port after a colon: "broker.example", "10.0.0.1:8883", "[::1]:1883"),
// port, user, password_file, tls ("yes" or "no"), ca, metrics ("9105" on this machine alone,
// "0.0.0.0:9105", "[::]:9105"), command (words between blanks; "two words" between quotes),
// command_limit (seconds). All mistakes, in the order of the lines.
[[nodiscard]] std::variant<Settings, std::vector<SettingMistake>> SettingsOf(
    const std::vector<SettingLine>& lines);

// The words of a command: between blanks; quotes hold words with blanks together, and within them
// a backslash keeps the next character. None where a quote is not closed.
[[nodiscard]] std::optional<std::vector<std::string>> WordsOf(const std::string& text);

inline constexpr const char* kPasswordVariable = "KESTREL_MQTT_PASSWORD";

// The password that belongs to the settings; empty where there is no user. Throws RuntimeError with
// the file and the cure, never with what stands in it.
[[nodiscard]] std::string PasswordFor(
    const BrokerSettings& broker,
    const std::function<std::optional<std::string>(const char* name)>& environment);

}  // namespace kestrel::publish
