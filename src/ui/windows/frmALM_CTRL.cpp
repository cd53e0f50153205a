// The controls of ALM_CTRL.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmALM_CTRL.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "ui/parts/mouse_up_option.h"
#include "ui/parts/option_group.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr QPoint kPlaceTwips{300, 3300};

}  // namespace

frmALM_CTRL::frmALM_CTRL(Core& core, HandlerEdge& edge, QWidget* parent)
    : SensorWindow("frmALM_CTRL", tr("Alarm control"), core.registers, edge, parent, kPlaceTwips),
      control_(*this),
      lblHexWord_(MakeLabel("lblHexWord", "")),
      cbxResponseDelay_(
          MakeComboBox("cbxResponseDelay", tr("Response delay"), tr("Response delay code"))),
      ckDIOenable_(MakeCheckBox("ckDIOenable", tr("Alarms on &DIO1 and DIO2"),
                                tr("Alarm 1 drives DIO1, alarm 2 drives DIO2"))),
      spectralEnable_{MakeCheckBox("ckXenable", tr("&X axis"), tr("Spectral alarm of the X axis")),
                      MakeCheckBox("ckYenable", tr("&Y axis"), tr("Spectral alarm of the Y axis")),
                      MakeCheckBox("ckZenable", tr("&Z axis"), tr("Spectral alarm of the Z axis"))},
      ckSystemAlarmEnable_(MakeCheckBox("ckSystemAlarmEnable", tr("System &alarm on"),
                                        tr("Watch the supply or the temperature"))),
      opGreaterThan_(MakeMouseUpOption("opGreaterThan", tr("&Greater than the limit"),
                                       tr("Alarm when the reading is above the limit"))),
      opLessThan_(MakeMouseUpOption("opLessThan", tr("&Less than the limit"),
                                    tr("Alarm when the reading is below the limit"))),
      opSupply_(MakeMouseUpOption("opSupply", tr("&Supply"), tr("Watch the supply voltage"))),
      opTemperature_(
          MakeMouseUpOption("opTemperature", tr("&Temperature"), tr("Watch the temperature"))),
      txtSAmag_(new QLineEdit),
      polarity_(new QButtonGroup(this)),
      source_(new QButtonGroup(this)) {
  txtSAmag_->setObjectName("txtSAmag");
  txtSAmag_->setToolTip(tr("Not sent to the sensor"));
  lblHexWord_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  cbxResponseDelay_->addItems(Numbers(15));
  cbxResponseDelay_->setCurrentIndex(-1);  // until it is read
  for (QRadioButton* option : {opGreaterThan_, opLessThan_}) polarity_->addButton(option);
  for (QRadioButton* option : {opSupply_, opTemperature_}) source_->addButton(option);
  auto* all = new QVBoxLayout;
  for (QWidget* box : {SpectralBox(), SystemBox(), OutputBox()}) all->addWidget(box);
  auto* word = new QHBoxLayout;
  word->addWidget(MakeCaption(tr("ALM_CTRL, hexadecimal"), lblHexWord_));
  word->addWidget(lblHexWord_, 1);
  all->addLayout(word);
  all->addStretch();
  LayOut(all);
  Connect();
}

QWidget* frmALM_CTRL::SpectralBox() {
  auto* box = new QGroupBox(tr("Spectral alarms"));
  box->setLayout(new QHBoxLayout);
  for (QCheckBox* axis : spectralEnable_) box->layout()->addWidget(axis);
  return box;
}

QWidget* frmALM_CTRL::SystemBox() {
  auto* box = new QGroupBox(tr("System alarm"));
  auto* note =
      new QLabel(tr("The limit typed here is not sent to the sensor.\n"
                    "Set it in register ALM_S_MAG, in the Registers window."));
  auto* grid = new QGridLayout(box);
  grid->setHorizontalSpacing(24);
  grid->addWidget(ckSystemAlarmEnable_, 0, 0, 1, 2);
  grid->addWidget(opSupply_, 1, 0);
  grid->addWidget(opTemperature_, 2, 0);
  grid->addWidget(opGreaterThan_, 1, 1);
  grid->addWidget(opLessThan_, 2, 1);
  grid->addWidget(MakeCaption(tr("Li&mit"), txtSAmag_), 3, 0);
  grid->addWidget(txtSAmag_, 3, 1);
  grid->addWidget(note, 4, 0, 1, 2);
  grid->setColumnStretch(1, 1);
  return box;
}

QWidget* frmALM_CTRL::OutputBox() {
  auto* box = new QGroupBox(tr("Response"));
  auto* row = new QHBoxLayout(box);
  row->addWidget(ckDIOenable_);
  row->addStretch();
  row->addWidget(MakeCaption(tr("D&elay"), cbxResponseDelay_));
  row->addWidget(cbxResponseDelay_);
  return box;
}

void frmALM_CTRL::Connect() {
  const auto changed = [this](auto* control, auto signal, const char* name) {
    OnUse(control, signal, name, [this] { control_.Changed(); });
  };
  changed(ckDIOenable_, &QCheckBox::clicked, "ckDIOenable_Click");
  changed(ckSystemAlarmEnable_, &QCheckBox::clicked, "ckSystemAlarmEnable_Click");
  changed(spectralEnable_[0], &QCheckBox::clicked, "ckXenable_Click");
  changed(spectralEnable_[1], &QCheckBox::clicked, "ckYenable_Click");
  changed(spectralEnable_[2], &QCheckBox::clicked, "ckZenable_Click");
  OnChosen(cbxResponseDelay_, this, [this](int /*index*/) {
    Change("cbxResponseDelay_Click", [this] { Use([this] { control_.Changed(); }); });
  });
  changed(opGreaterThan_, &MouseUpOption::Acted, "opGreaterThan_MouseUp");
  changed(opLessThan_, &MouseUpOption::Acted, "opLessThan_MouseUp");
  changed(opSupply_, &MouseUpOption::Acted, "opSupply_MouseUp");
  changed(opTemperature_, &MouseUpOption::Acted, "opTemperature_MouseUp");
  changed(txtSAmag_, &QLineEdit::textChanged, "txtSAmag_Change");
}

void frmALM_CTRL::ShowControls(const AlarmControls& controls) {
  const QSignalBlocker quiet(cbxResponseDelay_);
  lblHexWord_->setText(QString::fromStdString(controls.hexWord));
  ckDIOenable_->setChecked(controls.dioEnable);
  cbxResponseDelay_->setCurrentIndex(controls.responseDelay);
  for (std::size_t axis = 0; axis < spectralEnable_.size(); ++axis) {
    spectralEnable_[axis]->setChecked(controls.spectralEnable[axis]);
  }
  SelectPair(*polarity_, controls.greaterThan, opGreaterThan_, opLessThan_);
  ckSystemAlarmEnable_->setChecked(controls.systemEnable);
  SelectPair(*source_, controls.temperature, opTemperature_, opSupply_);
}

AlarmControls frmALM_CTRL::Controls() {
  AlarmControls controls;
  controls.dioEnable = ckDIOenable_->isChecked();
  controls.responseDelay = cbxResponseDelay_->currentIndex();
  for (std::size_t axis = 0; axis < spectralEnable_.size(); ++axis) {
    controls.spectralEnable[axis] = spectralEnable_[axis]->isChecked();
  }
  controls.greaterThan = SelectedOf(opGreaterThan_, opLessThan_);
  controls.systemEnable = ckSystemAlarmEnable_->isChecked();
  controls.temperature = SelectedOf(opTemperature_, opSupply_);
  return controls;
}

}  // namespace kestrel
