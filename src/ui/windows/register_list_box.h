// The list of all registers in a fixed-width font.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>
#include <QString>
#include <QTextOption>
#include <set>

#include "device/register_list.h"

namespace kestrel {

// The fixed-width font of register lists and words.
[[nodiscard]] QFont FixedWidthFont();

// Tab stops, for a font, at which the columns of a register list stand one below the other.
[[nodiscard]] QList<QTextOption::Tab> ListColumns(const QFontMetricsF& font);

// The list of all registers. Lines that have changed carry a mark and a tinted ground. What is
// copied is the list's own text, with its line ends.
class RegisterListBox : public QPlainTextEdit {
 public:
  RegisterListBox();

  void ShowList(const RegisterListing& listing);

  // Copies the selection, or the whole list where nothing is selected.
  void CopyList();

  // Whether the list's line (0 the first register) stands out.
  [[nodiscard]] bool StandsOut(int line) const { return changed_.contains(line); }

 protected:
  [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void SetColumns();

  QString text_;  // with CR LF
  std::set<int> changed_;
};

}  // namespace kestrel
