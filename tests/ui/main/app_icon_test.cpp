// The icon that the program paints is the one of the installed files.
// SPDX-License-Identifier: MIT
#include "ui/main/app_icon.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>
#include <QtEndian>
#include <array>

#include "ui/approved_picture.h"

namespace kestrel {
namespace {

constexpr std::array kSizes{16, 24, 32, 48, 64, 128, 256};
const QString kIcoFile = KESTREL_ROOT "/packaging/windows/kestrel.ico";

// On paper, so that what shows through counts too.
QImage OnPaper(const QPixmap& picture) {
  QImage paper(picture.size(), QImage::Format_RGB32);
  paper.fill(Qt::white);
  QPainter painter(&paper);
  painter.drawPixmap(0, 0, picture);
  return paper;
}

QImage Painted(int size) {
  return AppIcon().pixmap(QSize(size, size), 1.0).toImage();
}

// An icon file for Windows: a head, an entry of 16 bytes for each size, the pictures as PNG.
QByteArray IcoOf(const std::vector<QByteArray>& pictures) {
  QByteArray head;
  const auto add = [&head](auto value) {
    head.append(reinterpret_cast<const char*>(&value), sizeof value);
  };
  add(qToLittleEndian<quint16>(0));
  add(qToLittleEndian<quint16>(1));
  add(qToLittleEndian(static_cast<quint16>(pictures.size())));
  quint32 place = 6 + 16 * static_cast<quint32>(pictures.size());
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    const auto side = static_cast<quint8>(kSizes.at(i) % 256);  // 0 stands for 256
    for (const quint8 byte : {side, side, quint8{0}, quint8{0}}) add(byte);
    add(qToLittleEndian<quint16>(1));
    add(qToLittleEndian<quint16>(32));
    add(qToLittleEndian(static_cast<quint32>(pictures[i].size())));
    add(qToLittleEndian(place));
    place += static_cast<quint32>(pictures[i].size());
  }
  for (const QByteArray& picture : pictures) head.append(picture);
  return head;
}

TEST(AppIconTest, TheInstalledPictureShowsWhatTheProgramPaints) {
  QSvgRenderer file(QString(KESTREL_ROOT "/packaging/linux/kestrel.svg"));
  ASSERT_TRUE(file.isValid());
  QPixmap picture(128, 128);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  file.render(&painter);
  painter.end();
  EXPECT_LT(DifferenceOf(OnPaper(picture), OnPaper(AppIcon().pixmap(QSize(128, 128), 1.0)), 1),
            0.05);
}

// KESTREL_APPROVE names the folder that the file is written to.
TEST(AppIconTest, TheIconFileForWindowsHoldsEverySize) {
  const QString folder = qEnvironmentVariable("KESTREL_APPROVE");
  if (!folder.isEmpty()) {
    std::vector<QByteArray> pictures;
    for (const int size : kSizes) {
      QBuffer picture;
      ASSERT_TRUE(Painted(size).save(&picture, "PNG"));
      pictures.push_back(picture.data());
    }
    QFile file(QDir(folder).filePath("kestrel.ico"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(IcoOf(pictures));
    GTEST_SKIP() << "written to be looked at";
  }
  QFile file(kIcoFile);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray all = file.readAll();
  ASSERT_EQ(qFromLittleEndian<quint16>(all.constData() + 4), kSizes.size());
  for (std::size_t i = 0; i < kSizes.size(); ++i) {
    SCOPED_TRACE(kSizes.at(i));
    const char* entry = all.constData() + 6 + 16 * i;
    const auto length = qFromLittleEndian<quint32>(entry + 8);
    const auto place = qFromLittleEndian<quint32>(entry + 12);
    QImage picture;
    ASSERT_TRUE(picture.loadFromData(all.mid(place, length), "PNG"));
    ASSERT_EQ(picture.size(), QSize(kSizes.at(i), kSizes.at(i)));
    EXPECT_LT(DifferenceOf(OnPaper(QPixmap::fromImage(picture)),
                           OnPaper(QPixmap::fromImage(Painted(kSizes.at(i)))), 0.25),
              0.05);
  }
}

TEST(AppIconTest, SmallIconsHaveThickerLines) {
  const auto share = [](int size) {
    const QImage picture = Painted(size);
    int green = 0;
    for (int y = 0; y < size; ++y) {
      for (int x = 0; x < size; ++x) {
        const QColor colour = picture.pixelColor(x, y);
        green += colour.green() > 120 && colour.red() < 100;
      }
    }
    return green / static_cast<double>(size * size);
  };
  EXPECT_GT(share(16), 1.2 * share(128));
}

}  // namespace
}  // namespace kestrel
