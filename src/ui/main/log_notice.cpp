// Questions and lines about data-log files.
// SPDX-License-Identifier: MIT
#include "ui/main/log_notice.h"

#include <QCoreApplication>

#include "logging/log_files.h"
#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

constexpr int kShownMs = 10000;  // long enough to read a path

}  // namespace

EarlierFiles LogNotice::Ask(const std::optional<std::int16_t>& free) {
  const std::string names = NamesOfFilesInTheWay(core_.seams.files, core_.seams.locale);
  return core_.seams.messages.AskAboutEarlierFiles(
      "There are files of earlier captures under this name: " + names +
      ". Going on behind them keeps them" +
      (free ? ": the next number is then " + std::to_string(*free) + "."
            : ", but there is no number left for that."));
}

bool LogNotice::SwitchedOn() {
  Files& files = core_.seams.files;
  Locale& locale = core_.seams.locale;
  bool otherName = false;
  if (LogFilesInTheWay(files, locale) > 0 && replaced_ != DataLogName) {
    const auto free = NextFreeLogNumber(files, locale);
    const EarlierFiles wish = Ask(free);
    if (wish == EarlierFiles::GoOn && free) NumberDataLog(*free);
    if (wish == EarlierFiles::Replace) replaced_ = DataLogName;
    otherName = wish == EarlierFiles::OtherName || (wish == EarlierFiles::GoOn && !free);
  }
  ShowNext();
  return otherName;
}

void LogNotice::FileInTheWay(bool isUnattended, const std::function<void()>& otherName) {
  if (replaced_ == DataLogName) return;
  const auto free = NextFreeLogNumber(core_.seams.files, core_.seams.locale);
  const EarlierFiles wish = isUnattended ? EarlierFiles::GoOn : Ask(free);
  if (wish == EarlierFiles::Replace) {
    replaced_ = DataLogName;
    return;
  }
  if (wish == EarlierFiles::OtherName) otherName();
  if (!free) {
    throw RuntimeError(NamesOfFilesInTheWay(core_.seams.files, core_.seams.locale) +
                       ": these files of earlier captures are kept, and no number behind them is "
                       "left. Choose another name for the data log.");
  }
  NumberDataLog(*free);
}

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
