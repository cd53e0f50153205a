// How a dock of the analyser is titled and framed.
// SPDX-License-Identifier: MIT
#include "ui/analyser/analyser_dock.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <utility>

#include "ui/chart/look.h"
#include "ui/parts/line_label.h"
#include "ui/study/flat_button.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

constexpr int kOwnButtons = 2;  // float and close

}  // namespace

AnalyserDock::AnalyserDock(const char* name, const QString& title, QWidget* content,
                           QWidget* parent)
    : QDockWidget(title, parent),
      bar_(new QWidget(this)),
      lblTitle_(new QLabel(title)),
      lblSummary_(new LineLabel) {
  setObjectName(name);
  lblTitle_->setObjectName(QString(name) + "_title");
  lblSummary_->setObjectName(QString(name) + "_summary");
  lblSummary_->setTextFormat(Qt::PlainText);
  auto* row = new QHBoxLayout(bar_);
  row->setContentsMargins(12, 0, 4, 0);
  row->setSpacing(4);
  row->addWidget(lblTitle_);
  row->addSpacing(8);
  row->addWidget(lblSummary_, 1);
  AddButton("_float", "float", tr("Float or dock"), [this] { setFloating(!isFloating()); });
  AddButton("_close", "close", tr("Close"), [this] { close(); });
  setTitleBarWidget(bar_);
  setWidget(content);
  Colour();
}

void AnalyserDock::SetSummary(const QString& summary) {
  lblSummary_->setText(summary);
  lblSummary_->setToolTip(summary);
}

void AnalyserDock::AddButton(const char* suffix, const char* icon, const QString& word,
                             std::function<void()> deed) {
  auto* button = new FlatButton(objectName() + suffix, {}, icon, bar_);
  button->setToolTip(word);
  button->setAccessibleName(windowTitle() + ": " + word);
  button->setFocusPolicy(Qt::TabFocus);
  auto* row = static_cast<QHBoxLayout*>(bar_->layout());
  row->insertWidget(titleBarWidget() == nullptr ? row->count() : row->count() - kOwnButtons,
                    button);
  connect(button, &QToolButton::clicked, this, std::move(deed));
}

void AnalyserDock::SetCopied(TextTable* table) {
  AddButton("_copy", "copy", tr("Copy the table (Ctrl+C)"), [table] { table->Copy(); });
}

void AnalyserDock::changeEvent(QEvent* event) {
  QDockWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) Colour();
}

void AnalyserDock::paintEvent(QPaintEvent* /*event*/) {
  const Look look = Look::Of(palette());
  QPainter painter(this);
  painter.fillRect(rect(), look.panel);
  painter.setPen(look.hairline);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  const int below = bar_->geometry().bottom();
  painter.drawLine(0, below, width(), below);
}

void AnalyserDock::Colour() {
  if (lblTitle_ == nullptr) return;
  lblTitle_->setFont(LookFonts(font()).bold);
  QPalette muted = palette();
  muted.setColor(QPalette::WindowText, Look::Of(palette()).muted);
  if (lblSummary_->palette() != muted) lblSummary_->setPalette(muted);
  bar_->setMinimumHeight(std::max(32, fontMetrics().height() + 12));
}

}  // namespace kestrel
