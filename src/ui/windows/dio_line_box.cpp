// Building and showing a line's option groups.
// SPDX-License-Identifier: MIT
#include "ui/windows/dio_line_box.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/parts/option_group.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr std::array kFunctionCaptions{"General-purpose I/O", "Alarm output", "Capture trigger",
                                       "Busy output"};

QGroupBox* MakeFrame(const char* name, const QString& title) {
  auto* frame = new QGroupBox(title);
  frame->setObjectName(name);
  new QVBoxLayout(frame);
  return frame;
}

QString PolarityText(std::optional<bool> bit) {
  if (!bit) return "";
  return *bit ? QObject::tr("In the sensor: active high")
              : QObject::tr("In the sensor: active low");
}

QFont Bold(QFont font, bool bold) {
  font.setBold(bold);
  return font;
}

}  // namespace

// An option button and its handler.
struct Option {
  const char* name;
  const char* handler;
};

// The controls of a line: the two lines differ in the case of some names. The frames' mnemonics
// lead to the selected option, which writes nothing.
struct DioLineBox::Names {
  const char* line;
  const char* functionFrame;
  std::array<Option, 4> function;
  const char* polarityFrame;
  std::array<Option, 2> polarity;  // high, low
  const char* polarityBit;
  const char* gpioFrame;
  const char* gpioTitle;
  const char* directionFrame;
  const char* directionTitle;
  std::array<Option, 2> direction;  // input, output
  const char* levelFrame;
  const char* levelTitle;
  std::array<Option, 2> level;  // high, low
  const char* info;
};

const std::array<DioLineBox::Names, kDioLines> DioLineBox::kNames{
    {{"DIO1",
      "&Function",
      {{{"opFuncGPIO1", "opFuncGPIO1_Click"},
        {"opFuncAlarm1", "opFuncAlarm1_Click"},
        {"OpFuncCapTrig1", "OpFuncCapTrig1_Click"},
        {"OpFuncBusy1", "OpFuncBusy1_Click"}}},
      "&Polarity",
      {{{"opActiveHigh1", "opActiveHigh1_Click"}, {"opActiveLow1", "opActiveLow1_Click"}}},
      "lblPolarityBit1",
      "fraGPIO1",
      "GPIO1",
      "fraGDirection1",
      "&Direction",
      {{{"opGInput1", "opGInput1_Click"}, {"opGOutput1", "opGOutput1_Click"}}},
      "fraGLevel1",
      "Output &level",
      {{{"opGLevelHigh1", "opGLevelHigh1_Click"}, {"opGLevelLow1", "opGLevelLow1_Click"}}},
      "LbLGPIOinfo1"},
     {"DIO2",
      "F&unction",
      {{{"OpFuncGPIO2", "OpFuncGPIO2_Click"},
        {"OpFuncAlarm2", "OpFuncAlarm2_Click"},
        {"OpFuncCapTrig2", "OpFuncCapTrig2_Click"},
        {"OpFuncBusy2", "OpFuncBusy2_Click"}}},
      "P&olarity",
      {{{"OpActiveHigh2", "OpActiveHigh2_Click"}, {"OpActiveLow2", "OpActiveLow2_Click"}}},
      "lblPolarityBit2",
      "fraGPIO2",
      "GPIO2",
      "fraGDirection2",
      "D&irection",
      {{{"opGInput2", "opGInput2_Click"}, {"opGOutput2", "opGOutput2_Click"}}},
      "fraGLevel2",
      "Output le&vel",
      {{{"opGLevelHigh2", "opGLevelHigh2_Click"}, {"opGLevelLow2", "opGLevelLow2_Click"}}},
      "LbLGPIOinfo2"}}};

DioLineBox::DioLineBox(std::size_t line)
    : QGroupBox(kNames.at(line).line),
      functionGroup_(new QButtonGroup(this)),
      polarityGroup_(new QButtonGroup(this)),
      directionGroup_(new QButtonGroup(this)),
      levelGroup_(new QButtonGroup(this)) {
  BuildDio(kNames[line]);
  BuildGpio(kNames[line]);
  LayOut();
  EnableGpio(false);
}

void DioLineBox::BuildDio(const Names& names) {
  fraFunction_ = MakeFrame("", tr(names.functionFrame));
  fraFunction_->setAccessibleName(tr("%1 function").arg(names.line));
  for (std::size_t i = 0; i < function_.size(); ++i) {
    function_[i] =
        Add(fraFunction_, functionGroup_, names.function[i].name, tr(kFunctionCaptions[i]));
    dioOptions_.emplace_back(function_[i], names.function[i].handler);
  }
  fraPolarity_ = MakeFrame("", tr(names.polarityFrame));
  fraPolarity_->setAccessibleName(tr("%1 polarity").arg(names.line));
  activeHigh_ = Add(fraPolarity_, polarityGroup_, names.polarity[0].name, tr("Active high"));
  activeLow_ = Add(fraPolarity_, polarityGroup_, names.polarity[1].name, tr("Active low"));
  dioOptions_.emplace_back(activeHigh_, names.polarity[0].handler);
  dioOptions_.emplace_back(activeLow_, names.polarity[1].handler);
  lblPolarityBit_ = MakeLabel(names.polarityBit, "");
  lblPolarityBit_->setToolTip(tr("The polarity bit of DIO_CTRL as it was read"));
  fraPolarity_->layout()->addWidget(lblPolarityBit_);
}

