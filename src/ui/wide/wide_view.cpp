// How the wide view is laid out and follows what it shows.
// SPDX-License-Identifier: MIT
#include "ui/wide/wide_view.h"

#include <QEvent>
#include <QSplitter>
#include <QVBoxLayout>
#include <utility>

#include "ui/parts/local_time.h"
#include "ui/study/number_field.h"
#include "ui/study/scrolling_bars.h"

namespace kestrel {
namespace {

constexpr int kSideWidth = 340;
constexpr int kGutter = 8;
constexpr unsigned kAllOptions = 0b1111;

}  // namespace

WideView::WideView(StudyModel& study, const archive::Place& archive)
    : study_(study),
      model_(archive),
      bar_(new WideBar),
      notices_(new NoticeStrip("wideNotices")),
      lblLine_(new LineLabel),
      plot_(new AnalyserPlot),
      strip_(new OptionStrip),
      lblNoise_(new QLabel),
      severity_(new WideSeverity),
      table_(new WideLinesTable),
      cardSeverity_(new BenchCard("cardWideSeverity", tr("Severity estimate"), severity_)),
      cardLines_(new BenchCard("cardWideLines", tr("Lines"), table_)) {
  setObjectName("wide");
  plot_->setObjectName("widePlot");
  plot_->SetReader([this](double x, int) {
    return study::WideReadOutAt(model_.Wide(), look_, study_.Choice(), x);
  });
  cardSeverity_->SetSummary(tr("10 to 1000 Hz"));
  cardLines_->SetSummary(tr("each once, over all options"));
  LayOut();
  Connect();
  ConnectPlot();
  ShowKept();
  bar_->Show(look_, study_.Choice());
}

WideView::~WideView() = default;

void WideView::LayOut() {
  auto* side = new QSplitter(Qt::Vertical);
  side->setObjectName("wideSide");
  side->setChildrenCollapsible(false);
  side->setHandleWidth(kGutter);
  side->addWidget(cardSeverity_);
  side->addWidget(cardLines_);
  side->setSizes({250, 500});
  auto* parts = new QSplitter;
  parts->setObjectName("wideParts");
  parts->setChildrenCollapsible(false);
  parts->setHandleWidth(kGutter);
  parts->addWidget(MakePicture());
  parts->addWidget(side);
  parts->setStretchFactor(0, 1);
  parts->setSizes({1000, kSideWidth});
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(new ScrollingBars("wideBars", bar_));
  column->addWidget(notices_);
  column->addWidget(parts, 1);
}

QWidget* WideView::MakePicture() {
  lblLine_->setObjectName("lblWideLine");
  lblLine_->setContentsMargins(12, 8, 12, 4);
  lblNoise_->setObjectName("lblWideNoise");
  lblNoise_->setWordWrap(true);
  lblNoise_->setContentsMargins(12, 0, 12, 8);
  lblNoise_->hide();
  auto* picture = new QWidget;
  picture->setAutoFillBackground(true);
  picture->setBackgroundRole(QPalette::Base);
  auto* column = new QVBoxLayout(picture);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(lblLine_);
  column->addWidget(plot_, 1);
  column->addWidget(strip_);
  column->addWidget(lblNoise_);
  return picture;
}

void WideView::Connect() {
  connect(bar_, &WideBar::LookChosen, this, [this] { Change(bar_->Look()); });
  for (const Axis axis : kAxes) {
    connect(bar_->axes[Index(axis)], &QToolButton::clicked, this,
            [this, axis] { ToggleAxis(axis, false); });
  }
  connect(bar_->cbxKept, &QComboBox::activated, this, &WideView::OpenKept);
  connect(bar_->cmdBack, &QToolButton::clicked, plot_, &AnalyserPlot::GoBack);
  connect(bar_->cmdForward, &QToolButton::clicked, plot_, &AnalyserPlot::GoForward);
  connect(bar_->cmdShowAll, &QToolButton::clicked, plot_, &AnalyserPlot::ShowAll);
  connect(bar_->cmdCopy, &QToolButton::clicked, this, &WideView::CopyAsked);
  connect(bar_->cmdExport, &QToolButton::clicked, this, &WideView::ExportAsked);
  connect(table_, &WideLinesTable::LineChosen, this, &WideView::PutCursor);
  connect(&model_, &WideModel::Changed, this, [this] {
    cursor_.reset();
    Redraw();
  });
  connect(&model_, &WideModel::RowsChanged, this, &WideView::ShowKept);
  connect(&model_, &WideModel::TroubleChanged, this, [this] { SetTrouble(model_.Trouble()); });
  connect(&study_, &StudyModel::Changed, this, &WideView::Redraw);
}

// What has changed while it was hidden is drawn when it is shown.
void WideView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!std::exchange(hasRead_, true)) model_.Read();
  if (isBehind_) Redraw();
}

void WideView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) Redraw();
}

bool WideView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == plot_ && event->type() == QEvent::Resize) {
    QMetaObject::invokeMethod(this, &WideView::FollowPlot, Qt::QueuedConnection);
  }
  return QWidget::eventFilter(watched, event);
}

