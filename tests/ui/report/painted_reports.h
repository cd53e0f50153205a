// Reports to be printed, and what readers that nobody here wrote make of the files.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "report/kept_records.h"
#include "report/report_of.h"
#include "ui/report/qt_report_painter.h"

namespace kestrel {

// A machine's record: harmonics of a shaft over a floor, each axis differently loud.
inline archive::KeptRecord MachineRecord(int second, double growth = 1, int option = 0) {
  archive::KeptRecord kept = report::KeptSpectrum(second, {{42, 1}}, option);
  for (const Axis axis : kAxes) {
    const double part = std::array{1.0, 0.6, 0.35}[Index(axis)];
    AxisRecord& points = kept.record.Of(axis);
    for (int bin = 0; bin < 256; ++bin) {
      points.raw(bin) = bin < 3 ? 900 : 4 + (bin * 7 + second) % 5;
    }
    for (const auto& [bin, word] : {std::pair(42, 1200), {84, 420 * growth}, {126, 180 * growth}}) {
      points.raw(bin) = std::round(part * word);
      points.raw(bin - 1) = points.raw(bin + 1) = std::round(part * word / 2);
    }
    for (int bin = 0; bin < 256; ++bin) {
      points.data(bin) = points.raw(bin) * kept.record.lsbWeight;
    }
  }
  kept.record.settings = SettingsFromWords(option << 14 | 1 << 12 | 2 << 10 | 8, 0);
  kept.record.conditions = {3.3F, 31.5F, 17};
  kept.record.status = {0, true};
  kept.record.alarms.statusKnown = true;
  kept.record.sensor = {31407, "Ezusb-0", "Board 7", true};
  kept.remarks.rpm = 1480;
  kept.remarks.tags = {"after greasing", "reference"};
  kept.remarks.note =
      "Taken after the bearing was greased. The pump ran at full load for half an hour before.";
  return kept;
}

struct Read {
  int code = -1;
  QByteArray out;
  QByteArray error;
};

// A program that reads the file; its name stands at the end of the arguments.
inline Read ReadBy(const QString& program, QStringList arguments, const std::string& pdf) {
  const QTemporaryDir folder;
  const QString name = folder.filePath("report.pdf");
  QFile file(name);
  if (!file.open(QIODevice::WriteOnly)) return {};
  file.write(pdf.data(), static_cast<qint64>(pdf.size()));
  file.close();
  arguments.replaceInStrings(QStringLiteral("FILE"), name);
  QProcess process;
  process.setWorkingDirectory(folder.path());
  process.start(program, arguments);
  if (!process.waitForFinished()) return {};
  return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

inline QByteArray TextIn(const std::string& pdf) {
  return ReadBy("pdftotext", {"-layout", "FILE", "-"}, pdf).out;
}

// A page as a printer without colours makes it.
inline QImage GreyPage(const std::string& pdf, int page, int dotsPerInch = 100) {
  const QString number = QString::number(page);
  return QImage::fromData(
      ReadBy("pdftoppm",
             {"-gray", "-r", QString::number(dotsPerInch), "-f", number, "-l", number, "FILE"}, pdf)
          .out);
}

}  // namespace kestrel
