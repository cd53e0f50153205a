// Showing the estimate and editing its limits.
// SPDX-License-Identifier: MIT
#include "ui/machine/severity_panel.h"

#include <QEvent>
#include <QFormLayout>
#include <QShowEvent>
#include <QVBoxLayout>
#include <string>

#include "ui/chart/look.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

constexpr const char* kOwn = "own, after ";

double& LimitOf(analysis::ZoneLimits& limits, std::size_t limit) {
  return limit == 0 ? limits.ab : limit == 1 ? limits.bc : limits.cd;
}

QString Listed(const std::vector<int>& options) {
  QStringList texts;
  for (const int option : options) texts << QString::number(option);
  const QString last = texts.takeLast();
  return texts.isEmpty() ? QStringLiteral("option ") + last
                         : QStringLiteral("options ") + texts.join(QStringLiteral(", ")) +
                               QStringLiteral(" and ") + last;
}

}  // namespace

SeverityPanel::SeverityPanel(StudyModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      tables_(analysis::SeverityTables()),
      heading_(new QLabel),
      picture_(new SeverityPicture),
      note_(new QLabel),
      capture_(new QPushButton),
      table_(new QComboBox),
      limits_{},
      source_(new QLabel) {
  setObjectName(QStringLiteral("severityPanel"));
  setAccessibleName(QStringLiteral("Severity estimate"));
  constexpr std::array kNames{"limitAB", "limitBC", "limitCD"};
  constexpr std::array kCaptions{"A/B", "B/C", "C/D"};
  for (std::size_t i = 0; i < limits_.size(); ++i) {
    const QString caption = QLatin1String(kCaptions[i]);
    limits_[i] = new NumberField(
        QLatin1String(kNames[i]), QStringLiteral("Limit ") + caption + QStringLiteral(", mm/s RMS"),
        {QStringLiteral("limit ") + caption, QStringLiteral("above 0 mm/s, rising from A/B to C/D"),
         [this, i](double value) { return analysis::AreLimits(With(i, value)); }});
    connect(limits_[i], &NumberField::Entered, this, [this, i](double v) { Take(i, v); });
  }
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
  LayOut();
  connect(&model_, &StudyModel::Changed, this, [this] {
    if (isVisible()) Refresh();
  });
  connect(table_, &QComboBox::activated, this, &SeverityPanel::ChooseTable);
  connect(capture_, &QPushButton::clicked, this,
          [this] { emit OptionWanted(picture_->View().missing.front()); });
  Refresh();
}

void SeverityPanel::LayOut() {
  heading_->setObjectName(QStringLiteral("severityHeading"));
  heading_->setWordWrap(true);
  note_->setObjectName(QStringLiteral("severityNote"));
  note_->setWordWrap(true);
  capture_->setObjectName(QStringLiteral("severityCapture"));
  source_->setObjectName(QStringLiteral("severitySource"));
  source_->setWordWrap(true);
  table_->setObjectName(QStringLiteral("severityTable"));
  table_->setAccessibleName(QStringLiteral("Zone limits"));
  table_->setToolTip(
      QStringLiteral("The table and class of machine that the zones are taken from"));
  for (const analysis::SeverityTable& table : tables_) {
    for (const analysis::ZoneLimits& row : table.rows) {
      table_->addItem(Text(table.name + ", " + row.name));
    }
  }
  table_->addItem(QStringLiteral("Own limits"));
  table_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("Limits"), table_);
  form->addRow(QStringLiteral("A/B, mm/s RMS"), limits_[0]);
  form->addRow(QStringLiteral("B/C, mm/s RMS"), limits_[1]);
  form->addRow(QStringLiteral("C/D, mm/s RMS"), limits_[2]);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(12, 8, 12, 8);
  column->addWidget(heading_);
  column->addWidget(picture_);
  column->addWidget(note_);
  column->addWidget(capture_, 0, Qt::AlignLeft);
  column->addLayout(form);
  column->addWidget(source_);
  column->addStretch();
}

analysis::ZoneLimits SeverityPanel::With(std::size_t limit, double value) const {
  analysis::ZoneLimits limits = model_.Choice().zones;
  LimitOf(limits, limit) = value;
  return limits;
}

// Limits of the user's tell which ones they were made of.
void SeverityPanel::Take(std::size_t limit, double value) {
  analysis::ZoneLimits limits = With(limit, value);
  if (!limits.name.starts_with(kOwn)) {
    limits.name = kOwn + table_->currentText().toStdString();
  }
  model_.Change([&](study::StudyChoice& choice) { choice.zones = limits; });
}

void SeverityPanel::ChooseTable(int index) {
  int at = 0;
  for (const analysis::SeverityTable& table : tables_) {
    for (const analysis::ZoneLimits& row : table.rows) {
      if (at++ != index) continue;
      model_.Change([&](study::StudyChoice& choice) { choice.zones = row; });
      return;
    }
  }
  Take(0, model_.Choice().zones.ab);
}

void SeverityPanel::ShowLimits() {
  analysis::ZoneLimits limits = model_.Choice().zones;
  int at = 0;
  int chosen = table_->count() - 1;
  std::string source =
      "Limits of your own" +
      (limits.name.starts_with(kOwn) ? ", after " + limits.name.substr(std::string(kOwn).size())
                                     : "") +
      ".";
  for (const analysis::SeverityTable& table : tables_) {
    for (const analysis::ZoneLimits& row : table.rows) {
      if (row == limits) {
        chosen = at;
        source = "Source: " + table.source;
      }
      ++at;
    }
  }
  table_->setCurrentIndex(chosen);
  source_->setText(Text(source));
  for (std::size_t i = 0; i < limits_.size(); ++i) {
    const double value = LimitOf(limits, i);
    if (limits_[i]->Number() != value) limits_[i]->SetNumber(value);
  }
}

void SeverityPanel::Refresh() {
  const Look look = Look::Of(palette());
  study::SeverityView view = study::SeverityOf(model_.Get());
  heading_->setFont(LookFonts(font()).bold);
  heading_->setText(Text(view.heading));
  note_->setText(Text(view.note));
  SetInk(*note_, look.muted);
  SetInk(*source_, look.muted);
  capture_->setVisible(!view.missing.empty());
  if (!view.missing.empty()) {
    capture_->setText(QStringLiteral("Capture at option %1").arg(view.missing.front()));
    capture_->setToolTip(
        QStringLiteral("Sets the sample-rate option, then takes one capture. An estimate needs ") +
        Listed(view.missing));
  }
  picture_->Show(std::move(view), model_.Choice().zones);
  ShowLimits();
}

void SeverityPanel::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Refresh();
}

void SeverityPanel::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) Refresh();
  QWidget::changeEvent(event);
}

}  // namespace kestrel
