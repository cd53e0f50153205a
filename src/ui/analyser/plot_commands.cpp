// How each key of the analyser's plot is carried out.
// SPDX-License-Identifier: MIT
#include "ui/analyser/plot_commands.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "display/cursors.h"
#include "display/scene.h"
#include "ui/analyser/tool_bar.h"

namespace kestrel {
namespace {

using study::CursorKind;
using study::StudyChoice;

constexpr int kVerticalKinds = 3;
constexpr std::array kUnits{analysis::HorizontalUnit::Hertz, analysis::HorizontalUnit::Cpm,
                            analysis::HorizontalUnit::Order};

void Focus(StudyChoice& choice, Axis axis) {
  choice.focus = axis;
  choice.shown[Index(axis)] = true;
}

// Orders only where there is a speed.
void NextUnit(StudyChoice& choice) {
  const auto now = std::find(kUnits.begin(), kUnits.end(), choice.unit);
  auto next = static_cast<std::size_t>(now == kUnits.end() ? 0 : now - kUnits.begin() + 1);
  if (next == 2 && !choice.machine.rpm) next = 0;
  choice.unit = kUnits[next % kUnits.size()];
}

void NextVertical(StudyChoice& choice) {
  const int kinds = HasLevel(choice) ? kVerticalKinds : kVerticalKinds - 1;
  ChooseVertical(choice, (VerticalOf(choice) + 1) % kinds);
}

}  // namespace

PlotCommands::PlotCommands(StudyModel& model, AnalyserPlot& plot)
    : QObject(&plot), model_(model), plot_(plot) {
  Listen();
}

void PlotCommands::Listen() {
  connect(&plot_, &AnalyserPlot::CommandAsked, this,
          [this](PlotCommand command) { CarryOut(command); });
  connect(&plot_, &AnalyserPlot::CursorPlaced, this, [this](double x, int pane) {
    const auto axes = study::AxesOfPane(model_.Choice(), pane);
    if (model_.Choice().stacked && axes.size() == 1 && axes.front() != model_.Choice().focus) {
      model_.Change([axis = axes.front()](StudyChoice& choice) { choice.focus = axis; });
    }
    model_.MoveCursor(study::Placed(model_.Get(), x));
  });
  connect(&plot_, &AnalyserPlot::SnapAsked, this,
          [this](double x, int) { model_.MoveCursor(study::SnappedTo(model_.Get(), x)); });
  connect(&plot_, &AnalyserPlot::MemberDragged, this, [this](int member, double x) {
    model_.MoveCursor(study::Dragged(model_.Get(), member, x));
  });
  connect(&plot_, &AnalyserPlot::StepAsked, this,
          [this](double bins) { model_.MoveCursor(study::Stepped(model_.Get(), bins)); });
}

void PlotCommands::CarryOut(PlotCommand command, const study::Study* row) {
  switch (command) {
    case PlotCommand::Copy:
      emit CopyAsked();
      break;
    case PlotCommand::Export:
      emit ExportAsked();
      break;
    case PlotCommand::Reference:
      if (model_.Get().Shown() != nullptr) model_.TakeReference();
      break;
    case PlotCommand::Freeze:
      model_.ToggleHold();
      break;
    case PlotCommand::Vertical:
      model_.Change(NextVertical);
      break;
    case PlotCommand::Horizontal:
      model_.Change(NextUnit);
      break;
    case PlotCommand::Bands:
      model_.Change([](StudyChoice& choice) { choice.showBands = !choice.showBands; });
      break;
    case PlotCommand::Labels:
      model_.Change([](StudyChoice& choice) { choice.showLabels = !choice.showLabels; });
      break;
    case PlotCommand::Stack:
      model_.Change([](StudyChoice& choice) { choice.stacked = !choice.stacked; });
      break;
    default:
      ChangeAxes(command);
      ChangeCursor(command, row != nullptr ? *row : model_.Get());
  }
}

void PlotCommands::ChangeAxes(PlotCommand command) {
  constexpr std::array kShow{PlotCommand::ShowX, PlotCommand::ShowY, PlotCommand::ShowZ};
  constexpr std::array kFocus{PlotCommand::FocusX, PlotCommand::FocusY, PlotCommand::FocusZ};
  for (const Axis axis : kAxes) {
    if (command == kShow[Index(axis)]) {
      model_.Change([axis](StudyChoice& choice) { ShowOrHide(choice, axis); });
    } else if (command == kFocus[Index(axis)]) {
      model_.Change([axis](StudyChoice& choice) { Focus(choice, axis); });
    }
  }
  if (command == PlotCommand::CursorTrace) NextFocus();
}

// The cursor stands on the axis in front.
void PlotCommands::NextFocus() {
  const auto shown = study::ShownAxes(model_.Choice());
  if (shown.empty()) return;
  const auto now = std::find(shown.begin(), shown.end(), model_.Choice().focus);
  const auto at = now == shown.end() ? 0 : static_cast<std::size_t>(now - shown.begin()) + 1;
  model_.Change([axis = shown[at % shown.size()]](StudyChoice& choice) { choice.focus = axis; });
}

// The arrows move the second of a delta cursor: the two change places.
void PlotCommands::NextMember(int step) {
  if (model_.Choice().cursor != CursorKind::Delta) {
    emit MemberAsked(step);
    return;
  }
  study::CursorPlaces places = model_.Choice().Places();
  std::swap(places.at, places.second);
  model_.MoveCursor(places);
}

void PlotCommands::ChangeCursor(PlotCommand command, const study::Study& study) {
  const auto take = [&](CursorKind kind) {
    model_.MoveCursor(kind, study::BeginningOf(study, kind));
  };
  const bool isTime = model_.Choice().view == study::View::Time;
  switch (command) {
    case PlotCommand::CursorSingle:
      return take(CursorKind::Single);
    case PlotCommand::CursorDelta:
      return take(CursorKind::Delta);
    case PlotCommand::CursorHarmonic:
      return take(isTime ? CursorKind::Single : CursorKind::Harmonic);
    case PlotCommand::CursorSideband:
      return take(isTime ? CursorKind::Single : CursorKind::Sideband);
    case PlotCommand::CursorNone:
      return model_.MoveCursor(CursorKind::None, model_.Choice().Places());
    case PlotCommand::FirstValid:
      return model_.MoveCursor(study::ToEnd(study, false));
    case PlotCommand::LastValid:
      return model_.MoveCursor(study::ToEnd(study, true));
    case PlotCommand::SnapToPeak:
      if (const auto at = model_.Choice().Places().at)
        model_.MoveCursor(study::SnappedTo(study, *at));
      return;
    case PlotCommand::SmallerPeak:
      return model_.MoveCursor(study::ToPeakBySize(study, 1));
    case PlotCommand::LargerPeak:
      return model_.MoveCursor(study::ToPeakBySize(study, -1));
    case PlotCommand::NextMember:
      return NextMember(1);
    case PlotCommand::PreviousMember:
      return NextMember(-1);
    case PlotCommand::Marker:
      if (const auto at = model_.Choice().inSpectrum.at; at && !isTime) emit MarkerAsked(*at);
      return;
    default:
      return;
  }
}

}  // namespace kestrel
