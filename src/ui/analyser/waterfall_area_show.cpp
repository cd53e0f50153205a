// What the waterfall's parts show: rows, colours, the spectrum of a row, the level of a column.
// SPDX-License-Identifier: MIT
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/known_frequencies.h"
#include "display/cursors.h"
#include "display/known_table.h"
#include "display/scene.h"
#include "numeric/number_texts.h"
#include "record/utc_time.h"
#include "ui/analyser/waterfall_area.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

using Kind = study::CursorKind;

study::TimePoint TimeOf(double seconds) {
  const std::chrono::duration<double> since(seconds);
  return study::TimePoint(std::chrono::duration_cast<study::TimePoint::duration>(since));
}

std::vector<double> BinsOf(const analysis::Spectrum& spectrum) {
  std::vector<double> hz;
  for (std::size_t bin = 0; bin < spectrum.Bins(); ++bin) {
    hz.push_back(spectrum.FrequencyOf(static_cast<double>(bin)));
  }
  return hz;
}

std::string Spectra(int count) {
  return analysis::NumberText(count, 0) + (count == 1 ? " spectrum" : " spectra");
}

// A row that only grows a little keeps its map for a while.
double SpanFor(double seconds) {
  constexpr std::array kSpans{60.0,   120.0,   300.0,   600.0,   1800.0,  3600.0,
                              7200.0, 14400.0, 28800.0, 86400.0, 172800.0};
  const auto* span =
      std::find_if(kSpans.begin(), kSpans.end(), [&](double each) { return seconds <= each; });
  return span == kSpans.end() ? seconds * 1.2 : *span;
}

// The name of the known frequency that the place lies in.
std::string NameAt(const study::Study& row, double hz, double binWidthHz) {
  const study::MeasuredSpectrum* measured = row.SpectrumOf(row.Choice().focus);
  if (measured == nullptr) return "";
  const auto known = study::KnownOf(row.Choice());
  const auto marker = analysis::NearestMarker(analysis::MarkersOf(known, measured->spectrum),
                                              {.hz = hz, .hzBound = binWidthHz / 2});
  return marker ? marker->name : "";
}

}  // namespace

void WaterfallArea::ShowRow(std::size_t row) {
  const study::Study& whole = model_.Get();
  shown_ = whole.Rows().TimeOf(row);
  row_.emplace(study::StudyOfRow(whole, row));
  PlotScene scene = study::SceneOf(*row_);
  scene.head = "Waterfall";
  scene.line = MapLine();
  for (PlotPane& pane : scene.panes) {
    for (SceneTrace& trace : pane.traces) trace.name += ", " + whole.TimeText(*shown_);
  }
  plot_->SetScene(std::move(scene));
}

std::string WaterfallArea::MapLine() const {
  const std::string axis(1, Letter(model_.Choice().focus));
  const PlotScene one = study::SceneOf(*row_);
  return one.line.empty() ? axis : axis + ", " + one.line;
}

void WaterfallArea::Begin() {
  const study::Study& study = model_.Get();
  const auto row = study::RowAt(study.Rows(), *shown_);
  onMap_ = {.option = study.Rows().OptionOf(*row),
            .choice = study.Choice(),
            .version = study.RowsVersion()};
  gaps_.clear();
  ++rebuilds_;
  const auto spectrum = study.Rows().SpectrumOf(*row, study.Choice().focus);
  map_->Begin(plot_->Scene().across, BinsOf(spectrum));
}

void WaterfallArea::AddRows() {
  const analysis::Waterfall& rows = model_.Get().Rows();
  const auto all = static_cast<std::int64_t>(rows.Rows());
  const std::int64_t fresh = std::min(rows.Taken() - onMap_.taken, all);
  onMap_.taken = rows.Taken();
  for (std::int64_t row = all - fresh; row < all; ++row) AddRow(static_cast<std::size_t>(row));
  if (isFrozen_ && onMap_.hasScale) return;  // what is seen stays
  FitScale();
  FitSpan();
}

