// The controls of the wide view: quantity, scale, axes, overlays, history, out.
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QWidget>
#include <array>

#include "display/wide_view.h"
#include "record/axis.h"
#include "ui/study/flat_button.h"

namespace kestrel {

class WideBar : public QWidget {
  Q_OBJECT

 public:
  WideBar();

  void Show(const study::WideLook& look, const study::StudyChoice& choice);
  [[nodiscard]] study::WideLook Look() const;
  // "Kept wide spectra" in a list: the first item stands for what was captured now.
  QComboBox* cbxKept;
  std::array<FlatButton*, 3> axes{};
  FlatButton* cmdOptions;
  FlatButton* cmdLabels;
  FlatButton* cmdBack;
  FlatButton* cmdForward;
  FlatButton* cmdShowAll;
  FlatButton* cmdCopy;
  FlatButton* cmdExport;

 signals:
  void LookChosen();

 private:
  void LayOut();

  QComboBox* cbxQuantity_;
  Segments* segVertical_;
};

}  // namespace kestrel
