// The trend view as the program opens it, over an archive of the test's own.
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/library_bench.h"
#include "ui/made_up_records.h"

namespace kestrel {

// The bit of ALM_x_STAT that is the warning of a band.
inline constexpr int WarningOf(int band) {
  return 1 << (2 * band + 2);
}

class TrendBench : public LibraryBench {
 protected:
  // Spectra a minute apart, the line of Z growing by 10 words each.
  std::vector<archive::NewRecord> Made(int count, int from = 0, int option = 0) {
    std::vector<archive::NewRecord> records;
    for (int i = from; i < from + count; ++i) {
      records.push_back({archive::NewUid(),
                         MadeUpSpectrum(60 * i, {{42, 700 + 10 * i}}, option),
                         {.machine = i % 2 == 0 ? "Pump" : "Fan"},
                         "0.1.0",
                         "bench 1"});
      records.back().record.settings = SettingsFromWords(option << 14 | 1 << 12 | 2 << 10 | 8, 0);
      records.back().record.conditions.temperatureC = 20.0F + 0.1F * static_cast<float>(i % 100);
    }
    return records;
  }
  void Put(const std::vector<archive::NewRecord>& records) { Archived().KeepAll(records); }
  void OpenTrend() {
    StartKeeping();
    Trigger("mnuAnalyser");
    Analyser().ChooseView(study::View::Trend);
  }
  void OpenTrend(std::size_t points) {
    OpenTrend();
    ASSERT_TRUE(Has(points)) << Points().size();
  }
  bool Has(std::size_t points) {
    return Gets([&] { return Source().IsRead() && Points().size() == points; });
  }
  bool IsIdle() {
    return Gets([&] { return !Source().IsReading(); });
  }
  TrendView& View() { return Analyser().Trend(); }
  TrendSource& Source() { return *View().Source(); }
  trend::Points Points() { return Source().Data().Shown(); }
  AnalyserPlot& Picture() { return View().Plot(); }
  const PlotScene& Scene() { return Picture().Scene(); }
  void PlotKey(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&Picture(), static_cast<Qt::Key>(key), modifiers);
  }
  // The number of the record that the cursor is at; 0 for none.
  ArchiveId Cursor() { return View().AtCursor().value_or(0); }
  std::string Line() { return In<QLabel>("lblTrendLine").text().toStdString(); }
  std::string Note() {
    auto& label = In<QLabel>("lblTrendNote");
    return label.isHidden() ? "" : label.text().toStdString();
  }
  std::string Notices() {
    QString all;
    for (const auto* label : In<QWidget>("trendNotices").findChildren<QLabel*>()) {
      all += label->text();
    }
    return all.toStdString();
  }
  // Where a point stands in the plot.
  QPoint PlaceOf(std::size_t point) {
    const PlotLayout layout = Picture().Laid();
    const double x = layout.panes[0].across.ToPixel(Source().Data().Across(Points()[point]));
    const double y = layout.panes[0].up.ToPixel(
        trend::OnAxis(Points()[point].value[Index(View().Choice().focus)], View().Choice().up));
    return {qRound(x), qRound(y)};
  }
  double Shown() { return Picture().Ranges().across.Span(); }
  // A choice of the menu of levels, as it stands when it opens.
  void ChooseLevel(const char* entry) { Entry("cmdTrendLevel", entry).trigger(); }
  template <typename Dialog = QDialog>
  Dialog& Asked(const char* name) {
    EXPECT_TRUE(Gets([&] { return Analyser().findChild<QDialog*>(name) != nullptr; })) << name;
    return In<Dialog>(name);
  }
  void Write(const char* field, const QString& text) {
    auto& edit = In<QLineEdit>(field);
    edit.setText(text);
    emit edit.editingFinished();
  }
  void Accept(const char* dialog) {
    auto* buttons = Asked(dialog).template findChild<QDialogButtonBox*>();
    buttons->button(QDialogButtonBox::Ok)->click();
  }
};

}  // namespace kestrel
