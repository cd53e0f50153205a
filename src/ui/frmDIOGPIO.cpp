// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "ui/frmDIOGPIO.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/widgets.h"

namespace kestrel {
namespace {

constexpr QPoint kPlaceTwips{300, 2500};

}  // namespace

frmDIOGPIO::frmDIOGPIO(Core& core, HandlerEdge& edge, QWidget* parent)
    : SecondaryWindow("frmDIOGPIO", tr("DIO/GPIO"), edge, parent, kPlaceTwips),
      logic_(core.registers, core.delay, *this),
      lines_{new DioLineBox(1), new DioLineBox(2)},
      lblDioWord_(MakeLabel("lblDioWord", "")),
      lblGpioWord_(MakeLabel("lblGpioWord", "")) {
  LayOut();
  for (DioLineBox* line : lines_) {
    for (const auto& [option, name] : line->DioOptions()) {
      On(option, &QRadioButton::clicked, name, [this] { logic_.DioChanged(); });
    }
    for (const auto& [option, name] : line->GpioOptions()) {
      On(option, &QRadioButton::clicked, name, [this] { logic_.GpioChanged(); });
    }
  }
}

void frmDIOGPIO::LayOut() {
  auto* columns = new QHBoxLayout;
  for (DioLineBox* line : lines_) columns->addWidget(line);
  auto* note = new QLabel(
      tr("Polarity always shows as active high after reading; the words below tell what the sensor "
         "holds: bits 0 and 1 of DIO_CTRL, 1 for active high."));
  note->setWordWrap(true);
  auto* last = new QHBoxLayout;
  for (QLabel* word : {lblDioWord_, lblGpioWord_}) {
    word->setTextInteractionFlags(Qt::TextSelectableByMouse);
  }
  QPushButton* close = MakeButton("cmdClose", tr("&Close"), tr("Close this window"));
  close->setAutoDefault(false);
  last->addWidget(new QLabel(tr("DIO_CTRL")));
  last->addWidget(lblDioWord_);
  last->addSpacing(18);
  last->addWidget(new QLabel(tr("GPIO_CTRL")));
  last->addWidget(lblGpioWord_);
  last->addWidget(new QLabel(tr("hexadecimal")));
  last->addStretch();
  last->addWidget(close);
  auto* all = new QVBoxLayout(this);
  all->addLayout(columns);
  all->addWidget(note);
  all->addLayout(last);
  connect(close, &QPushButton::clicked, this, &QWidget::close);
}

void frmDIOGPIO::Form_Activate() {
  logic_.ReadDIOGPIO();
}

void frmDIOGPIO::ShowLines(const DioLines& lines) {
  for (std::size_t i = 0; i < lines.size(); ++i) lines_[i]->Show(lines[i]);
}

void frmDIOGPIO::ShowWords(const std::string& dioCtrl, const std::string& gpioCtrl) {
  lblDioWord_->setText(QString::fromStdString(dioCtrl));
  lblGpioWord_->setText(QString::fromStdString(gpioCtrl));
}

DioLines frmDIOGPIO::Lines() {
  return {lines_[0]->Line(), lines_[1]->Line()};
}

}  // namespace kestrel
