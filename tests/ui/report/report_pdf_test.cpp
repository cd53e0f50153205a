// Reports printed: read back by others' readers, the same bytes every time, broken well into pages.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QRegularExpression>
#include <algorithm>
#include <ctime>
#include <locale>

#include "ui/approved_picture.h"
#include "ui/report/painted_reports.h"

namespace kestrel {
namespace {

using report::Paper;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

report::PaintedReport Printed(const report::Report& report, Paper paper = Paper::A4) {
  return QtReportPainter().Pdf(report, paper);
}

std::string PdfOf(const report::Report& report) {
  return Printed(report).pdf;
}

report::Report OneAxisOver() {
  report::ReportChoice choice;
  choice.study.stacked = false;
  return report::ReportOf(MachineRecord(0), choice);
}

// pdfinfo's line of that name.
std::string InfoOf(const std::string& pdf, const char* name) {
  for (const QByteArray& line : ReadBy("pdfinfo", {"-isodates", "FILE"}, pdf).out.split('\n')) {
    if (line.startsWith(name)) return line.mid(line.indexOf(':') + 1).trimmed().toStdString();
  }
  return "";
}

TEST(ReportPdf, AnotherReaderFindsNoFault) {
  const std::string pdf = PdfOf(report::ReportOf(MachineRecord(0)));
  const Read checked = ReadBy("qpdf", {"--check", "FILE"}, pdf);
  EXPECT_EQ(checked.code, 0) << checked.out.toStdString() << checked.error.toStdString();
  EXPECT_THAT(checked.out.toStdString(), HasSubstr("No syntax or stream encoding errors found"));
}

TEST(ReportPdf, ATextReaderFindsWhatWhereWhenPeaksAndLevels) {
  const report::Report report = report::ReportOf(MachineRecord(0));
  const std::string text = TextIn(PdfOf(report)).toStdString();
  for (const report::Section& section : report.sections) {
    EXPECT_THAT(text, HasSubstr(section.heading));
    for (const report::Fact& fact : section.facts) {
      if (fact.value.size() >= 24) continue;  // may be broken into lines
      EXPECT_THAT(text, HasSubstr(fact.value)) << fact.name;
    }
    for (const report::Table& table : section.tables) {
      for (const auto& row : table.rows) {
        for (const std::string& cell : row) {
          if (cell.size() >= 12) continue;
          EXPECT_THAT(text, HasSubstr(cell));
        }
      }
    }
  }
  EXPECT_THAT(text, HasSubstr("Pump 1, Drive end"));
  EXPECT_THAT(text, HasSubstr("2025-11-21 18:33:20 UTC"));
  EXPECT_THAT(text, HasSubstr("after the bearing was greased"));
}

TEST(ReportPdf, CarriesTheRecordsDateAndItsTitle) {
  const std::string pdf = PdfOf(report::ReportOf(MachineRecord(0)));
  EXPECT_EQ(InfoOf(pdf, "Title"), "Pump 1, Drive end");
  EXPECT_THAT(InfoOf(pdf, "CreationDate"), HasSubstr("2025-11-21T18:33:20"));
  EXPECT_THAT(InfoOf(pdf, "Page size"), HasSubstr("A4"));
}

TEST(ReportPdf, FontsAreInsideTheFile) {
  const QByteArray fonts =
      ReadBy("pdffonts", {"FILE"}, PdfOf(report::ReportOf(MachineRecord(0)))).out;
  QList<QByteArray> lines = fonts.trimmed().split('\n').mid(2);
  ASSERT_FALSE(lines.isEmpty());
  for (const QByteArray& line : lines) {
    EXPECT_TRUE(QRegularExpression("Identity-H +yes ").match(QString::fromLatin1(line)).hasMatch())
        << line.toStdString();  // embedded
  }
}

class InAnotherPlace {
 public:
  InAnotherPlace() {
    qputenv("TZ", "Pacific/Chatham");
    tzset();
    QLocale::setDefault(QLocale(QLocale::German));
  }
  ~InAnotherPlace() {
    qunsetenv("TZ");
    tzset();
    QLocale::setDefault(QLocale::c());
  }
  InAnotherPlace(const InAnotherPlace&) = delete;
  InAnotherPlace& operator=(const InAnotherPlace&) = delete;
};

TEST(ReportPdf, IsTheSameBytesAtAnyTimeInAnyZoneAndLanguage) {
  const archive::KeptRecord kept = MachineRecord(0);
  const std::string first = PdfOf(report::ReportOf(kept));
  QThread::msleep(1100);  // the toolkit's own date would be another
  EXPECT_TRUE(PdfOf(report::ReportOf(kept)) == first);
  const InAnotherPlace there;
  const std::string other = PdfOf(report::ReportOf(kept));
  EXPECT_TRUE(other == first) << "sizes " << other.size() << " and " << first.size();
}

TEST(ReportPdf, LetterPaperHasItsOwnSize) {
  const std::string pdf = Printed(report::ReportOf(MachineRecord(0)), Paper::Letter).pdf;
  EXPECT_THAT(InfoOf(pdf, "Page size"), HasSubstr("letter"));
}

report::Report LongTable(std::size_t rows) {
  report::Report report{.title = "Long", .foot = "Long"};
  report::Table table{.caption = "Rows", .columns = {{.head = "Headword"}, {.head = "Value"}}};
  for (std::size_t i = 0; i < rows; ++i) {
    table.rows.push_back({"row " + std::to_string(i), std::to_string(1000 + i)});
  }
  report.sections.push_back({.heading = "Table", .tables = {table}});
  return report;
}

TEST(ReportPdf, ALongTableHasItsHeadOnEveryPageAndEveryRowOnce) {
  const std::string pdf = PdfOf(LongTable(200));
  const QList<QByteArray> pages = TextIn(pdf).split('\f');
  ASSERT_GE(pages.size(), 4);
  int rows = 0;
  for (const QByteArray& page : pages) {
    if (page.trimmed().isEmpty()) continue;
    EXPECT_EQ(page.count("Headword"), 1);
    rows += static_cast<int>(page.count("row "));
  }
  EXPECT_EQ(rows, 200);
  EXPECT_TRUE(pages[0].contains("1 of " + QByteArray::number(pages.size() - 1)))
      << pages[0].right(200).toStdString();
}

TEST(ReportPdf, AVeryLongNoteGoesOnOverPagesAndLosesNothing) {
  archive::KeptRecord kept = MachineRecord(0);
  kept.remarks.note.clear();
  for (int i = 0; i < 6000; ++i) kept.remarks.note += "word" + std::to_string(i) + ' ';
  const std::string text = TextIn(PdfOf(report::ReportOf(kept))).toStdString();
  for (int i = 0; i < 6000; ++i) {
    EXPECT_NE(text.find("word" + std::to_string(i)), std::string::npos) << i;
  }
}

TEST(ReportPdf, AWordWithoutEndIsBrokenAtTheEdge) {
  archive::KeptRecord kept = MachineRecord(0);
  kept.remarks.note = std::string(3000, 'W');
  const QByteArray text = TextIn(PdfOf(report::ReportOf(kept)));
  EXPECT_GE(text.count('W'), 3000);
}

TEST(ReportPdf, LettersOfOtherScriptsAreInTheText) {
  archive::KeptRecord kept = MachineRecord(0);
  kept.remarks.note = "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D and L\xC3\xA4ger <b>&amp;</b>";
  const report::PaintedReport painted = Printed(report::ReportOf(kept));
  EXPECT_THAT(painted.notices, IsEmpty());
  const std::string text = TextIn(painted.pdf).toStdString();
  EXPECT_THAT(text, HasSubstr("L\xC3\xA4ger <b>&amp;</b>"));
  EXPECT_THAT(text, HasSubstr("\xD7\xA9"));
}

TEST(ReportPdf, ACharacterThatNoFontHasIsNamedAndSaid) {
  archive::KeptRecord kept = MachineRecord(0);
  kept.remarks.note = "before \U000F5A5A after";  // of private use
  const report::PaintedReport painted = Printed(report::ReportOf(kept));
  ASSERT_EQ(painted.notices.size(), 1U);
  EXPECT_THAT(painted.notices[0], HasSubstr("U+F5A5A"));
  EXPECT_THAT(painted.notices[0], HasSubstr("Install a font"));
  EXPECT_THAT(TextIn(painted.pdf).toStdString(), HasSubstr("before [U+F5A5A] after"));
}

TEST(ReportPdf, ALabelStandsInTheTextOnce) {
  const std::string text = TextIn(PdfOf(OneAxisOver())).toStdString();
  const std::string label = "Y 0.220 g";
  const auto first = text.find(label);
  ASSERT_NE(first, std::string::npos);
  EXPECT_EQ(text.find(label, first + 1), std::string::npos);
}

TEST(ReportPdf, PlotsAreLinesAndNoPictures) {
  const QByteArray images =
      ReadBy("pdfimages", {"-list", "FILE"}, PdfOf(report::ReportOf(MachineRecord(0)))).out;
  EXPECT_EQ(images.trimmed().split('\n').size(), 2) << images.toStdString();  // heads alone
}

TEST(ReportPdf, PlotsLeaveAsPicturesWithWhatIsNeededToReadThem) {
  const report::Report report = report::ReportOf(MachineRecord(0));
  const report::Plot& plot = report.sections[2].plots.at(0);
  QtReportPainter painter;
  EXPECT_EQ(painter.PictureEndings(), (std::vector<std::string>{"png", "svg"}));
  const std::string svg = painter.Picture(plot, "svg");
  EXPECT_THAT(svg, HasSubstr("8 averages"));
  EXPECT_EQ(painter.Picture(plot, "svg"), svg);
  const std::string png = painter.Picture(plot, "png");
  EXPECT_TRUE(QImage::fromData(QByteArray::fromStdString(png), "PNG").width() == 2000);
  EXPECT_TRUE(painter.Picture(plot, "png") == png);
}

report::Report Compared() {
  std::vector<archive::KeptRecord> records{MachineRecord(0), MachineRecord(3600, 1.6),
                                           MachineRecord(7200, 2.8)};
  records[2].remarks.note = "The noise at the drive end has grown.";
  records[2].record.alarms.axes[0].status = 1 << 7 | 2;
  return report::ComparisonOf(records);
}

TEST(ReportPages, LookAsApproved) {
  const std::vector<std::pair<QString, report::Report>> reports{
      {"record", report::ReportOf(MachineRecord(0))},
      {"comparison", Compared()},
      {"one-pane", OneAxisOver()}};
  for (const auto& [name, report] : reports) {
    const std::string pdf = PdfOf(report);
    const int pages = std::stoi(InfoOf(pdf, "Pages"));
    for (int page = 1; page <= pages; ++page) {
      const QImage image = GreyPage(pdf, page);
      ASSERT_FALSE(image.isNull());
      ExpectApproved(image, QStringLiteral("%1-%2.png").arg(name).arg(page), 1,
                     KESTREL_REPORTS_APPROVED);
    }
  }
}

}  // namespace
}  // namespace kestrel
