// The panel of the Start button, its progress and the data log.
// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

#include "acquisition/capture_cycle.h"
#include "logging/data_log.h"
#include "seams/mouse_pointer.h"
#include "ui/panels/conditions_panel.h"
#include "ui/panels/record_panel.h"
#include "ui/panels/spacing.h"

namespace kestrel {

// Start button, what happens with a capture, and the data log. Also shows the captures' figures in
// the panels around it.
class CapturePanel : public QGroupBox, public CaptureView, public ReadoutView, public DataLogView {
  Q_OBJECT

 public:
  CapturePanel(RecordPanel& record, ConditionsPanel& conditions, MousePointer& pointer);

  void SetSpacing(const Spacing& spacing);

  // CaptureView
  [[nodiscard]] std::string StartCaption() override;
  void SetStartCaption(const std::string& caption) override;
  void ShowCapturingData(bool shown) override;
  void ShowElapsed(double seconds) override;
  void SetKeyPreview(bool on) override { keyPreview_ = on; }
  [[nodiscard]] std::string FftAvgsText() override;
  [[nodiscard]] int RecModeIndex() override;
  [[nodiscard]] bool AutoPlotTicked() override;

  // ReadoutView
  void SetRecCount(const std::string& text) override;
  void SetSupply(const std::string& text) override;
  void SetTemp(const std::string& text) override;
  void ShowHourglass(bool shown) override;
  void ShowProgress(int done, int total) override;
  void HideProgress() override;
  [[nodiscard]] bool DataLogTicked() override;

  // DataLogView
  void SetFileCountColour(double colour) override;
  void SetFileCount(const std::string& text) override;

  // The caption of the data-log box and the state of what belongs to it follow the tick.
  void ShowDataLogState();

  [[nodiscard]] bool KeyPreview() const { return keyPreview_; }

  QPushButton* cmdStart;
  QPushButton* cmdReadBuffer;
  QCheckBox* ckAutoPlot;
  QCheckBox* ckDataLog;
  QLineEdit* txtFileCount;
  QPushButton* cmdConfigDataLog;
  QProgressBar* progress;  // belongs into the status bar

 signals:
  void CaptureStateChanged();  // the caption of cmdStart is another

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void LayOut();
  void Place();

  RecordPanel& record_;
  ConditionsPanel& conditions_;
  MousePointer& pointer_;
  QLabel* lblCapturingData_;
  bool keyPreview_ = false;
};

}  // namespace kestrel
