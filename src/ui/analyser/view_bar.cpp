// How the analyser's upper bar is laid out and painted.
// SPDX-License-Identifier: MIT
#include "ui/analyser/view_bar.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "ui/chart/look.h"

namespace kestrel {
namespace {

constexpr int kUnderline = 2;
constexpr int kProgressSteps = 1000;

}  // namespace

ViewTabs::ViewTabs(QWidget* parent) : QTabBar(parent) {
  setDrawBase(false);
  setDocumentMode(true);
  setExpanding(false);
  setElideMode(Qt::ElideNone);
  setAttribute(Qt::WA_Hover);
}

QSize ViewTabs::tabSizeHint(int index) const {
  const QFontMetrics metrics(LookFonts(font()).bold);
  return {metrics.horizontalAdvance(tabText(index)) + 28, std::max(40, metrics.height() + 20)};
}

void ViewTabs::paintEvent(QPaintEvent* /*event*/) {
  const Look look = Look::Of(palette());
  QPainter painter(this);
  for (int tab = 0; tab < count(); ++tab) {
    const QRect place = tabRect(tab);
    const bool isChosen = tab == currentIndex();
    const bool isPointed = place.contains(mapFromGlobal(QCursor::pos())) && underMouse();
    if (isPointed && !isChosen) painter.fillRect(place.adjusted(2, 4, -2, -6), look.pointedAt);
    painter.setFont(isChosen ? LookFonts(font()).bold : font());
    painter.setPen(isChosen ? look.text : look.muted);
    painter.drawText(place, Qt::AlignCenter, tabText(tab));
    if (!isChosen) continue;
    painter.fillRect(
        QRect(place.left() + 8, place.bottom() - kUnderline, place.width() - 16, kUnderline + 1),
        look.accent);
    if (hasFocus()) {
      painter.setPen(QPen(look.accent, 2));
      painter.drawRoundedRect(place.adjusted(4, 6, -4, -8), 3, 3);
    }
  }
}

ViewBar::ViewBar()
    : cmdRepeat(new FlatButton("cmdRepeat", tr("Repeat"), "repeat")),
      cmdCapture(new FlatButton("cmdCapture", tr("Capture"), "rec")),
      tabs_(new ViewTabs),
      lblSensor_(new QLabel),
      progress_(new QWidget),
      lblProgress_(new QLabel),
      barProgress_(new QProgressBar) {
  setObjectName("viewBar");
  tabs_->setObjectName("tabViews");
  tabs_->setAccessibleName(tr("Views"));
  for (const QString& view : {tr("Spectrum"), tr("Time"), tr("Waterfall"), tr("Wide"),
                              tr("Library"), tr("Trend"), tr("Alarm bands"), tr("Monitor")})
    tabs_->addTab(view);
  for (int i = 0; i < tabs_->count(); ++i) tabs_->setTabToolTip(i, tr("Ctrl+%1").arg(i + 1));
  lblSensor_->setObjectName("lblSensor");
  lblProgress_->setObjectName("lblRepeatProgress");
  barProgress_->setObjectName("barRepeatProgress");
  barProgress_->setAccessibleName(tr("Progress of the repeated captures"));
  barProgress_->setTextVisible(false);
  barProgress_->setFixedHeight(4);
  barProgress_->setRange(0, kProgressSteps);
  cmdCapture->SetMain(true);
  cmdCapture->setToolTip(tr("One capture, as Start in the main window takes it (F5)"));
  cmdRepeat->setToolTip(tr("Capture again and again (Shift+F5)"));
  auto* lines = new QVBoxLayout(progress_);
  lines->setContentsMargins(0, 4, 0, 4);
  lines->setSpacing(2);
  lines->addWidget(lblProgress_, 0, Qt::AlignRight);
  lines->addWidget(barProgress_);
  progress_->hide();
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(8, 0, 8, 0);
  row->setSpacing(8);
  row->addWidget(tabs_);
  row->addStretch(1);
  row->addWidget(lblSensor_);
  row->addWidget(progress_);
  row->addWidget(cmdRepeat);
  row->addWidget(cmdCapture);
  connect(tabs_, &QTabBar::currentChanged, this, &ViewBar::ViewChosen);
}

void ViewBar::SetView(int view) {
  const QSignalBlocker blocker(tabs_);
  tabs_->setCurrentIndex(view);
}

void ViewBar::SetSensor(const QString& text, const QString& tip) {
  lblSensor_->setText(text);
  lblSensor_->setToolTip(tip);
}

void ViewBar::SetRunning(bool isRunning) {
  isRunning_ = isRunning;
  const QString name = captureName_.isEmpty() ? tr("Capture") : captureName_;
  const QString tip = captureTip_.isEmpty()
                          ? tr("One capture, as Start in the main window takes it (F5)")
                          : captureTip_;
  cmdCapture->SetCaption(isRunning ? tr("Stop") : name, isRunning ? "stopf" : "rec");
  cmdCapture->SetMain(!isRunning);
  cmdCapture->setToolTip(isRunning ? tr("Ends what runs (Esc)") : tip);
}

void ViewBar::NameCapture(const QString& text, const QString& tip) {
  captureName_ = text;
  captureTip_ = tip;
  SetRunning(isRunning_);
}

void ViewBar::SetProgress(const QString& text, double part) {
  progress_->setVisible(!text.isEmpty());
  lblProgress_->setText(text);
  barProgress_->setRange(0, part < 0 ? 0 : kProgressSteps);
  if (part >= 0) barProgress_->setValue(static_cast<int>(part * kProgressSteps));
}

void ViewBar::paintEvent(QPaintEvent* /*event*/) {
  const Look look = Look::Of(palette());
  QPainter painter(this);
  painter.fillRect(rect(), look.window);
  painter.fillRect(QRect(0, height() - 1, width(), 1), look.hairline);
}

}  // namespace kestrel
