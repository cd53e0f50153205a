// A world in which pictures over an archive are always the same: font, theme, zone, records.
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QFont>
#include <ctime>
#include <vector>

#include "archive/archive.h"
#include "support/temporary_database.h"
#include "ui/chart/theme.h"
#include "ui/parts/clear_style.h"

namespace kestrel {

class ArchivePictures {
 public:
  explicit ArchivePictures(const std::vector<archive::NewRecord>& records) {
    qputenv("TZ", "UTC");
    tzset();
    ClearStyle::Use();
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(12);
    QApplication::setFont(font);
    archive::Archive(database_.Connect()).KeepAll(records);
  }
  ~ArchivePictures() {
    ApplyTheme(Theme::System);
    QApplication::setFont(before_);
    zone_.isNull() ? static_cast<void>(qunsetenv("TZ")) : static_cast<void>(qputenv("TZ", zone_));
    tzset();
  }
  ArchivePictures(const ArchivePictures&) = delete;
  ArchivePictures& operator=(const ArchivePictures&) = delete;

  [[nodiscard]] archive::Place Place() const { return {database_.Name()}; }

 private:
  QByteArray zone_ = qgetenv("TZ");
  QFont before_ = QApplication::font();
  TemporaryFile database_;
};

}  // namespace kestrel
