// The controls of repeated captures.
// SPDX-License-Identifier: MIT
#include "ui/repeat/frmRepeat.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/parts/option_group.h"
#include "ui/parts/widgets.h"
#include "ui/repeat/repeat_text.h"

namespace kestrel {
namespace {

constexpr QPoint kPlaceTwips{900, 2400};
constexpr int kLongestText = 40;

QLineEdit* MakeBox(const char* name, const QString& accessibleName, const QString& toolTip,
                   const QString& text) {
  auto* box = new QLineEdit(text);
  box->setObjectName(name);
  box->setAccessibleName(accessibleName);
  box->setToolTip(toolTip);
  box->setAccessibleDescription(toolTip);
  box->setMaxLength(kLongestText);
  return box;
}

}  // namespace

frmRepeat::frmRepeat(RepeatRunner& runner, HandlerEdge& edge, QWidget* parent)
    : SecondaryWindow("frmRepeat", tr("Repeat captures"), edge, parent, kPlaceTwips),
      runner_(runner),
      optEvery_(MakeOption("optEvery", tr("&Every"),
                           tr("Begin captures at fixed times, as many seconds apart as stated"))),
      optAtOnce_(MakeOption("optAtOnce", tr("&At once"),
                            tr("Begin each capture as soon as the one before is done"))),
      optFollow_(MakeOption("optFollow", tr("&Follow the sensor's own timer"),
                            tr("Fetch each record that the sensor captures in timer mode"))),
      txtSeconds_(MakeBox("txtSeconds", tr("Seconds from one capture to the next"),
                          tr("0.1 to 604800 s, from start to start"), "10")),
      optTimes_(
          MakeOption("optTimes", tr("&Number of captures"), tr("End after this many captures"))),
      optUntilStopped_(MakeOption("optUntilStopped", tr("&Until stopped"),
                                  tr("Go on until Stop or Escape is pressed"))),
      txtTimes_(
          MakeBox("txtTimes", tr("How many captures"), tr("A number from 1 to 1000000"), "10")),
      lblRepeatState_(MakeLabel("lblRepeatState", "")),
      prgRepeat_(new QProgressBar),
      txtGaps_(new QPlainTextEdit),
      cmdRepeatStart_(MakeButton("cmdRepeatStart", tr("&Start"), tr("Begin to repeat captures"))),
      cmdRepeatStop_(
          MakeButton("cmdRepeatStop", tr("S&top"), tr("End; a capture under way is completed"))) {
  LayOut();
  Connect();
  ShowState();
}

void frmRepeat::LayOut() {
  QPushButton* close =
      MakeButton("cmdClose", tr("&Close"), tr("Close this window; captures go on being repeated"));
  close->setAutoDefault(false);
  cmdRepeatStop_->setAutoDefault(false);
  cmdRepeatStart_->setDefault(true);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdRepeatStart_);
  buttons->addWidget(cmdRepeatStop_);
  buttons->addStretch();
  buttons->addWidget(close);
  auto* all = new QVBoxLayout(this);
  for (QWidget* box : {HowOften(), HowMany(), HowFar()}) all->addWidget(box);
  all->addLayout(buttons);
  connect(close, &QPushButton::clicked, this, &QWidget::close);
}

QWidget* frmRepeat::HowOften() {
  auto* box = new QGroupBox(tr("How often"));
  auto* group = new QButtonGroup(box);
  for (QRadioButton* option : {optEvery_, optAtOnce_, optFollow_}) group->addButton(option);
  optEvery_->setChecked(true);
  auto* grid = new QGridLayout(box);
  grid->addWidget(optEvery_, 0, 0);
  grid->addWidget(txtSeconds_, 0, 1);
  grid->addWidget(new QLabel(tr("s, from start to start")), 0, 2);
  grid->addWidget(optAtOnce_, 1, 0, 1, 3);
  grid->addWidget(optFollow_, 2, 0, 1, 3);
  grid->setColumnStretch(2, 1);
  return box;
}

QWidget* frmRepeat::HowMany() {
  auto* box = new QGroupBox(tr("How many"));
  auto* group = new QButtonGroup(box);
  for (QRadioButton* option : {optTimes_, optUntilStopped_}) group->addButton(option);
  optTimes_->setChecked(true);
  auto* grid = new QGridLayout(box);
  grid->addWidget(optTimes_, 0, 0);
  grid->addWidget(txtTimes_, 0, 1);
  grid->addWidget(optUntilStopped_, 1, 0, 1, 2);
  grid->setColumnStretch(2, 1);
  return box;
}

