// The two line boxes between controls and words.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmDIOGPIO.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr QPoint kPlaceTwips{300, 2500};

}  // namespace

frmDIOGPIO::frmDIOGPIO(Core& core, HandlerEdge& edge, QWidget* parent)
    : SensorWindow("frmDIOGPIO", tr("DIO/GPIO"), core.registers, edge, parent, kPlaceTwips),
      logic_(core.registers, core.delay, *this),
      lines_{new DioLineBox(0), new DioLineBox(1)},
      lblDioWord_(MakeLabel("lblDioWord", "")),
      lblGpioWord_(MakeLabel("lblGpioWord", "")) {
  auto* columns = new QHBoxLayout;
  for (DioLineBox* line : lines_) {
    columns->addWidget(line);
    for (const auto& [option, name] : line->DioOptions()) {
      OnUse(option, &QRadioButton::clicked, name, [this] { logic_.DioChanged(); });
    }
    for (const auto& [option, name] : line->GpioOptions()) {
      OnUse(option, &QRadioButton::clicked, name, [this] { logic_.GpioChanged(); });
    }
  }
  auto* note =
      new QLabel(tr("After every reading the polarity buttons show Active high, whatever "
                    "the sensor holds.\nEach choice writes both lines as the buttons stand."));
  auto* all = new QVBoxLayout;
  all->addLayout(columns, 1);
  all->addWidget(note);
  all->addLayout(Words());
  LayOut(all);
}

QLayout* frmDIOGPIO::Words() {
  auto* words = new QHBoxLayout;
  words->addWidget(new QLabel(tr("Hexadecimal:")));
  words->addSpacing(12);
  const int width = fontMetrics().horizontalAdvance("0000  ");
  for (const auto& [caption, word] :
       {std::pair{tr("DIO_CTRL"), lblDioWord_}, std::pair{tr("GPIO_CTRL"), lblGpioWord_}}) {
    word->setTextInteractionFlags(Qt::TextSelectableByMouse);
    word->setMinimumWidth(width);
    words->addWidget(MakeCaption(caption, word));
    words->addWidget(word);
    words->addSpacing(12);
  }
  words->addStretch();
  return words;
}

void frmDIOGPIO::ShowControls(const DioControls& controls) {
  for (std::size_t i = 0; i < lines_.size(); ++i) lines_[i]->Show(controls.lines[i]);
  lblDioWord_->setText(QString::fromStdString(controls.dioCtrl));
  lblGpioWord_->setText(QString::fromStdString(controls.gpioCtrl));
}

DioControls frmDIOGPIO::Controls() {
  DioControls controls;
  for (std::size_t i = 0; i < lines_.size(); ++i) controls.lines[i] = lines_[i]->Line();
  return controls;
}

}  // namespace kestrel
