// What the buttons of set-ups do.
// SPDX-License-Identifier: MIT
#include "ui/setup/frmSetups.h"

#include <QKeyEvent>
#include <QVBoxLayout>
#include <chrono>

#include "acquisition/sensor_identity.h"
#include "numeric/runtime_error.h"
#include "ui/parts/local_time.h"

namespace kestrel {
namespace {

constexpr QPoint kPlaceTwips{900, 1800};

}  // namespace

frmSetups::frmSetups(Core& core, HandlerEdge& edge, QWidget* parent,
                     const std::filesystem::path& folder, std::string program)
    : SecondaryWindow("frmSetups", tr("Set-ups"), edge, parent, kPlaceTwips),
      core_(core),
      store_(core.seams.files, folder),
      program_(std::move(program)),
      panel_(new SetupsPanel) {
  auto* all = new QVBoxLayout(this);
  all->addWidget(panel_);
  resize(90 * fontMetrics().averageCharWidth(), 28 * fontMetrics().height());
  Connect();
  Refill("");
}

void frmSetups::Connect() {
  const auto clicked = &QPushButton::clicked;
  connect(panel_->lstSetups, &QListWidget::currentRowChanged, this, [this] {
    Note("");
    ShowChosen();
  });
  connect(panel_->lstSetups, &QListWidget::itemActivated, this, [this] { Compare(); });
  connect(panel_->txtSetupName, &QLineEdit::returnPressed, this, [this] { Save(); });
  connect(panel_->cmdSave, clicked, this, [this] { Save(); });
  connect(panel_->cmdCompare, clicked, this, [this] { Compare(); });
  connect(panel_->cmdRestore, clicked, this, [this] { Restore(); });
  connect(panel_->cmdCancel, clicked, this, [this] { CancelTransfer(); });
  connect(panel_->cmdClose, clicked, this, &QWidget::close);
  On(panel_->cmdDelete, clicked, "cmdDelete_Click", [this] { Delete(); });
  connect(panel_->cmdExport, clicked, this, [this] { AskExport(); });
  connect(panel_->cmdImport, clicked, this, [this] { AskImport(); });
}

void frmSetups::Form_Activate() {
  if (!isTransferring_) Refill(panel_->Chosen().toStdString());
}

void frmSetups::ForgetSensor() {
  now_.reset();
  ShowChosen();
}

void frmSetups::Note(const std::string& text) {
  panel_->lblNote->setText(Text(text));
}

void frmSetups::Refused(const QString& why) {
  Note(why.toStdString());
}

void frmSetups::Refill(const std::string& chosen) {
  panel_->ShowEntries(store_.List(), Text(chosen));
  ShowChosen();
}

std::optional<setup::Setup> frmSetups::Chosen() {
  const std::string name = panel_->Chosen().toStdString();
  if (name.empty()) return std::nullopt;
  const auto loaded = store_.Load(name);
  return loaded ? std::optional(*loaded) : std::nullopt;
}

// "Equal" is said as plainly as a difference, and of which moment it is told.
void frmSetups::ShowChosen() {
  const QString name = panel_->Chosen();
  const auto saved = Chosen();
  panel_->EnableDeeds(!name.isEmpty(), saved.has_value());
  if (name.isEmpty()) {
    panel_->lblState->setText(tr("No set-up is chosen."));
    panel_->ShowNoDifference(tr("Save what the sensor holds, or choose a set-up on the left."));
  } else if (!saved) {
    panel_->lblState->setText(Text(store_.Load(name.toStdString()).Why().Text()));
    panel_->ShowNoDifference(tr("This set-up cannot be read."));
  } else if (!now_) {
    panel_->lblState->setText(tr("\"%1\", saved %2").arg(name, LocalTime(saved->when)));
    panel_->ShowNoDifference(tr("Compare shows where the sensor differs from it."));
  } else {
    const auto all = DifferenceOf(*saved, *now_);
    const QString what = all.empty()       ? tr("Equal: the sensor held all of \"%1\" at %2.")
                         : all.size() == 1 ? tr("1 setting differs from \"%1\", as of %2.")
                                           : tr("%n settings differ from \"%1\", as of %2.",
                                                nullptr, static_cast<int>(all.size()));
    panel_->lblState->setText(what.arg(name, LocalTime(now_->when)));
    panel_->ShowDifference(all);
  }
}

void frmSetups::Transfer(const char* name, const std::function<void(const setup::Follow&)>& work) {
  bool hasBegun = false;
  QWidget* focus = focusWidget();
  Edge().RunIdle(name, [&] {
    hasBegun = true;
    isWanted_ = true;
    isTransferring_ = true;
    const HandlerEdge::Occupation occupation(Edge());
    work([this](const std::string& activity, int done, int total) {
      panel_->ShowTransfer(Text(activity), done, total);
      return isWanted_;
    });
    isTransferring_ = false;
  });
  isTransferring_ = false;
  panel_->EndTransfer();
  if (hasBegun && focus != nullptr) focus->setFocus();
  if (!hasBegun) Note(WhyRefused().toStdString());
}

std::optional<setup::Setup> frmSetups::ReadSensor() {
  std::optional<setup::Setup> read;
  Transfer("ReadSetup", [&](const setup::Follow& follow) {
    auto outcome = setup::ReadSetup(Sensor(), follow);
    if (const auto* stopped = std::get_if<setup::Stopped>(&outcome)) {
      Note(stopped->text + " Nothing was taken.");
      return;
    }
    read = std::get<setup::Setup>(outcome);
    read->program = program_;
    read->when = std::chrono::floor<std::chrono::milliseconds>(core_.seams.clock.UtcNow());
    read->sensor = PresentSensor(core_);
    read->sensor.product = read->product;
    now_ = read;
  });
  if (closeAfterTransfer_) close();
  return read;
}

bool frmSetups::MayKeep(const std::string& name) {
  if (const std::string problem = store_.ProblemOf(name); !problem.empty()) {
    Note("Not saved: " + problem + ".");
    return false;
  }
  return !store_.Has(name) ||
         core_.seams.messages.AskToGoOn("There is a set-up \"" + name + "\" already.", "&Replace");
}

void frmSetups::Save() {
  const std::string name = panel_->txtSetupName->text().toStdString();
  Note("");
  if (!MayKeep(name)) {
    panel_->txtSetupName->setFocus();
    return;
  }
  auto read = ReadSensor();
  if (!read) return;
  read->name = name;
  Edge().Run("cmdSave_Click", [&] {
    store_.Save(*read);
    Note("Saved as \"" + name + "\".");
  });
  Refill(name);
}

void frmSetups::Compare() {
  if (!Chosen()) return;
  Note("");
  static_cast<void>(ReadSensor());
  ShowChosen();
}

void frmSetups::Restore() {
  const auto saved = Chosen();
  if (!saved) return;
  Note("");
  const bool keepsNulls = panel_->ckKeepNulls->isChecked();
  if (!core_.seams.messages.AskToGoOn(
          "Restoring \"" + saved->name +
              "\" writes registers and alarm bands of the sensor where they differ.",
          "&Restore")) {
    return;
  }
  std::optional<setup::RestoreReport> report;
  Transfer("cmdRestore_Click", [&](const setup::Follow& follow) {
    report = setup::Restore(Sensor(), *saved,
                            {.keepNulls = keepsNulls, .saveInFlash = panel_->ckFlash->isChecked()},
                            follow);
  });
  if (!report) return;
  now_.reset();
  Note(report->Text());
  emit Restored();
  if (closeAfterTransfer_) {
    close();
  } else if (!report->stopped) {
    static_cast<void>(ReadSensor());
  }
  ShowChosen();
}

void frmSetups::Delete() {
  const std::string name = panel_->Chosen().toStdString();
  if (!core_.seams.messages.AskToGoOn("The set-up \"" + name + "\" is deleted for good.",
                                      "&Delete")) {
    return;
  }
  store_.Delete(name);
  Refill("");
  Note("\"" + name + "\" is deleted.");
}

// The close button, Escape and cmdClose all end here.
void frmSetups::reject() {
  closeAfterTransfer_ = isTransferring_;
  if (isTransferring_) {
    CancelTransfer();
  } else {
    SecondaryWindow::reject();
  }
}

// Enter presses the button that has the focus and never another one; Escape ends a transfer first.
void frmSetups::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && isTransferring_) {
    CancelTransfer();
  } else if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    SecondaryWindow::keyPressEvent(event);
  } else if (auto* button = qobject_cast<QPushButton*>(focusWidget())) {
    button->click();
  }
}

}  // namespace kestrel
