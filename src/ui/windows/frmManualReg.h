// The register window.
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <cstdint>
#include <memory>
#include <optional>

#include "connection/core.h"
#include "device/manual_register.h"
#include "ui/parts/field_table.h"
#include "ui/parts/page_printing.h"
#include "ui/parts/secondary_window.h"
#include "ui/windows/register_list_box.h"

namespace kestrel {

// Reads and writes any register by hand, and lists all of them.
class frmManualReg : public SecondaryWindow, public ManualRegisterView {
  Q_OBJECT

 public:
  frmManualReg(Core& core, HandlerEdge& edge, QWidget* parent,
               std::shared_ptr<PrintService> printers = std::make_shared<SystemPrintService>());

  void ShowRegister(std::int16_t row) override;
  void ShowValue(std::int16_t row) override;
  void ShowList(const RegisterListing& listing) override;
  void SetListNote(const std::string& text) override;
  void SetNote(const std::string& text) override;

 signals:
  // A register was written by hand; its row.
  void Written(int row);

 protected:
  void Refused(const QString& why) override { lblNote_->setText(why); }
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] QLayout* RegisterRows();
  [[nodiscard]] QLayout* LeftSide();
  [[nodiscard]] QLayout* RightSide();
  void LayOut();
  void Connect();

  void Form_Load();
  void cmdPrint_Click();
  void Write();
  void ShowWords();
  [[nodiscard]] int Row() const { return cmboRegister_->currentIndex(); }

  Core& core_;
  QComboBox* cmboRegister_;
  QLineEdit* txtRegAddr_;
  QLineEdit* txtRegByte_;
  QLineEdit* txtRegRead_;
  QLineEdit* txtRegWrite_;
  QLineEdit* txtRegHex_;
  QLineEdit* txtRegVal_;
  QLineEdit* txtDataWrite_;
  QLabel* lblReadBits_;
  QLabel* lblWriteBits_;
  FieldTable* tblFields_;
  QLabel* lblNote_;
  RegisterListBox* txtRegList_;
  QLabel* lblListNote_;
  QPushButton* cmdRead_;
  QPushButton* cmdWrite_;
  QPushButton* cmdReadAllReg_;
  QPushButton* cmdUpdateFlash_;
  QPushButton* cmdWriteFile_;
  QPushButton* cmdCopy_;
  QPushButton* cmdPrint_;
  QPushButton* cmdClose_;

  ManualRegister logic_;
  PagePrinting printing_;
  std::optional<std::int32_t> word_;  // as last read from the chosen register
};

}  // namespace kestrel
