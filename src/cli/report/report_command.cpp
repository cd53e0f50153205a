// Records found, printed and put in place whole.
// SPDX-License-Identifier: MIT
#include "cli/report/report_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>
#include <algorithm>
#include <filesystem>

#include "cli/archive/archive_command.h"
#include "cli/archive/archive_options.h"
#include "cli/word_choice.h"
#include "record/record_count.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

const WordCodes<report::Paper> kPapers{{"a4", report::Paper::A4},
                                       {"letter", report::Paper::Letter}};

std::vector<archive::KeptRecord> RecordsOf(const Session& session,
                                           const std::vector<std::int64_t>& ids) {
  archive::Archive archive = OpenArchive(session, database::Access::ReadOnly);
  std::vector<archive::KeptRecord> records;
  for (const std::int64_t id : ids) {
    auto record = archive.Get(id);
    if (!record) {
      throw RuntimeError("There is no record " + std::to_string(id) + " in the archive.");
    }
    records.push_back(std::move(*record));
  }
  return records;
}

void Put(Session& session, const std::string& file, const std::string& content) {
  session.station.FilesHere().ReplaceWhole(AbsolutePathOf(file), content);
}

}  // namespace

void ReportCommand::AddTo(CLI::App& app) {
  word_ =
      app.add_subcommand("report", "Print kept records, or a comparison of them, into a PDF file");
  word_
      ->add_option("id", ids_,
                   "Numbers of records, up to six, as \"archive list\" shows "
                   "them; the later ones are compared with the first")
      ->required()
      ->check(RecordNumberProblem);
  word_->add_option("--out", file_, "The PDF file; an earlier one is replaced")
      ->required()
      ->type_name("FILE");
  auto* plots = word_->add_option("--plots", folder_, "Write each plot into this folder as well")
                    ->type_name("FOLDER");
  auto* svg = word_->add_flag("--svg", asSvg_, "Plots as SVG, which is the default")->needs(plots);
  word_->add_flag("--png", asPng_, "Plots as PNG")->needs(plots)->excludes(svg);
  word_->add_option("--title", title_, "Title, instead of machine and point");
  AddChoice(*word_, "--paper", paper_, kPapers, "Size of the pages, a4 if not given");
  quantity_.AddTo(*word_);
  word_->parse_complete_callback([this] { quantity_.Check(); });
}

ExitCode ReportCommand::Run(Session& session, const Output& output) {
  report::ReportChoice choice{.title = title_};
  choice.study.quantity = quantity_.Choice();
  const std::vector<std::string> files = Write(session, ReportOn(RecordsOf(session, ids_), choice));
  if (output.json) {
    output.Write({{"file", files.front()},
                  {"records", ids_},
                  {"plots", std::vector(files.begin() + 1, files.end())}});
    return ExitCode::Success;
  }
  output.out << files.front() << ": " << RecordCount(std::ssize(ids_)) << '\n';
  for (auto file = files.begin() + 1; file != files.end(); ++file) output.out << *file << '\n';
  return ExitCode::Success;
}

std::vector<std::string> ReportCommand::Write(Session& session,
                                              const report::Report& report) const {
  report::ReportPainter& painter = session.Painter();
  const std::string ending = folder_.empty() ? "" : PictureEnding(painter);
  const report::PaintedReport painted = painter.Pdf(report, paper_.value_or(report::Paper::A4));
  for (const std::string& notice : painted.notices) session.Say(notice);
  Put(session, file_, painted.pdf);
  std::vector<std::string> files{file_};
  if (folder_.empty()) return files;
  for (const report::Section& section : report.sections) {
    for (const report::Plot& plot : section.plots) {
      const std::filesystem::path file = PathOf(folder_) / PathOf(plot.name + "." + ending);
      files.push_back(TextOf(file.generic_u8string()));
      Put(session, files.back(), painter.Picture(plot, ending));
    }
  }
  return files;
}

std::string ReportCommand::PictureEnding(report::ReportPainter& painter) const {
  const std::string ending = asPng_ ? "png" : "svg";
  const std::vector<std::string> endings = painter.PictureEndings();
  if (std::ranges::find(endings, ending) != endings.end()) return ending;
  if (asSvg_) throw RuntimeError("Plots cannot be written as SVG here. Choose --png.");
  return endings.front();
}

}  // namespace kestrel
