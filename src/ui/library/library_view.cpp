// How the library is laid out and follows the archive.
// SPDX-License-Identifier: MIT
#include "ui/library/library_view.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QSplitter>
#include <QVBoxLayout>
#include <utility>

#include "ui/chart/look.h"
#include "ui/library/archive_widgets.h"
#include "ui/library/keeper_text.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

constexpr int kSoonMs = 50;  // records that come in a row are asked for once
constexpr int kSideWidth = 280;

struct WayEntry {
  const char* name;
  const char* text;
  const char* icon;
  const char* tip;
};
constexpr std::array<WayEntry, 5> kWays{
    {{"cmdOpenRecord", QT_TRANSLATE_NOOP("LibraryView", "Open"), "search",
      QT_TRANSLATE_NOOP("LibraryView", "Look at the record (Enter)")},
     {"cmdOverlay", QT_TRANSLATE_NOOP("LibraryView", "Overlay"), "overlay",
      QT_TRANSLATE_NOOP("LibraryView", "Lay 2 to 32 records over each other")},
     {"cmdAverage", QT_TRANSLATE_NOOP("LibraryView", "Average"), "vert",
      QT_TRANSLATE_NOOP("LibraryView", "Average of 2 to 500 records, beside the newest of them")},
     {"cmdDifference", QT_TRANSLATE_NOOP("LibraryView", "Difference"), "curd",
      QT_TRANSLATE_NOOP("LibraryView", "The later of 2 records to the earlier, in dB")},
     {"cmdWaterfall", QT_TRANSLATE_NOOP("LibraryView", "Waterfall"), "waterf",
      QT_TRANSLATE_NOOP("LibraryView", "A waterfall of 2 to 1,000 records")}}};

}  // namespace

LibraryView::LibraryView(StudyModel& study, RecordKeeper* keeper)
    : study_(study),
      keeper_(keeper != nullptr && keeper->HasPlace() ? keeper : nullptr),
      filter_(new FilterBar),
      remarks_(new RemarksPanel("remarks", RemarksPanel::Of::Records)),
      site_(new RemarksPanel("site", RemarksPanel::Of::Site)),
      notices_(new NoticeStrip("libraryNotices")),
      calendar_(new CalendarPopup(this)),
      lblCounts_(new LineLabel),
      lblKeeper_(new LineLabel),
      cmdDelete_(new FlatButton("cmdDeleteRecords", tr("Delete"), "close")),
      cmdExport_(new FlatButton("cmdExportRecords", tr("Export..."), "export")) {
  setObjectName("library");
  if (keeper_ != nullptr) library_ = std::make_unique<Library>(keeper_->Place());
  if (library_) {
    model_ = std::make_unique<LibraryModel>(*library_);
    table_ = new LibraryTable(*model_);
  }
  soon_.setSingleShot(true);
  soon_.setInterval(kSoonMs);
  LayOut();
  Connect();
  if (library_) ConnectArchive();
  ShowSite();
  ShowCounts();
  ShowChosen();
}

// The list goes before what it shows; the archive makes what waits before it ends.
LibraryView::~LibraryView() {
  delete table_;
}

void LibraryView::LayOut() {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(notices_);
  auto* parts = new QSplitter;
  parts->setObjectName("libraryParts");
  parts->setChildrenCollapsible(false);
  if (table_ != nullptr) parts->addWidget(table_);
  parts->addWidget(MakeSide());
  parts->setStretchFactor(0, 1);
  parts->setSizes({1000, kSideWidth});
  auto* content = new QWidget;
  auto* rows = new QVBoxLayout(content);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(filter_);
  rows->addWidget(parts, 1);
  rows->addWidget(MakeActionRow());
  column->addWidget(content, 1);
  content->setVisible(library_ != nullptr);
  QLabel* none = MakeNoArchive(
      "lblNoArchive",
      tr("No archive: the program was started with --no-archive, or has no folder to keep one in. "
         "Start it with --archive and a file, and every record is kept there."));
  column->addWidget(none, library_ == nullptr ? 1 : 0);
  none->setVisible(library_ == nullptr);
}

QWidget* LibraryView::MakeSide() {
  auto* side = new QWidget;
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(remarks_, 1);
  column->addWidget(site_);
  auto* scroll = new QScrollArea;
  scroll->setObjectName("librarySide");
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setWidget(side);
  scroll->setMinimumWidth(side->minimumSizeHint().width() + 20);
  scroll->setFocusPolicy(Qt::NoFocus);
  return scroll;
}

QWidget* LibraryView::MakeActionRow() {
  auto* row = new QWidget;
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  for (std::size_t i = 0; i < kWays.size(); ++i) {
    ways_[i] = new FlatButton(kWays[i].name, tr(kWays[i].text), kWays[i].icon);
    ways_[i]->setToolTip(tr(kWays[i].tip));
    buttons->addWidget(ways_[i]);
  }
  cmdDelete_->setToolTip(tr("Delete the selected records (Del); Ctrl+Z brings them back"));
  cmdExport_->hide();
  lblCounts_->setObjectName("lblLibraryCounts");
  lblKeeper_->setObjectName("lblLibraryKeeper");
  for (LineLabel* label : {lblCounts_, lblKeeper_}) label->setTextFormat(Qt::PlainText);
  buttons->addWidget(cmdDelete_);
  buttons->addWidget(cmdExport_);
  buttons->addWidget(lblCounts_, 1);
  auto* column = new QVBoxLayout(row);
  column->setContentsMargins(8, 8, 8, 8);
  column->addLayout(buttons);
  column->addWidget(lblKeeper_);
  return row;
}

