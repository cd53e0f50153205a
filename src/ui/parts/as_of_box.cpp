// When read-outs were read, said in the group's title.
// SPDX-License-Identifier: MIT
#include "ui/parts/as_of_box.h"

#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr QColor kGrey{0xB4, 0xBA, 0xC2};  // between the windows' light and dark grounds

}  // namespace

AsOfBox::AsOfBox(const QString& title, Locale& locale) : title_(title), locale_(locale) {
  setTitle(title_);
  // Room for the longer title from the start: nothing moves when the time is added.
  constexpr int kBeside = 12;
  const QString longest = tr("%1, as of %2").arg(title_, "00:00:00 AM");
  setMinimumWidth(fontMetrics().horizontalAdvance(longest) + kBeside);
}

void AsOfBox::Refreshed() {
  readAt_ = QString::fromStdString(locale_.Time());
  if (!asOf_) return;
  asOf_ = false;
  setTitle(title_);
}

void AsOfBox::ShowAsOf() {
  if (asOf_ || readAt_.isEmpty()) return;
  asOf_ = true;
  setTitle(tr("%1, as of %2").arg(title_, readAt_));
  Grey();
}

void PaintGrey(QWidget* light) {
  PaintGround(light, kGrey);
}

}  // namespace kestrel
