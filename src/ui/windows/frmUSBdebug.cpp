// The controls of the adapter debug window.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmUSBdebug.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHideEvent>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "app/program_state.h"
#include "exchange/wire_vcd.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr int kNumberDigits = 7;

QRadioButton* MakeOption(int index, const QString& text, const QString& toolTip) {
  auto* option = new QRadioButton(text);
  option->setObjectName(ArrayName("optSpiChan", index));
  option->setToolTip(toolTip);
  return option;
}

bool IsEnter(const QEvent& event) {
  if (event.type() != QEvent::KeyPress) return false;
  const int key = static_cast<const QKeyEvent&>(event).key();
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

}  // namespace

frmUSBdebug::frmUSBdebug(Core& core, HandlerEdge& edge, QWidget* parent)
    : SecondaryWindow("frmUSBdebug", tr("USB adapter debug"), edge, parent, {4500, 4500}),
      core_(core),
      debug_(core.usb, core.seams.clock, core.seams.messages, *this),
      loop_(debug_, core.seams.clock, core.seams.messages, *this),
      adapters_(new AdapterPanel(core, edge)),
      frames_(new FrameTable),
      txtBits_(MakeReadOut("txtBits", tr("SPI bits as the board answers them"))),
      txtDelay_(MakeReadOut("txtDelay", tr("SPI delay as the board answers it"))),
      txtLoopDelay_(MakeEntry("txtLoopDelay", tr("SPI set-up value"),
                              tr("0 to 255; Enter sends it to the board"), kNumberDigits)),
      txtLoopWait_(MakeEntry("txtLoopWait", tr("Wait between transfers, milliseconds"),
                             tr("1 to 60000 ms from one transfer of the loop to the next"),
                             kNumberDigits)),
      cmdReadBits_(
          MakeButton("cmdReadBits", tr("Read &bits"), tr("Ask the board for its settings"))),
      cmdReadDelay_(
          MakeButton("cmdReadDelay", tr("Read d&elay"), tr("Ask the board for its settings"))),
      cmdPolarity_(MakeButton("cmdPolarity", kPositive,
                              tr("A note for the saved file; nothing is sent to the board"))),
      cmdWriteSpi_(MakeButton("cmdWriteSpi", tr("&Write SPI"),
                              tr("Send the frames once, in one transfer (Enter)"))),
      cmdLoop_(MakeButton("cmdLoop", kLoopCaption,
                          tr("Send the frames again and again, or stop (F6; Escape stops, too)"))),
      cmdSave_(MakeButton("cmdSave", tr("&Save"),
                          tr("Write what went over the wire to a text file of its own"))),
      cmdClear_(MakeButton("cmdClear", tr("&Clear"), tr("Empty the answers, counts and log"))),
      cmdExit_(MakeButton("cmdExit", tr("E&xit"), tr("Close this window"))),
      lblCounts_(MakeLabel("lblCounts", "")),
      lblSaved_(MakeLabel("lblSaved", "")) {
  LayOut();
  Connect();
  txtLoopWait_->setText("10");
  ShowCounts(0, 0);
  SetLoopCaption(kLoopCaption);
}

QWidget* frmUSBdebug::MakeBoardBox() {
  auto* box = new QGroupBox(tr("Settings of the board"));
  auto* form = new QFormLayout(box);
  form->addRow(cmdReadBits_, txtBits_);
  form->addRow(cmdReadDelay_, txtDelay_);
  form->addRow(MakeCaption(tr("SPI set-&up value"), txtLoopDelay_), txtLoopDelay_);
  form->addRow(MakeCaption(tr("&Polarity"), cmdPolarity_), cmdPolarity_);
  for (QLineEdit* shown : {txtBits_, txtDelay_}) {
    shown->setMinimumWidth(shown->fontMetrics().horizontalAdvance("00 00 hex  (000, 000)") + 20);
  }
  return box;
}

QWidget* frmUSBdebug::MakeChipSelectBox() {
  optSpiChan_ = {
      MakeOption(0, tr("Fo&r each frame"), tr("Command 13; used by every transfer of the program")),
      MakeOption(1, tr("&Once for all"), tr("Command 14; used by every transfer of the program"))};
  auto* box = new QGroupBox(tr("Chip select"));
  auto* all = new QHBoxLayout(box);
  all->addWidget(optSpiChan_[0]);
  all->addWidget(optSpiChan_[1]);
  return box;
}

