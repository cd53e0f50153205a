// The items of the menus.
// SPDX-License-Identifier: MIT
#include "ui/main/main_menu.h"

#include <QMenu>
#include <QMenuBar>

namespace kestrel {
namespace {

QAction* Add(QMenu* menu, const char* name, const QString& text) {
  QAction* action = menu->addAction(text);
  action->setObjectName(name);
  return action;
}

}  // namespace

MainMenu::MainMenu(QMainWindow& window) : QObject(&window) {
  QMenu* file = window.menuBar()->addMenu(tr("&File"));
  mnuDatalog = Add(file, "mnuDatalog", tr("&Data log..."));
  mnuKeepRecords = Add(file, "mnuKeepRecords", tr("&Keep every record"));
  mnuKeepRecords->setCheckable(true);
  mnuAnalyser = Add(file, "mnuAnalyser", tr("&Analyser"));
  mnuAnalyser->setShortcut(Qt::Key_F9);
  file->addSeparator();
  MnuExit = Add(file, "MnuExit", tr("E&xit"));
  MnuExit->setShortcut(Qt::CTRL | Qt::Key_Q);  // systems differ in having a standard one

  QMenu* interfaces = window.menuBar()->addMenu(tr("&Interface"));
  mnuUsb = Add(interfaces, "mnuUsb", tr("&USB adapter..."));
  mnuUsb->setCheckable(true);
  mnuParallel = Add(interfaces, "mnuParallel", tr("&Parallel port..."));
  mnuParallel->setCheckable(true);
  interfaces->addSeparator();
  mnuSimulated = Add(interfaces, "mnuSimulated", tr("&Simulated sensor"));
  interfaces->addSeparator();
  mnuFastReadout = Add(interfaces, "mnuFastReadout", tr("&Fast read-out"));
  mnuFastReadout->setCheckable(true);

  QMenu* sensor = window.menuBar()->addMenu(tr("&Sensor"));
  mnuCommand = Add(sensor, "mnuCommand", tr("Global &commands..."));
  mnuRecInfo = Add(sensor, "mnuRecInfo", tr("Record &information..."));
  mnuAlarmCtrl = Add(sensor, "mnuAlarmCtrl", tr("&Alarm control..."));
  mnuAlarmSpectrum = Add(sensor, "mnuAlarmSpectrum", tr("Alarm &spectrum..."));
  mnuDIOGPIO = Add(sensor, "mnuDIOGPIO", tr("&DIO/GPIO..."));
  MnuCal = Add(sensor, "MnuCal", tr("Ca&libration..."));
  mnuRegisters = Add(sensor, "mnuRegisters", tr("&Registers..."));
  mnuSetups = Add(sensor, "mnuSetups", tr("S&et-ups..."));
  sensor->addSeparator();
  mnuRepeat = Add(sensor, "mnuRepeat", tr("Repeat ca&ptures..."));
  mnuRepeat->setShortcut(Qt::SHIFT | Qt::Key_F5);
  mnuRepeatStop = Add(sensor, "mnuRepeatStop", tr("S&top repeating"));

  QMenu* product = window.menuBar()->addMenu(tr("&Product"));
  mnu31407 = Add(product, "mnu31407", "31407");
  mnu31407->setCheckable(true);

  QMenu* debug = window.menuBar()->addMenu(tr("D&ebug"));
  debug_ = debug->menuAction();
  mnuUnplug = Add(debug, "mnuUnplug", tr("&Unplug simulated adapter"));
  mnuUnplug->setCheckable(true);

  QMenu* help = window.menuBar()->addMenu(tr("&Help"));
  mnuGuide = Add(help, "mnuGuide", tr("User &guide"));
  mnuGuide->setShortcut(Qt::Key_F1);
  mnuGuide->setShortcutContext(Qt::ApplicationShortcut);
  mnuAbout = Add(help, "mnuAbout", tr("&About..."));
}

}  // namespace kestrel
