// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "ui/frmALM_CTRL.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/option_group.h"
#include "ui/widgets.h"

namespace kestrel {
namespace {

constexpr QPoint kPlaceTwips{300, 3300};

}  // namespace

frmALM_CTRL::frmALM_CTRL(Core& /*core*/, HandlerEdge& edge, QWidget* parent)
    : SecondaryWindow("frmALM_CTRL", tr("Alarm control"), edge, parent, kPlaceTwips),
      control_(*this),
      lblHexWord_(MakeLabel("lblHexWord", "")),
      cbxResponseDelay_(MakeComboBox("cbxResponseDelay", tr("Response delay"),
                                     tr("How many records in a row an alarm is held back"))),
      ckDIOenable_(MakeCheckBox("ckDIOenable", tr("Alarms on &DIO1 and DIO2"),
                                tr("Alarm 1 drives DIO1, alarm 2 drives DIO2"))),
      spectralEnable_{MakeCheckBox("ckXenable", tr("&X axis"), tr("Spectral alarm of the X axis")),
                      MakeCheckBox("ckYenable", tr("&Y axis"), tr("Spectral alarm of the Y axis")),
                      MakeCheckBox("ckZenable", tr("&Z axis"), tr("Spectral alarm of the Z axis"))},
      ckSystemAlarmEnable_(MakeCheckBox("ckSystemAlarmEnable", tr("System &alarm"),
                                        tr("Watch the supply or the temperature"))),
      opGreaterThan_(MakeOption("opGreaterThan", tr("&Greater than the limit"), "")),
      opLessThan_(MakeOption("opLessThan", tr("&Less than the limit"), "")),
      opSupply_(MakeOption("opSupply", tr("&Supply"), "")),
      opTemperature_(MakeOption("opTemperature", tr("&Temperature"), "")),
      txtSAmag_(new QLineEdit),
      polarity_(new QButtonGroup(this)),
      source_(new QButtonGroup(this)) {
  txtSAmag_->setObjectName("txtSAmag");
  lblHexWord_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  cbxResponseDelay_->addItems(Numbers(15));
  for (QRadioButton* option : {opGreaterThan_, opLessThan_}) polarity_->addButton(option);
  for (QRadioButton* option : {opSupply_, opTemperature_}) source_->addButton(option);
  LayOut();
  Connect();
}

QWidget* frmALM_CTRL::SpectralBox() {
  auto* box = new QGroupBox(tr("Spectral alarms"));
  auto* all = new QVBoxLayout(box);
  auto* axes = new QHBoxLayout;
  for (QCheckBox* axis : spectralEnable_) axes->addWidget(axis);
  axes->addStretch();
  all->addLayout(axes);
  auto* delay = new QHBoxLayout;
  delay->addWidget(MakeCaption(tr("&Response delay"), cbxResponseDelay_));
  delay->addWidget(cbxResponseDelay_);
  delay->addStretch();
  all->addLayout(delay);
  all->addWidget(ckDIOenable_);
  return box;
}

QWidget* frmALM_CTRL::SystemBox() {
  auto* box = new QGroupBox(tr("System alarm"));
  auto* all = new QVBoxLayout(box);
  all->addWidget(ckSystemAlarmEnable_);
  auto* options = new QGridLayout;
  options->addWidget(opSupply_, 0, 0);
  options->addWidget(opTemperature_, 1, 0);
  options->addWidget(opGreaterThan_, 0, 1);
  options->addWidget(opLessThan_, 1, 1);
  options->setHorizontalSpacing(24);
  all->addLayout(options);
  auto* limit = new QHBoxLayout;
  limit->addWidget(MakeCaption(tr("Li&mit"), txtSAmag_));
  limit->addWidget(txtSAmag_);
  all->addLayout(limit);
  auto* note = new QLabel(
      tr("A note only: the limit is not sent to the sensor from here. Set it as the word of "
         "ALM_S_MAG in the Registers window."));
  note->setWordWrap(true);
  all->addWidget(note);
  return box;
}

void frmALM_CTRL::LayOut() {
  QPushButton* close = MakeButton("cmdClose", tr("&Close"), tr("Close this window"));
  close->setAutoDefault(false);
  auto* last = new QHBoxLayout;
  last->addWidget(new QLabel(tr("ALM_CTRL, hexadecimal")));
  last->addWidget(lblHexWord_);
  last->addStretch();
  last->addWidget(close);
  auto* all = new QVBoxLayout(this);
  all->addWidget(SpectralBox());
  all->addWidget(SystemBox());
  all->addLayout(last);
  connect(close, &QPushButton::clicked, this, &QWidget::close);
}

void frmALM_CTRL::Connect() {
  const auto changed = [this] { control_.Changed(); };
  On(ckDIOenable_, &QCheckBox::clicked, "ckDIOenable_Click", changed);
  On(ckSystemAlarmEnable_, &QCheckBox::clicked, "ckSystemAlarmEnable_Click", changed);
  On(spectralEnable_[0], &QCheckBox::clicked, "ckXenable_Click", changed);
  On(spectralEnable_[1], &QCheckBox::clicked, "ckYenable_Click", changed);
  On(spectralEnable_[2], &QCheckBox::clicked, "ckZenable_Click", changed);
  On(cbxResponseDelay_, &QComboBox::currentIndexChanged, "cbxResponseDelay_Click", changed);
  On(opGreaterThan_, &QRadioButton::clicked, "opGreaterThan_MouseUp", changed);
  On(opLessThan_, &QRadioButton::clicked, "opLessThan_MouseUp", changed);
  On(opSupply_, &QRadioButton::clicked, "opSupply_MouseUp", changed);
  On(opTemperature_, &QRadioButton::clicked, "opTemperature_MouseUp", changed);
  On(txtSAmag_, &QLineEdit::textChanged, "txtSAmag_Change", changed);
}

void frmALM_CTRL::Form_Activate() {
  control_.Display_AlmCtrl();
}

void frmALM_CTRL::ShowControls(const std::string& hexWord, const AlarmControls& controls) {
  lblHexWord_->setText(QString::fromStdString(hexWord));
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
