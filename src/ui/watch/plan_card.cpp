// How a plan's text is checked as it is written.
// SPDX-License-Identifier: MIT
#include "ui/watch/plan_card.h"

#include <QSignalBlocker>
#include <QVBoxLayout>

#include "monitor/plan/bands_of.h"
#include "monitor/plan/plan_words.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

constexpr int kMostRows = 4;  // of mistakes that are seen at once

QString NameOf(const std::filesystem::path& file) {
  return QString::fromStdU16String(file.filename().u16string());
}

}  // namespace

PlanCard::PlanCard(Files& files)
    : files_(files), editor_(new PlanEditor), list_(new QListWidget), card_(nullptr) {
  auto* content = new QWidget;
  auto* rows = new QVBoxLayout(content);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(editor_, 1);
  rows->addWidget(list_);
  list_->setObjectName("lstMistakes");
  list_->setAccessibleName(tr("What is wrong with the plan"));
  list_->setFrameShape(QFrame::NoFrame);
  list_->setWordWrap(true);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->hide();
  card_ = new BenchCard("cardPlan", tr("Plan"), content);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(card_);
  connect(editor_, &QPlainTextEdit::textChanged, this, [this] {
    isSaved_ = false;
    Check();
    emit Changed();
  });
  const auto go = [this](const QListWidgetItem* item) {
    editor_->GoTo(static_cast<std::size_t>(std::max(item->data(Qt::UserRole).toInt(), 1)));
  };
  connect(list_, &QListWidget::itemActivated, this, go);
  connect(list_, &QListWidget::itemClicked, this, go);
}

void PlanCard::Show(const QString& text, const std::filesystem::path& file, bool isSaved) {
  file_ = file;
  {
    const QSignalBlocker blocker(editor_);
    editor_->setPlainText(text);
  }
  isSaved_ = isSaved;
  Check();
  emit Changed();
}

void PlanCard::SetSaved() {
  isSaved_ = true;
  ShowSummary();
  emit Changed();
}

void PlanCard::SetRunning(bool isRunning) {
  editor_->setReadOnly(isRunning);
}

void PlanCard::Check() {
  plan_.reset();
  auto read = monitor::PlanOf(Text().toStdString());
  if (auto* mistakes = std::get_if<monitor::Mistakes>(&read)) {
    mistakes_ = std::move(*mistakes);
  } else {
    plan_ = std::get<monitor::Plan>(std::move(read));
    const auto bands = monitor::BandsOf(*plan_, files_, file_.parent_path());
    const auto* wrong = std::get_if<monitor::Mistakes>(&bands);
    mistakes_ = wrong != nullptr ? *wrong : monitor::Mistakes();
    if (wrong != nullptr) plan_.reset();
  }
  editor_->SetMistakes(mistakes_);
  list_->clear();
  for (const monitor::Mistake& mistake : mistakes_) {
    const QString what = kestrel::Text(mistake.what);
    auto* item = new QListWidgetItem(
        mistake.line == 0 ? what : tr("Line %1: %2").arg(mistake.line).arg(what), list_);
    item->setData(Qt::UserRole, static_cast<int>(mistake.line));
    item->setToolTip(item->text());
  }
  const int seen = std::min<int>(list_->count(), kMostRows);
  list_->setFixedHeight(seen * (fontMetrics().height() + 8) + 4);
  list_->setVisible(seen > 0);
  ShowSummary();
}

// "pump7.plan, not saved: every 10 s, option 0, 5 g, hanning, 1 average".
void PlanCard::ShowSummary() {
  QString text = NameOf(file_);
  if (!isSaved_) text += tr(", not saved");
  if (plan_) {
    text += tr(": every %1").arg(kestrel::Text(monitor::PeriodText(plan_->every)));
    for (const monitor::Step& step : plan_->steps) text += ", " + kestrel::Text(NameOf(step));
  }
  card_->SetSummary(text);
}

void PlanCard::GoToFirstMistake() {
  if (mistakes_.empty()) return;
  editor_->GoTo(std::max<std::size_t>(mistakes_.front().line, 1));
}

}  // namespace kestrel
