// How the workbench is laid out and follows its model.
// SPDX-License-Identifier: MIT
#include "ui/workbench/workbench_view.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSplitter>
#include <QVBoxLayout>
#include <utility>

#include "ui/chart/look.h"
#include "ui/library/keeper_text.h"
#include "ui/parts/widgets.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

constexpr int kLeftWidth = 244;
constexpr int kRightWidth = 336;
constexpr int kGutter = 8;

// A column that scrolls where the window is low.
QScrollArea* Scrolling(const char* name, QWidget* content) {
  auto* scroll = new QScrollArea;
  scroll->setObjectName(name);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(content);
  content->setBackgroundRole(QPalette::Base);
  return scroll;
}

}  // namespace

WorkbenchView::WorkbenchView(const archive::Place& archive, WorkbenchHost host)
    : host_(std::move(host)),
      model_(archive),
      notices_(new NoticeStrip("workbenchNotices")),
      cbxOption_(MakeComboBox("cbxBenchOption", tr("Sample-rate option"),
                              tr("Sample-rate option of the records and of the bands"))),
      segScale_(new Segments("segBenchScale", tr("Scale of the levels"),
                             {{"cmdInG", tr("g"), {}, tr("Levels in g peak")},
                              {"cmdInDb",
                               tr("dB re warning"),
                               {},
                               tr("Levels in dB above or below the proposed warning")}})),
      cmdShowNow_(new FlatButton("cmdShowNow", tr("Present thresholds"), "bands")),
      cmdShowBad_(new FlatButton("cmdShowBad", tr("Known bad"), "label")),
      progress_(nullptr),
      lblProgress_(MakeLabel("lblReading", tr("Reading the records"))),
      barProgress_(new QProgressBar),
      sets_(new SetsPanel(model_)),
      rule_(new RulePanel(model_)),
      distributions_(new DistributionTable),
      detail_(new DetailPanel(model_)),
      replay_(new ReplayPanel(model_)),
      proposal_(new ProposalPanel(model_)),
      cardSets_(nullptr),
      cardDistributions_(nullptr),
      cardDetail_(nullptr),
      cardReplay_(nullptr),
      cardProposal_(nullptr),
      middle_(new QStackedWidget),
      lblEmpty_(new QLabel) {
  setObjectName("workbench");
  LayOut();
  Connect();
  Show();
}

WorkbenchView::~WorkbenchView() {
  if (hasBegun_) WriteKeptWorkbench(model_.Choice(), model_.Place().text);
}

void WorkbenchView::LayOut() {
  auto* parts = new QSplitter;
  parts->setObjectName("workbenchParts");
  parts->setChildrenCollapsible(false);
  parts->setHandleWidth(kGutter);
  parts->addWidget(MakeLeft());
  parts->addWidget(MakeMiddle());
  parts->addWidget(MakeRight());
  parts->setStretchFactor(1, 1);
  parts->setSizes({kLeftWidth, 900, kRightWidth});
  auto* inside = new QVBoxLayout;
  inside->setContentsMargins(kGutter, 0, kGutter, kGutter);
  inside->addWidget(parts);
  // What needs more room than there is scrolls, and takes none from the other views.
  auto* content = new QWidget;
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  auto* scroll = Scrolling("workbenchScroll", content);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  content->setBackgroundRole(QPalette::Window);
  all->addWidget(scroll);
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(notices_);
  column->addWidget(MakeTools());
  progress_ = MakeProgress();
  column->addWidget(progress_);
  column->addLayout(inside, 1);
}

