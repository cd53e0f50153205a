// What the workbench says around its parts: tools, summaries, progress, notices.
// SPDX-License-Identifier: MIT
#include <QSignalBlocker>
#include <utility>

#include "ui/library/keeper_text.h"
#include "ui/study/text_table.h"
#include "ui/workbench/workbench_view.h"

namespace kestrel {

void WorkbenchView::Show() {
  ShowTools();
  ShowNotices();
  if (model_.HasGood()) {
    distributions_->Show(model_.Bench(), model_.Choice());
  } else {
    distributions_->Clear();
  }
  middle_->setCurrentIndex(model_.HasGood() ? 0 : 1);
  const bool hasParts = !model_.Choice().parts.empty();
  lblEmpty_->setText(
      !model_.HasArchive() ? tr("No archive: the program was started with --no-archive, or has no "
                                "folder to keep one in. Start it with --archive and a file.")
      : model_.IsReading() ? tr("The records are being read.")
      : hasParts && !model_.Trouble().isEmpty() ? tr("The archive cannot be read now.")
      : hasParts ? tr("None of the chosen records can be taken as known good. The list on the left "
                      "says why; choose others.")
                 : tr("Here the thresholds of the sensor's alarm bands are found from records of "
                      "your own machine: begin by choosing records that are known to be good, here "
                      "or in the Library with \"Take as known good\" in the menu Archive."));
  ShowSummaries();
}

void WorkbenchView::ShowSummaries() {
  const auto count = [](std::size_t records) {
    return CountOf(static_cast<std::int64_t>(records), tr("record"), tr("records"));
  };
  const bool isThere = model_.HasGood();
  if (model_.HasBench()) {
    const baseline::Sets& sets = model_.Bench().TheSets();
    cardSets_->SetSummary(count(sets.good.size() + sets.bad.size()));
  } else {
    cardSets_->SetSummary({});
  }
  cardDetail_->SetTitle(detail_->Title());
  cardDetail_->SetSummary(detail_->Summary());
  cardProposal_->SetSummary(proposal_->Summary());
  cardReplay_->SetSummary(model_.Choice().judgement.IsSingle()
                              ? tr("single records, 95 % bounds")
                              : tr("%1, 95 % bounds").arg(Text(TextOf(model_.Choice().judgement))));
  if (!isThere) return;
  const DistributionRange& range = distributions_->Model().Range();
  cardDistributions_->SetSummary(
      range.isRelative ? tr("%1 to +%2 dB re proposed warning; triangle: present warning, dashed: "
                            "proposed, solid: fault")
                             .arg(QString::number(range.lowDb).replace('-', QChar(0x2212)))
                             .arg(range.highDb)
                       : tr("g peak, logarithmic; triangle: present warning, dashed: proposed, "
                            "solid: fault"));
}

void WorkbenchView::ShowTools() {
  const WorkbenchLook& look = model_.Choice().look;
  const QSignalBlocker quiet(cbxOption_);
  const auto option = model_.Choice().option;
  cbxOption_->setCurrentIndex(option ? *option + 1 : 0);
  segScale_->Choose(look.inDecibels ? 1 : 0);
  for (const auto& [button, isOn] :
       {std::pair(cmdShowNow_, look.showsNow), std::pair(cmdShowBad_, look.showsBad)}) {
    const QSignalBlocker silent(button);
    button->setChecked(isOn);
  }
}

void WorkbenchView::ShowReading() {
  progress_->setVisible(model_.IsReading());
  if (!model_.IsReading()) return;
  barProgress_->setRange(0, 0);
  lblProgress_->setText(tr("Looking for the records"));
}

void WorkbenchView::ShowNotices() {
  if (model_.Trouble().isEmpty()) {
    notices_->Take("archive");
  } else if (!notices_->Has("archive")) {
    notices_->Put({.id = "archive",
                   .gravity = Gravity::Fault,
                   .text = model_.Trouble(),
                   .cure = tr("Try again"),
                   .carryOut = [this] { model_.Read(); },
                   .closed = {}});
  }
  const bool isUnknown = model_.HasGood() && !model_.KnowsBands();
  if (!isUnknown) {
    notices_->Take("bands");
  } else if (!notices_->Has("bands")) {
    notices_->Put({.id = "bands",
                   .gravity = Gravity::Offer,
                   .text = tr("The sensor's bands of this option are not known yet: six usual ones "
                              "stand here, without present thresholds."),
                   .cure = tr("Read the sensor's bands"),
                   .carryOut = [this] { host_.openBands(); },
                   .closed = {}});
  }
}

}  // namespace kestrel
