// The plot of spectra and samples with its notices and refusals.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QWidget>

#include "ui/analyser/plot_commands.h"
#include "ui/analyser/refusal_card.h"
#include "ui/chart/analyser_plot.h"
#include "ui/chart/picture_out.h"
#include "ui/parts/record_notice_strip.h"
#include "ui/study/study_model.h"

namespace kestrel {

class PlotArea : public QWidget {
  Q_OBJECT

 public:
  explicit PlotArea(StudyModel& model);

  [[nodiscard]] AnalyserPlot& Plot() { return *plot_; }
  [[nodiscard]] PlotCommands& Commands() { return *commands_; }
  [[nodiscard]] RefusalCard& Refusal() { return *card_; }
  // Nothing newer can come than what is shown.
  void SetSensorLost(bool isLost);
  // Sensor, time and version, as they stand in pictures.
  [[nodiscard]] std::string Source() const;
  // As it is shown now, for the clipboard and files.
  [[nodiscard]] PlotPicture Picture() const;

 signals:
  void CureWanted(Cure cure);     // of a notice about the record shown
  void OptionWanted(int option);  // capture there

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Show();
  void ShowCursor();
  void ShowNotices();
  void ShowRefusal();
  void PlaceCard();

  StudyModel& model_;
  RecordNoticeStrip* notices_;
  QLabel* lblNote_;
  AnalyserPlot* plot_;
  PlotCommands* commands_;
  RefusalCard* card_;
  bool isSensorLost_ = false;
};

}  // namespace kestrel
