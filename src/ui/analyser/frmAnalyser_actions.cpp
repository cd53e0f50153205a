// The analyser's menus and keys, markers, and what a restart remembers.
// SPDX-License-Identifier: MIT
#include <QCloseEvent>
#include <QDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QShortcut>
#include <QStatusBar>
#include <algorithm>
#include <array>

#include "study/choice_text.h"
#include "ui/analyser/frmAnalyser.h"
#include "ui/analyser/kept_settings.h"
#include "ui/analyser/plot_menu.h"
#include "ui/machine/band_dialog.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

QString StateKey(study::View view) {
  return QStringLiteral("docks/%1").arg(static_cast<int>(view));
}

}  // namespace

void frmAnalyser::AddMenus() {
  auto* bar = menuWidget()->findChild<QMenuBar*>();
  QMenu* file = bar->addMenu(tr("&File"));
  file->addAction(tr("&Copy picture"), this, &frmAnalyser::Copy)->setObjectName("mnuCopy");
  file->addAction(tr("&Export picture..."), this, &frmAnalyser::AskExport)
      ->setObjectName("mnuExport");
  QAction* report = file->addAction(tr("&Report..."), reports_, &ReportExport::Ask);
  report->setObjectName("mnuReport");
  report->setShortcut(Qt::CTRL | Qt::Key_R);
  library_->AddRowAction(report);
  file->addSeparator();
  QAction* close = file->addAction(tr("C&lose"), this, &QWidget::close);
  close->setObjectName("mnuClose");
  close->setShortcut(QKeySequence::Close);

  QMenu* view = bar->addMenu(tr("&View"));
  const std::array views{tr("&Spectrum"), tr("&Time"),  tr("&Waterfall"),   tr("W&ide"),
                         tr("&Library"),  tr("T&rend"), tr("Alarm &bands"), tr("&Monitor")};
  for (int i = 0; i < static_cast<int>(views.size()); ++i) {
    QAction* action = view->addAction(views[static_cast<std::size_t>(i)]);
    action->setObjectName(QStringLiteral("mnuView%1").arg(i));
    action->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + i)));
    connect(action, &QAction::triggered, this,
            [this, i] { ChooseView(static_cast<study::View>(i)); });
  }
  view->addSeparator();
  for (AnalyserDock* dock : docks_) {
    dock->toggleViewAction()->setObjectName("mnu_" + dock->objectName());
    view->addAction(dock->toggleViewAction());
  }
  QAction* alone = view->addAction(tr("Plot &alone"));
  alone->setObjectName("mnuPlotAlone");
  alone->setCheckable(true);
  alone->setShortcut(Qt::Key_F11);
  connect(alone, &QAction::toggled, this, &frmAnalyser::ShowPlotAlone);
  view->addSeparator();
  AddThemes(*view->addMenu(tr("T&heme")));

  library_->AddActions(*bar->addMenu(tr("&Archive")));

  QMenu* capture = bar->addMenu(tr("&Capture"));
  const auto add = [&](const char* name, const QString& text, const QKeySequence& key,
                       std::function<void()> deed) {
    QAction* action = capture->addAction(text);
    action->setObjectName(name);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, std::move(deed));
  };
  add("mnuCapture", tr("&Capture"), Qt::Key_F5, [this] {
    if (view_ == study::View::Monitor) return monitor_->StartOrStop();
    view_ == study::View::Wide ? host_.captureWide(0b1111) : host_.capture();
  });
  add("mnuStop", tr("&Stop"), {}, [this] { host_.stop(); });
  add("mnuRepeat", tr("&Repeat..."), {}, [this] { host_.openRepeat(); });
  add("mnuToggleRepeat", tr("Repeat &on or off"), Qt::SHIFT | Qt::Key_F5,
      [this] { host_.toggleRepeat(); });
}