void LibraryView::Connect() {
  connect(&soon_, &QTimer::timeout, this, &LibraryView::Refresh);
  for (std::size_t i = 0; i < ways_.size(); ++i) {
    connect(ways_[i], &QToolButton::clicked, this, [this, i] { Look(static_cast<Way>(i)); });
  }
  connect(cmdDelete_, &QToolButton::clicked, this, &LibraryView::AskDelete);
  connect(cmdExport_, &QToolButton::clicked, this, [this] {
    if (exports_) exports_(Chosen());
  });
  connect(remarks_, &RemarksPanel::Entered, this, &LibraryView::TakeRemarks);
  connect(site_, &RemarksPanel::Entered, this, [this] {
    const archive::Remarks applied = site_->Change().AppliedTo(keeper_->Site());
    site_->Settle();
    keeper_->SetSite(applied);
  });
}

void LibraryView::ConnectArchive() {
  connect(filter_, &FilterBar::Changed, this, &LibraryView::Refresh);
  connect(filter_, &FilterBar::MachineChosen, this,
          [this] { library_->AskChoices(filter_->Machine()); });
  connect(filter_->cmdCalendar, &QToolButton::clicked, this, [this] {
    library_->AskDays(filter_->Filter(QDate::currentDate()));
    calendar_->ShowUnder(*filter_->cmdCalendar);
  });
  connect(library_.get(), &Library::DaysTold, calendar_, &CalendarPopup::SetDays);
  connect(calendar_, &CalendarPopup::Chosen, filter_, &FilterBar::ChooseDay);
  connect(library_.get(), &Library::ChoicesTold, this, [this](const LibraryChoices& choices) {
    filter_->SetChoices(choices);
    remarks_->SetChoices(choices);
    site_->SetChoices(choices);
  });
  connect(library_.get(), &Library::Found, this, [this](const std::vector<ArchiveId>&, qint64 all) {
    isFound_ = true;
    all_ = all;
    ShowCounts();
  });
  connect(library_.get(), &Library::Changed, this, [this] {
    model_->ReadAgain();
    Refresh();
  });
  connect(library_.get(), &Library::TroubleChanged, this, &LibraryView::ShowTrouble);
  connect(model_.get(), &LibraryModel::RowsKnown, this, [this] {
    if (!remarks_->IsEdited()) ShowChosen();
  });
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &LibraryView::ShowChosen);
  connect(table_, &LibraryTable::OpenAsked, this, [this] { Look(Way::Open); });
  connect(table_, &LibraryTable::DeleteAsked, this, &LibraryView::AskDelete);
  connect(keeper_, &RecordKeeper::StateChanged, this, &LibraryView::FollowKeeper);
  connect(keeper_, &RecordKeeper::ChoiceChanged, this, &LibraryView::ShowCounts);
  connect(keeper_, &RecordKeeper::ChoiceChanged, this, &LibraryView::ShowSite);
}

void LibraryView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Refresh();
  ShowSite();
}

void LibraryView::Refresh() {
  soon_.stop();
  if (!library_) return;
  library_->Find(filter_->Filter(QDate::currentDate()));
  library_->AskChoices(filter_->Machine());
}

// What is kept appears at once; an amended record is read again.
void LibraryView::FollowKeeper() {
  const archive::KeeperState state = keeper_->State();
  ShowCounts();
  if (state.kept == kept_) return;
  kept_ = state.kept;
  if (!isVisible()) {
    model_->ReadAgain();
    return;
  }
  if (state.lastId) model_->ReadAgain(*state.lastId);
  if (!soon_.isActive()) soon_.start();
}

void LibraryView::ShowCounts() {
  if (!library_) return;
  const int shown = model_->rowCount();
  const auto chosen = table_->selectionModel()->selectedRows().size();
  QString text = isFound_ ? CountOf(all_, tr("record"), tr("records")) : tr("Reading");
  if (shown != all_ && isFound_) text = tr("%L1 of %2").arg(shown).arg(text);
  if (chosen > 0) text += tr(", %L1 selected").arg(chosen);
  lblCounts_->setText(text);
  lblCounts_->setToolTip(text + "\n" + QString::fromStdString(archive::Shown(library_->Place())));
  const QString keeper = keeper_->IsOn() ? KeeperText(keeper_->State())
                                         : tr("New records are not kept: the switch is off.");
  lblKeeper_->setText(keeper);
  lblKeeper_->setToolTip(keeper);
  lblKeeper_->setVisible(!keeper.isEmpty());
  table_->SetHint(!isFound_   ? QString()
                  : all_ == 0 ? tr("No records yet. Each capture is kept here (F5).")
                              : tr("No record fits the filters. \"Show all\" takes them away."));
  if (mnuKeep_) mnuKeep_->setChecked(keeper_->IsOn());
}

void LibraryView::ShowTrouble() {
  const QString& trouble = library_->Trouble();
  if (trouble.isEmpty()) {
    notices_->Take("archive");
    return;
  }
  notices_->Put({.id = "archive",
                 .gravity = Gravity::Fault,
                 .text = trouble,
                 .cure = tr("Try again"),
                 .carryOut = [this] { Refresh(); },
                 .closed = {}});
  if (!isFound_) table_->SetHint(tr("The archive cannot be read now."));
}

void LibraryView::ShowSite() {
  if (site_->IsEdited()) return;
  std::vector<archive::Remarks> remarks;
  if (keeper_ != nullptr) remarks.push_back(keeper_->Site());
  site_->Show(tr("Where the sensor sits now"), remarks);
}

}  // namespace kestrel
