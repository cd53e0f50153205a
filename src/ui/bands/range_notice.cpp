// What the strip says, and its button that keeps thresholds in g.
// SPDX-License-Identifier: MIT
#include "ui/bands/range_notice.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/parts/notice_strip.h"
#include "ui/parts/widgets.h"

namespace kestrel {

RangeNotice::RangeNotice()
    : cmdKeepG(MakeButton("cmdKeepG", tr("Keep &g values"),
                          tr("Recalculate the codes for the present range; write them to the "
                             "sensor afterwards"))),
      cmdKeepCodes(MakeButton("cmdKeepCodes", tr("&Keep codes"),
                              tr("Take the thresholds as they are shown now"))),
      lblRangeNotice_(MakeLabel("lblRangeNotice", "")) {
  setObjectName("rangeNotice");
  setAccessibleName(tr("Thresholds of another range"));
  PaintNotice(*this);
  lblRangeNotice_->setWordWrap(true);
  auto* buttons = new QVBoxLayout;
  buttons->addWidget(cmdKeepG);
  buttons->addWidget(cmdKeepCodes);
  auto* all = new QHBoxLayout(this);
  all->addWidget(lblRangeNotice_, 1);
  all->addLayout(buttons);
  hide();
}

void RangeNotice::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) PaintNotice(*this);
}

void RangeNotice::Show(const std::string& text) {
  const bool appears = isHidden() && !text.empty();
  lblRangeNotice_->setText(QString::fromStdString(text));
  setVisible(!text.empty());
  if (!appears) return;
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

}  // namespace kestrel
