// The command that prints: its records, files and faults, whoever paints.
// SPDX-License-Identifier: MIT
#include "cli/program_bench.h"
#include "report/report_painter.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Words = std::vector<std::string>;

// Keeps what it is handed.
class NotingPainter : public report::ReportPainter {
 public:
  [[nodiscard]] report::PaintedReport Pdf(const report::Report& report,
                                          report::Paper paper) override {
    printed.push_back(report);
    papers.push_back(paper);
    return {"pages of " + report.title, notices};
  }
  [[nodiscard]] std::vector<std::string> PictureEndings() override { return endings; }
  [[nodiscard]] std::string Picture(const report::Plot& plot, const std::string& ending) override {
    return plot.name + " as " + ending;
  }

  std::vector<report::Report> printed;
  std::vector<report::Paper> papers;
  std::vector<std::string> notices;
  std::vector<std::string> endings{"png", "svg"};
};

class ReportCommands : public ProgramBench {
 protected:
  ReportCommands() {
    usualArchive = {(folder_.path() / "archive.db").string()};
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(Simulate({"capture", "--averages", "1", "--machine", "Pump 1"}), ExitCode::Success)
          << error.str();
    }
    painter = &painter_;
  }
  [[nodiscard]] std::string Written(const char* file) { return files.contents[file]; }

  TemporaryFolder folder_;
  NotingPainter painter_;
};

TEST_F(ReportCommands, OneRecordIsPrinted) {
  ASSERT_EQ(Run({"report", "1", "--out", "/pump.pdf"}), ExitCode::Success) << error.str();
  EXPECT_EQ(Written("/pump.pdf"), "pages of Pump 1");
  EXPECT_EQ(out.str(), "/pump.pdf: 1 record\n");
  EXPECT_EQ(painter_.papers.at(0), report::Paper::A4);
  EXPECT_EQ(files.contents.size(), 1U);
}

TEST_F(ReportCommands, SeveralAreCompared) {
  ASSERT_EQ(Run({"--json", "report", "1", "2", "--out", "/both.pdf", "--title", "Before and after",
                 "--paper", "letter"}),
            ExitCode::Success)
      << error.str();
  EXPECT_EQ(Written("/both.pdf"), "pages of Before and after");
  EXPECT_EQ(painter_.papers.at(0), report::Paper::Letter);
  const auto json = nlohmann::json::parse(out.str());
  EXPECT_EQ(json["file"], "/both.pdf");
  EXPECT_EQ(json["records"], (std::vector{1, 2}));
  EXPECT_TRUE(json["plots"].empty());
}

TEST_F(ReportCommands, PlotsAreFilesOfTheirOwn) {
  ASSERT_EQ(Run({"report", "1", "--out", "/a.pdf", "--plots", "/plots"}), ExitCode::Success)
      << error.str();
  EXPECT_EQ(Written("/plots/spectrum.svg"), "spectrum as svg");
  EXPECT_THAT(out.str(), HasSubstr("/plots/spectrum.svg\n"));
  ASSERT_EQ(Run({"report", "1", "--out", "/a.pdf", "--plots", "/plots", "--png"}),
            ExitCode::Success);
  EXPECT_EQ(Written("/plots/spectrum.png"), "spectrum as png");
}

TEST_F(ReportCommands, WherePlotsCannotBeSvgTheyArePngUnlessAskedFor) {
  painter_.endings = {"png"};
  ASSERT_EQ(Run({"report", "1", "--out", "/a.pdf", "--plots", "/plots"}), ExitCode::Success);
  EXPECT_EQ(Written("/plots/spectrum.png"), "spectrum as png");
  files.contents.clear();
  EXPECT_EQ(Run({"report", "1", "--out", "/a.pdf", "--plots", "/plots", "--svg"}),
            ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("Choose --png"));
  EXPECT_THAT(files.contents, IsEmpty());
}

TEST_F(ReportCommands, TheQuantityIsThatOfTheReport) {
  ASSERT_EQ(Run({"report", "1", "--out", "/a.pdf", "--quantity", "velocity"}), ExitCode::Success);
  bool isVelocity = false;
  for (const report::Section& section : painter_.printed.at(0).sections) {
    for (const report::Table& table : section.tables) {
      for (const report::Column& column : table.columns) {
        isVelocity = isVelocity || column.unit == "mm/s RMS";
      }
    }
  }
  EXPECT_TRUE(isVelocity);
}

TEST_F(ReportCommands, ARecordThatIsNotThereIsNamedAndNothingIsWritten) {
  EXPECT_EQ(Run({"report", "1", "77", "--out", "/a.pdf"}), ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("There is no record 77"));
  EXPECT_THAT(files.contents, IsEmpty());
}

TEST_F(ReportCommands, TooManyRecordsAreRefused) {
  EXPECT_EQ(Run({"report", "1", "2", "1", "2", "1", "2", "1", "--out", "/a.pdf"}),
            ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("2 to 6 records"));
}

TEST_F(ReportCommands, WhatCannotBeShownIsSaid) {
  painter_.notices = {"No installed font has U+F5A5A."};
  EXPECT_EQ(Run({"report", "1", "--out", "/a.pdf"}), ExitCode::Success);
  EXPECT_THAT(error.str(), HasSubstr("U+F5A5A"));
}

TEST_F(ReportCommands, AFileThatCannotBeWrittenIsAFailure) {
  files.failure = "No space left on device";
  EXPECT_EQ(Run({"report", "1", "--out", "/a.pdf"}), ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("/a.pdf: No space left on device"));
}

TEST_F(ReportCommands, WithoutAPainterTheOtherProgramDoesIt) {
  painter = nullptr;
  int asked = 0;
  doneByPainter = [&] {
    ++asked;
    return ExitCode::NotNew;
  };
  EXPECT_EQ(Run({"report", "1", "--out", "/a.pdf"}), ExitCode::NotNew);
  EXPECT_EQ(Run({"report", "--out", "/a.pdf"}), ExitCode::Usage);
  EXPECT_EQ(Run({"archive", "list"}), ExitCode::Success);
  EXPECT_EQ(asked, 1);
  doneByPainter = []() -> ExitCode { throw RuntimeError("Install the whole package again."); };
  EXPECT_EQ(Run({"report", "1", "--out", "/a.pdf"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "Install the whole package again.\n");
}

TEST_F(ReportCommands, OptionsThatDoNotGoTogetherAreRefused) {
  EXPECT_EQ(Run({"report", "1"}), ExitCode::Usage);
  EXPECT_EQ(Run({"report", "1", "--out", "/a.pdf", "--png"}), ExitCode::Usage);
  EXPECT_EQ(Run({"report", "1", "--out", "/a.pdf", "--paper", "a3"}), ExitCode::Usage);
  EXPECT_EQ(Run({"report", "1", "--out", "/a.pdf", "--quantity", "density", "--amplitude", "pp"}),
            ExitCode::Usage);
}

}  // namespace
}  // namespace kestrel