void frmAnalyser::AddPlotMenu() {
  auto* menu = new PlotMenu(model_,
                            {.plot = [this]() -> AnalyserPlot& { return Plot(); },
                             .carryOut = [this](PlotCommand command) { CarryOut(command); },
                             .addMarker = [this](double hz) { AskMarker(hz); }},
                            this);
  connect(&area_->Plot(), &AnalyserPlot::MenuAsked, menu, &PlotMenu::Open);
  connect(waterfall_, &WaterfallArea::MenuAsked, menu, &PlotMenu::Open);
}

void frmAnalyser::CarryOut(PlotCommand command) {
  const bool isRow = view_ == study::View::Waterfall;
  area_->Commands().CarryOut(command, isRow ? waterfall_->Row() : nullptr);
}

void frmAnalyser::AddThemes(QMenu& menu) {
  themes_ = new QActionGroup(this);
  const std::array names{tr("As the &system has it"), tr("&Light"), tr("&Dark")};
  for (int i = 0; i < static_cast<int>(names.size()); ++i) {
    QAction* action = menu.addAction(names[static_cast<std::size_t>(i)]);
    action->setObjectName(QStringLiteral("mnuTheme%1").arg(i));
    action->setCheckable(true);
    action->setChecked(i == 0);
    themes_->addAction(action);
    connect(action, &QAction::triggered, this, [i] { ApplyTheme(static_cast<Theme>(i)); });
  }
}

void frmAnalyser::AddKeys() {
  AddKey(Qt::Key_Escape, [this] {
    if (isRunning_) host_.stop();
  });
  AddKey(Qt::Key_F6, [this] { NextPane(1); });
  AddKey(Qt::SHIFT | Qt::Key_F6, [this] { NextPane(-1); });
  AddKey(QKeySequence::Find, [this] {
    if (view_ == study::View::Library) return library_->FocusFilter();
    if (view_ == study::View::Trend) return trend_->FocusFilter();
    if (view_ == study::View::Wide) return wide_->FocusKept();
    if (auto* filter = findChild<QLineEdit*>("txtFilterRecords")) filter->setFocus();
  });
  AddKey(Qt::CTRL | Qt::Key_E, [this] { AskExport(); });
}

void frmAnalyser::AddKey(const QKeySequence& key, std::function<void()> deed) {
  connect(new QShortcut(key, this), &QShortcut::activated, this, std::move(deed));
}

// The plot, then the docks that are seen.
void frmAnalyser::NextPane(int step) {
  std::vector<QWidget*> panes{views_->currentWidget()};
  for (AnalyserDock* dock : docks_) {
    if (!dock->isHidden() && !dock->visibleRegion().isEmpty()) panes.push_back(dock->widget());
  }
  const auto count = static_cast<int>(panes.size());
  int now = 0;
  for (int i = 0; i < count; ++i) {
    if (panes[static_cast<std::size_t>(i)]->isAncestorOf(focusWidget())) now = i;
  }
  QWidget* next = panes[static_cast<std::size_t>((now + step + count) % count)];
  for (QWidget* child : next->findChildren<QWidget*>()) {
    if (child->focusPolicy() == Qt::NoFocus || !child->isVisible()) continue;
    const bool isContent = qobject_cast<QAbstractItemView*>(child) != nullptr ||
                           qobject_cast<AnalyserPlot*>(child) != nullptr;
    if (!isContent) continue;
    child->setFocus(Qt::TabFocusReason);
    return;
  }
  next->setFocus(Qt::TabFocusReason);
}

void frmAnalyser::ShowPlotAlone(bool isAlone) {
  if (!isAlone) {
    restoreState(beforeAlone_, kDocksVersion);
    return;
  }
  beforeAlone_ = saveState(kDocksVersion);
  for (AnalyserDock* dock : docks_) dock->hide();
}

void frmAnalyser::AskMarker(double hz) {
  auto* dialog = new QInputDialog(this);
  dialog->setObjectName("askMarker");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setInputMode(QInputDialog::TextInput);
  dialog->setWindowTitle(tr("Marker"));
  dialog->setLabelText(tr("Text at %1 Hz").arg(hz, 0, 'f', 1));
  dialog->findChild<QLineEdit*>()->setToolTip(tr("Stands in the plot at this frequency"));
  connect(dialog, &QInputDialog::textValueSelected, this, [this, hz](const QString& text) {
    if (text.trimmed().isEmpty()) return;
    model_.Change([&](study::StudyChoice& choice) {
      choice.markers.push_back({hz, text.trimmed().toStdString()});
    });
  });
  dialog->open();
}

