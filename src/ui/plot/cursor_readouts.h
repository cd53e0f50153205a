// The read-outs of the plot's cursor, beside the plot.
// SPDX-License-Identifier: MIT
#pragma once

#include <QHBoxLayout>
#include <QLabel>
#include <QString>
#include <string>

namespace kestrel {

// The read-outs of the plot's cursor: bin or sample, frequency or time, value. They keep their
// places while they are hidden or empty.
class CursorReadouts {
 public:
  CursorReadouts();

  // At the end of a strip, which owns the labels from then on.
  void AddTo(QHBoxLayout& strip);

  void SetStartValues();
  void ShowFrequency(bool shown) { LblFreq_->setVisible(shown); }
  void SetX(const std::string& text) { Set(lblCursorX_, text); }
  void SetFrequency(const std::string& text) { Set(LblFreq_, text); }
  void SetTime(const std::string& text) { Set(lblCursorTime_, text); }
  void SetY(const std::string& text) { Set(lblCursorY_, text); }
  void Clear();

  // Bin or sample, 0 while there is no cursor.
  [[nodiscard]] int Index() const { return lblCursorX_->text().toInt(); }
  // The whole of it as a sentence; `unit` is that of the horizontal axis.
  [[nodiscard]] QString InWords(const QString& unit) const;

 private:
  static void Set(QLabel* label, const std::string& text) {
    label->setText(QString::fromStdString(text));
  }

  QLabel* lblCursorX_;
  QLabel* LblFreq_;
  QLabel* lblCursorTime_;  // in the place of LblFreq, over time records
  QLabel* lblCursorY_;
};

}  // namespace kestrel
