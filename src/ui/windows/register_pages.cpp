// The register window's pages put together.
// SPDX-License-Identifier: MIT
#include "ui/windows/register_pages.h"

#include <QTextCursor>
#include <QTextTable>

#include "device/manual_register.h"
#include "device/register_fields.h"
#include "numeric/number_format.h"
#include "regmap/register_table.h"
#include "ui/windows/register_list_box.h"

namespace kestrel {
namespace {

constexpr double kTextPoints = 9;
constexpr double kTitlePoints = 14;

QString Lines(const std::string& text) {
  return QString::fromStdString(text).remove('\r');
}

QTextCharFormat Bold() {
  QTextCharFormat format;
  format.setFontWeight(QFont::Bold);
  return format;
}

void InsertTitle(QTextCursor& cursor, const std::string& title) {
  const QString lines = Lines(title);
  QTextCharFormat format = Bold();
  format.setFontPointSize(kTitlePoints);
  cursor.insertText(lines.section('\n', 0, 0) + "\n", format);
  cursor.insertText(lines.section('\n', 1), {});
}

void InsertFields(QTextCursor& cursor, std::int16_t row, std::int32_t word) {
  const auto fields = DescribeRegister(row, word);
  if (fields.empty()) return;
  QTextTableFormat format;
  format.setBorder(0);
  format.setCellPadding(2);
  QTextTable* table = cursor.insertTable(static_cast<int>(fields.size()), 3, format);
  for (int line = 0; line < table->rows(); ++line) {
    const cBitFieldProp& field = fields[static_cast<std::size_t>(line)];
    int column = 0;
    for (const std::string& text : {field.BFRange(), field.BFTitle(), FieldText(field)}) {
      table->cellAt(line, column++).firstCursorPosition().insertText(QString::fromStdString(text));
    }
  }
  cursor.movePosition(QTextCursor::End);
}

void InsertRegister(QTextCursor& cursor, const RegisterPages& pages) {
  if (pages.row == kNoRegister) return;
  cursor.insertBlock();
  cursor.insertText(QString::fromStdString(RegisterEntry(pages.row)), Bold());
  cursor.insertText(QString("    address %1").arg(QString::fromStdString(Hex(RegAddr[pages.row]))),
                    {});
  if (pages.word) {
    cursor.insertText(QString("    hexadecimal %1    scaled %2    bits %3")
                          .arg(QString::fromStdString(pages.hex),
                               QString::fromStdString(pages.scaled),
                               QString::fromStdString(BitText(*pages.word))));
    InsertFields(cursor, pages.row, *pages.word);
  }
  cursor.insertBlock();
}

}  // namespace

std::shared_ptr<QTextDocument> MakeDocument(const RegisterPages& pages) {
  auto document = std::make_shared<QTextDocument>();
  document->setMetaInformation(QTextDocument::DocumentTitle, QObject::tr("Registers"));
  QFont font = document->defaultFont();
  font.setPointSizeF(kTextPoints);
  document->setDefaultFont(font);
  QFont fixed = FixedWidthFont();
  fixed.setPointSizeF(kTextPoints);
  QTextCursor cursor(document.get());
  InsertTitle(cursor, pages.title);
  InsertRegister(cursor, pages);
  QTextBlockFormat columns;
  columns.setTabPositions(ListColumns(QFontMetricsF(fixed)));
  cursor.insertBlock(columns);
  QTextCharFormat list;
  list.setFont(fixed);
  cursor.insertText(Lines(pages.list), list);
  return document;
}

}  // namespace kestrel
