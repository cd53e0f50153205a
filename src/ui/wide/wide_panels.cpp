// How severity and lines stand beside the wide spectrum.
// SPDX-License-Identifier: MIT
#include "ui/wide/wide_panels.h"

#include <QVBoxLayout>

#include "display/scene.h"

namespace kestrel {
namespace {

constexpr auto kLeft = Qt::AlignLeft;

}  // namespace

WideSeverity::WideSeverity()
    : lblHeading_(new QLabel),
      picture_(new SeverityPicture),
      note_(new BenchNote("lblWideSeverityNote")) {
  setObjectName("wideSeverity");
  lblHeading_->setObjectName("lblWideSeverity");
  lblHeading_->setWordWrap(true);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(12, 8, 12, 8);
  column->addWidget(lblHeading_);
  column->addWidget(picture_);
  column->addWidget(note_);
  column->addStretch(1);
}

void WideSeverity::Show(const study::SeverityView& view, const analysis::ZoneLimits& limits) {
  lblHeading_->setFont(LookFonts(font()).bold);
  lblHeading_->setText(Text(view.heading));
  note_->setText(Text(view.note));
  picture_->Show(view, limits);
}

WideLinesTable::WideLinesTable() : table_(new TextTable("tblWideLines")) {
  table_->setAccessibleName(tr("Lines, each once over all options"));
  table_->SetHint(tr("Lines that stand out of the noise will stand here."));
  table_->SetColumns({{.head = tr("Axis"), .alignment = kLeft},
                      {.head = tr("Hz")},
                      {.head = QStringLiteral("±"),
                       .alignment = kLeft,
                       .isMuted = true,
                       .dropped = 1,
                       .spoken = tr("Error bound, Hz")},
                      {.head = tr("g peak")},
                      {.head = tr("mm/s")},
                      {.head = tr("Opt."), .dropped = 2},
                      {.head = tr("Nearest"), .alignment = kLeft, .dropped = 3}});
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(table_);
  const auto tell = [this](const QModelIndex& index) {
    if (!index.isValid()) return;
    emit LineChosen(table_->Model().index(index.row(), 1).data(Qt::UserRole).toDouble());
  };
  connect(table_, &QTableView::clicked, this, tell);
  connect(table_, &QTableView::activated, this, tell);
}

void WideLinesTable::Show(const study::WideLines& lines) {
  const Look look = Look::Of(palette());
  std::vector<std::vector<TextCell>> rows;
  for (const study::WideLine& line : lines.rows) {
    rows.push_back(
        {{QString(QLatin1Char(Letter(line.axis))), {}, look.Ink(study::InkOf(line.axis))},
         {Text(line.frequency), line.hz},
         {Text(line.frequencyBound)},
         {Text(line.acceleration), line.peakG},
         {Text(line.velocity)},
         {QString::number(line.option), line.option},
         {line.unresolved ? tr("unresolved") : Text(line.nearest)}});
  }
  table_->Model().SetRows(std::move(rows));
}

}  // namespace kestrel
