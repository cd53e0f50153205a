// The lines of a field table, filled from words.
// SPDX-License-Identifier: MIT
#include "ui/parts/field_table.h"

#include <QHeaderView>

#include "device/manual_register.h"
#include "device/register_fields.h"

namespace kestrel {
namespace {

enum Column { Bits, Title, Read, ToWrite, Columns };

std::vector<QString> Texts(std::int16_t row, FieldTable::Word word) {
  std::vector<QString> texts;
  if (!word) return texts;
  for (const cBitFieldProp& field : DescribeRegister(row, *word)) {
    texts.push_back(QString::fromStdString(FieldText(field)));
  }
  if (texts.empty()) texts.push_back(QString::number(SignedWord(row, *word)));
  return texts;
}

}  // namespace

FieldTable::FieldTable() : QTableWidget(0, Columns) {
  setObjectName("tblFields");
  setAccessibleName(tr("Fields of the register"));
  setHorizontalHeaderLabels({tr("Bits"), tr("Field"), tr("Read"), tr("To write")});
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  horizontalHeader()->setStretchLastSection(true);
  setEditTriggers(NoEditTriggers);
  setSelectionBehavior(SelectRows);
  setTabKeyNavigation(false);
  setShowGrid(false);
  setWordWrap(false);
}

void FieldTable::ShowWords(std::int16_t row, Word read, Word toWrite) {
  setRowCount(0);
  if (row == kNoRegister) return;
  const std::vector<cBitFieldProp> fields = DescribeRegister(row, 0);
  const std::vector<QString> left = Texts(row, read);
  const std::vector<QString> right = Texts(row, toWrite);
  const auto text = [](const std::vector<QString>& texts, std::size_t line) {
    return line < texts.size() ? texts[line] : QString();
  };
  for (std::size_t line = 0; line < fields.size(); ++line) {
    AddLine(QString::fromStdString(fields[line].BFRange()),
            QString::fromStdString(fields[line].BFTitle()), text(left, line), text(right, line));
  }
  if (fields.empty()) AddLine("15:0", tr("Decimal"), text(left, 0), text(right, 0));
}

// Stands out in bold where writing would change the field.
void FieldTable::AddLine(const QString& bits, const QString& title, const QString& read,
                         const QString& toWrite) {
  const int line = rowCount();
  insertRow(line);
  int column = 0;
  for (const QString& text : {bits, title, read, toWrite}) {
    auto* cell = new QTableWidgetItem(text);
    cell->setData(Qt::AccessibleTextRole, tr("%1, %2: %3")
                                              .arg(title, horizontalHeaderItem(column)->text(),
                                                   text.isEmpty() ? tr("nothing") : text));
    setItem(line, column++, cell);
  }
  if (toWrite.isEmpty() || read.isEmpty() || toWrite == read) return;
  QFont bold = font();
  bold.setBold(true);
  item(line, ToWrite)->setFont(bold);
}

}  // namespace kestrel
