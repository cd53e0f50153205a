// What the user does in the monitor's view: plans made, opened, saved, started.
// SPDX-License-Identifier: MIT
#include <QFileInfo>

#include "numeric/runtime_error.h"
#include "ui/study/text_table.h"
#include "ui/watch/kept_watch.h"
#include "ui/watch/monitor_view.h"
#include "ui/watch/present_plan.h"

namespace kestrel {
namespace {

constexpr const char* kEnding = "plan";
constexpr int kMostNames = 1000;

QString TextOf(const std::filesystem::path& file) {
  return QString::fromStdU16String(file.u16string());
}

// Of a sensor's name, what every system takes for a file's.
QString FileNameOf(const std::string& sensor) {
  QString name;
  for (const QChar c : Text(sensor)) name += c.isLetterOrNumber() ? c : QChar('_');
  return name;
}

void Remember(const std::filesystem::path& file) {
  KeptWatch kept = ReadKeptWatch();
  kept.file = TextOf(file);
  WriteKeptWatch(kept);
}

}  // namespace

std::filesystem::path MonitorView::FreeFile(const std::string& sensor) const {
  const std::filesystem::path folder = FolderOfUserFiles(files_);
  const QString name = FileNameOf(sensor);
  for (int number = 1;; ++number) {
    const QString each = number == 1 ? name : name + QStringLiteral("_%1").arg(number);
    const auto file = folder / (each + '.' + kEnding).toStdU16String();
    if (number == kMostNames || !files_.Read(file, 1)) return file;
  }
}

void MonitorView::MakeNew() {
  const monitor::Plan plan = host_.present();
  file_ = FreeFile(plan.sensor);
  Fail({});
  plan_->Show(Text(NewPlanText(plan, study_.Choice().zones)), file_, false);
  plan_->FocusText();
}

void MonitorView::Open(const QString& file) {
  const std::filesystem::path path = QFileInfo(file).absoluteFilePath().toStdU16String();
  const auto content = files_.Read(path, monitor::kLargestPlan + 1);
  if (!content) {
    return Fail(tr("The plan %1 cannot be read. Choose a file that you may read.").arg(file));
  }
  if (content->size() > monitor::kLargestPlan) {
    return Fail(tr("%1 is too large for a plan. Choose another file.").arg(file));
  }
  file_ = path;
  Fail({});
  plan_->Show(QString::fromUtf8(content->data(), static_cast<qsizetype>(content->size())), file_,
              true);
  Remember(file_);
}

bool MonitorView::SaveTo(const std::filesystem::path& file) {
  try {
    files_.ReplaceWhole(file, plan_->Text().toStdString());
  } catch (const RuntimeError& error) {
    Fail(tr("The plan is not saved: %1. Choose a folder that you may write in, with Save as.")
             .arg(error.what()));
    return false;
  }
  const bool isOther = file != file_;
  file_ = file;
  Fail({});
  isOther ? plan_->Show(plan_->Text(), file_, true) : plan_->SetSaved();
  Remember(file_);
  emit Said(tr("Written: %1").arg(TextOf(file_)));
  return true;
}

void MonitorView::Save() {
  static_cast<void>(SaveTo(file_));
}

QFileDialog* MonitorView::Ask(const char* name, const QString& title,
                              QFileDialog::AcceptMode mode) {
  auto* dialog = new QFileDialog(this, title);
  dialog->setObjectName(name);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setModal(false);
  dialog->setAcceptMode(mode);
  dialog->setNameFilters({tr("Plans (*.%1)").arg(kEnding), tr("All files (*)")});
  dialog->setDefaultSuffix(kEnding);
  if (!file_.empty()) dialog->setDirectory(TextOf(file_.parent_path()));
  return dialog;
}

void MonitorView::AskOpen() {
  QFileDialog* dialog = Ask("askPlan", tr("Open a plan"), QFileDialog::AcceptOpen);
  dialog->setFileMode(QFileDialog::ExistingFile);
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& file) {
    if (!Running()) Open(file);
  });
  dialog->show();
}

void MonitorView::AskSave() {
  QFileDialog* dialog = Ask("askSavePlan", tr("Save the plan"), QFileDialog::AcceptSave);
  dialog->selectFile(TextOf(file_.filename()));
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& file) {
    static_cast<void>(SaveTo(QFileInfo(file).absoluteFilePath().toStdU16String()));
  });
  dialog->show();
}

void MonitorView::StartOrStop() {
  if (!WhatNow().isEnabled) return;
  Running() ? host_.runner->Stop() : Start();
}

// What is started is what is shown, so it is saved first.
void MonitorView::Start() {
  if (!plan_->Plan()) {
    const auto count = plan_->Mistakes().size();
    Fail(count == 1 ? tr("The plan has a mistake. It stands beside its line.")
                    : tr("The plan has %1 mistakes. They stand beside their lines.").arg(count));
    return plan_->GoToFirstMistake();
  }
  if (!plan_->IsSaved() && !SaveTo(file_)) return;
  Fail(host_.runner->Start({.plan = *plan_->Plan(), .file = TextOf(file_), .archive = archive_}));
  if (Running()) incidents_->Table().setFocus();
}

}  // namespace kestrel
