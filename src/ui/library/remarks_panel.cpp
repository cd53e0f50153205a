// How remarks are shown, edited and read.
// SPDX-License-Identifier: MIT
#include "ui/library/remarks_panel.h"

#include <QCompleter>
#include <QEvent>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "analysis/horizontal.h"
#include "ui/chart/look.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr int kNoteRow = 5;

enum FieldNumber : std::size_t { kMachine, kPoint, kOrientation, kRpm, kTags };

QString Joined(const std::vector<std::string>& tags) {
  QStringList all;
  for (const std::string& tag : tags) all << QString::fromStdString(tag);
  return all.join(QStringLiteral(", "));
}

std::vector<std::string> TagsIn(const QString& text) {
  std::vector<std::string> tags;
  for (const QString& tag : text.split(',')) tags.push_back(tag.toStdString());
  return archive::CleanTags(std::move(tags));
}

QStringList Strings(const std::vector<std::string>& texts) {
  QStringList all;
  for (const std::string& text : texts) all << QString::fromStdString(text);
  return all;
}

}  // namespace

RemarksPanel::RemarksPanel(const QString& name, Of of)
    : name_(name),
      lblTitle_(new QLabel),
      lblFault_(new QLabel),
      cmdApply_(new FlatButton(name + "_apply",
                               of == Of::Site ? tr("For the next records") : tr("Take over"),
                               "check")) {
  setObjectName(name);
  lblTitle_->setObjectName(name + "_title");
  lblFault_->setObjectName(name + "_fault");
  lblFault_->setWordWrap(true);
  lblFault_->hide();
  LayOut(of);
  connect(cmdApply_, &QToolButton::clicked, this, &RemarksPanel::Enter);
  Show({}, {});
}

void RemarksPanel::LayOut(Of of) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(12, 8, 12, 8);
  column->setSpacing(4);
  column->addWidget(lblTitle_);
  form_ = new QGridLayout;
  form_->setHorizontalSpacing(8);
  form_->setVerticalSpacing(4);
  form_->setColumnStretch(1, 1);
  column->addLayout(form_);
  AddField(kMachine, tr("Machine"), tr("What is measured"), &archive::Remarks::machine);
  AddField(kPoint, tr("Point"), tr("Where on the machine the sensor sits"),
           &archive::Remarks::point);
  AddField(kOrientation, tr("Axes"), tr("Where the sensor's axes point"),
           &archive::Remarks::orientation);
  AddField(kRpm, tr("Speed, rpm"), tr("Speed of the shaft in revolutions a minute"), nullptr);
  for (const auto& [number, model] : {std::pair{kMachine, &machines_}, {kPoint, &points_}}) {
    auto* completer = new QCompleter(model, this);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    fields_[number].edit->setCompleter(completer);
  }
  fields_[kOrientation].edit->setPlaceholderText(tr("X radial, Z axial"));
  if (of == Of::Records) {
    AddField(kTags, tr("Tags"), tr("With commas between them"), nullptr);
    txtNote_ = new QPlainTextEdit;
    txtNote_->setObjectName(name_ + "_note");
    txtNote_->setAccessibleName(tr("Note"));
    txtNote_->setTabChangesFocus(true);
    txtNote_->setMinimumHeight(3 * fontMetrics().height());
    txtNote_->installEventFilter(this);
    form_->addWidget(MakeCaption(tr("Note"), txtNote_), kNoteRow, 0, Qt::AlignTop);
    form_->addWidget(txtNote_, kNoteRow, 1);
    form_->setRowStretch(kNoteRow, 1);
    column->setStretchFactor(form_, 1);
    connect(txtNote_, &QPlainTextEdit::textChanged, this, [this] {
      isNoteEdited_ = true;
      Touch();
    });
  }
  column->addWidget(lblFault_);
  column->addWidget(cmdApply_, 0, Qt::AlignRight);
  cmdApply_->setToolTip(tr("Enter"));
}

void RemarksPanel::AddField(std::size_t number, const QString& caption, const QString& tip,
                            std::string archive::Remarks::*text) {
  static constexpr std::array kNames{"_machine", "_point", "_orientation", "_rpm", "_tags"};
  auto* edit = new QLineEdit;
  edit->setObjectName(name_ + kNames[number]);
  edit->setAccessibleName(caption);
  fields_[number] = {edit, text};
  edit->setToolTip(tip);
  const auto row = static_cast<int>(number);
  form_->addWidget(MakeCaption(caption, edit), row, 0);
  form_->addWidget(edit, row, 1);
  connect(edit, &QLineEdit::textEdited, this, [this, number] {
    fields_[number].isEdited = true;
    Touch();
  });
  connect(edit, &QLineEdit::returnPressed, this, &RemarksPanel::Enter);
}