QWidget* frmUSBdebug::MakeLoopBox() {
  auto* box = new QGroupBox(tr("Transfers"));
  auto* wait = new QHBoxLayout;
  wait->addWidget(txtLoopWait_);
  wait->addWidget(new QLabel(tr("ms")));
  wait->addStretch();
  auto* grid = new QGridLayout(box);
  grid->addWidget(cmdWriteSpi_, 0, 0);
  grid->addWidget(cmdLoop_, 0, 1);
  grid->addWidget(MakeCaption(tr("Wait in the &loop"), txtLoopWait_), 1, 0);
  grid->addLayout(wait, 1, 1);
  grid->addWidget(lblCounts_, 2, 0, 1, 2);
  return box;
}

void frmUSBdebug::LayOut() {
  auto* board = new QGroupBox(tr("Adapter"));
  auto* boardLayout = new QVBoxLayout(board);
  boardLayout->addWidget(adapters_);
  boardLayout->addWidget(adapters_->cmdFindEzUsb, 0, Qt::AlignLeft);
  auto* right = new QVBoxLayout;
  right->addWidget(MakeLoopBox());
  right->addWidget(MakeChipSelectBox());
  right->addWidget(MakeBoardBox());
  right->addStretch();
  auto* middle = new QHBoxLayout;
  middle->addWidget(frames_);
  middle->addLayout(right, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdSave_);
  buttons->addWidget(cmdClear_);
  buttons->addWidget(lblSaved_, 1);
  buttons->addWidget(cmdExit_);
  auto* all = new QVBoxLayout(this);
  all->addWidget(board);
  all->addLayout(middle, 1);
  all->addLayout(buttons);
  for (auto* button : findChildren<QPushButton*>()) button->setAutoDefault(false);
  cmdWriteSpi_->setDefault(true);
  lblSaved_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  lblSaved_->setWordWrap(true);
}

void frmUSBdebug::Connect() {
  const auto idle = [this](QPushButton* button, const char* name, auto handler) {
    connect(button, &QPushButton::clicked, this, [this, name, handler] {
      Change(name, handler);
      adapters_->ShowRecords();
    });
  };
  idle(cmdReadBits_, "cmdReadBits_Click", [this] { debug_.cmdReadBits_Click(); });
  idle(cmdReadDelay_, "cmdReadDelay_Click", [this] { debug_.cmdReadDelay_Click(); });
  idle(cmdWriteSpi_, "cmdWriteSpi_Click", [this] { debug_.cmdWriteSpi_Click(); });
  connect(cmdLoop_, &QPushButton::clicked, this, &frmUSBdebug::cmdLoop_Click);
  connect(cmdPolarity_, &QPushButton::clicked, this, &frmUSBdebug::cmdPolarity_Click);
  On(cmdSave_, &QPushButton::clicked, "cmdSave_Click", [this] { cmdSave_Click(); });
  connect(cmdClear_, &QPushButton::clicked, this, &frmUSBdebug::cmdClear_Click);
  connect(cmdExit_, &QPushButton::clicked, this, &QWidget::close);
  for (int index = 0; index < 2; ++index) {
    connect(optSpiChan_[static_cast<std::size_t>(index)], &QRadioButton::clicked, this,
            [this, index] {
              Change("optSpiChan_Click", [index] { AdapterDebug::optSpiChan_Click(index); });
              ShowChipSelect();
            });
  }
  for (QLineEdit* box : {txtLoopDelay_, txtLoopWait_}) box->installEventFilter(this);
  connect(adapters_, &AdapterPanel::InterfaceChosen, this, &frmUSBdebug::InterfaceChosen);
  tick_.setSingleShot(true);
  tick_.setTimerType(Qt::PreciseTimer);
  connect(&tick_, &QTimer::timeout, this, &frmUSBdebug::Tick);
}

void frmUSBdebug::Form_Activate() {
  adapters_->ShowRecords();
  ShowChipSelect();
  if (!txtLoopDelay_->isModified()) ShowSetup(std::to_string(UsbSpiSetupValue));
}

void frmUSBdebug::ShowChipSelect() {
  optSpiChan_[UsbCsPerWord ? 0 : 1]->setChecked(true);
}

// While another handler is at work, or waits for the user, the loop waits too.
void frmUSBdebug::Tick() {
  if (Edge().Resting()) {
    Edge().Run("cmdLoop_Click", [this] { loop_.Tick(true); });
  } else {
    loop_.Tick(false);
  }
}

