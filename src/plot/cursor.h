// The plot's cursor: which point it is at, and what is read out there.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "record/axis.h"
#include "record/current_record.h"

namespace kestrel {

// The cross-hair on the plot and the read-outs of its place.
class CursorView {
 public:
  virtual ~CursorView() = default;
  virtual void SetCursorX(const std::string& text) = 0;
  virtual void SetCursorFrequency(const std::string& text) = 0;
  virtual void SetCursorY(const std::string& text) = 0;
  // The time of a sample since the record's first; empty for spectra.
  virtual void SetCursorTime(const std::string& text) = 0;
  // Empties the read-outs and hides the cross-hair.
  virtual void ClearCursor() = 0;
  virtual void MoveCrossHair(double x, double y) = 0;
  [[nodiscard]] virtual bool TraceTicked(Axis axis) = 0;
};

// How far a key moves the cursor.
enum class CursorStep { BinBack, BinForward, PageBack, PageForward, First, Last };

// The time of a sample, "3.992 ms".
[[nodiscard]] std::string SampleTime(int sample, int option);

// Reads the plot out under the pointer, or bin by bin from the keyboard.
class PlotCursor {
 public:
  PlotCursor(const CurrentRecord& record, CursorView& view) : record_(record), view_(view) {}

  // Another record is at hand: what was read out does not belong to it.
  void RecordChanged() { view_.ClearCursor(); }

  // The pointer is at (x, y) in the plot's coordinates.
  void pic1_MouseMove(double x, double y);

  // Moves to another bin or sample, on the highest of the traces shown there.
  void Step(CursorStep step);
  // To this bin or sample, or the nearest one that the record has.
  void GoTo(int index);

 private:
  void ReadOut(double x, double y);
  [[nodiscard]] std::string FrequencyAt(double bin) const;
  [[nodiscard]] double HighestAt(int index);

  const CurrentRecord& record_;
  CursorView& view_;
  int index_ = 0;  // bin or sample the cursor is at
};

}  // namespace kestrel
