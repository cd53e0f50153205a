// The controls of the register window.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmManualReg.h"

#include <QDir>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "device/register_fields.h"
#include "device/register_log.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "regmap/register_table.h"
#include "ui/parts/widgets.h"
#include "ui/windows/register_pages.h"

namespace kestrel {
namespace {

constexpr QPoint kOffsetTwips{600, 900};
constexpr int kListLines = 30;
constexpr int kMostCharacters = 80;  // a message must have room for them

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

QString TrueOrFalse(bool value) {
  return value ? "True" : "False";
}

QLabel* MakeBits(const char* name, const QString& toolTip) {
  QLabel* label = MakeLabel(name, "");
  label->setFont(FixedWidthFont());
  label->setToolTip(toolTip);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

// Keeps room for as many lines, so that nothing moves when its text changes.
QLabel* MakeNote(const char* name, int lines) {
  QLabel* label = MakeLabel(name, "");
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label->setMinimumHeight(lines * label->fontMetrics().lineSpacing());
  return label;
}

}  // namespace

frmManualReg::frmManualReg(Core& core, HandlerEdge& edge, QWidget* parent,
                           std::shared_ptr<PrintService> printers)
    : SecondaryWindow("frmManualReg", tr("Registers"), edge, parent, kOffsetTwips),
      core_(core),
      cmboRegister_(MakeComboBox("cmboRegister", tr("Register"), tr("Register to read and write"))),
      txtRegAddr_(MakeReadOut("txtRegAddr", tr("Address, hexadecimal"))),
      txtRegByte_(MakeReadOut("txtRegByte", tr("Group"))),
      txtRegRead_(MakeReadOut("txtRegRead", tr("Readable"))),
      txtRegWrite_(MakeReadOut("txtRegWrite", tr("Writable"))),
      txtRegHex_(MakeReadOut("txtRegHex", tr("Value read, hexadecimal"))),
      txtRegVal_(MakeReadOut("txtRegVal", tr("Value read, scaled"))),
      txtDataWrite_(new QLineEdit),
      lblReadBits_(MakeBits("lblReadBits", tr("Bits 15 to 0 of the word that was read"))),
      lblWriteBits_(MakeBits("lblWriteBits", tr("Bits 15 to 0 of the word to write"))),
      tblFields_(new FieldTable),
      lblNote_(MakeNote("lblNote", 2)),
      txtRegList_(new RegisterListBox),
      lblListNote_(MakeNote("lblListNote", 3)),
      cmdRead_(MakeButton("cmdRead", tr("Rea&d"), tr("Read the register"))),
      cmdWrite_(MakeButton("cmdWrite", tr("&Write"), tr("Write the value to the register"))),
      cmdReadAllReg_(MakeButton("cmdReadAllReg", tr("Read &all"), tr("Read all registers"))),
      cmdUpdateFlash_(MakeButton("cmdUpdateFlash", tr("&Update flash"),
                                 tr("Have the sensor store its settings in its flash memory"))),
      cmdWriteFile_(MakeButton("cmdWriteFile", tr("Save to &file"),
                               tr("Write the list to %1").arg(kRegisterLogName))),
      cmdCopy_(MakeButton("cmdCopy", tr("&Copy"), tr("Copy the selection, or the whole list"))),
      cmdPrint_(MakeButton("cmdPrint", tr("&Print..."), tr("Print the register and the list"))),
      cmdClose_(MakeButton("cmdClose", tr("Cl&ose"), tr("Close this window"))),
      logic_(core.registers, core.delay, core.seams.files, core.seams.locale, core.seams.messages,
             *this),
      printing_(std::move(printers), edge, core.seams.messages, core.seams.files) {
  txtDataWrite_->setObjectName("txtDataWrite");
  txtDataWrite_->setMaxLength(kMostCharacters);
  txtDataWrite_->setToolTip(tr("1 to 4 hexadecimal digits; Enter writes them"));
  cmboRegister_->setPlaceholderText(tr("Choose a register"));
  cmboRegister_->setMinimumContentsLength(16);
  cmdRead_->setDefault(true);
  LayOut();
  Connect();
}

QLayout* frmManualReg::RegisterRows() {
  auto* grid = new QGridLayout;
  const auto add = [&](int row, int column, const QString& caption, QWidget* control,
                       int columns = 1) {
    grid->addWidget(MakeCaption(caption, control), row, column);
    grid->addWidget(control, row, column + 1, 1, columns);
  };
  add(0, 0, tr("&Register"), cmboRegister_, 4);
  add(1, 0, tr("Address"), txtRegAddr_);
  add(1, 2, tr("Group"), txtRegByte_);
  add(2, 0, tr("Readable"), txtRegRead_);
  add(2, 2, tr("Writable"), txtRegWrite_);
  add(3, 0, tr("Hexadecimal"), txtRegHex_);
  add(3, 2, tr("Scaled"), txtRegVal_);
  grid->addWidget(cmdRead_, 3, 4);
  grid->addWidget(lblReadBits_, 4, 1, 1, 4);
  add(5, 0, tr("&Value to write"), txtDataWrite_, 3);
  grid->addWidget(cmdWrite_, 5, 4);
  grid->addWidget(lblWriteBits_, 6, 1, 1, 4);
  const int width = fontMetrics().horizontalAdvance("0.0000000") + 16;
  for (QLineEdit* box :
       {txtRegByte_, txtRegWrite_, txtRegVal_, txtRegAddr_, txtRegRead_, txtRegHex_}) {
    box->setMinimumWidth(width);
  }
  return grid;
}

QLayout* frmManualReg::LeftSide() {
  auto* left = new QVBoxLayout;
  left->addLayout(RegisterRows());
  left->addWidget(MakeCaption(tr("F&ields"), tblFields_));
  left->addWidget(tblFields_, 1);
  left->addWidget(lblNote_);
  return left;
}

QLayout* frmManualReg::RightSide() {
  txtRegList_->setMinimumHeight(kListLines * QFontMetrics(txtRegList_->font()).lineSpacing());
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {cmdReadAllReg_, cmdWriteFile_, cmdCopy_, cmdPrint_}) {
    buttons->addWidget(button);
  }
  auto* right = new QVBoxLayout;
  right->addWidget(MakeCaption(tr("Register &list"), txtRegList_));
  right->addWidget(txtRegList_, 1);
  right->addWidget(lblListNote_);
  right->addLayout(buttons);
  return right;
}

void frmManualReg::LayOut() {
  auto* sides = new QHBoxLayout;
  sides->addLayout(LeftSide(), 3);
  sides->addSpacing(fontMetrics().averageCharWidth());
  sides->addLayout(RightSide(), 2);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdUpdateFlash_);
  buttons->addStretch();
  buttons->addWidget(cmdClose_);
  auto* all = new QVBoxLayout(this);
  all->addLayout(sides, 1);
  all->addLayout(buttons);
}

