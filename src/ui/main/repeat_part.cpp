// Repeated captures joined to the main window.
// SPDX-License-Identifier: MIT
#include "ui/main/repeat_part.h"

#include <QStatusBar>

#include "ui/repeat/repeat_text.h"

namespace kestrel {

RepeatPart::RepeatPart(const Parts& parts)
    : parts_(parts),
      runner_(parts.core, parts.edge, parts.desk.cycle, parts.desk.settings,
              {.pressStart = [this] { parts_.capture.cmdStart->click(); },
               .giveSettingsBack =
                   [this](const SettingsExchange::Shown& earlier) {
                     return parts_.freshness.GiveBack(earlier);
                   }}),
      wide_(parts.core, parts.edge, parts.desk.settings,
            {.pressStart = [this] { parts_.capture.cmdStart->click(); },
             .chooseOption = [this](int option) { return parts_.cures.ChooseOption(option); },
             .giveSettingsBack =
                 [this](const SettingsExchange::Shown& earlier) {
                   return parts_.freshness.GiveBack(earlier);
                 },
             .isOtherAtWork = [this] { return runner_.Running() || parts_.desk.cycle.Running(); }}),
      lblRepeat_(new LineLabel) {
  lblRepeat_->setObjectName("lblRepeat");
  lblRepeat_->setTextFormat(Qt::PlainText);
  lblRepeat_->hide();
  parts_.window.statusBar()->addWidget(lblRepeat_, 1);
  const auto chosen = &QAction::triggered;
  connect(parts_.menu.mnuRepeat, chosen, this, [this] { Open(); });
  connect(parts_.menu.mnuRepeatStop, chosen, &runner_, &RepeatRunner::Stop);
  connect(&runner_, &RepeatRunner::Changed, this, [this] { ShowState(); });
  connect(&wide_, &WideRunner::Changed, this, [this] { ShowState(); });
  connect(&wide_, &WideRunner::Ended, this, [this] { ShowState(); });
  ShowState();
}

RepeatPart::~RepeatPart() {
  delete form_;
}

void RepeatPart::Open() {
  if (!form_) form_ = new frmRepeat(runner_, parts_.edge, &parts_.window);
  form_->ShowInFront();
}

void RepeatPart::NoteStartPressed() {
  if (parts_.capture.StartCaption() != kStopCaption) return;
  runner_.UserStoppedCapture();
  wide_.UserStoppedCapture();
}

bool RepeatPart::MayClose(std::function<void()> goOn) {
  if (!wide_.Running()) return true;
  connect(&wide_, &WideRunner::Ended, this, std::move(goOn),
          static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
  wide_.Stop();
  if (parts_.capture.StartCaption() == kStopCaption) parts_.capture.cmdStart->click();
  return false;
}

void RepeatPart::Close() {
  runner_.Close();
  wide_.Close();
}

// A capture that is waited for is ended by the key's release.
bool RepeatPart::TakesKey(const QObject& watched, const QEvent& press) {
  const auto& key = static_cast<const QKeyEvent&>(press);
  const auto* widget = qobject_cast<const QWidget*>(&watched);
  if (widget == nullptr || widget->window() != &parts_.window || key.key() != Qt::Key_Escape ||
      key.isAutoRepeat() || !Running() || parts_.desk.cycle.Running()) {
    return false;
  }
  runner_.Stop();
  wide_.Stop();
  return true;
}

// The end stays to be read until a repeat begins again.
void RepeatPart::ShowState() {
  parts_.menu.mnuRepeatStop->setEnabled(runner_.Running());
  const auto progress = runner_.Progress();
  lblRepeat_->setVisible(progress.has_value() || wide_.Running());
  if (!progress && !wide_.Running()) return;
  const QString line =
      wide_.Running() ? WideLine(*wide_.Progress()) : tr("Repeat: %1").arg(RepeatLine(*progress));
  if (line == lblRepeat_->text()) return;
  lblRepeat_->setText(line);
  lblRepeat_->setToolTip(line);
}

}  // namespace kestrel