QWidget* WorkbenchView::MakeTools() {
  auto* tools = new QWidget;
  tools->setObjectName("workbenchTools");
  cbxOption_->addItem(tr("Option: as most records"));
  for (int i = 0; i < kSampleRateOptions; ++i) cbxOption_->addItem(tr("Option: %1").arg(i), i);
  cmdShowNow_->setCheckable(true);
  cmdShowBad_->setCheckable(true);
  cmdShowNow_->setToolTip(tr("Show the thresholds of the alarm editor's table"));
  cmdShowBad_->setToolTip(tr("Show the records that are known to be bad"));
  auto* row = new QHBoxLayout(tools);
  row->setContentsMargins(kGutter, kGutter, kGutter, kGutter);
  row->setSpacing(8);
  row->addWidget(cbxOption_);
  row->addWidget(segScale_);
  row->addWidget(cmdShowNow_);
  row->addWidget(cmdShowBad_);
  row->addStretch(1);
  return tools;
}

QWidget* WorkbenchView::MakeProgress() {
  auto* progress = new QWidget;
  barProgress_->setObjectName("barReading");
  barProgress_->setAccessibleName(tr("Progress of reading the records"));
  barProgress_->setTextVisible(false);
  auto* cancel = new FlatButton("cmdCancelReading", tr("Cancel"));
  cancel->setToolTip(tr("End the reading; what was shown before stays"));
  connect(cancel, &QToolButton::clicked, &model_, &WorkbenchModel::Cancel);
  auto* row = new QHBoxLayout(progress);
  row->setContentsMargins(kGutter, 0, kGutter, kGutter);
  row->addWidget(lblProgress_);
  row->addWidget(barProgress_, 1);
  row->addWidget(cancel);
  progress->hide();
  return progress;
}

QWidget* WorkbenchView::MakeLeft() {
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(sets_, 1);
  column->addWidget(rule_);
  QScrollArea* scroll = Scrolling("workbenchLeft", content);
  cardSets_ = new BenchCard("cardSets", tr("Sets"), scroll);
  cardSets_->setMinimumWidth(std::max(kLeftWidth, rule_->sizeHint().width() + 20));
  return cardSets_;
}

QWidget* WorkbenchView::MakeMiddle() {
  cardDistributions_ = new BenchCard("cardDistributions", tr("Distributions"), distributions_);
  cardDetail_ = new BenchCard("cardDetail", tr("Band 1"), detail_);
  auto* both = new QSplitter(Qt::Vertical);
  both->setObjectName("workbenchMiddle");
  both->setChildrenCollapsible(false);
  both->setHandleWidth(kGutter);
  both->addWidget(cardDistributions_);
  both->addWidget(cardDetail_);
  both->setSizes({320, 420});
  middle_->setObjectName("workbenchPages");
  middle_->addWidget(both);
  middle_->addWidget(MakeEmpty());
  middle_->setMinimumWidth(420);
  return middle_;
}

QWidget* WorkbenchView::MakeEmpty() {
  lblEmpty_->setObjectName("lblWorkbenchEmpty");
  lblEmpty_->setWordWrap(true);
  lblEmpty_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  auto* begin = new FlatButton("cmdBeginWorkbench", tr("Choose known good records..."));
  begin->SetMain(true);
  begin->setEnabled(model_.HasArchive());
  connect(begin, &QToolButton::clicked, this, [this] { sets_->Choose(baseline::Verdict::Good); });
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(48, 64, 48, 48);
  column->setSpacing(16);
  column->addWidget(lblEmpty_);
  column->addWidget(begin, 0, Qt::AlignHCenter);
  column->addStretch(1);
  return new BenchCard("cardEmpty", tr("Alarm bands"), content);
}

QWidget* WorkbenchView::MakeRight() {
  cardReplay_ = new BenchCard("cardReplay", tr("Replay"), replay_);
  cardProposal_ = new BenchCard("cardProposal", tr("Proposal"), proposal_);
  FlatButton* copy =
      cardReplay_->AddButton("cmdCopyReplay", "copy", tr("Copy the table of the replay (Ctrl+C)"));
  connect(copy, &QToolButton::clicked, this, [this] { replay_->Table().Copy(); });
  cardProposal_->AddToHead(proposal_->cmdReset);
  auto* side = new QWidget;
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kGutter);
  column->addWidget(cardReplay_, 1);
  column->addWidget(cardProposal_);
  side->setMinimumWidth(std::max(kRightWidth, cardProposal_->sizeHint().width()));
  return side;
}

