// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "ui/main/log_notice.h"

#include <QCoreApplication>

#include "logging/log_files.h"

namespace kestrel {
namespace {

constexpr int kShownMs = 10000;  // long enough to read a path

}  // namespace

void LogNotice::ShowNext() {
  Files& files = core_.seams.files;
  Locale& locale = core_.seams.locale;
  const std::string next = "Next file: " + NextLogFile(files, locale).string() + ". ";
  bar_.showMessage(QString::fromStdString(next + WarningOfFilesInTheWay(files, locale)), kShownMs);
}

void LogNotice::ShowLast() {
  const QString file = QString::fromStdString(log_.LastFile().string());
  if (file == capture_.txtFileCount->toolTip()) return;
  capture_.txtFileCount->setToolTip(file);
  bar_.showMessage(QCoreApplication::translate("LogNotice", "Written: %1").arg(file), kShownMs);
}

}  // namespace kestrel