// Stopping is never refused.
void frmUSBdebug::cmdLoop_Click() {
  if (loop_.Running()) {
    loop_.cmdLoop_Click();
  } else {
    Change("cmdLoop_Click", [this] { loop_.cmdLoop_Click(); });
  }
}

void frmUSBdebug::cmdPolarity_Click() {
  const std::string other = AdapterDebug::OtherPolarity(cmdPolarity_->text().toStdString());
  cmdPolarity_->setText(QString::fromStdString(other));
}

void frmUSBdebug::cmdSave_Click() {
  const std::filesystem::path file = debug_.cmdSave_Click(core_.seams.files, core_.seams.locale,
                                                          cmdPolarity_->text().toStdString());
  if (file.empty()) return;
  lblSaved_->setText(tr("Saved: %1").arg(QString::fromStdString(file.string())));
  SaveWaveform(std::filesystem::path(file).replace_extension(".vcd"));
}

// Beside the text, for logic analysers; settings of the adapter alone have none.
void frmUSBdebug::SaveWaveform(const std::filesystem::path& file) {
  const auto frames = exchange::FramesOf(debug_.Log());
  if (frames.empty()) return;
  core_.seams.files.ReplaceWhole(file, *exchange::WireVcd(frames));
  lblSaved_->setText(lblSaved_->text() +
                     tr(" and %1").arg(QString::fromStdString(file.filename().string())));
}

void frmUSBdebug::cmdClear_Click() {
  debug_.cmdClear_Click();
  lblSaved_->clear();
}

void frmUSBdebug::Form_QueryUnload() {
  if (loop_.Running()) loop_.Stop();
}

// The window may be shown without becoming active.
void frmUSBdebug::showEvent(QShowEvent* event) {
  Form_Activate();
  SecondaryWindow::showEvent(event);
}

void frmUSBdebug::hideEvent(QHideEvent* event) {
  if (!event->spontaneous()) Form_QueryUnload();
  SecondaryWindow::hideEvent(event);
}

// Escape stops the loop first; without one it closes the window.
void frmUSBdebug::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && loop_.Running()) {
    loop_.Stop();
    return;
  }
  SecondaryWindow::keyPressEvent(event);
}

// Enter in these boxes must not press the window's default button.
bool frmUSBdebug::eventFilter(QObject* watched, QEvent* event) {
  if (!IsEnter(*event)) return SecondaryWindow::eventFilter(watched, event);
  if (watched == txtLoopDelay_) {
    Change("txtLoopDelay_KeyDown",
           [this] { debug_.txtLoopDelay_KeyDown(txtLoopDelay_->text().toStdString()); });
  }
  return true;
}

FrameTexts frmUSBdebug::Frames() {
  return frames_->Frames();
}

void frmUSBdebug::PointAtFrame(int number) {
  frames_->PointAt(number);
}

void frmUSBdebug::ShowAnswers(const std::vector<std::string>& answers) {
  frames_->ShowAnswers(answers);
}

void frmUSBdebug::ShowBits(const std::string& text) {
  txtBits_->setText(QString::fromStdString(text));
}

void frmUSBdebug::ShowDelay(const std::string& text) {
  txtDelay_->setText(QString::fromStdString(text));
}

void frmUSBdebug::ShowSetup(const std::string& text) {
  txtLoopDelay_->setText(QString::fromStdString(text));
}

void frmUSBdebug::ShowCounts(std::int64_t transfers, std::int64_t errors) {
  lblCounts_->setText(tr("Transfers: %1   Errors: %2").arg(transfers).arg(errors));
}

std::string frmUSBdebug::LoopCaption() {
  return cmdLoop_->text().toStdString();
}

// A single write would change the frames that the loop repeats. A button's shortcut goes with its
// text.
void frmUSBdebug::SetLoopCaption(const std::string& caption) {
  cmdLoop_->setText(QString::fromStdString(caption));
  cmdLoop_->setShortcut(QKeySequence("F6"));
  cmdWriteSpi_->setEnabled(caption == kLoopCaption);
  adapters_->ShowRecords();
}

std::string frmUSBdebug::LoopWaitText() {
  return txtLoopWait_->text().toStdString();
}

void frmUSBdebug::TickAfter(std::chrono::milliseconds time) {
  tick_.start(time);
}

void frmUSBdebug::StopTicks() {
  tick_.stop();
}

}  // namespace kestrel
