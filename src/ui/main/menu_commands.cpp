// Menu entries and their handlers.
// SPDX-License-Identifier: MIT
#include "ui/main/menu_commands.h"

#include "app/config_file.h"
#include "app/program_state.h"
#include "connection/init_interface.h"
#include "ui/windows/about_box.h"
#include "ui/windows/user_guide.h"

namespace kestrel {

template <typename Handler>
void MenuCommands::On(QAction* item, const char* name, Handler handler) {
  QObject::connect(item, &QAction::triggered, &parts_.window,
                   [this, name, handler] { parts_.edge.Run(name, handler); });
}

void MenuCommands::Connect() {
  const auto chosen = &QAction::triggered;
  On(parts_.menu.mnuSimulated, "mnuSimulated_Click", [this] { mnuSimulated_Click(); });
  On(parts_.menu.mnuUnplug, "mnuUnplug_Click", [this] { mnuUnplug_Click(); });
  On(parts_.menu.mnu31407, "mnu31407_Click", [this] { mnu31407_Click(); });
  QObject::connect(parts_.menu.mnuGuide, chosen, &parts_.window,
                   [this] { OpenUserGuide(parts_.core.seams.files, parts_.core.seams.messages); });
  QObject::connect(parts_.menu.mnuAbout, chosen, &parts_.window,
                   [this] { ShowAboutBox(parts_.window); });
  QObject::connect(parts_.menu.MnuExit, chosen, &parts_.window, &QWidget::close);
  ConnectWindows();
}

void MenuCommands::ConnectWindows() {
  using Windows = SecondaryWindows;
  const auto opens = [this](QAction* item, const char* name, void (Windows::*open)()) {
    On(item, name, [this, open] { (parts_.windows.*open)(); });
  };
  const MainMenu& menu = parts_.menu;
  opens(menu.mnuDatalog, "mnuDatalog_Click", &Windows::OpenDataLog);
  opens(menu.mnuUsb, "mnuUsb_Click", &Windows::OpenUsb);
  opens(menu.mnuParallel, "mnuParallel_Click", &Windows::OpenPort);
  opens(menu.mnuCommand, "mnuCommand_Click", &Windows::OpenCommand);
  opens(menu.mnuRecInfo, "mnuRecInfo_Click", &Windows::OpenRecInfo);
  opens(menu.mnuAlarmCtrl, "mnuAlarmCtrl_Click", &Windows::OpenAlarmControl);
  opens(menu.mnuAlarmSpectrum, "mnuAlarmSpectrum_Click", &Windows::OpenAlarmSpectrum);
  opens(menu.mnuDIOGPIO, "mnuDIOGPIO_Click", &Windows::OpenDioGpio);
  opens(menu.MnuCal, "MnuCal_Click", &Windows::OpenCalibration);
  opens(menu.mnuRegisters, "mnuRegisters_Click", &Windows::OpenRegisters);
  opens(menu.mnuSetups, "mnuSetups_Click", &Windows::OpenSetups);
}

void MenuCommands::mnuSimulated_Click() {
  if (!parts_.isIdle()) return;
  parts_.simulator.connect();
  parts_.menu.mnuUnplug->setChecked(false);
  parts_.windows.ForgetSensor();
  parts_.core.registers.Use(kUsbAdapter);
  WriteConfigFile(parts_.core.seams.files);
  InitInterface(parts_.core);
  parts_.desk.settings.ReadMainFormRegisters();
}

void MenuCommands::mnu31407_Click() {
  parts_.setProduct(kProduct31407);
  WriteConfigFile(parts_.core.seams.files);
}

// As if somebody pulled the cable, or put it back: the program has to notice by itself.
void MenuCommands::mnuUnplug_Click() {
  parts_.simulator.plug(!parts_.menu.mnuUnplug->isChecked());
}

}  // namespace kestrel