void frmManualReg::Connect() {
  const auto clicked = &QPushButton::clicked;
  OnChosen(cmboRegister_, this, [this](int index) {
    ShowRegister(kNoRegister);
    Edge().Run("cmboRegister_Click", [this, index] { logic_.cmboRegister_Click(index); });
  });
  connect(txtDataWrite_, &QLineEdit::textChanged, this, [this] { ShowWords(); });
  On(cmdRead_, clicked, "cmdRead_Click", [this] { logic_.cmdRead_Click(Row()); });
  connect(cmdWrite_, clicked, this, [this] { Write(); });
  On(cmdReadAllReg_, clicked, "cmdReadAllReg_Click", [this] { logic_.cmdReadAllReg_Click(); });
  OnChange(cmdUpdateFlash_, clicked, "cmdUpdateFlash_Click",
           [this] { logic_.cmdUpdateFlash_Click(); });
  On(cmdWriteFile_, clicked, "cmdWriteFile_Click", [this] { logic_.cmdWriteFile_Click(); });
  On(cmdPrint_, clicked, "cmdPrint_Click", [this] { cmdPrint_Click(); });
  connect(cmdCopy_, clicked, this, [this] { txtRegList_->CopyList(); });
  connect(cmdClose_, clicked, this, &QWidget::hide);
}

