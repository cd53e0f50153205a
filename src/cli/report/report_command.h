// The command that prints records.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/number_choice.h"
#include "report/report_of.h"

namespace kestrel {

// "report ID [ID...] --out FILE": of one record, or of several compared with the first.
class ReportCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  [[nodiscard]] bool NeedsSensor() const override { return false; }
  [[nodiscard]] bool NeedsPainter() const override { return true; }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  // What was written, the report first.
  [[nodiscard]] std::vector<std::string> Write(Session& session,
                                               const report::Report& report) const;
  [[nodiscard]] std::string PictureEnding(report::ReportPainter& painter) const;

  CLI::App* word_ = nullptr;
  std::vector<std::int64_t> ids_;
  std::string file_;
  std::string folder_;  // of plots; empty: none are written
  bool asPng_ = false;
  bool asSvg_ = false;
  std::string title_;
  std::optional<report::Paper> paper_;
  QuantityOptions quantity_;
};

}  // namespace kestrel
