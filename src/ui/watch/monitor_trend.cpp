// How the level is asked for, drawn and followed.
// SPDX-License-Identifier: MIT
#include "ui/watch/monitor_trend.h"

#include <QVBoxLayout>

#include "trend/scene.h"
#include "ui/parts/local_time.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

constexpr int kSoonMs = 300;

}  // namespace

MonitorTrend::MonitorTrend(StudyModel& study)
    : study_(study),
      cmdLevel_(new FlatButton("cmdMonitorLevel", {}, {})),
      plot_(new AnalyserPlot),
      card_(new BenchCard("cardMonitorTrend", tr("Trend"), plot_)) {
  plot_->setObjectName("monitorPlot");
  plot_->setAccessibleName(tr("Trend of the monitored sensor"));
  auto* menu = new LevelMenu(study, this);
  menu->setObjectName("mnuMonitorLevel");
  cmdLevel_->SetMenu(menu);
  cmdLevel_->setToolTip(tr("The level that is followed"));
  card_->AddToHead(cmdLevel_);
  auto* whole = card_->AddButton("cmdMonitorTrend", "float", tr("Show it in the trend view"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(card_);
  soon_.setSingleShot(true);
  soon_.setInterval(kSoonMs);
  plot_->SetReader(
      [this](double x, int) { return trend::ReadOutAt(Data(), choice_, {}, x, LocalOffset); });
  connect(menu, &LevelMenu::Chosen, this, &MonitorTrend::ChooseLevel);
  connect(whole, &QToolButton::clicked, this, [this] { emit TrendAsked(choice_.level); });
  connect(plot_, &AnalyserPlot::CommandAsked, this, &MonitorTrend::Carry);
  connect(&study_, &StudyModel::Changed, this, &MonitorTrend::TakeStudy);
  connect(&soon_, &QTimer::timeout, this, [this] {
    if (source_) source_->Follow();
  });
  TakeStudy();
  Redraw();
}

MonitorTrend::~MonitorTrend() = default;

const trend::Data& MonitorTrend::Data() const {
  return source_ ? source_->Data() : nothing_;
}

void MonitorTrend::Of(const archive::Place& place, const monitor::Plan& plan) {
  archive::Filter filter;
  filter.machine = plan.remarks.machine.empty() ? plan.sensor : plan.remarks.machine;
  filter.bench = plan.bench;
  const bool isOther = filter.machine != filter_.machine || filter.bench != filter_.bench;
  if (place == place_ && !isOther) return;
  if (place != place_) {
    source_.reset();
    place_ = place;
    if (!place.text.empty()) {
      source_ = std::make_unique<TrendSource>(place);
      connect(source_.get(), &TrendSource::Changed, this, &MonitorTrend::Redraw);
      connect(source_.get(), &TrendSource::TroubleChanged, this, &MonitorTrend::Redraw);
    }
  }
  filter_ = filter;
  Ask();
}

void MonitorTrend::Ask() {
  if (source_) source_->Ask(filter_, choice_.level);
  Redraw();
}

void MonitorTrend::Follow() {
  if (!soon_.isActive()) soon_.start();
}

void MonitorTrend::ChooseLevel(const trend::Level& level) {
  choice_.level = level;
  Ask();
}

void MonitorTrend::TakeStudy() {
  const study::StudyChoice& choice = study_.Choice();
  if (choice_.shown == choice.shown && choice_.focus == choice.focus) return;
  choice_.shown = choice.shown;
  choice_.focus = choice.focus;
  Redraw();
}

QString MonitorTrend::Hint() const {
  if (!source_) return tr("Levels of the plan's records will stand here over time.");
  if (!source_->Trouble().isEmpty()) return tr("The archive cannot be read now.");
  if (!source_->IsRead()) return tr("Reading the archive.");
  if (Data().levels.series.empty() && Data().levels.refused.empty()) {
    return tr("No record of this plan yet.");
  }
  return Text(trend::WhyNone(Data().levels, choice_.level, true));
}

// While another level is read, the one before stays.
void MonitorTrend::Redraw() {
  trend::Choice drawn = choice_;
  if (source_ && source_->IsRead()) drawn.level = source_->Level();
  const trend::Limits limits =
      trend::LimitsOf(Data(), drawn, study_.Get().BandsOf(drawn.level.option, drawn.focus));
  cmdLevel_->setText(Text(trend::TitleOf(choice_.level)));
  cmdLevel_->updateGeometry();
  PlotScene scene = trend::SceneOf(Data(), drawn, limits, LocalOffset);
  scene.head.clear();
  scene.hint = Hint().toStdString();
  const auto count = Data().Shown().size();
  card_->SetSummary(count == 0   ? QString()
                    : count == 1 ? tr("1 record")
                                 : tr("%L1 records").arg(count));
  plot_->SetScene(std::move(scene));
}

void MonitorTrend::Carry(PlotCommand command) {
  const auto axisAfter = [command](PlotCommand first) {
    return static_cast<Axis>(static_cast<int>(command) - static_cast<int>(first));
  };
  study_.Change([&](study::StudyChoice& choice) {
    if (command >= PlotCommand::ShowX && command <= PlotCommand::ShowZ) {
      bool& shown = choice.shown[Index(axisAfter(PlotCommand::ShowX))];
      shown = !shown;
    } else if (command >= PlotCommand::FocusX && command <= PlotCommand::FocusZ) {
      choice.focus = axisAfter(PlotCommand::FocusX);
      choice.shown[Index(choice.focus)] = true;
    }
  });
}

}  // namespace kestrel
