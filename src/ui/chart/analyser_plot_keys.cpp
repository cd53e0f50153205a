// The plot of the analyser: what keys do.
// SPDX-License-Identifier: MIT
#include <QKeyEvent>
#include <algorithm>
#include <array>
#include <optional>

#include "ui/chart/analyser_plot.h"

namespace kestrel {
namespace {

constexpr double kKeyFactor = 1.5;  // of the scale, a press

struct KeyCommand {
  int key;
  bool isShift;
  PlotCommand command;
};

constexpr std::array kKeys{
    KeyCommand{Qt::Key_X, false, PlotCommand::ShowX},
    KeyCommand{Qt::Key_Y, false, PlotCommand::ShowY},
    KeyCommand{Qt::Key_Z, false, PlotCommand::ShowZ},
    KeyCommand{Qt::Key_X, true, PlotCommand::FocusX},
    KeyCommand{Qt::Key_Y, true, PlotCommand::FocusY},
    KeyCommand{Qt::Key_Z, true, PlotCommand::FocusZ},
    KeyCommand{Qt::Key_O, false, PlotCommand::Stack},
    KeyCommand{Qt::Key_C, false, PlotCommand::CursorSingle},
    KeyCommand{Qt::Key_D, false, PlotCommand::CursorDelta},
    KeyCommand{Qt::Key_H, false, PlotCommand::CursorHarmonic},
    KeyCommand{Qt::Key_S, false, PlotCommand::CursorSideband},
    KeyCommand{Qt::Key_N, false, PlotCommand::CursorNone},
    KeyCommand{Qt::Key_T, false, PlotCommand::CursorTrace},
    KeyCommand{Qt::Key_Home, false, PlotCommand::FirstValid},
    KeyCommand{Qt::Key_End, false, PlotCommand::LastValid},
    KeyCommand{Qt::Key_P, false, PlotCommand::SnapToPeak},
    KeyCommand{Qt::Key_PageUp, false, PlotCommand::SmallerPeak},
    KeyCommand{Qt::Key_PageDown, false, PlotCommand::LargerPeak},
    KeyCommand{Qt::Key_M, false, PlotCommand::Marker},
    KeyCommand{Qt::Key_G, false, PlotCommand::Vertical},
    KeyCommand{Qt::Key_U, false, PlotCommand::Horizontal},
    KeyCommand{Qt::Key_B, false, PlotCommand::Bands},
    KeyCommand{Qt::Key_L, false, PlotCommand::Labels},
    KeyCommand{Qt::Key_R, false, PlotCommand::Reference},
    KeyCommand{Qt::Key_Space, false, PlotCommand::Freeze},
};

std::optional<PlotCommand> CommandOf(const QKeyEvent& event) {
  const auto others = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
  if (event.matches(QKeySequence::Copy)) return PlotCommand::Copy;
  if (event.modifiers() == Qt::ControlModifier && event.key() == Qt::Key_E) {
    return PlotCommand::Export;
  }
  if (event.modifiers() & others) return std::nullopt;
  const bool isShift = event.modifiers().testFlag(Qt::ShiftModifier);
  const auto* found = std::find_if(kKeys.begin(), kKeys.end(), [&](const KeyCommand& entry) {
    return entry.key == event.key() && entry.isShift == isShift;
  });
  return found == kKeys.end() ? std::nullopt : std::optional(found->command);
}

bool IsZoomKey(int key) {
  return key == Qt::Key_Plus || key == Qt::Key_Minus || key == Qt::Key_Equal ||
         key == Qt::Key_Underscore || key == Qt::Key_Asterisk;
}

}  // namespace

// Single letters are the plot's while it has the focus, whatever menu claims them. Tab goes through
// the cursor's members, and on when there are none.
bool AnalyserPlot::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    const bool isPlain = !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    const bool endsDrag = key.key() == Qt::Key_Escape && press_.drag != Drag::None;
    if (endsDrag ||
        (isPlain && (CommandOf(key) || IsZoomKey(key.key()) || key.key() == Qt::Key_A))) {
      event->accept();
      return true;
    }
  }
  if (event->type() == QEvent::KeyPress && overlay_.cursor.members.size() > 1) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
      emit CommandAsked(key == Qt::Key_Tab ? PlotCommand::NextMember : PlotCommand::PreviousMember);
      return true;
    }
  }
  return QWidget::event(event);
}

bool AnalyserPlot::MoveView(const QKeyEvent& event) {
  const bool isShift = event.modifiers().testFlag(Qt::ShiftModifier);
  const bool isAlt = event.modifiers().testFlag(Qt::AltModifier);
  if (event.modifiers().testFlag(Qt::ControlModifier)) return false;
  switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Asterisk:
      isShift&& event.key() == Qt::Key_Asterisk ? ZoomUp(kKeyFactor) : ZoomAcross(kKeyFactor);
      return true;
    case Qt::Key_Equal:  // the plus key of many keyboards
      ZoomAcross(kKeyFactor);
      return true;
    case Qt::Key_Minus:
      isShift ? ZoomUp(1 / kKeyFactor) : ZoomAcross(1 / kKeyFactor);
      return true;
    case Qt::Key_Underscore:
      ZoomUp(1 / kKeyFactor);
      return true;
    case Qt::Key_A:
      if (isShift || isAlt) return false;
      ShowAll();
      return true;
    case Qt::Key_Left:
      if (isAlt) GoBack();
      return isAlt;
    case Qt::Key_Right:
      if (isAlt) GoForward();
      return isAlt;
    default:
      return false;
  }
}

bool AnalyserPlot::StepCursor(const QKeyEvent& event) {
  if (event.key() != Qt::Key_Left && event.key() != Qt::Key_Right) return false;
  double bins = event.key() == Qt::Key_Left ? -1 : 1;
  if (event.modifiers().testFlag(Qt::ShiftModifier)) bins *= 10;
  if (event.modifiers().testFlag(Qt::ControlModifier)) bins /= 10;
  emit StepAsked(bins);
  return true;
}

bool AnalyserPlot::Command(const QKeyEvent& event) {
  const auto command = CommandOf(event);
  if (command) emit CommandAsked(*command);
  return command.has_value();
}

void AnalyserPlot::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && press_.drag != Drag::None) {
    navigator_.PutAcross(press_.ranges.across);
    press_ = {};
    Refresh([this] { overlay_.band.reset(); });
    Changed(false);
    return;
  }
  if (!MoveView(*event) && !StepCursor(*event) && !Command(*event)) QWidget::keyPressEvent(event);
}

}  // namespace kestrel
