// Entry point of the program that the command line has its reports printed by.
// SPDX-License-Identifier: MIT
#include <QGuiApplication>
#include <array>
#include <iostream>

#include "cli/entry.h"
#include "ui/report/qt_report_painter.h"

namespace {

// What the toolkit finds unusual about a system without a session is not the user's concern.
void TellGraveOnly(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  if (type == QtCriticalMsg || type == QtFatalMsg) std::cerr << qPrintable(text) << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  qInstallMessageHandler(TellGraveOnly);
#ifndef _WIN32
  qputenv("QT_QPA_PLATFORM", "offscreen");  // whether there is a display or not
#endif
  std::array<char*, 2> name{argv[0], nullptr};  // the options are not the toolkit's
  int count = 1;
  const QGuiApplication toolkit(count, name.data());
  kestrel::QtReportPainter painter;
  return kestrel::Enter(argc, argv, &painter);
}
