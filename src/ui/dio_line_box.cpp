// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "ui/dio_line_box.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/option_group.h"
#include "ui/widgets.h"

namespace kestrel {
namespace {

// The controls of a line. The two lines differ in the case of some names; the handlers are named
// after them.
struct Names {
  std::array<const char*, 4> function;
  std::array<const char*, 4> functionHandlers;
  std::array<const char*, 4> captions;  // with mnemonics that are used once in the window
  std::array<const char*, 2> polarity;  // high, low
  std::array<const char*, 2> polarityHandlers;
  std::array<const char*, 2> polarityCaptions;
  std::array<const char*, 2> direction;  // input, output
  std::array<const char*, 2> directionHandlers;
  std::array<const char*, 2> level;  // high, low
  std::array<const char*, 2> levelHandlers;
  const char* gpioFrame;
  const char* directionFrame;
  const char* levelFrame;
  const char* info;
};

constexpr std::array<Names, kDioLines> kNames{
    {{{"opFuncGPIO1", "opFuncAlarm1", "OpFuncCapTrig1", "OpFuncBusy1"},
      {"opFuncGPIO1_Click", "opFuncAlarm1_Click", "OpFuncCapTrig1_Click", "OpFuncBusy1_Click"},
      {"General-purpose &I/O", "&Alarm", "Capture &trigger", "&Busy"},
      {"opActiveHigh1", "opActiveLow1"},
      {"opActiveHigh1_Click", "opActiveLow1_Click"},
      {"Active &high", "Active &low"},
      {"opGInput1", "opGOutput1"},
      {"opGInput1_Click", "opGOutput1_Click"},
      {"opGLevelHigh1", "opGLevelLow1"},
      {"opGLevelHigh1_Click", "opGLevelLow1_Click"},
      "fraGPIO1",
      "fraGDirection1",
      "fraGLevel1",
      "LbLGPIOinfo1"},
     {{"OpFuncGPIO2", "OpFuncAlarm2", "OpFuncCapTrig2", "OpFuncBusy2"},
      {"OpFuncGPIO2_Click", "OpFuncAlarm2_Click", "OpFuncCapTrig2_Click", "OpFuncBusy2_Click"},
      {"General-p&urpose I/O", "Ala&rm", "Capture tri&gger", "Bus&y"},
      {"OpActiveHigh2", "OpActiveLow2"},
      {"OpActiveHigh2_Click", "OpActiveLow2_Click"},
      {"Acti&ve high", "Active lo&w"},
      {"opGInput2", "opGOutput2"},
      {"opGInput2_Click", "opGOutput2_Click"},
      {"opGLevelHigh2", "opGLevelLow2"},
      {"opGLevelHigh2_Click", "opGLevelLow2_Click"},
      "fraGPIO2",
      "fraGDirection2",
      "fraGLevel2",
      "LbLGPIOinfo2"}}};

}  // namespace

DioLineBox::DioLineBox(int line)
    : QGroupBox(tr("DIO%1").arg(line)),
      functionGroup_(new QButtonGroup(this)),
      polarityGroup_(new QButtonGroup(this)),
      directionGroup_(new QButtonGroup(this)),
      levelGroup_(new QButtonGroup(this)) {
  const Names& names = kNames.at(static_cast<std::size_t>(line - 1));
  QGroupBox* function = MakeFrame("", tr("Function"));
  for (std::size_t i = 0; i < function_.size(); ++i) {
    function_[i] = Add(function, functionGroup_, names.function[i], tr(names.captions[i]));
    dioOptions_.emplace_back(function_[i], names.functionHandlers[i]);
  }
  QGroupBox* polarity = MakeFrame("", tr("Polarity"));
  activeHigh_ = Add(polarity, polarityGroup_, names.polarity[0], tr(names.polarityCaptions[0]));
  activeLow_ = Add(polarity, polarityGroup_, names.polarity[1], tr(names.polarityCaptions[1]));
  dioOptions_.emplace_back(activeHigh_, names.polarityHandlers[0]);
  dioOptions_.emplace_back(activeLow_, names.polarityHandlers[1]);

  fraGPIO_ = MakeFrame(names.gpioFrame, tr("GPIO%1").arg(line));
  fraGDirection_ = MakeFrame(names.directionFrame, tr("Direction"));
  input_ = Add(fraGDirection_, directionGroup_, names.direction[0], tr("Input"));
  output_ = Add(fraGDirection_, directionGroup_, names.direction[1], tr("Output"));
  gpioOptions_.emplace_back(input_, names.directionHandlers[0]);
  gpioOptions_.emplace_back(output_, names.directionHandlers[1]);
  fraGLevel_ = MakeFrame(names.levelFrame, tr("Output level"));
  high_ = Add(fraGLevel_, levelGroup_, names.level[0], tr("High"));
  low_ = Add(fraGLevel_, levelGroup_, names.level[1], tr("Low"));
  gpioOptions_.emplace_back(high_, names.levelHandlers[0]);
  gpioOptions_.emplace_back(low_, names.levelHandlers[1]);

  LbLGPIOinfo_ = MakeLabel(names.info, tr("Used while the function is general-purpose I/O."));
  LbLGPIOinfo_->setWordWrap(true);
  fraGPIO_->layout()->addWidget(fraGDirection_);
  fraGPIO_->layout()->addWidget(fraGLevel_);
  fraGPIO_->layout()->addWidget(LbLGPIOinfo_);
  auto* all = new QVBoxLayout(this);
  for (QGroupBox* frame : {function, polarity, fraGPIO_}) all->addWidget(frame);
}

QGroupBox* DioLineBox::MakeFrame(const char* name, const QString& title) {
  auto* frame = new QGroupBox(title);
  frame->setObjectName(name);
  new QVBoxLayout(frame);
  return frame;
}

QRadioButton* DioLineBox::Add(QGroupBox* frame, QButtonGroup* group, const char* name,
                              const QString& caption) {
  QRadioButton* option = MakeOption(name, caption, "");
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
  EnableGpio(line.function == DioFunction::Gpio);
}

void DioLineBox::EnableGpio(bool enabled) {
  for (QGroupBox* frame : {fraGPIO_, fraGDirection_, fraGLevel_}) frame->setEnabled(enabled);
  for (QRadioButton* option : {input_, output_, high_, low_}) option->setEnabled(enabled);
  QFont font = LbLGPIOinfo_->font();
  font.setBold(!enabled);
  LbLGPIOinfo_->setFont(font);
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
