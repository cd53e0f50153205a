// Showing the loading window, then the main window.
// SPDX-License-Identifier: MIT
#include "ui/main/start_windows.h"

#include "ui/parts/clear_style.h"

namespace kestrel {

void QtStartWindows::ShowLoading(const std::string& caption, const std::string& text) {
  ClearStyle::Use();
  loading_ = std::make_unique<frmMsg>();
  loading_->ShowPainted(caption, text);
}

void QtStartWindows::SetLoadingText(const std::string& text) {
  if (loading_) loading_->SetText(text);
}

void QtStartWindows::HideLoading() {
  if (loading_) loading_->hide();
}

void QtStartWindows::ShowMainWindow() {
  ClearStyle::Use();
  main_ = std::make_unique<frm1>(core_, simulator_, archive_, watch_);
  main_->show();
}

}  // namespace kestrel
