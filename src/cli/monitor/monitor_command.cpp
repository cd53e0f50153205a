// Plans read, checked, printed and carried out.
// SPDX-License-Identifier: MIT
#include "cli/monitor/monitor_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <ostream>

#include "acquisition/readings.h"
#include "monitor/plan/bands_of.h"
#include "monitor/plan/plan_from.h"
#include "monitor/plan/plan_words.h"
#include "regmap/register_table.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

Json Told(const monitor::Mistakes& mistakes) {
  Json list = Json::array();
  for (const monitor::Mistake& mistake : mistakes) {
    Json one;
    one["line"] = mistake.line;
    one["text"] = mistake.what;
    list.push_back(one);
  }
  return list;
}

std::string Summary(const monitor::Plan& plan) {
  std::string text = "The plan is good: " + plan.bench + ", " + plan.sensor + ", every " +
                     monitor::PeriodText(plan.every);
  for (const monitor::Step& step : plan.steps) text += "; " + monitor::NameOf(step);
  return text + ".";
}

}  // namespace

void MonitorCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("monitor", "Capture by a plan for days, and judge what was captured");
  auto* plan = word_
                   ->add_option("plan", file_,
                                "The plan, a text file; --from-sensor prints one to begin with")
                   ->type_name("FILE");
  auto* check = word_->add_flag("--check", check_, "Check the plan and capture nothing");
  auto* from = word_->add_flag("--from-sensor", fromSensor_,
                               "Print a plan that captures as the sensor is set now");
  auto* ends = word_->add_flag(
      "--end-with-input", endsWithInput_,
      "End also when the standard input is closed, for programs that start this one");
  from->excludes(plan)->excludes(check)->excludes(ends);
  word_->add_option("--bench", bench_, "Name of the bench in the printed plan")->needs(from);
  word_->add_option("--sensor", sensor_, "Name of the sensor in the printed plan")->needs(from);
}

void MonitorCommand::SayMistakes(const Surroundings& surroundings, const Output& output,
                                 const monitor::Mistakes& mistakes) const {
  for (const monitor::Mistake& mistake : mistakes) {
    surroundings.error << mistake.Text(file_) << '\n';
  }
  if (output.json) output.Write({{"good", false}, {"mistakes", Told(mistakes)}});
}

std::optional<MonitorRun> MonitorCommand::Read(const Surroundings& surroundings,
                                               const Output& output) const {
  const auto content = surroundings.files.Read(AbsolutePathOf(file_), monitor::kLargestPlan + 1);
  if (!content) {
    surroundings.error << "The plan " << file_ << " cannot be read.\n";
    return std::nullopt;
  }
  auto read = monitor::PlanOf(*content);
  if (const auto* mistakes = std::get_if<monitor::Mistakes>(&read)) {
    SayMistakes(surroundings, output, *mistakes);
    return std::nullopt;
  }
  MonitorRun run{.plan = std::get<monitor::Plan>(std::move(read))};
  auto bands = monitor::BandsOf(run.plan, surroundings.files, AbsolutePathOf(file_).parent_path());
  if (const auto* mistakes = std::get_if<monitor::Mistakes>(&bands)) {
    SayMistakes(surroundings, output, *mistakes);
    return std::nullopt;
  }
  run.bands = std::get<std::vector<std::optional<BandTable>>>(std::move(bands));
  return run;
}

std::optional<ExitCode> MonitorCommand::RunAlone(const Surroundings& surroundings,
                                                 const Connection& connection,
                                                 const KeepingChoice& archive,
                                                 const Output& output) {
  connection_ = &connection;
  if (fromSensor_) return std::nullopt;
  if (file_.empty()) {
    surroundings.error << "monitor: a plan is needed; --from-sensor prints one.\n";
    return ExitCode::Usage;
  }
  auto run = Read(surroundings, output);
  if (!run) return ExitCode::Failure;
  if (check_) {
    if (output.json) {
      output.Write({{"good", true}, {"mistakes", Json::array()}});
    } else {
      output.out << Summary(run->plan) << '\n';
    }
    return ExitCode::Success;
  }
  run->isJson = output.json;
  run->endsWithInput = endsWithInput_;
  run->connection = ConnectionOf(run->plan.road, connection);
  run->place = archive.named ? archive.place : monitor::ArchiveOf(run->plan, archive.place);
  if (run->place.text.empty()) {
    surroundings.error << "monitor: records need an archive; name one with --archive.\n";
    return ExitCode::Failure;
  }
  return RunMonitor(surroundings, *run);
}

ExitCode MonitorCommand::Run(Session& session, const Output& output) {
  const auto setup = session.station.Records().Configure({});
  if (!setup) return session.Fail(setup.Why());
  const auto timer = ReadWord(session.station.Road().registers, row::REC_PRD);
  const monitor::PresentSettings present{.setup = *setup,
                                         .timerWord = timer,
                                         .road = {.simulated = connection_->simulate,
                                                  .scenario = connection_->scenario,
                                                  .adapter = connection_->adapter,
                                                  .parallelAddress = connection_->parallelAddress,
                                                  .portDevice = connection_->portDevice},
                                         .bench = bench_.empty() ? session.Bench() : bench_,
                                         .sensor = sensor_};
  const std::string text = monitor::TextOf(monitor::PlanFrom(present));
  if (output.json) {
    output.Write({{"plan", text}});
  } else {
    output.out << text;
  }
  return ExitCode::Success;
}

}  // namespace kestrel
