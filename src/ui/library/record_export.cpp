// How the file and its format are asked for, and how the writing went.
// SPDX-License-Identifier: MIT
#include "ui/library/record_export.h"

#include <QFileDialog>
#include <QFileInfo>
#include <utility>

#include "exchange/kept_note.h"
#include "numeric/runtime_error.h"
#include "ui/library/keeper_text.h"

namespace kestrel {
namespace {

using exchange::ExportFormat;

QString NameFor(ExportFormat format) {
  switch (format) {
    case ExportFormat::Uff58:
      return RecordExport::tr("Universal file 58, text");
    case ExportFormat::Uff58b:
      return RecordExport::tr("Universal file 58, binary");
    case ExportFormat::Wav:
      return RecordExport::tr("WAV, one time record");
    case ExportFormat::Mat:
      return RecordExport::tr("MAT, level 5");
    case ExportFormat::Csv:
      return RecordExport::tr("CSV with units and settings");
    default:
      return QStringLiteral("JSON");
  }
}

QString EndingOf(ExportFormat format) {
  return QString::fromStdString(exchange::ExtensionOf(format)).mid(1);
}

QString KindOf(ExportFormat format) {
  return QStringLiteral("%1 (*.%2)").arg(NameFor(format), EndingOf(format));
}

}  // namespace

RecordExport::RecordExport(QWidget& window, const archive::Place& place, Files& files)
    : window_(window), files_(files), library_(place) {
  connect(&library_, &Library::Failed, this, [this] { emit Said(library_.Trouble()); });
}

QStringList RecordExport::Kinds() {
  QStringList kinds;
  for (const ExportFormat format : exchange::kExportFormats) {
    if (exchange::IsBuiltIn(format)) kinds << KindOf(format);
  }
  return kinds;
}

ExportFormat RecordExport::FormatOf(const QString& kind, const QString& file) {
  const QString ending = QFileInfo(file).suffix().toLower();
  ExportFormat chosen = ExportFormat::Csv;
  for (const ExportFormat format : exchange::kExportFormats) {
    if (KindOf(format) == kind) chosen = format;
  }
  if (ending.isEmpty() || ending == EndingOf(chosen)) return chosen;
  for (const ExportFormat format : exchange::kExportFormats) {
    if (ending == EndingOf(format)) return format;
  }
  return chosen;
}

void RecordExport::Ask(std::vector<ArchiveId> ids) {
  if (ids.empty()) return;
  const auto count = static_cast<std::int64_t>(ids.size());
  auto* dialog =
      new QFileDialog(&window_, tr("Export %1").arg(CountOf(count, tr("record"), tr("records"))));
  dialog->setObjectName("askRecordExport");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setNameFilters(Kinds());
  dialog->setDefaultSuffix(EndingOf(FormatOf(Kinds().constFirst(), {})));
  connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString& kind) {
    dialog->setDefaultSuffix(EndingOf(FormatOf(kind, {})));
  });
  connect(dialog, &QFileDialog::fileSelected, this,
          [this, dialog, ids = std::move(ids)](const QString& file) {
            Write(ids, file, FormatOf(dialog->selectedNameFilter(), file));
          });
  dialog->open();
}

void RecordExport::Write(std::vector<ArchiveId> ids, const QString& file, ExportFormat format) {
  library_.Read([this, ids = std::move(ids), file,
                 format](archive::Archive& archive) -> std::function<void()> {
    std::vector<exchange::NotedRecord> records;
    for (const ArchiveId id : ids) {
      auto kept = archive.Get(id);
      if (kept) records.push_back(exchange::Noted(std::move(*kept)));
    }
    const std::size_t gone = ids.size() - records.size();
    if (records.empty()) {
      return [this] { emit Said(tr("Not written: the records are not in the archive any more.")); };
    }
    auto content = exchange::Exported(records, format);
    if (!content) {
      return [this, why = content.Why().Text()] {
        emit Said(tr("Not written: %1").arg(QString::fromStdString(why)));
      };
    }
    const auto count = static_cast<std::int64_t>(records.size());
    return [this, file, count, gone, bytes = *content] {
      try {
        files_.ReplaceWhole(file.toStdU16String(), bytes);
      } catch (const RuntimeError& error) {
        emit Said(tr("Not written: %1. Choose a folder that you may write in.").arg(error.what()));
        return;
      }
      QString said = tr("%1: %2").arg(file, CountOf(count, tr("record"), tr("records")));
      if (gone > 0) said += tr("; %L1 are not in the archive any more").arg(gone);
      emit Said(said);
    };
  });
}

}  // namespace kestrel
