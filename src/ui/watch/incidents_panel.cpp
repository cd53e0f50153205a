// How the journal is read, and its entries are listed.
// SPDX-License-Identifier: MIT
#include "ui/watch/incidents_panel.h"

#include <QEvent>
#include <QVBoxLayout>
#include <utility>

#include "trend/parts.h"
#include "ui/chart/look.h"
#include "ui/library/library.h"
#include "ui/parts/local_time.h"

namespace kestrel {
namespace {

constexpr int kSoonMs = 700;
constexpr std::int64_t kMostRows = 300;
constexpr auto kLeft = Qt::AlignLeft;
constexpr const char* kAlarm = "alarm";

QString LastedText(const monitor::JournalRow& row) {
  if (row.lasts) return IncidentsPanel::tr("open");
  if (!row.entry.ended) return IncidentsPanel::tr("over");
  const std::chrono::duration<double> lasted = *row.entry.ended - row.entry.began;
  return lasted.count() < 1 ? QString() : Text(trend::DurationText(lasted.count()));
}

}  // namespace

IncidentsPanel::IncidentsPanel() : table_(new TextTable("tblIncidents")) {
  table_->setAccessibleName(tr("Incidents and alarms"));
  table_->SetHint(tr("What stands in the way of captures, and alarms, will stand here."));
  table_->SetColumns({{.head = tr("Began"), .alignment = kLeft},
                      {.head = tr("Lasted"), .alignment = kLeft},
                      {.head = tr("What"), .alignment = kLeft},
                      {.head = tr("Missed")},
                      {.head = tr("Text"), .alignment = kLeft}});
  card_ = new BenchCard("cardIncidents", tr("Incidents and alarms"), table_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(card_);
  soon_.setSingleShot(true);
  soon_.setInterval(kSoonMs);
  connect(&soon_, &QTimer::timeout, this, &IncidentsPanel::Read);
}

IncidentsPanel::~IncidentsPanel() = default;

void IncidentsPanel::Of(const archive::Place& place, const std::string& bench,
                        const std::string& sensor) {
  if (place == place_ && bench == bench_ && sensor == sensor_) return;
  if (place != place_) {
    worker_.reset();
    if (!place.text.empty()) {
      worker_ = std::make_unique<archive::Worker>([place] { return OpenAnyhow(place); });
    }
  }
  place_ = place;
  bench_ = bench;
  sensor_ = sensor;
  Take({}, {});
  Read();
}

void IncidentsPanel::Follow(const monitor::Account* account) {
  const bool isOther =
      (account != nullptr) != account_.has_value() ||
      (account_ && (account->incidents != account_->incidents ||
                    account->alarms != account_->alarms || account->missed != account_->missed));
  if (!isOther) return;
  account_ = account == nullptr ? std::nullopt : std::optional(*account);
  Show();
  soon_.start();
}

void IncidentsPanel::Read() {
  if (!worker_ || sensor_.empty()) return;
  const auto tell = [this](std::vector<archive::JournalEntry> journal, const QString& trouble) {
    QMetaObject::invokeMethod(
        this, [this, journal = std::move(journal), trouble] { Take(journal, trouble); },
        Qt::QueuedConnection);
  };
  worker_->Cancel(archive::Worker::Rank::Find);
  worker_->Do({archive::Worker::Rank::Find,
               [tell, filter = archive::JournalFilter{.bench = bench_, .sensor = sensor_}](
                   archive::Archive& archive) { tell(EntriesOf(archive, filter, kMostRows), {}); },
               [tell, place = place_](const database::DatabaseError& error) {
                 tell({}, Text(archive::Trouble(place, error)));
               }});
}

// What was read before stays where it cannot be read.
void IncidentsPanel::Take(std::vector<archive::JournalEntry> journal, const QString& trouble) {
  trouble_ = trouble;
  if (trouble.isEmpty()) journal_ = std::move(journal);
  Show();
}

void IncidentsPanel::Show() {
  const Look look = Look::Of(palette());
  rows_ = RowsOf(journal_, account_ ? &*account_ : nullptr);
  std::vector<std::vector<TextCell>> cells;
  std::size_t open = 0;
  for (const monitor::JournalRow& row : rows_) {
    const bool isAlarm = row.entry.kind == kAlarm;
    if (row.lasts) ++open;
    const QVariant mark = !row.lasts ? QVariant() : isAlarm ? look.fault : look.warning;
    const auto began = static_cast<double>(row.entry.began.time_since_epoch().count());
    cells.push_back(
        {{LocalTime(row.entry.began), began},
         {LastedText(row)},
         {Text(row.entry.kind), {}, mark},
         {row.entry.missed > 0 ? QStringLiteral("%L1").arg(row.entry.missed) : QString(),
          static_cast<qlonglong>(row.entry.missed)},
         {Text(row.entry.text)}});
  }
  table_->Model().SetRows(std::move(cells));
  card_->SetSummary(!trouble_.isEmpty() ? trouble_
                    : open > 0          ? tr("%1 of %2 open").arg(open).arg(rows_.size())
                                        : QString());
}

void IncidentsPanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) Show();
}

}  // namespace kestrel
