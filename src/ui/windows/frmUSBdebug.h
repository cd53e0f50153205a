// The adapter debug window.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <array>
#include <filesystem>

#include "connection/core.h"
#include "transport/adapter_debug.h"
#include "transport/adapter_loop.h"
#include "ui/parts/frame_table.h"
#include "ui/parts/secondary_window.h"
#include "ui/windows/adapter_panel.h"

namespace kestrel {

// Exercises a USB adapter directly: its settings, raw SPI frames, and an endless transfer loop that
// the button, Escape, closing the window or the loss of the adapter end.
class frmUSBdebug final : public SecondaryWindow, public AdapterDebugView, public AdapterLoopView {
  Q_OBJECT

 public:
  frmUSBdebug(Core& core, HandlerEdge& edge, QWidget* parent);

  [[nodiscard]] FrameTexts Frames() override;
  void PointAtFrame(int number) override;
  void ShowAnswers(const std::vector<std::string>& answers) override;
  void ShowBits(const std::string& text) override;
  void ShowDelay(const std::string& text) override;
  void ShowSetup(const std::string& text) override;
  void ShowCounts(std::int64_t transfers, std::int64_t errors) override;

  [[nodiscard]] std::string LoopCaption() override;
  void SetLoopCaption(const std::string& caption) override;
  [[nodiscard]] std::string LoopWaitText() override;
  void TickAfter(std::chrono::milliseconds time) override;
  void StopTicks() override;

 signals:
  // A USB adapter was chosen here and is the interface now.
  void InterfaceChosen();

 protected:
  void Refused(const QString& why) override { lblSaved_->setText(why); }
  void Form_Activate() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void LayOut();
  [[nodiscard]] QWidget* MakeBoardBox();
  [[nodiscard]] QWidget* MakeChipSelectBox();
  [[nodiscard]] QWidget* MakeLoopBox();
  void Connect();

  void ShowChipSelect();
  void Tick();
  void cmdLoop_Click();
  void cmdPolarity_Click();
  void cmdSave_Click();
  void SaveWaveform(const std::filesystem::path& file);
  void cmdClear_Click();
  void Form_QueryUnload();

  Core& core_;
  AdapterDebug debug_;
  AdapterLoop loop_;
  QTimer tick_;

  AdapterPanel* adapters_;
  FrameTable* frames_;
  QLineEdit* txtBits_;
  QLineEdit* txtDelay_;
  QLineEdit* txtLoopDelay_;
  QLineEdit* txtLoopWait_;
  QPushButton* cmdReadBits_;
  QPushButton* cmdReadDelay_;
  QPushButton* cmdPolarity_;
  QPushButton* cmdWriteSpi_;
  QPushButton* cmdLoop_;
  QPushButton* cmdSave_;
  QPushButton* cmdClear_;
  QPushButton* cmdExit_;
  std::array<QRadioButton*, 2> optSpiChan_{};
  QLabel* lblCounts_;
  QLabel* lblSaved_;
};

}  // namespace kestrel
