// Records of the archive written into files that other programs understand.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <vector>

#include "exchange/exported.h"
#include "seams/files.h"
#include "ui/library/library.h"

namespace kestrel {

// Asks for the file, makes its content in the background and puts it in place whole.
class RecordExport : public QObject {
  Q_OBJECT

 public:
  // The window that asks outlives this.
  RecordExport(QWidget& window, const archive::Place& place, Files& files);

  void Ask(std::vector<ArchiveId> ids);
  void Write(std::vector<ArchiveId> ids, const QString& file, exchange::ExportFormat format);

  // "CSV with units (*.csv)", ...: what the dialog offers, of formats that can be written.
  [[nodiscard]] static QStringList Kinds();
  // The format of one of these kinds; the file's ending goes first where it names another one.
  [[nodiscard]] static exchange::ExportFormat FormatOf(const QString& kind, const QString& file);

 signals:
  void Said(const QString& text);

 private:
  QWidget& window_;
  Files& files_;
  Library library_;
};

}  // namespace kestrel
