// Pages with their feet, written so that the same report gives the same bytes.
// SPDX-License-Identifier: MIT
#include "ui/report/qt_report_painter.h"

#include <QBuffer>
#include <QHashSeed>
#include <QLocale>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include "app/program_state.h"
#include "ui/chart/look.h"
#include "ui/report/pdf_stamp.h"
#include "ui/report/report_pages.h"

namespace kestrel {
namespace {

constexpr double kSide = 18 * kUnitsPerMm;
constexpr double kTop = 16 * kUnitsPerMm;
constexpr double kBottom = 22 * kUnitsPerMm;  // with the foot
constexpr double kFoot = 12 * kUnitsPerMm;    // of the foot's line, from the lower edge
constexpr double kFootPoints = 8;
constexpr double kPictureWidth = 1000;

// The toolkit keeps the fonts of a file in a table whose order hangs on a seed of the process.
class FixedOrder {
 public:
  FixedOrder() { QHashSeed::setDeterministicGlobalSeed(); }
  ~FixedOrder() { QHashSeed::resetRandomGlobalSeed(); }
  FixedOrder(const FixedOrder&) = delete;
  FixedOrder& operator=(const FixedOrder&) = delete;
};

QSizeF SizeOf(report::Paper paper) {
  const QPageSize size(paper == report::Paper::A4 ? QPageSize::A4 : QPageSize::Letter);
  return size.size(QPageSize::Inch) * kUnitsPerInch;
}

void PaintFoot(QPainter& painter, const QString& text, const QString& number, const PageText& page,
               double y) {
  const QFont font = page.fonts.Sized(kFootPoints);
  painter.setFont(font);
  painter.setPen(Look::Light().muted);
  const QFontMetricsF metrics(font);
  const QRectF line(kSide, y, page.width, metrics.height());
  const double room = page.width - metrics.horizontalAdvance(number) - 5 * kUnitsPerMm;
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                   metrics.elidedText(text, Qt::ElideRight, room));
  painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, number);
}

void PaintPages(QPdfWriter& pdf, const report::Report& report, const PageText& page, QSizeF paper) {
  const std::vector<Block> blocks = BlocksOf(report, page);
  const std::vector<Page> pages = Paged(blocks, page.height);
  const QString foot = page.fonts.Shown(report.foot);
  QPainter painter(&pdf);
  for (std::size_t number = 0; number < pages.size(); ++number) {
    if (number > 0) pdf.newPage();
    for (const PlacedBlock& placed : pages[number]) {
      if (placed.block->paint) placed.block->paint(painter, {kSide, kTop + placed.top});
    }
    PaintFoot(painter, foot, QStringLiteral("%1 of %2").arg(number + 1).arg(pages.size()), page,
              paper.height() - kFoot);
  }
}

std::string Bytes(const QByteArray& content) {
  return {content.data(), static_cast<std::size_t>(content.size())};
}

}  // namespace

report::PaintedReport QtReportPainter::Pdf(const report::Report& report, report::Paper paper) {
  const FixedOrder order;
  PageFonts fonts;
  const QSizeF size = SizeOf(paper);
  const PageText page{fonts, size.width() - 2 * kSide, size.height() - kTop - kBottom};
  QByteArray content;
  QBuffer buffer(&content);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter pdf(&buffer);
  pdf.setResolution(static_cast<int>(kUnitsPerInch));
  pdf.setPageSize(QPageSize(paper == report::Paper::A4 ? QPageSize::A4 : QPageSize::Letter));
  pdf.setPageMargins(QMarginsF());
  pdf.setTitle(QString::fromStdString(report.title));
  pdf.setCreator(kApplicationTitle);
  PaintPages(pdf, report, page, size);
  buffer.close();
  report::PaintedReport painted{.pdf = Bytes(Stamped(content, report.time))};
  if (std::string missing = fonts.Missing(); !missing.empty()) {
    painted.notices.push_back(std::move(missing));
  }
  return painted;
}

std::vector<std::string> QtReportPainter::PictureEndings() {
  std::vector<std::string> endings;
  for (const QString& ending : kestrel::PictureEndings()) {
    if (ending != u"pdf") endings.push_back(ending.toStdString());
  }
  return endings;
}

std::string QtReportPainter::Picture(const report::Plot& plot, const std::string& ending) {
  PageFonts fonts;
  const PlotPicture picture = PictureOf(plot, fonts, kPictureWidth, true);
  return Bytes(PictureFile(SheetOf(picture), QString::fromStdString(ending)));
}

report::Paper UsualPaper() {
  return QLocale::system().measurementSystem() == QLocale::ImperialUSSystem ? report::Paper::Letter
                                                                            : report::Paper::A4;
}

}  // namespace kestrel
