// What leaves the analyser: pictures of its views, and tables of trends.
// SPDX-License-Identifier: MIT
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QStatusBar>

#include "numeric/runtime_error.h"
#include "ui/analyser/frmAnalyser.h"
#include "ui/analyser/widget_picture.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

constexpr int kSaidMs = 6000;

// Pictures of the others are of their plot alone.
bool IsPicturedWhole(study::View view) {
  return view == study::View::Waterfall || view == study::View::AlarmBands ||
         view == study::View::Monitor;
}

// The others leave as pictures alone.
bool HasTable(study::View view) {
  return view == study::View::Wide || view == study::View::Trend;
}

}  // namespace

void frmAnalyser::Copy() {
  if (view_ == study::View::Library) {
    statusBar()->showMessage(tr("The library has no picture. Open a record first."), kSaidMs);
    return;
  }
  if (IsPicturedWhole(view_)) {
    QGuiApplication::clipboard()->setImage(PictureOf(*WidgetOf(view_), Text(area_->Source()), 2));
  } else {
    CopyPicture(PlotPictureNow());
  }
  statusBar()->showMessage(tr("The picture is on the clipboard."), kSaidMs);
}

PlotPicture frmAnalyser::PlotPictureNow() const {
  if (view_ == study::View::Wide) return wide_->Picture();
  return view_ == study::View::Trend ? trend_->Picture() : area_->Picture();
}

QStringList frmAnalyser::Endings() const {
  QStringList endings = PictureEndings();
  if (HasTable(view_)) endings << QStringLiteral("csv");
  return endings;
}

void frmAnalyser::AskExport() {
  if (view_ == study::View::Library) {
    statusBar()->showMessage(tr("The library has no picture. Open a record first."), kSaidMs);
    return;
  }
  auto* dialog =
      new QFileDialog(this, HasTable(view_) ? tr("Export picture or table") : tr("Export picture"));
  dialog->setObjectName("askExport");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  QStringList kinds;
  for (const QString& ending : Endings()) {
    kinds << QStringLiteral("%1 (*.%2)").arg(ending.toUpper(), ending);
  }
  dialog->setNameFilters(kinds);
  dialog->setDefaultSuffix(Endings().constFirst());
  connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString& kind) {
    dialog->setDefaultSuffix(kind.section(' ', 0, 0).toLower());
  });
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& file) { Export(file); });
  dialog->open();
}

// The library's records in files that other programs understand.
void frmAnalyser::OfferRecords() {
  if (host_.keeper == nullptr || !host_.keeper->HasPlace()) return;
  records_ = std::make_unique<RecordExport>(*this, host_.keeper->Place(), host_.files);
  library_->SetExport([this](std::vector<ArchiveId> ids) { records_->Ask(std::move(ids)); });
  connect(records_.get(), &RecordExport::Said, this,
          [this](const QString& text) { statusBar()->showMessage(text); });
}

QByteArray frmAnalyser::FileOf(const QString& ending) {
  if (ending == u"csv") {
    return QByteArray::fromStdString(view_ == study::View::Wide ? wide_->Table() : trend_->Table());
  }
  if (IsPicturedWhole(view_)) {
    return WidgetPictureFile(*WidgetOf(view_), Text(area_->Source()), ending);
  }
  return PictureFile(SheetOf(PlotPictureNow()), ending);
}

bool frmAnalyser::Export(const QString& file) {
  const QString ending = QFileInfo(file).suffix().toLower();
  if (!Endings().contains(ending)) {
    statusBar()->showMessage(
        tr("\".%1\" is not a kind of picture that can be written. Choose one of %2.")
            .arg(ending, Endings().join(", ")));
    return false;
  }
  const QByteArray content = FileOf(ending);
  try {
    host_.files.ReplaceWhole(file.toStdU16String(),
                             {content.data(), static_cast<std::size_t>(content.size())});
  } catch (const RuntimeError& error) {
    statusBar()->showMessage(
        tr("The picture is not written: %1. Choose a folder that you may write in.")
            .arg(error.what()));
    return false;
  }
  statusBar()->showMessage(tr("Written: %1").arg(file), kSaidMs);
  return true;
}

}  // namespace kestrel
