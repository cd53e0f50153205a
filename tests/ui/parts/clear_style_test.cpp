// The style draws groups and lists as the toolkit's does, at less cost.
// SPDX-License-Identifier: MIT
#include "ui/parts/clear_style.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QGroupBox>
#include <QMenuBar>
#include <QPixmap>
#include <QStyleFactory>
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

QImage Drawn(QStyle& style, const QString& title) {
  QGroupBox box(title);
  box.setStyle(&style);
  box.resize(180, 90);
  return box.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

int Difference(QRgb a, QRgb b) {
  return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                   std::abs(qBlue(a) - qBlue(b))});
}

TEST(ClearStyle, AGroupLooksAsInTheToolkitsStyle) {
  ClearStyle ours;
  const std::unique_ptr<QStyle> theirs(QStyleFactory::create("fusion"));
  for (const char* title : {"Status", ""}) {
    const QImage mine = Drawn(ours, title);
    const QImage usual = Drawn(*theirs, title);
    ASSERT_EQ(mine.size(), usual.size());
    int most = 0;
    long differing = 0;
    for (int y = 0; y < mine.height(); ++y) {
      for (int x = 0; x < mine.width(); ++x) {
        const int difference = Difference(mine.pixel(x, y), usual.pixel(x, y));
        most = std::max(most, difference);
        differing += difference > 4 ? 1 : 0;
      }
    }
    // At other scales the toolkit stretches a picture of one pixel each, whose edges blur.
    const bool stretched = mine.devicePixelRatio() != 1;
    EXPECT_LE(most, stretched ? 32 : 24) << title;  // at the rounded corners
    EXPECT_LE(differing, stretched ? mine.width() * mine.height() / 20 : 32) << title;
  }
}

TEST(ClearStyle, AMenuBarWithoutRoomShowsTheToolkitsButton) {
  const ClearStyle ours;
  const std::unique_ptr<QStyle> theirs(QStyleFactory::create("fusion"));
  const auto picture = QStyle::SP_ToolBarHorizontalExtensionButton;
  const QIcon icon = ours.standardIcon(picture, nullptr, nullptr);
  const QIcon copy = icon;
  EXPECT_FALSE(icon.isNull());
  EXPECT_EQ(copy.pixmap(16, 16).toImage(),
            theirs->standardIcon(picture, nullptr, nullptr).pixmap(16, 16).toImage());
}

TEST(NumberBox, IsAsWideAsAListThatMeasuresEveryNumber) {
  for (const int last : {7, 15, 255}) {
    NumberBox quick(last);
    QComboBox usual;
    quick.addItems(Numbers(last));
    usual.addItems(Numbers(last));
    EXPECT_NEAR(quick.sizeHint().width(), usual.sizeHint().width(), 1) << last;
    EXPECT_EQ(quick.sizeHint().height(), usual.sizeHint().height()) << last;
    EXPECT_EQ(quick.minimumSizeHint(), quick.sizeHint()) << last;
  }
}

}  // namespace
}  // namespace kestrel
