// Replacing the date and the identity, and putting the cross-reference table right.
// SPDX-License-Identifier: MIT
#include "ui/report/pdf_stamp.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <array>

namespace kestrel {
namespace {

constexpr qsizetype kEntry = 20;  // bytes of a line in the table

struct Span {
  qsizetype from = -1;
  qsizetype size = 0;
};

// Between the brackets that follow a name within a part of the file.
Span Between(const QByteArray& pdf, const QByteArray& name, char open, char close, Span part) {
  const qsizetype at = pdf.indexOf(name, part.from);
  if (at < 0 || at >= part.from + part.size) return {};
  const qsizetype from = pdf.indexOf(open, at) + 1;
  const qsizetype to = pdf.indexOf(close, from);
  if (from <= 0 || to < 0) return {};
  return {from, to - from};
}

// Of a number in the trailer or at the end.
qint64 NumberAfter(const QByteArray& pdf, const QByteArray& name) {
  const qsizetype at = pdf.lastIndexOf(name);
  if (at < 0) return -1;
  const QByteArray rest = pdf.mid(at + name.size(), 32).trimmed();
  qsizetype digits = 0;
  while (digits < rest.size() && rest[digits] >= '0' && rest[digits] <= '9') ++digits;
  bool ok = false;
  const qint64 number = rest.first(digits).toLongLong(&ok);
  return ok ? number : -1;
}

// The first line of the table.
qsizetype TableOf(const QByteArray& pdf) {
  const qint64 at = NumberAfter(pdf, "startxref");
  if (at < 0 || pdf.mid(at, 4) != "xref") return -1;
  const qsizetype second = pdf.indexOf('\n', at) + 1;  // "0 27"
  return pdf.indexOf('\n', second) + 1;
}

qint64 OffsetOf(const QByteArray& pdf, qsizetype table, qint64 object) {
  return pdf.mid(table + object * kEntry, 10).toLongLong();
}

// The table after `delta` bytes more have come in at `place`.
void MoveTable(QByteArray& pdf, qsizetype place, qsizetype delta) {
  const qsizetype start = pdf.lastIndexOf("startxref");
  const qint64 before = NumberAfter(pdf, "startxref");
  const qint64 at = before > place ? before + delta : before;
  const qsizetype table = pdf.indexOf('\n', pdf.indexOf('\n', at) + 1) + 1;
  for (qsizetype line = table; pdf.mid(line + 10, 1) == " "; line += kEntry) {
    const qint64 offset = pdf.mid(line, 10).toLongLong();
    if (offset <= place) continue;
    pdf.replace(line, 10, QByteArray::number(offset + delta).rightJustified(10, '0'));
  }
  const qsizetype number = pdf.indexOf('\n', start) + 1;
  pdf.replace(number, pdf.indexOf('\n', number) - number, QByteArray::number(at));
}

void StampDate(QByteArray& pdf, const QByteArray& name, const QByteArray& date) {
  const qsizetype table = TableOf(pdf);
  const qint64 info = NumberAfter(pdf, "/Info");
  if (table < 0 || info < 0) return;
  const qint64 from = OffsetOf(pdf, table, info);
  const Span value = Between(pdf, name, '(', ')', {from, pdf.indexOf("endobj", from) - from});
  if (value.from < 0) return;
  pdf.replace(value.from, value.size, date);
  MoveTable(pdf, value.from, date.size() - value.size);
}

void StampIdentity(QByteArray& pdf) {
  std::array<Span, 2> halves;
  Span part{pdf.lastIndexOf("trailer"), pdf.size()};
  if (part.from < 0) return;
  part.size -= part.from;
  const Span both = Between(pdf, "/ID", '[', ']', part);
  if (both.from < 0) return;
  Span rest = both;
  for (Span& half : halves) {
    half = Between(pdf, "<", '<', '>', rest);
    if (half.from < 0) return;
    for (qsizetype i = 0; i < half.size; ++i) pdf[half.from + i] = '0';
    rest = {half.from + half.size, both.from + both.size - half.from - half.size};
  }
  const QByteArray hash = QCryptographicHash::hash(pdf, QCryptographicHash::Md5).toHex();
  for (const Span& half : halves) {
    for (qsizetype i = 0; i < half.size; ++i) pdf[half.from + i] = hash[i % hash.size()];
  }
}

}  // namespace

QByteArray Stamped(QByteArray pdf, std::chrono::system_clock::time_point moment) {
  if (TableOf(pdf) < 0) return pdf;
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(moment.time_since_epoch());
  const QByteArray date = "D:" +
                          QDateTime::fromSecsSinceEpoch(seconds.count(), Qt::UTC)
                              .toString("yyyyMMddHHmmss")
                              .toLatin1() +
                          "Z";
  for (const char* name : {"/CreationDate", "/ModDate"}) StampDate(pdf, name, date);
  StampIdentity(pdf);
  return pdf;
}

}  // namespace kestrel
