// How records of a set are filtered, thinned and named.
// SPDX-License-Identifier: MIT
#include "ui/workbench/set_chooser.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <array>

#include "ui/library/keeper_text.h"
#include "ui/parts/fit_screen.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

struct Thinning {
  const char* text;
  int seconds;
};
constexpr std::array<Thinning, 6> kThinnings{
    {{QT_TRANSLATE_NOOP("SetChooser", "Every record"), 0},
     {QT_TRANSLATE_NOOP("SetChooser", "One every 10 min"), 600},
     {QT_TRANSLATE_NOOP("SetChooser", "One every hour"), 3600},
     {QT_TRANSLATE_NOOP("SetChooser", "One every 2 h"), 7200},
     {QT_TRANSLATE_NOOP("SetChooser", "One every 8 h"), 28800},
     {QT_TRANSLATE_NOOP("SetChooser", "One every day"), 86400}}};

}  // namespace

SetChooser::SetChooser(const archive::Place& place, baseline::Verdict verdict, QWidget* parent)
    : QDialog(parent),
      verdict_(verdict),
      library_(place),
      filter_(new FilterBar),
      txtName_(new QLineEdit),
      cbxEvery_(MakeComboBox("cbxSetEvery", tr("How many of them"),
                             tr("Records in a row resemble each other: fewer of them, further "
                                "apart, tell as much"))),
      lblCount_(new QLabel),
      cmdTake_(new QPushButton) {
  const bool isGood = verdict == baseline::Verdict::Good;
  setObjectName(isGood ? "chooseGood" : "chooseBad");
  setWindowTitle(isGood ? tr("Records known to be good") : tr("Records known to be bad"));
  setAttribute(Qt::WA_DeleteOnClose);
  LayOut();
  connect(filter_, &FilterBar::Changed, this, &SetChooser::Count);
  connect(filter_, &FilterBar::MachineChosen, this,
          [this] { library_.AskChoices(filter_->Machine()); });
  connect(&library_, &Library::ChoicesTold, filter_, &FilterBar::SetChoices);
  connect(&library_, &Library::Found, this,
          [this](const std::vector<ArchiveId>& ids, qint64) { ShowCount(ids.size()); });
  connect(&library_, &Library::TroubleChanged, this, [this] {
    if (!library_.Trouble().isEmpty()) lblCount_->setText(library_.Trouble());
  });
  connect(this, &QDialog::accepted, this, [this] { emit Chosen(Part()); });
  library_.AskChoices({});
  Count();
}

void SetChooser::LayOut() {
  const bool isGood = verdict_ == baseline::Verdict::Good;
  filter_->cmdCalendar->hide();
  txtName_->setObjectName("txtSetName");
  txtName_->setPlaceholderText(isGood ? tr("after the overhaul") : tr("outer race"));
  for (const Thinning& each : kThinnings) cbxEvery_->addItem(tr(each.text), each.seconds);
  lblCount_->setObjectName("lblSetCount");
  lblCount_->setWordWrap(true);
  lblCount_->setTextFormat(Qt::PlainText);
  auto* row = new QHBoxLayout;
  row->setContentsMargins(8, 0, 8, 0);
  row->addWidget(MakeCaption(tr("&Call them"), txtName_));
  row->addWidget(txtName_, 1);
  row->addWidget(MakeCaption(tr("Take &of them"), cbxEvery_));
  row->addWidget(cbxEvery_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  cmdTake_->setObjectName("cmdTakeSet");
  cmdTake_->setText(isGood ? tr("Take as known &good") : tr("Take as known &bad"));
  buttons->addButton(cmdTake_, QDialogButtonBox::AcceptRole);
  cmdTake_->setDefault(true);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(4, 4, 4, 8);
  column->addWidget(filter_);
  column->addLayout(row);
  auto* foot = new QHBoxLayout;
  foot->setContentsMargins(8, 4, 8, 0);
  foot->addWidget(lblCount_, 1);
  foot->addWidget(buttons);
  column->addLayout(foot);
}

baseline::Part SetChooser::Part() const {
  return {.verdict = verdict_,
          .name = txtName_->text().trimmed().toStdString(),
          .filter = filter_->Filter(QDate::currentDate()),
          .ids = {},
          .every = std::chrono::seconds(cbxEvery_->currentData().toInt())};
}

void SetChooser::Count() {
  cmdTake_->setEnabled(false);
  lblCount_->setText(tr("Counting"));
  library_.Find(filter_->Filter(QDate::currentDate()));
}

void SetChooser::ShowCount(std::size_t count) {
  cmdTake_->setEnabled(count > 0);
  lblCount_->setText(
      count == 0
          ? tr("No record fits.")
          : tr("%1 that can be found so; those that cannot be compared are left out.")
                .arg(CountOf(static_cast<std::int64_t>(count), tr("record"), tr("records"))));
}

}  // namespace kestrel
