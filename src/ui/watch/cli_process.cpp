// How the command-line program is found, run, heard and ended.
// SPDX-License-Identifier: MIT
#include "ui/watch/cli_process.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <utility>

namespace kestrel {

QString CommandLineProgram() {
  const QString name = QStringLiteral("kestrel-cli");
  const QString beside =
      QStandardPaths::findExecutable(name, {QCoreApplication::applicationDirPath()});
  return beside.isEmpty() ? QStandardPaths::findExecutable(name) : beside;
}

CliProcess::CliProcess(const QString& program) : program_(program), process_(new QProcess) {
  QObject::connect(process_, &QProcess::readyReadStandardOutput, process_,
                   [this] { HearOutput(); });
  QObject::connect(process_, &QProcess::readyReadStandardError, process_,
                   [this] { HearComplaints(); });
  QObject::connect(process_, &QProcess::finished, process_,
                   [this](int code, QProcess::ExitStatus status) {
                     HearOutput();
                     HearComplaints();
                     Tell({.isCrash = status == QProcess::CrashExit, .code = code});
                   });
  QObject::connect(process_, &QProcess::errorOccurred, process_,
                   [this](QProcess::ProcessError error) {
                     if (error != QProcess::FailedToStart) return;
                     Tell({.hasBegun = false, .fault = process_->errorString()});
                   });
}

CliProcess::~CliProcess() {
  CliProcess::Leave();
}

void CliProcess::Begin(const QStringList& arguments, Hears hears) {
  hears_ = std::move(hears);
  process_->start(program_, arguments);
}

// It takes the end of its input for one.
void CliProcess::AskToEnd() {
  if (process_ != nullptr) process_->closeWriteChannel();
}

// Its object stays, since it would take the process with it; at the program's end nobody is left to
// remove it, and the process ends by itself.
void CliProcess::Leave() {
  QProcess* left = std::exchange(process_, nullptr);
  if (left == nullptr) return;
  left->disconnect();
  if (left->state() == QProcess::NotRunning) {
    left->deleteLater();
    return;
  }
  left->closeWriteChannel();
  left->closeReadChannel(QProcess::StandardOutput);
  left->closeReadChannel(QProcess::StandardError);
  QObject::connect(left, &QProcess::finished, left, &QObject::deleteLater);
}

void CliProcess::HearOutput() {
  process_->setReadChannel(QProcess::StandardOutput);
  while (process_ != nullptr && process_->canReadLine()) {
    hears_.line(process_->readLine().trimmed());
  }
}

void CliProcess::HearComplaints() {
  if (process_ == nullptr) return;
  const QString text = QString::fromUtf8(process_->readAllStandardError());
  for (const QString& line : text.split('\n', Qt::SkipEmptyParts)) hears_.complaint(line.trimmed());
}

// Whoever is told may end this object.
void CliProcess::Tell(MonitorEnd end) {
  const auto ended = hears_.ended;
  ended(end);
}

}  // namespace kestrel
