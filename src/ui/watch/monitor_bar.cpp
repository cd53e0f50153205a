// How the monitor's controls stand side by side.
// SPDX-License-Identifier: MIT
#include "ui/watch/monitor_bar.h"

#include <QHBoxLayout>

#include "ui/parts/widgets.h"

namespace kestrel {

MonitorBar::MonitorBar()
    : cmdNew(MakeFlatButton(
          "cmdPlanNew", tr("New plan from present settings"), "plus",
          tr("A plan that captures as the sensor is set now; change it as you like"))),
      cmdOpen(
          MakeFlatButton("cmdPlanOpen", tr("Open plan..."), "arch", tr("A plan that is a file"))),
      cmdSave(
          MakeFlatButton("cmdPlanSave", tr("Save"), "check", tr("Write the plan into its file"))),
      cmdSaveAs(MakeFlatButton("cmdPlanSaveAs", tr("Save as..."), "export",
                               tr("Write the plan into another file"))),
      ckNotify(MakeCheckBox("ckNotify", tr("Desktop notifications"),
                            tr("Tell the desktop when an alarm begins or is over, and when "
                               "monitoring ends by itself"))) {
  setObjectName("monitorBar");
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(8, 8, 8, 8);
  row->setSpacing(8);
  for (FlatButton* button : {cmdNew, cmdOpen, cmdSave, cmdSaveAs}) row->addWidget(button);
  row->addStretch(1);
  row->addWidget(ckNotify);
}

}  // namespace kestrel