void WorkbenchView::Connect() {
  connect(&model_, &WorkbenchModel::Changed, this, &WorkbenchView::Show);
  connect(&model_, &WorkbenchModel::ReadingChanged, this, &WorkbenchView::ShowReading);
  connect(&model_, &WorkbenchModel::TroubleChanged, this, &WorkbenchView::ShowNotices);
  connect(&model_, &WorkbenchModel::Progressed, this, [this](qint64 done, qint64 all) {
    constexpr int kSteps = 1000;
    barProgress_->setRange(0, all > 0 ? kSteps : 0);
    barProgress_->setValue(all > 0 ? static_cast<int>(done * kSteps / all) : 0);
    lblProgress_->setText(tr("Reading: %L1 of %L2 records").arg(done).arg(all));
  });
  connect(cbxOption_, &QComboBox::currentIndexChanged, this, [this] {
    const QVariant option = cbxOption_->currentData();
    model_.SetOption(option.isValid() ? std::optional(option.toInt()) : std::nullopt);
  });
  connect(segScale_, &Segments::Chosen, this, [this](int scale) {
    model_.Show([scale](WorkbenchLook& look) { look.inDecibels = scale == 1; });
  });
  connect(cmdShowNow_, &QToolButton::toggled, this, [this](bool isOn) {
    model_.Show([isOn](WorkbenchLook& look) { look.showsNow = isOn; });
  });
  connect(cmdShowBad_, &QToolButton::toggled, this, [this](bool isOn) {
    model_.Show([isOn](WorkbenchLook& look) { look.showsBad = isOn; });
  });
  connect(distributions_, &DistributionTable::CellChosen, &model_, &WorkbenchModel::ChooseCell);
  connect(proposal_->cmdTakeOver, &QToolButton::clicked, this, [this] { Propose(false); });
  connect(proposal_->cmdWrite, &QToolButton::clicked, this, &WorkbenchView::AskWrite);
  connect(proposal_->cmdReport, &QToolButton::clicked, this, &WorkbenchView::AskReport);
}

void WorkbenchView::Begin() {
  if (std::exchange(hasBegun_, true)) return;
  WorkbenchChoice kept = ReadKeptWorkbench(model_.Place().text);
  // What was taken from the library before this was first shown comes after what was kept.
  const std::vector<baseline::Part>& taken = model_.Choice().parts;
  kept.parts.insert(kept.parts.end(), taken.begin(), taken.end());
  model_.SetChoice(kept);
}

void WorkbenchView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Begin();
}

void WorkbenchView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (hasBegun_) WriteKeptWorkbench(model_.Choice(), model_.Place().text);
}

void WorkbenchView::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).fillRect(rect(), Look::Of(palette()).window);
}

void WorkbenchView::FocusFirst() {
  if (model_.HasGood()) {
    distributions_->setFocus();
  } else if (QWidget* begin = findChild<QWidget*>("cmdBeginWorkbench")) {
    begin->setFocus();
  }
}

void WorkbenchView::TakeRecords(baseline::Verdict verdict, const std::vector<ArchiveId>& ids) {
  if (ids.empty() || !model_.HasArchive()) return;
  baseline::Part part{.verdict = verdict, .name = {}, .filter = {}, .ids = ids};
  Begin();
  model_.AddPart(std::move(part));
  const QString records =
      CountOf(static_cast<std::int64_t>(ids.size()), tr("record"), tr("records"));
  emit Said(verdict == baseline::Verdict::Good
                ? tr("%1 taken as known good, in the view Alarm bands.").arg(records)
                : tr("%1 taken as known bad, in the view Alarm bands.").arg(records));
}

}  // namespace kestrel