void WideView::Redraw() {
  isBehind_ = !isVisible();
  if (isBehind_) return;
  bar_->Show(look_, study_.Choice());
  lines_ = study::WideLinesOf(model_.Wide(), study_.Choice());
  ShowScene();
  ShowSide();
  ShowNotices();
  PutCursor(cursor_);
}

void WideView::ShowScene() {
  PlotScene scene = study::WideScene(model_.Wide(), look_, study_.Choice(),
                                     [](auto time) { return LocalTime(time).toStdString(); });
  const QString line = Text(HeadLine(scene));
  lblLine_->setText(line);
  lblLine_->setToolTip(line);
  lblLine_->setVisible(!line.isEmpty());
  scene.head.clear();
  scene.line.clear();
  plot_->SetScene(std::move(scene));
  strip_->Show(study::OptionLanes(model_.Wide()));
  FollowPlot();
}

void WideView::ShowSide() {
  severity_->Show(study::WideSeverityOf(model_.Wide(), study_.Choice()), study_.Choice().zones);
  table_->Show(lines_);
  QString noise;
  for (const auto& told : model_.Wide().axes) {
    if (told && noise.isEmpty()) noise = Text(analysis::NoiseNotice(*told));
  }
  lblNoise_->setText(noise);
  SetInk(*lblNoise_, kestrel::Look::Of(palette()).muted);
  lblNoise_->setVisible(!noise.isEmpty());
}

void WideView::ShowNotices() {
  const auto doubts = study::WideDoubtsOf(model_.Wide());
  QStringList ids{"missing"};
  for (const char axis : {'X', 'Y', 'Z'}) {
    for (int option = 1; option <= 3; ++option) {
      ids << QStringLiteral("unsteady%1%2").arg(QLatin1Char(axis)).arg(option);
    }
  }
  for (const QString& id : ids) {
    const auto doubt = std::ranges::find(doubts, id.toStdString(), &study::WideDoubt::id);
    if (doubt == doubts.end() || model_.Wide().records.empty()) {
      notices_->Take(id);
      continue;
    }
    // What was kept is of another time: captures of now do not belong to it.
    const QString cure = model_.Shown()     ? tr("Capture a new one")
                         : id == u"missing" ? tr("Capture what is missing")
                                            : tr("Capture these two again");
    notices_->Put(
        {id,
         Gravity::Doubt,
         Text(doubt->text),
         cure,
         [this, again = doubt->again] { emit CaptureAsked(model_.Shown() ? kAllOptions : again); },
         {}});
  }
}

void WideView::SetTrouble(const QString& trouble) {
  if (trouble.isEmpty()) return notices_->Take("wideTrouble");
  notices_->Put({"wideTrouble", Gravity::Fault, trouble, {}, {}, {}});
}

// "18:29:12, options 3 to 0, 32 averages, Fan 2".
void WideView::ShowKept() {
  const QSignalBlocker blocker(bar_->cbxKept);
  bar_->cbxKept->clear();
  bar_->cbxKept->addItem(model_.Wide().records.empty() || model_.Shown() ? tr("Kept wide spectra")
                                                                         : tr("Captured now"));
  for (const WideRow& row : model_.Rows()) {
    QString text = LocalTime(row.taken);
    if (row.options != 0b1111U) text += tr(", not all options");
    text += tr(", %1 averages").arg(row.averages);
    if (!row.machine.empty()) text += QStringLiteral(", ") + Text(row.machine);
    bar_->cbxKept->addItem(text);
  }
  const auto shown = model_.Shown();
  bar_->cbxKept->setCurrentIndex(shown ? static_cast<int>(*shown) + 1 : 0);
  bar_->cbxKept->setEnabled(!model_.Rows().empty());
}

void WideView::ShowSpan() {
  bar_->cmdBack->setEnabled(plot_->CanGoBack());
  bar_->cmdForward->setEnabled(plot_->CanGoForward());
  bar_->cmdShowAll->setEnabled(!plot_->ShowsAll());
  FollowPlot();
}

void WideView::FollowPlot() {
  const PlotLayout layout = plot_->Laid();
  if (layout.panes.empty()) {
    return strip_->Follow(64, strip_->width() - 12, {1, study::kMostHz});
  }
  const QRectF canvas = layout.panes.front().canvas;
  strip_->Follow(canvas.left(), canvas.right(), plot_->Ranges().across);
}

PlotPicture WideView::Picture() const {
  PlotScene scene = plot_->Scene();
  const PlotScene titled = study::WideScene(model_.Wide(), look_, study_.Choice(), [](auto time) {
    return LocalTime(time).toStdString();
  });
  scene.head = titled.head;
  scene.line = titled.line;
  return {.scene = std::move(scene),
          .ranges = plot_->Ranges(),
          .cursor = plot_->Cursor(),
          .font = font(),
          .size = plot_->size()};
}

std::string WideView::Table() const {
  return study::WideTable(model_.Wide(), look_);
}

}  // namespace kestrel