void frmManualReg::showEvent(QShowEvent* event) {
  SecondaryWindow::showEvent(event);
  if (!event->spontaneous()) Edge().Run("Form_Load", [this] { Form_Load(); });
}

void frmManualReg::Form_Load() {
  {
    const QSignalBlocker quiet(cmboRegister_);
    cmboRegister_->clear();
    for (std::int16_t row = 0; row <= RegCount; ++row) {
      cmboRegister_->addItem(Text(RegisterEntry(row)));
    }
    cmboRegister_->setCurrentIndex(kNoRegister);
  }
  cmboRegister_->setFocus();
  logic_.cmboRegister_Click(kNoRegister);
  logic_.cmdReadAllReg_Click();
}

// Enter in the box of the value writes it; elsewhere it is the dialog's.
void frmManualReg::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && focusWidget() == txtDataWrite_) {
    Write();
  } else {
    SecondaryWindow::keyPressEvent(event);
  }
}

void frmManualReg::Write() {
  Change("cmdWrite_Click", [this] {
    logic_.cmdWrite_Click(Row(), txtDataWrite_->text().toStdString());
    if (cmdWrite_->isEnabled() && core_.registers.Reachable()) emit Written(Row());
  });
}

void frmManualReg::cmdPrint_Click() {
  const auto row = static_cast<std::int16_t>(Row());
  const auto pages = MakeDocument({.title = RegisterListTitle(core_.seams.locale),
                                   .row = row,
                                   .word = word_,
                                   .hex = txtRegHex_->text().toStdString(),
                                   .scaled = txtRegVal_->text().toStdString(),
                                   .list = logic_.Listing().text});
  const QDir folder(Text(FolderOfUserFiles(core_.seams.files).string()));
  printing_.Print(
      this, "cmdPrint_Click", pages, folder.filePath("Registers.pdf"),
      [this](const QString& where) { lblNote_->setText(tr("Printed to %1.").arg(where)); });
}

void frmManualReg::ShowRegister(std::int16_t row) {
  const bool chosen = row != kNoRegister;
  txtRegAddr_->setText(chosen ? Text(Hex(RegAddr[row])) : "");
  txtRegByte_->setText(chosen ? QString::number(RegGroup[row]) : "");
  txtRegRead_->setText(chosen ? TrueOrFalse(RegReadable[row]) : "");
  txtRegWrite_->setText(chosen ? TrueOrFalse(RegWritable[row]) : "");
  cmdRead_->setEnabled(chosen && RegReadable[row]);
  cmdWrite_->setEnabled(chosen && RegWritable[row]);
  txtRegHex_->clear();
  txtRegVal_->clear();
  txtDataWrite_->clear();
  word_.reset();
  ShowWords();
}

void frmManualReg::ShowValue(std::int16_t row) {
  txtRegHex_->setText(Text(Hex(RegValue)));
  txtRegVal_->setText(Text(GeneralNumber(RegScaled)));
  word_.reset();
  if (RegReadable[row]) word_ = RegValue & 0xFFFF;
  ShowWords();
}

void frmManualReg::ShowWords() {
  const std::string typed = txtDataWrite_->text().toStdString();
  const std::int32_t word = LeadingHexadecimalWord(typed);
  const auto toWrite = typed.empty() ? std::nullopt : std::optional<std::int32_t>(word);
  lblReadBits_->setText(word_ ? Text(BitText(*word_)) : "");
  QString bits = toWrite ? Text(BitText(*toWrite)) : "";
  if (toWrite && !HexadecimalWord(typed))
    bits += tr("  no such word: writes %1").arg(Text(Hex(word)));
  lblWriteBits_->setText(bits);
  tblFields_->ShowWords(static_cast<std::int16_t>(Row()), word_, toWrite);
}

void frmManualReg::ShowList(const RegisterListing& listing) {
  txtRegList_->ShowList(listing);
}

void frmManualReg::SetListNote(const std::string& text) {
  lblListNote_->setText(Text(text));
}

void frmManualReg::SetNote(const std::string& text) {
  lblNote_->setText(Text(text));
}

}  // namespace kestrel