// Room for the longest line and three gaps, so that nothing moves.
QWidget* frmRepeat::HowFar() {
  auto* box = new QGroupBox(tr("Progress"));
  lblRepeatState_->setWordWrap(true);
  lblRepeatState_->setTextFormat(Qt::PlainText);
  lblRepeatState_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  lblRepeatState_->setMinimumSize(48 * fontMetrics().averageCharWidth(),
                                  3 * fontMetrics().lineSpacing());
  prgRepeat_->setObjectName("prgRepeat");
  prgRepeat_->setAccessibleName(tr("Captures done"));
  prgRepeat_->setTextVisible(false);
  KeepPlaceWhileHidden(prgRepeat_);
  txtGaps_->setObjectName("txtGaps");
  txtGaps_->setAccessibleName(tr("Gaps, while the sensor was lost"));
  txtGaps_->setReadOnly(true);
  // A caret shows that it has the focus.
  txtGaps_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  txtGaps_->setTabChangesFocus(true);
  txtGaps_->setPlaceholderText(tr("No gaps"));
  txtGaps_->setFixedHeight(4 * fontMetrics().lineSpacing());
  auto* column = new QVBoxLayout(box);
  column->addWidget(lblRepeatState_);
  column->addWidget(prgRepeat_);
  column->addWidget(MakeCaption(tr("&Gaps"), txtGaps_));
  column->addWidget(txtGaps_);
  return box;
}

void frmRepeat::Connect() {
  const auto clicked = &QPushButton::clicked;
  connect(cmdRepeatStart_, clicked, this, [this] { Begin(); });
  connect(cmdRepeatStop_, clicked, this, [this] { runner_.Stop(); });
  connect(&runner_, &RepeatRunner::Changed, this, [this] { ShowState(); });
  // What is typed is what is meant.
  connect(txtSeconds_, &QLineEdit::textEdited, this, [this] { optEvery_->setChecked(true); });
  connect(txtTimes_, &QLineEdit::textEdited, this, [this] { optTimes_->setChecked(true); });
}

RepeatMode frmRepeat::Mode() const {
  if (optAtOnce_->isChecked()) return RepeatMode::AtOnce;
  return optFollow_->isChecked() ? RepeatMode::FollowTimer : RepeatMode::Every;
}

void frmRepeat::Begin() {
  const std::string seconds = txtSeconds_->text().toStdString();
  const std::string times = txtTimes_->text().toStdString();
  RepeatTexts texts{.mode = Mode(), .seconds = seconds, .times = {}};
  if (optTimes_->isChecked()) texts.times = times;
  const auto checked = CheckRepeat(texts);
  if (const auto* error = std::get_if<Error>(&checked)) return Refuse(*error);
  const QString why = runner_.Start(std::get<RepeatSettings>(checked));
  if (!why.isEmpty()) lblRepeatState_->setText(why);
}

void frmRepeat::Refuse(const Error& error) {
  lblRepeatState_->setText(QString::fromStdString(error.what + " " + error.cure));
  QLineEdit* box = error.where == kRepeatTimes ? txtTimes_ : txtSeconds_;
  box->setFocus();
  box->selectAll();
}

// The button that has the focus hands it over before it is disabled.
void frmRepeat::ShowState() {
  const bool running = runner_.Running();
  if (running && cmdRepeatStart_->hasFocus()) cmdRepeatStop_->setFocus();
  cmdRepeatStop_->setEnabled(running);
  if (!running && cmdRepeatStop_->hasFocus()) cmdRepeatStart_->setFocus();
  cmdRepeatStart_->setEnabled(!running);
  const auto progress = runner_.Progress();
  prgRepeat_->setVisible(progress && progress->settings.times);
  if (progress) ShowProgress(*progress);
}

void frmRepeat::ShowProgress(const RepeatProgress& progress) {
  const QString line = RepeatLine(progress);
  if (line != lblRepeatState_->text()) lblRepeatState_->setText(line);
  if (progress.settings.times) {
    prgRepeat_->setMaximum(*progress.settings.times);
    prgRepeat_->setValue(progress.done);
  }
  QStringList gaps;
  for (const RepeatGap& gap : progress.gaps) gaps << GapLine(gap);
  const QString text = gaps.join('\n');
  if (text != txtGaps_->toPlainText()) txtGaps_->setPlainText(text);
}

}  // namespace kestrel