void WaterfallArea::AddRow(std::size_t row) {
  const study::Study& study = model_.Get();
  const analysis::Waterfall& rows = study.Rows();
  if (!rows.GapBefore(row).empty()) onMap_.gap = rows.GapBefore(row);
  if (rows.OptionOf(row) != onMap_.option) {
    ++onMap_.otherOption;
    if (onMap_.gap.empty()) onMap_.gap = "other sample-rate option";
    return;
  }
  const auto curve = study::CurveOfRow(study, row);
  if (!curve) {
    onMap_.refused = curve.Why();
    return;
  }
  const double time = SecondsOf(rows.TimeOf(row));
  const WaterfallRows& there = map_->Rows();
  const std::size_t count = there.Count();
  if (count > 0 && !onMap_.gap.empty() && time > there.Time(count - 1)) {
    const double last = there.Time(count - 1);
    const double usual = count > 1 ? last - there.Time(count - 2) : 0;
    const WaterfallGap gap{last, std::max(last, time - usual),
                           Text(study::GapText(study, TimeOf(last), rows.TimeOf(row), onMap_.gap))};
    gaps_.push_back(gap);
    map_->AddGap(gap);
  }
  onMap_.gap.clear();
  if (!map_->AddRow(time, curve->values)) ++onMap_.earlier;
  for (std::size_t bin = curve->firstValid; bin < curve->values.size(); ++bin) {
    onMap_.largest = std::fmax(onMap_.largest, curve->values[bin]);
  }
}

// Only ever wider, so that a colour keeps its meaning while records come.
void WaterfallArea::FitScale() {
  const study::StudyChoice& choice = model_.Choice();
  const WaterfallScale now = map_->Scale();
  const AxisKind kind = study::ColourKind(choice);
  const QString title = QStringLiteral("Colour: ") + Text(analysis::TitleOf(choice.quantity));
  if (onMap_.hasScale && !(onMap_.largest > now.range.high)) return;
  onMap_.hasScale = true;
  const WaterfallScale scale{study::ColourRange(onMap_.largest, kind), kind};
  map_->SetScale(scale, title);
}

void WaterfallArea::FitSpan() {
  const WaterfallRows& rows = map_->Rows();
  if (isSpanUsers_ || rows.Count() == 0) return;
  const double span = SpanFor(rows.Time(rows.Count() - 1) - rows.Time(0));
  if (span != map_->Span()) map_->SetSpan(span);
}

// The map's frequencies stand under those of the spectrum.
void WaterfallArea::Align() {
  map_->SetAcross(plot_->Ranges().across);
  const double over = map_->Canvas().left() - plot_->Laid().Canvases().left();
  const int left = std::max(0, static_cast<int>(std::lround(over)));
  if (plot_->Scene().panes.empty()) return;
  if (plotFrame_->layout()->contentsMargins().left() != left) {
    plotFrame_->layout()->setContentsMargins(left, 0, 0, 0);
  }
  column_->update();
}

void WaterfallArea::ShowNote() {
  follow_->setVisible(chosen_.has_value());
  if (isFrozen_) return;  // another line would move what is seen
  std::string text;
  if (onMap_.refused && map_->Rows().Count() == 0) text = analysis::AsLine(*onMap_.refused);
  if (onMap_.otherOption > 0) {
    text += (text.empty() ? "" : " ") + Spectra(onMap_.otherOption) +
            " of other sample-rate options: this map is that of option " +
            std::to_string(onMap_.option) + ".";
  }
  if (onMap_.earlier > 0) {
    text += (text.empty() ? "" : " ") + Spectra(onMap_.earlier) +
            " not later than the one before: the clock was set back.";
  }
  note_->setText(Text(text));
  note_->setVisible(!text.empty());
}

