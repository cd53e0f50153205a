// The words of the command line: what they share.
// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

#include "cli/exit_code.h"
#include "cli/session.h"

namespace kestrel {

using Json = nlohmann::ordered_json;

// The result stream: text for people, or one JSON value a result for scripts.
struct Output {
  std::ostream& out;
  bool json = false;

  // A byte that is no text, as a file's name may have, becomes the replacement character.
  void Write(const Json& value) const {
    out << value.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  }
};

// What one word of the command line does.
class Command {
 public:
  virtual ~Command() = default;

  // Adds the word with its options; what they say is kept in the command.
  virtual void AddTo(CLI::App& app) = 0;
  [[nodiscard]] virtual bool Chosen() const = 0;
  // Whether a sensor has to answer first.
  [[nodiscard]] virtual bool NeedsSensor() const { return true; }
  // Whether pages are printed, which not every program of the command line can.
  [[nodiscard]] virtual bool NeedsPainter() const { return false; }
  // Of a command that has a station of its own, or none: takes the place of Run, nothing where Run
  // is wanted. `archive`: as the command line names it.
  [[nodiscard]] virtual std::optional<ExitCode> RunAlone(const Surroundings& /*surroundings*/,
                                                         const Connection& /*connection*/,
                                                         const KeepingChoice& /*archive*/,
                                                         const Output& /*output*/) {
    return std::nullopt;
  }
  virtual ExitCode Run(Session& session, const Output& output) = 0;
};

}  // namespace kestrel
