// The choice taken, kept and taken back.
// SPDX-License-Identifier: MIT
#include "ui/readout/fast_readout_part.h"

#include <QSettings>
#include <QStringList>

namespace kestrel {
namespace {

constexpr const char* kNoticeId = "fastReadout";

QSettings File() {
  return {QSettings::IniFormat, QSettings::UserScope, "kestrel", "readout"};
}

}  // namespace

FastReadoutPart::FastReadoutPart(FastReadout& fast, QAction& item, NoticeStrip& strip,
                                 HandlerEdge& edge)
    : fast_(fast), item_(item), strip_(strip), edge_(edge) {
  Read();
  Refresh();
  fast_.OnRefused([this](const FastReadout::Difference& difference) { Tell(difference); });
  connect(&item_, &QAction::triggered, this, [this] {
    edge_.Run("mnuFastReadout_Click", [this] { mnuFastReadout_Click(); });
    Refresh();
  });
}

// A click that was refused has moved the tick all the same.
void FastReadoutPart::Refresh() {
  const bool isRefused = fast_.Chosen() && !fast_.InUse();
  item_.setText(isRefused ? tr("&Fast read-out (switched off for this interface)")
                          : tr("&Fast read-out"));
  item_.setChecked(fast_.Chosen());
}

void FastReadoutPart::mnuFastReadout_Click() {
  fast_.Choose(item_.isChecked());
  strip_.Take(kNoticeId);
  Keep();
}

void FastReadoutPart::Tell(const FastReadout::Difference& difference) {
  Keep();
  strip_.Put({.id = kNoticeId,
              .gravity = Gravity::Doubt,
              .text = QString::fromStdString(TextOf(difference)),
              .cure = tr("Try it again"),
              .carryOut = [this] { edge_.Run("TryFastReadout", [this] { TryAgain(); }); },
              .closed = {}});
}

void FastReadoutPart::TryAgain() {
  fast_.Choose(false);
  fast_.Choose(true);
  strip_.Take(kNoticeId);
  Keep();
}

void FastReadoutPart::Read() {
  const QSettings file = File();
  std::vector<std::string> refused;
  for (const QString& road : file.value("refused").toStringList()) {
    refused.push_back(road.toStdString());
  }
  fast_.Choose(file.value("fast", false).toBool());
  fast_.Refuse(std::move(refused));
}

void FastReadoutPart::Keep() const {
  QSettings file = File();
  QStringList refused;
  for (const std::string& road : fast_.Refused()) refused.append(QString::fromStdString(road));
  file.setValue("fast", fast_.Chosen());
  file.setValue("refused", refused);
}

}  // namespace kestrel