void RemarksPanel::SetChoices(const LibraryChoices& choices) {
  machines_.setStringList(Strings(choices.machines));
  points_.setStringList(Strings(choices.points));
}

QString RemarksPanel::RpmText(const archive::Remarks& remarks) const {
  return remarks.rpm ? locale().toString(*remarks.rpm, 'g', QLocale::FloatingPointShortest)
                     : QString();
}

void RemarksPanel::ShowField(Field& field, const QStringList& texts) {
  const bool isSame = std::all_of(texts.begin(), texts.end(),
                                  [&](const QString& text) { return text == texts.front(); });
  field.edit->setEnabled(!texts.isEmpty());
  field.edit->setText(isSame && !texts.isEmpty() ? texts.front() : QString());
  field.edit->setCursorPosition(0);
  if (&field != &fields_[kOrientation] || !isSame) {
    field.edit->setPlaceholderText(isSame ? QString() : tr("several"));
  }
  field.isEdited = false;
}

void RemarksPanel::Show(const QString& title, const std::vector<archive::Remarks>& remarks) {
  lblTitle_->setText(title);
  lblTitle_->setFont(LookFonts(font()).bold);
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (fields_[i].edit == nullptr) continue;
    QStringList texts;
    for (const archive::Remarks& of : remarks) {
      texts << (i == kRpm    ? RpmText(of)
                : i == kTags ? Joined(of.tags)
                             : QString::fromStdString(of.*fields_[i].text));
    }
    ShowField(fields_[i], texts);
  }
  if (txtNote_ != nullptr) {
    QStringList notes;
    for (const archive::Remarks& of : remarks) notes << QString::fromStdString(of.note);
    notes.removeDuplicates();
    const QSignalBlocker blocker(txtNote_);
    txtNote_->setEnabled(!remarks.empty());
    txtNote_->setPlainText(notes.size() == 1 ? notes.front() : QString());
    txtNote_->setPlaceholderText(notes.size() > 1 ? tr("several") : QString());
    isNoteEdited_ = false;
  }
  Touch();
}

bool RemarksPanel::IsEdited() const {
  return isNoteEdited_ ||
         std::any_of(fields_.begin(), fields_.end(), [](const Field& f) { return f.isEdited; });
}

void RemarksPanel::Settle() {
  for (Field& field : fields_) field.isEdited = false;
  isNoteEdited_ = false;
  Touch();
}

void RemarksPanel::Touch() {
  lblFault_->hide();
  cmdApply_->setEnabled(IsEdited());
}

archive::RemarksChange RemarksPanel::Change() const {
  const auto text = [this](std::size_t number) {
    return fields_[number].isEdited ? std::optional(fields_[number].edit->text().toStdString())
                                    : std::nullopt;
  };
  archive::RemarksChange change{
      .machine = text(kMachine), .point = text(kPoint), .orientation = text(kOrientation)};
  const QString speed = fields_[kRpm].edit->text().trimmed();
  const auto rpm = NumberIn(locale(), speed);
  if (fields_[kRpm].isEdited && (speed.isEmpty() || (rpm && analysis::IsSpeed(*rpm)))) {
    change.rpm = rpm;
  }
  if (fields_[kTags].isEdited) change.tags = TagsIn(fields_[kTags].edit->text());
  if (isNoteEdited_) change.note = txtNote_->toPlainText().toStdString();
  return change;
}

void RemarksPanel::Enter() {
  if (!IsEdited()) return;
  const QString speed = fields_[kRpm].edit->text().trimmed();
  if (fields_[kRpm].isEdited && !speed.isEmpty()) {
    const auto rpm = NumberIn(locale(), speed);
    if (!rpm || !analysis::IsSpeed(*rpm)) {
      lblFault_->setText(
          tr("\"%1\" is not a speed: a number above 0 to 10,000,000 rpm.").arg(speed));
      lblFault_->show();
      return;
    }
  }
  emit Entered();
}

// Ctrl+Enter in the note, where Enter alone begins a line.
bool RemarksPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == txtNote_ && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool isEnter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (isEnter && key->modifiers().testFlag(Qt::ControlModifier)) {
      Enter();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace kestrel
