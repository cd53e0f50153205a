// The windows that the start of the program brings up.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "start/start.h"
#include "ui/main/frm1.h"
#include "ui/windows/frmMsg.h"

namespace kestrel {

// The windows that the start-up brings up.
class QtStartWindows : public StartWindows {
 public:
  QtStartWindows(Core& core, SimulatorControl simulator, ArchiveChoice archive = {},
                 WatchChoice watch = {})
      : core_(core),
        simulator_(std::move(simulator)),
        archive_(std::move(archive)),
        watch_(std::move(watch)) {}

  void ShowLoading(const std::string& caption, const std::string& text) override;
  void SetLoadingText(const std::string& text) override;
  void HideLoading() override;
  void ShowMainWindow() override;

  // Exists once ShowMainWindow has been called.
  [[nodiscard]] frm1& MainWindow() { return *main_; }

 private:
  Core& core_;
  SimulatorControl simulator_;
  ArchiveChoice archive_;
  WatchChoice watch_;
  std::unique_ptr<frmMsg> loading_;  // only where a start-up shows it
  std::unique_ptr<frm1> main_;
};

}  // namespace kestrel
