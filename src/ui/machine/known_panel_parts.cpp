// How parts of the machine are asked for: gears, bearings, free frequencies.
// SPDX-License-Identifier: MIT
#include <cmath>

#include "ui/machine/bearing_dialog.h"
#include "ui/machine/known_panel.h"
#include "ui/machine/part_dialog.h"

namespace kestrel {

void KnownPanel::AddMesh() {
  auto* dialog = new PartDialog(
      {QStringLiteral("meshDialog"),
       QStringLiteral("Gear mesh"),
       QStringLiteral("Gear mesh"),
       QStringLiteral("Teeth"),
       {QStringLiteral("number of teeth"), QStringLiteral("a whole number, 1 to 10,000"),
        [](double teeth) { return teeth >= 1 && teeth <= 10'000 && std::floor(teeth) == teeth; }}},
      this);
  connect(dialog, &PartDialog::Told, this, [this](const QString& name, double teeth) {
    Change(study::With(model_.Choice().machine,
                       analysis::GearMesh{.name = name.toStdString() + ", " +
                                                  std::to_string(std::lround(teeth)) + " teeth",
                                          .teeth = static_cast<int>(std::lround(teeth))}));
  });
  dialog->show();
}

void KnownPanel::AddFrequency() {
  auto* dialog = new PartDialog(
      {QStringLiteral("frequencyDialog"),
       QStringLiteral("Frequency"),
       QStringLiteral("Belt"),
       QStringLiteral("Frequency, Hz"),
       {QStringLiteral("frequency"), QStringLiteral("above 0 to 50,000 Hz"), study::IsFrequency}},
      this);
  connect(dialog, &PartDialog::Told, this, [this](const QString& name, double hz) {
    Change(study::With(model_.Choice().machine,
                       analysis::FreeFrequency{.name = name.toStdString(), .hz = hz}));
  });
  dialog->show();
}

void KnownPanel::AddBearing() {
  auto* dialog = new BearingDialog(library_, this);
  connect(dialog, &BearingDialog::Chosen, this, [this](const analysis::Bearing& bearing) {
    Change(study::With(model_.Choice().machine, bearing));
  });
  connect(dialog, &BearingDialog::LibraryChanged, this,
          [this](const study::BearingLibrary& library) {
            library_ = library;
            emit LibraryChanged();
          });
  dialog->show();
}

}  // namespace kestrel
