// Pictures compared with approved ones by a measure that small shifts of letters do not disturb.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QColor>
#include <QDir>
#include <QImage>
#include <QString>
#include <algorithm>
#include <cmath>

namespace kestrel {

// Small shifts of letters do not count, wrong places and colours do: means over blocks of pixels.
inline double DifferenceOf(const QImage& a, const QImage& b, double ratio) {
  const QSize blocks = (QSizeF(a.size()) / (8 * ratio)).toSize();
  const QImage x = a.scaled(blocks, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  const QImage y = b.scaled(blocks, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  double largest = 0;
  for (int row = 0; row < blocks.height(); ++row) {
    for (int column = 0; column < blocks.width(); ++column) {
      const QColor one = x.pixelColor(column, row);
      const QColor other = y.pixelColor(column, row);
      const double off =
          (std::abs(one.redF() - other.redF()) + std::abs(one.greenF() - other.greenF()) +
           std::abs(one.blueF() - other.blueF())) /
          3.0;
      largest = std::max(largest, off);
    }
  }
  return largest;
}

// KESTREL_APPROVE names a folder that the pictures are written to, to be looked at and approved.
inline void ExpectApproved(const QImage& now, const QString& name, double ratio,
                           const QString& approvedFolder) {
  const QString folder = qEnvironmentVariable("KESTREL_APPROVE");
  if (!folder.isEmpty()) {
    ASSERT_TRUE(now.save(QDir(folder).filePath(name)));
    GTEST_SKIP() << "written to be looked at";
  }
  const QImage approved(QDir(approvedFolder).filePath(name));
  ASSERT_FALSE(approved.isNull()) << name.toStdString();
  ASSERT_EQ(now.size(), approved.size());
  EXPECT_LT(DifferenceOf(now, approved, ratio), 0.06) << name.toStdString();
}

}  // namespace kestrel
