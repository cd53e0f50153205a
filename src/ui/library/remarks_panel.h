// What the user knows of one or several records: machine, point, orientation, speed, tags, note.
// SPDX-License-Identifier: MIT
#pragma once

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStringListModel>
#include <QWidget>
#include <array>
#include <vector>

#include "archive/remarks_change.h"
#include "ui/library/library.h"
#include "ui/study/flat_button.h"
#include "ui/study/number_field.h"

namespace kestrel {

// Fields of several records that differ are empty and say so; only what is written is changed.
class RemarksPanel : public QWidget {
  Q_OBJECT

 public:
  enum class Of { Records, Site };  // of a site there is no note and no tag

  // `name` begins the object names of the fields.
  RemarksPanel(const QString& name, Of of);

  void Show(const QString& title, const std::vector<archive::Remarks>& remarks);
  void SetChoices(const LibraryChoices& choices);
  // What is written.
  [[nodiscard]] archive::RemarksChange Change() const;
  [[nodiscard]] bool IsEdited() const;
  // What was written has been taken over.
  void Settle();
  void FocusFirst() { fields_[0].edit->setFocus(); }

 signals:
  void Entered();  // Applied() is to be taken over

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Field {
    QLineEdit* edit = nullptr;
    std::string archive::Remarks::*text = nullptr;  // of the first three
    bool isEdited = false;
  };

  void LayOut(Of of);
  void AddField(std::size_t number, const QString& caption, const QString& tip,
                std::string archive::Remarks::*text);
  void ShowField(Field& field, const QStringList& texts);
  void Touch();
  void Enter();
  [[nodiscard]] QString RpmText(const archive::Remarks& remarks) const;

  QString name_;
  QGridLayout* form_ = nullptr;
  QLabel* lblTitle_;
  std::array<Field, 5> fields_;  // machine, point, orientation, rpm, tags
  QPlainTextEdit* txtNote_ = nullptr;
  bool isNoteEdited_ = false;
  QLabel* lblFault_;
  FlatButton* cmdApply_;
  QStringListModel machines_;
  QStringListModel points_;
};

}  // namespace kestrel
