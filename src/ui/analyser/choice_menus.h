// The menus of the analyser's tool bar: quantity, unit, traces and cursor.
// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>
#include <functional>

#include "ui/study/study_model.h"

namespace kestrel {

// Filled anew whenever it opens, from the choice and from what the record at hand allows. What is
// not possible stands there grey, with its reason.
class ChoiceMenu : public QMenu {
 public:
  ChoiceMenu(const char* name, StudyModel& model, QWidget* parent);

 protected:
  virtual void Fill() = 0;

  // A line that is ticked while it holds; the edit is carried out when it is chosen.
  QAction* Add(const char* name, const QString& text, bool isOn, StudyModel::Edit edit,
               QMenu* into = nullptr);
  QAction* Do(const char* name, const QString& text, std::function<void()> deed);
  // Greys a line and says why; nothing where there is no reason.
  static void Grey(QAction* action, const QString& why);

  [[nodiscard]] StudyModel& Model() { return model_; }
  [[nodiscard]] const study::StudyChoice& Choice() const { return model_.Choice(); }

 private:
  StudyModel& model_;
};

class QuantityMenu : public ChoiceMenu {
 public:
  QuantityMenu(StudyModel& model, QWidget* parent) : ChoiceMenu("menuQuantity", model, parent) {}

 protected:
  void Fill() override;

 private:
  void FillTime();
  void AskLowest();
};

class UnitMenu : public ChoiceMenu {
 public:
  UnitMenu(StudyModel& model, QWidget* parent) : ChoiceMenu("menuUnit", model, parent) {}

 protected:
  void Fill() override;
};

class TracesMenu : public ChoiceMenu {
 public:
  TracesMenu(StudyModel& model, QWidget* parent) : ChoiceMenu("menuTraces", model, parent) {}

 protected:
  void Fill() override;

 private:
  void FillKept();
  void FillAccumulated();
};

class CursorMenu : public ChoiceMenu {
 public:
  CursorMenu(StudyModel& model, QWidget* parent) : ChoiceMenu("menuCursor", model, parent) {}

 protected:
  void Fill() override;
};

// A number typed by the user in the locale's digits, checked; asks without blocking anything.
struct NumberQuestion {
  QString title;
  QString text;  // what is asked, with its unit
  double value = 0;
  double least = 0;
  double most = 0;
  int decimals = 0;
};
void AskNumber(QWidget* parent, const NumberQuestion& question,
               std::function<void(double)> answered);

// Why what is shown has no difference to the reference; empty where it has.
[[nodiscard]] QString WhyNoDifference(const study::Study& study);

}  // namespace kestrel