void WaterfallArea::ShowCursor() {
  if (!isVisible() || !row_) return;
  row_->Choose(study::ChoiceForRow(model_.Choice()));
  const SceneCursor cursor = study::CursorOf(*row_);
  plot_->SetCursor(cursor);
  map_->SetCursor(cursor);
  map_->SetTimeCursor(chosen_ ? std::optional(SecondsOf(*chosen_)) : std::nullopt);
  ShowColumn();
  DescribeMap();
}

// What the map shows in words, for those who cannot see it.
void WaterfallArea::DescribeMap() {
  const auto rows = static_cast<int>(map_->Rows().Count());
  const QString at = figures_->text().replace('\n', QStringLiteral(", "));
  const QString content = rows == 0 ? tr("No spectrum yet")
                                    : Text(Spectra(rows)) + (at.isEmpty() ? QString() : ". " + at);
  map_->setAccessibleDescription(
      tr("%1. Up and Down go through time, Left and Right along the frequency.").arg(content));
}

void WaterfallArea::ShowColumn() {
  const study::StudyChoice& choice = model_.Choice();
  const auto& at = choice.inSpectrum.at;
  const study::MeasuredSpectrum* measured = row_ ? row_->SpectrumOf(choice.focus) : nullptr;
  MapColumn column{.kind = study::ColourKind(choice), .ink = study::InkOf(choice.focus)};
  figures_->clear();
  if (measured == nullptr || !measured->curve || choice.cursor == Kind::None || !at) {
    column.hint = QStringLiteral("Click into the map: the level at that frequency over time.");
    column_->Show(std::move(column), gaps_);
    return;
  }
  const analysis::Spectrum& spectrum = measured->spectrum;
  const double bin =
      std::clamp(std::round(spectrum.BinOf(*at)), 0.0, static_cast<double>(spectrum.Bins() - 1));
  const double hz = spectrum.FrequencyOf(bin);
  column.bin = static_cast<std::size_t>(bin);
  if (column.bin < measured->curve->firstValid) {
    column.hint = QStringLiteral("This bin holds offset, no vibration.");
  }
  const PlotReadOut readOut = study::ReadOutAt(*row_, hz, 0);
  const std::string axis(1, Letter(choice.focus));
  column.title = Text(axis + " at " + readOut.title + ", " + analysis::UnitOf(choice.quantity));
  column.thresholds = study::ThresholdsOf(plot_->Scene(), hz);
  if (chosen_) column.time = SecondsOf(*chosen_);
  std::string text = model_.Get().TimeText(*shown_) + "\n" + axis + " at " + readOut.title;
  for (const auto& row : readOut.rows) text += "\n" + row.value;
  const std::string name = NameAt(*row_, *at, spectrum.binWidthHz);
  if (!name.empty()) text += "\n" + name;
  figures_->setText(Text(text));
  column_->Show(std::move(column), gaps_);
}

// Beyond the newest row the newest is followed again.
void WaterfallArea::Step(int rows, int bins) {
  if (!row_ || !shown_) return;
  if (bins != 0) {
    const bool hasPlace = model_.Choice().inSpectrum.at && model_.Choice().cursor != Kind::None;
    model_.MoveCursor(hasPlace ? study::Stepped(*row_, bins)
                               : study::BeginningOf(*row_, Kind::Single));
  }
  const WaterfallRows& there = map_->Rows();
  if (rows == 0 || there.Count() == 0) return;
  const auto now = static_cast<std::ptrdiff_t>(there.Nearest(SecondsOf(*shown_)));
  const auto last = static_cast<std::ptrdiff_t>(there.Count()) - 1;
  const std::ptrdiff_t next = std::max<std::ptrdiff_t>(0, now + rows);
  if (next > last) {
    Choose(std::nullopt);
    return;
  }
  emit map_->RowChosen(static_cast<int>(next), there.Time(static_cast<std::size_t>(next)));
}

}  // namespace kestrel
