// How a study reaches the plot, and refusals the reader.
// SPDX-License-Identifier: MIT
#include "ui/analyser/plot_area.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QVBoxLayout>
#include <algorithm>

#include "analysis/time_velocity.h"
#include "display/cursors.h"
#include "display/scene.h"
#include "ui/parts/local_time.h"

namespace kestrel {
namespace {

constexpr int kCardWidth = 560;
constexpr int kCardEdge = 24;

// From where the record at hand could tell what was refused; none where that is not the matter.
std::optional<double> LowestOf(const study::Study& study) {
  const study::StudyChoice& choice = study.Choice();
  if (study.Shown() == nullptr || choice.view != study::View::Time) return std::nullopt;
  const Record& record = *study.Shown()->record;
  if (record.kind != RecordKind::Time) return std::nullopt;
  return analysis::LowestVelocityOf(record.settings.option);
}

void BackToAcceleration(study::StudyChoice& choice) {
  choice.timeQuantity = study::TimeQuantity::Acceleration;
  choice.quantity.quantity = analysis::Quantity::Acceleration;
}

}  // namespace

PlotArea::PlotArea(StudyModel& model)
    : model_(model),
      notices_(new RecordNoticeStrip("analyserNotices")),
      lblNote_(new QLabel),
      plot_(new AnalyserPlot),
      commands_(new PlotCommands(model, *plot_)),
      card_(new RefusalCard(this)) {
  setObjectName("plotArea");
  plot_->setObjectName("plot");
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  lblNote_->setObjectName("lblPlotNote");
  lblNote_->setWordWrap(true);
  lblNote_->setContentsMargins(12, 4, 12, 4);
  lblNote_->hide();
  column->addWidget(notices_);
  column->addWidget(lblNote_);
  column->addWidget(plot_, 1);
  plot_->SetReader([this](double x, int pane) { return study::ReadOutAt(model_.Get(), x, pane); });
  connect(&model, &StudyModel::Changed, this, &PlotArea::Show);
  connect(&model, &StudyModel::CursorMoved, this, &PlotArea::ShowCursor);
  connect(notices_, &RecordNoticeStrip::CureWanted, this, &PlotArea::CureWanted);
  connect(card_, &RefusalCard::OptionWanted, this, &PlotArea::OptionWanted);
  connect(card_, &RefusalCard::LowestWanted, this,
          [this] { model_.Change([](study::StudyChoice& choice) { choice.timeFromHz = 0; }); });
  connect(card_, &RefusalCard::BackWanted, this, [this] { model_.Change(BackToAcceleration); });
  Show();
}

PlotPicture PlotArea::Picture() const {
  PlotPicture picture{.scene = plot_->Scene(),
                      .ranges = plot_->Ranges(),
                      .cursor = plot_->Cursor(),
                      .font = plot_->font(),
                      .size = plot_->size()};
  picture.scene.source = Source();
  return picture;
}

std::string PlotArea::Source() const {
  std::string source = plot_->Scene().source;
  if (const auto* shown = model_.Get().Shown()) {
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
        shown->record->time.time_since_epoch());
    if (!source.empty()) source += ", ";
    source += QDateTime::fromMSecsSinceEpoch(ms.count())
                  .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss t"))
                  .toStdString();
  }
  return source + ", version " + QCoreApplication::applicationVersion().toStdString();
}

void PlotArea::Show() {
  plot_->SetScene(study::SceneOf(model_.Get()));
  lblNote_->setText(QString::fromStdString(plot_->Scene().note));
  lblNote_->setVisible(!lblNote_->text().isEmpty());
  ShowCursor();
  ShowNotices();
  ShowRefusal();
}

void PlotArea::ShowCursor() {
  plot_->SetCursor(study::CursorOf(model_.Get()));
}

void PlotArea::SetSensorLost(bool isLost) {
  isSensorLost_ = isLost;
  ShowNotices();
}

// The analyser scales every record by its own range, whatever the main window does.
void PlotArea::ShowNotices() {
  const auto* shown = model_.Get().Shown();
  if (shown == nullptr) return;
  auto notices = RecordNotices(*shown->record, {.sensorLost = isSensorLost_});
  std::erase_if(notices, [](const auto& notice) { return notice.kind == NoticeKind::WrongScale; });
  notices_->Show(*shown->record, notices);
}

void PlotArea::ShowRefusal() {
  const bool isShown =
      model_.Choice().view != study::View::Waterfall && !model_.Choice().difference;
  card_->Show(isShown ? model_.Get().Refused() : std::nullopt, LowestOf(model_.Get()));
  PlaceCard();
}

void PlotArea::PlaceCard() {
  if (card_->isHidden()) return;
  const QRect room = plot_->geometry().adjusted(kCardEdge, kCardEdge, -kCardEdge, -kCardEdge);
  const int width = std::min(kCardWidth, room.width());
  const int height = std::min(
      card_->heightForWidth(width) > 0 ? card_->heightForWidth(width) : card_->sizeHint().height(),
      room.height());
  QRect place(0, 0, width, height);
  place.moveCenter(room.center());
  card_->setGeometry(place);
  card_->raise();
}

void PlotArea::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  PlaceCard();
}

}  // namespace kestrel