void DioLineBox::BuildGpio(const Names& names) {
  fraGPIO_ = MakeFrame(names.gpioFrame, names.gpioTitle);
  fraGPIO_->setAccessibleName(names.gpioTitle);
  fraGDirection_ = MakeFrame(names.directionFrame, tr(names.directionTitle));
  fraGDirection_->setAccessibleName(tr("%1 direction").arg(names.gpioTitle));
  input_ = Add(fraGDirection_, directionGroup_, names.direction[0].name, tr("Input"));
  output_ = Add(fraGDirection_, directionGroup_, names.direction[1].name, tr("Output"));
  gpioOptions_.emplace_back(input_, names.direction[0].handler);
  gpioOptions_.emplace_back(output_, names.direction[1].handler);
  fraGLevel_ = MakeFrame(names.levelFrame, tr(names.levelTitle));
  fraGLevel_->setAccessibleName(tr("%1 output level").arg(names.gpioTitle));
  high_ = Add(fraGLevel_, levelGroup_, names.level[0].name, tr("High"));
  low_ = Add(fraGLevel_, levelGroup_, names.level[1].name, tr("Low"));
  gpioOptions_.emplace_back(high_, names.level[0].handler);
  gpioOptions_.emplace_back(low_, names.level[1].handler);
  LbLGPIOinfo_ = MakeLabel(names.info, tr("For general-purpose I/O only"));
}

void DioLineBox::LayOut() {
  auto* gpio = new QHBoxLayout;
  gpio->addWidget(fraGDirection_);
  gpio->addWidget(fraGLevel_);
  static_cast<QVBoxLayout*>(fraGPIO_->layout())->addLayout(gpio);
  // Outside its frame, where it stays readable when the frame is disabled.
  auto* all = new QVBoxLayout(this);
  for (QWidget* part :
       std::initializer_list<QWidget*>{fraFunction_, fraPolarity_, LbLGPIOinfo_, fraGPIO_}) {
    all->addWidget(part);
  }
  all->addStretch();
  const QFontMetrics bold(Bold(LbLGPIOinfo_->font(), true));
  LbLGPIOinfo_->setMinimumWidth(bold.horizontalAdvance(LbLGPIOinfo_->text()));
  lblPolarityBit_->setMinimumWidth(fontMetrics().horizontalAdvance(PolarityText(true)));
}

QRadioButton* DioLineBox::Add(QGroupBox* frame, QButtonGroup* group, const char* name,
                              const QString& caption) {
  QRadioButton* option = MakeOption(name, caption, "");
  // Several options of the window bear the same caption.
  option->setAccessibleName(title() + " " + caption);
  group->addButton(option);
  frame->layout()->addWidget(option);
  return option;
}

void DioLineBox::Show(const DioLine& line) {
  SelectOption(*functionGroup_,
               line.function ? function_.at(static_cast<std::size_t>(*line.function)) : nullptr);
  SelectPair(*polarityGroup_, line.activeHigh, activeHigh_, activeLow_);
  SelectPair(*directionGroup_, line.output, output_, input_);
  SelectPair(*levelGroup_, line.high, high_, low_);
  lblPolarityBit_->setText(PolarityText(line.polarityBit));
  EnableGpio(line.function == DioFunction::Gpio);
}

// Nothing is disabled in passing: the option that has the focus keeps it.
void DioLineBox::EnableGpio(bool enabled) {
  for (QGroupBox* frame : {fraGPIO_, fraGDirection_, fraGLevel_}) frame->setEnabled(enabled);
  for (QRadioButton* option : {input_, output_, high_, low_}) option->setEnabled(enabled);
  LbLGPIOinfo_->setFont(Bold(LbLGPIOinfo_->font(), !enabled));
}

DioLine DioLineBox::Line() const {
  DioLine line;
  for (std::size_t i = 0; i < function_.size(); ++i) {
    if (function_[i]->isChecked()) line.function = static_cast<DioFunction>(i);
  }
  line.activeHigh = SelectedOf(activeHigh_, activeLow_);
  line.output = SelectedOf(output_, input_);
  line.high = SelectedOf(high_, low_);
  return line;
}

}  // namespace kestrel
