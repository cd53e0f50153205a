// How two moments are asked for.
// SPDX-License-Identifier: MIT
#include "ui/trend/span_dialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <cmath>
#include <utility>

namespace kestrel {
namespace {

QString Tr(const char* text) {
  return QCoreApplication::translate("SpanDialog", text);
}

QDateTimeEdit* Moment(const char* name, const QString& accessibleName, double seconds) {
  auto* edit = new QDateTimeEdit(QDateTime::fromSecsSinceEpoch(std::llround(seconds)));
  edit->setObjectName(name);
  edit->setAccessibleName(accessibleName);
  edit->setToolTip(Tr("Local time"));
  edit->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
  edit->setCalendarPopup(true);
  return edit;
}

}  // namespace

SpanDialog::SpanDialog(const PlotRange& shown, Told told, QWidget* parent)
    : QDialog(parent),
      told_(std::move(told)),
      from_(Moment("dateTrendFrom", Tr("From"), shown.low)),
      until_(Moment("dateTrendUntil", Tr("Until"), shown.high)),
      lblWhyNot_(new QLabel) {
  setObjectName("askTrendSpan");
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(Tr("From when to when"));
  lblWhyNot_->setObjectName("lblSpanWhyNot");
  lblWhyNot_->setWordWrap(true);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setText(Tr("Show"));
  auto* form = new QFormLayout(this);
  form->addRow(Tr("From"), from_);
  form->addRow(Tr("Until"), until_);
  form->addRow(lblWhyNot_);
  form->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, [this] { Tell(); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
}

void SpanDialog::Tell() {
  const auto from = static_cast<double>(from_->dateTime().toSecsSinceEpoch());
  const auto until = static_cast<double>(until_->dateTime().toSecsSinceEpoch());
  if (!(from < until)) {
    lblWhyNot_->setText(Tr("A span ends after it begins. Choose a later moment for Until."));
    return;
  }
  told_({from, until});
  close();
}

}  // namespace kestrel
