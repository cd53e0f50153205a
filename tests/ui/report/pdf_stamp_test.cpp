// Dates and identities put into files as toolkits write them, wherever they stand.
// SPDX-License-Identifier: MIT
#include "ui/report/pdf_stamp.h"

#include "ui/report/painted_reports.h"

namespace kestrel {
namespace {

constexpr std::chrono::system_clock::time_point kMoment{std::chrono::seconds(1'763'750'000)};

// One empty page, its information first (before the objects that have to move) and an identity.
QByteArray MadeUpPdf(const QByteArray& date, const QByteArray& identity) {
  QByteArray pdf = "%PDF-1.4\n";
  std::vector<qsizetype> offsets;
  const QList<QByteArray> objects{"<< /Title (T) /CreationDate (" + date + ") /Producer (P) >>",
                                  "<< /Type /Catalog /Pages 3 0 R >>",
                                  "<< /Type /Pages /Kids [4 0 R] /Count 1 >>",
                                  "<< /Type /Page /Parent 3 0 R /MediaBox [0 0 100 100] >>"};
  for (qsizetype i = 0; i < objects.size(); ++i) {
    offsets.push_back(pdf.size());
    pdf += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  const qsizetype table = pdf.size();
  pdf += "xref\n0 5\n0000000000 65535 f \n";
  for (const qsizetype offset : offsets) {
    pdf += QByteArray::number(offset).rightJustified(10, '0') + " 00000 n \n";
  }
  pdf += "trailer\n<< /Size 5 /Info 1 0 R /Root 2 0 R";
  if (!identity.isEmpty()) pdf += "\n/ID [ <" + identity + "> <" + identity + "> ]";
  return pdf + " >>\nstartxref\n" + QByteArray::number(table) + "\n%%EOF\n";
}

std::string Text(const QByteArray& pdf) {
  return pdf.toStdString();
}

TEST(PdfStamp, DatesOfAnyLengthGiveTheSameSoundFile) {
  const QByteArray stamped = Stamped(MadeUpPdf("D:20261122074112Z", ""), kMoment);
  EXPECT_EQ(Stamped(MadeUpPdf("D:20270101000000+12'45'", ""), kMoment), stamped);
  EXPECT_EQ(Stamped(MadeUpPdf("D:2026", ""), kMoment), stamped);
  EXPECT_TRUE(stamped.contains("/CreationDate (D:20251121183320Z)"));
  const Read checked = ReadBy("qpdf", {"--check", "FILE"}, Text(stamped));
  EXPECT_EQ(checked.code, 0) << checked.error.toStdString();
}

TEST(PdfStamp, TheIdentityFollowsFromTheContent) {
  const QByteArray date = "D:20261122074112+01'00'";
  const QByteArray one = Stamped(MadeUpPdf(date, QByteArray(32, 'a')), kMoment);
  EXPECT_EQ(Stamped(MadeUpPdf(date, QByteArray(32, 'b')), kMoment), one);
  EXPECT_FALSE(one.contains(QByteArray(32, 'a')));
  const auto later = kMoment + std::chrono::hours(1);
  const QByteArray other = Stamped(MadeUpPdf(date, QByteArray(32, 'a')), later);
  EXPECT_NE(one.mid(one.indexOf("/ID"), 80), other.mid(other.indexOf("/ID"), 80));
  EXPECT_EQ(ReadBy("qpdf", {"--check", "FILE"}, Text(one)).code, 0);
}

TEST(PdfStamp, WhatIsNoSuchFileComesBackAsItIs) {
  for (const QByteArray& text : {QByteArray(), QByteArray("no file"), QByteArray("startxref\n99"),
                                 QByteArray("xref\nstartxref\n0\n%%EOF")}) {
    EXPECT_EQ(Stamped(text, kMoment), text);
  }
}

}  // namespace
}  // namespace kestrel
