// The levels that can be followed, as a menu: overall, bands, near known frequencies, conditions.
// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

#include "trend/choice.h"
#include "ui/study/study_model.h"

namespace kestrel {

// Filled each time it opens: bands and known frequencies may be others.
class LevelMenu : public QMenu {
  Q_OBJECT

 public:
  LevelMenu(StudyModel& model, QWidget* parent);

 signals:
  void Chosen(const kestrel::trend::Level& level);

 private:
  void Fill();
  void AddBands(QMenu& menu, archive::TrendOf of);
  void AddNear(QMenu& menu);
  void Add(QMenu& menu, const QString& name, const QString& text, const trend::Level& level);
  void AskBand(archive::TrendOf of);
  void AskNear();

  StudyModel& model_;
};

}  // namespace kestrel
