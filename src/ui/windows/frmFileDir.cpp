// The data-log settings laid out, loaded and taken over.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmFileDir.h"

#include <QDesktopServices>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QUrl>

#include "logging/data_log.h"
#include "logging/data_log_text.h"
#include "logging/log_files.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

QRadioButton* MakeOption(const char* name, const QString& text, const QString& toolTip) {
  auto* option = new QRadioButton(text);
  option->setObjectName(name);
  option->setToolTip(toolTip);
  return option;
}

}  // namespace

frmFileDir::frmFileDir(Core& core, HandlerEdge& edge, QWidget* parent)
    : QDialog(parent),
      core_(core),
      edge_(edge),
      settings_(core.seams.messages),
      txtFileName_(new QLineEdit),
      lblFileNumber_(MakeLabel("lblFileNumber", "")),
      lblFileExtension_(MakeLabel("lblFileExtension", "")),
      lblInTheWay_(MakeLabel("lblInTheWay", "")),
      lblFolder_(MakeLabel("lblFolder", "")),
      opDataFormatLSB_(MakeOption("opDataFormatLSB", tr("&LSB counts"),
                                  tr("Raw words as the sensor gave them"))),
      OpDataFormatScaled_(
          MakeOption("OpDataFormatScaled", tr("&Scaled values"), tr("Acceleration in g"))),
      cmdReSetFileIndex_(
          MakeButton("cmdReSetFileIndex", tr("&Reset"), tr("Begin with file number 1 again"))),
      cmdOpenFolder_(
          MakeButton("cmdOpenFolder", tr("Open &folder"), tr("Show the folder of the files"))),
      cmdOK_(MakeButton("cmdOK", tr("&OK"), tr("Keep these settings"))),
      cmdCancel_(MakeButton("cmdCancel", tr("&Cancel"), tr("Take the changes back"))) {
  setObjectName("frmFileDir");
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("Data log"));
  txtFileName_->setObjectName("txtFileName");
  txtFileName_->setToolTip(tr("Each file's name is this text and a number"));
  lblFileExtension_->setAccessibleDescription(tr("Extension of the file names"));
  LayOut();
  Load();
  Connect();
}

void frmFileDir::LayOut() {
  auto* number = new QHBoxLayout;
  number->addWidget(lblFileNumber_, 1);
  number->addWidget(cmdReSetFileIndex_);
  auto* name = new QHBoxLayout;
  name->addWidget(txtFileName_, 1);
  name->addWidget(lblFileExtension_);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdOK_);
  buttons->addWidget(cmdCancel_);
  cmdOK_->setDefault(true);
  lblInTheWay_->setWordWrap(true);
  lblInTheWay_->setMinimumHeight(2 * fontMetrics().lineSpacing());  // nothing moves when it shows
  lblFolder_->setWordWrap(true);
  lblFolder_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* form = new QFormLayout(this);
  form->addRow(MakeCaption(tr("File &name"), txtFileName_), name);
  form->addRow(MakeCaption(tr("Next number"), lblFileNumber_), number);
  form->addRow("", lblInTheWay_);
  form->addRow(tr("Values"), opDataFormatLSB_);
  form->addRow("", OpDataFormatScaled_);
  form->addRow(tr("Folder"), lblFolder_);
  form->addRow("", cmdOpenFolder_);
  form->addRow(buttons);
  setMinimumWidth(46 * fontMetrics().averageCharWidth());
}

void frmFileDir::Load() {
  const DataLogFormat format = FormatFor(core_.seams.locale.DecimalMark());
  txtFileName_->setText(QString::fromStdString(DataLogName));
  lblFileExtension_->setText(QString::fromStdString(format.extension) + "  ");
  lblFolder_->setText(QString::fromStdString(FolderOfUserFiles(core_.seams.files).string()));
  (DataFormatLSB ? opDataFormatLSB_ : OpDataFormatScaled_)->setChecked(true);
  ShowFileNumber();
}

void frmFileDir::Connect() {
  connect(txtFileName_, &QLineEdit::textChanged, this, [this](const QString& text) {
    settings_.txtFileName_Change(text.toStdString());
    ShowFileNumber();
  });
  connect(cmdReSetFileIndex_, &QPushButton::clicked, this, [this] {
    settings_.cmdReSetFileIndex_Click();
    ShowFileNumber();
  });
  connect(opDataFormatLSB_, &QRadioButton::clicked, this, [this] { settings_.ChooseFormat(true); });
  connect(OpDataFormatScaled_, &QRadioButton::clicked, this,
          [this] { settings_.ChooseFormat(false); });
  connect(cmdOpenFolder_, &QPushButton::clicked, this,
          [this] { QDesktopServices::openUrl(QUrl::fromLocalFile(lblFolder_->text())); });
  connect(cmdOK_, &QPushButton::clicked, this, [this] {
    edge_.Run("cmdOK_Click", [this] {
      if (settings_.cmdOK_Click()) accept();
    });
  });
  connect(cmdCancel_, &QPushButton::clicked, this, &frmFileDir::reject);
}

void frmFileDir::ShowFileNumber() {
  lblFileNumber_->setText(QString::number(DataLogIndex));
  lblInTheWay_->setText(
      QString::fromStdString(WarningOfFilesInTheWay(core_.seams.files, core_.seams.locale)));
}

void frmFileDir::reject() {
  settings_.cmdCancel_Click();
  QDialog::reject();
}

}  // namespace kestrel