void frmAnalyser::AskBand() {
  const bool isTime = model_.Choice().view == study::View::Time;
  auto* dialog = new BandDialog(isTime ? PlotRange{10, 1000} : Plot().Ranges().across, this);
  connect(dialog, &BandDialog::Told, levels_, &LevelsPanel::AddBand);
  dialog->show();
}

void frmAnalyser::Restore() {
  const QSettings kept = KeptSettings();
  QStringList unread = RestoreChoice(kept.value("choice").toString());
  if (kept.status() != QSettings::NoError) unread.prepend(tr("parts of %1").arg(kept.fileName()));
  restoreGeometry(kept.value("geometry").toByteArray());
  for (const study::View view :
       {study::View::Spectrum, study::View::Time, study::View::Waterfall, study::View::Wide,
        study::View::Library, study::View::Trend, study::View::AlarmBands, study::View::Monitor}) {
    const QByteArray state = kept.value(StateKey(view)).toByteArray();
    if (!state.isEmpty()) dockStates_[view] = state;
  }
  if (const auto state = dockStates_.find(view_); state != dockStates_.end()) {
    restoreState(state->second, kDocksVersion);
  }
  const QString bearings =
      Text(known_->LoadLibrary(kept.value("bearings").toString().toStdString()));
  unread << bearings.split('\n', Qt::SkipEmptyParts);
  SayUnread(unread);
  trend_->Restore(kept);
  wide_->Restore(kept);
  themes_->actions().at(static_cast<int>(ThemeIn(kept)))->setChecked(true);
}

QStringList frmAnalyser::RestoreChoice(const QString& text) {
  study::ReadChoice read = study::ChoiceFrom(text.toStdString());
  model_.Change([&read](study::StudyChoice& choice) { choice = std::move(read.choice); });
  QStringList unread;
  for (const std::string& message : read.messages) unread << Text(message);
  return unread;
}

void frmAnalyser::SayUnread(const QStringList& unread) {
  if (unread.isEmpty()) return;
  constexpr qsizetype kNamed = 3;
  QString named = unread.mid(0, kNamed).join(QStringLiteral("; "));
  if (unread.size() > kNamed) named += tr("; and %1 more").arg(unread.size() - kNamed);
  statusBar()->showMessage(
      tr("Not all that was remembered can be read; what is missing begins anew. %1").arg(named));
}

void frmAnalyser::Keep() const {
  QSettings kept = KeptSettings();
  kept.setValue("geometry", saveGeometry());
  for (const auto& [view, state] : dockStates_) kept.setValue(StateKey(view), state);
  kept.setValue(StateKey(view_), saveState(kDocksVersion));
  kept.setValue("choice", Text(study::TextOf(model_.Choice())));
  kept.setValue("bearings", Text(known_->SaveLibrary()));
  trend_->Keep(kept);
  wide_->Keep(kept);
  kept.setValue("theme", themes_->actions().indexOf(themes_->checkedAction()));
}

void frmAnalyser::ShowConditions() {
  const auto* shown = model_.Get().Shown();
  if (shown == nullptr) {
    lblConditions_->clear();
    return;
  }
  const Conditions& conditions = shown->record->conditions;
  lblConditions_->setText(tr("Supply %1 V    %2 °C")
                              .arg(locale().toString(conditions.supplyV, 'f', 3),
                                   locale().toString(conditions.temperatureC, 'f', 1)));
}

void frmAnalyser::closeEvent(QCloseEvent* event) {
  Keep();
  for (QDialog* dialog : findChildren<QDialog*>()) dialog->close();
  QMainWindow::closeEvent(event);
}

}  // namespace kestrel
