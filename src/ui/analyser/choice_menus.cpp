// What stands in the menus of the analyser's tool bar.
// SPDX-License-Identifier: MIT
#include "ui/analyser/choice_menus.h"

#include <QInputDialog>
#include <array>

#include "analysis/trace_set.h"
#include "display/cursors.h"
#include "numeric/number_texts.h"
#include "ui/analyser/tool_bar.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

using analysis::HorizontalUnit;
using analysis::Quantity;
using study::CursorKind;
using study::Extra;
using study::StudyChoice;

constexpr double kMostLowest = 50000;  // Hz

void Toggle(StudyChoice& choice, Extra extra) {
  if (choice.extras.erase(extra) == 0) choice.extras.insert(extra);
}

}  // namespace

ChoiceMenu::ChoiceMenu(const char* name, StudyModel& model, QWidget* parent)
    : QMenu(parent), model_(model) {
  setObjectName(name);
  setToolTipsVisible(true);
  connect(this, &QMenu::aboutToShow, this, [this] {
    clear();
    qDeleteAll(findChildren<QMenu*>(Qt::FindDirectChildrenOnly));  // clear() leaves them
    Fill();
  });
}

QAction* ChoiceMenu::Add(const char* name, const QString& text, bool isOn, StudyModel::Edit edit,
                         QMenu* into) {
  QAction* action = (into != nullptr ? into : this)->addAction(text);
  action->setObjectName(name);
  action->setCheckable(true);
  action->setChecked(isOn);
  connect(action, &QAction::triggered, this,
          [this, edit = std::move(edit)] { model_.Change(edit); });
  return action;
}

QAction* ChoiceMenu::Do(const char* name, const QString& text, std::function<void()> deed) {
  QAction* action = addAction(text);
  action->setObjectName(name);
  connect(action, &QAction::triggered, this, std::move(deed));
  return action;
}

void ChoiceMenu::Grey(QAction* action, const QString& why) {
  if (why.isEmpty()) return;
  action->setEnabled(false);
  QString text = action->text();
  const qsizetype key = text.indexOf('\t');
  action->setText(text.insert(key < 0 ? text.size() : key, QStringLiteral(" (%1)").arg(why)));
  action->setToolTip(why);
}

void AskNumber(QWidget* parent, const NumberQuestion& question,
               std::function<void(double)> answered) {
  auto* dialog = new QInputDialog(parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setObjectName("askNumber");
  dialog->setWindowTitle(question.title);
  dialog->setLabelText(question.text);
  dialog->setInputMode(QInputDialog::DoubleInput);
  dialog->setDoubleRange(question.least, question.most);
  dialog->setDoubleDecimals(question.decimals);
  dialog->setDoubleValue(question.value);
  QObject::connect(dialog, &QInputDialog::doubleValueSelected, parent, std::move(answered));
  dialog->open();
}

void QuantityMenu::Fill() {
  if (Choice().view == study::View::Time) {
    FillTime();
    return;
  }
  const Quantity now = Choice().quantity.quantity;
  const auto add = [&](const char* name, const QString& text, Quantity quantity) {
    const bool isOn =
        now == quantity || (quantity == Quantity::Acceleration && now == Quantity::Level);
    Add(name, text, isOn, [quantity](StudyChoice& choice) { ChooseQuantity(choice, quantity); });
  };
  add("mnuAcceleration", tr("Acceleration, g"), Quantity::Acceleration);
  add("mnuVelocity", tr("Velocity, mm/s"), Quantity::Velocity);
  add("mnuDisplacement", tr("Displacement, µm"), Quantity::Displacement);
  add("mnuDensity", tr("Acceleration density, g²/Hz"), Quantity::Density);
  addSeparator();
  using analysis::LevelReference;
  QMenu* reference = addMenu(tr("Reference of decibels"));
  const auto refer = [&](const char* name, const QString& text, LevelReference to) {
    Add(
        name, text, Choice().quantity.reference == to,
        [to](StudyChoice& choice) { choice.quantity.reference = to; }, reference);
  };
  refer("mnuReferenceG", tr("1 g RMS"), LevelReference::OneG);
  refer("mnuReferenceMicro", tr("1 µm/s² RMS"), LevelReference::MicrometrePerSecondSquared);
  const double lowest = Choice().quantity.lowestHz;
  Do("mnuLowest",
     tr("Velocity and displacement from %1...")
         .arg(lowest > 0 ? Text(analysis::HertzText(lowest)) : tr("what the bins allow")),
     [this] { AskLowest(); });
  addSeparator();
  using analysis::MagnitudeMeaning;
  QMenu* meaning = addMenu(tr("The sensor's magnitudes are taken for"));
  const auto means = [&](const char* name, const QString& text, MagnitudeMeaning what) {
    Add(
        name, text, Choice().meaning == what,
        [what](StudyChoice& choice) { choice.meaning = what; }, meaning);
  };
  means("mnuMeaningPeak", tr("peak values of a sine"), MagnitudeMeaning::PeakOfSine);
  means("mnuMeaningRms", tr("RMS values"), MagnitudeMeaning::Rms);
  using analysis::WindowKind;
  QMenu* window = addMenu(tr("Window for the spectrum of samples"));
  for (const WindowKind kind :
       {WindowKind::Rectangular, WindowKind::Hanning, WindowKind::FlatTop}) {
    const auto name = analysis::WindowOf(kind).name;
    Add(
        "mnuTimeWindow", QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())),
        Choice().timeWindow == kind, [kind](StudyChoice& choice) { choice.timeWindow = kind; },
        window);
  }
}

void QuantityMenu::FillTime() {
  using study::TimeQuantity;
  const auto add = [&](const char* name, const QString& text, TimeQuantity quantity, double from) {
    const bool isOn = Choice().timeQuantity == quantity &&
                      (quantity == TimeQuantity::Acceleration || Choice().timeFromHz == from);
    Add(name, text, isOn, [=](StudyChoice& choice) {
      choice.timeQuantity = quantity;
      choice.timeFromHz = from;
    });
  };
  add("mnuTimeAcceleration", tr("Acceleration, g"), TimeQuantity::Acceleration, 0);
  add("mnuTimeVelocity", tr("Velocity, mm/s, from the lowest that the record allows"),
      TimeQuantity::Velocity, 0);
  add("mnuTimeVelocity10", tr("Velocity, mm/s, from 10 Hz"), TimeQuantity::Velocity, 10);
}

void QuantityMenu::AskLowest() {
  AskNumber(
      parentWidget(),
      {tr("Lowest frequency"), tr("Velocity and displacement from, Hz (0: what the bins allow)"),
       Choice().quantity.lowestHz, 0, kMostLowest, 1},
      [this](double hz) {
        Model().Change([hz](StudyChoice& choice) { choice.quantity.lowestHz = hz; });
      });
}

void UnitMenu::Fill() {
  const auto add = [&](const char* name, const QString& text, HorizontalUnit unit) {
    return Add(name, text, Choice().unit == unit,
               [unit](StudyChoice& choice) { choice.unit = unit; });
  };
  add("mnuHertz", tr("Hz"), HorizontalUnit::Hertz);
  add("mnuCpm", tr("CPM (cycles a minute)"), HorizontalUnit::Cpm);
  QAction* orders = add("mnuOrders", tr("Orders of the shaft's speed"), HorizontalUnit::Order);
  if (!Choice().machine.rpm) Grey(orders, tr("set the shaft's speed under Known frequencies"));
  add("mnuBins", tr("Bins"), HorizontalUnit::Bin);
}

QString WhyNoDifference(const study::Study& study) {
  if (study.Reference() == nullptr) return ChoiceMenu::tr("no reference taken");
  const Axis axis = study.Choice().focus;
  const auto* shown = study.SpectrumOf(axis);
  const auto& reference = study.Reference()->Of(axis);
  if (shown == nullptr || !reference) return ChoiceMenu::tr("no spectrum");
  const auto why = analysis::WhyNotWith(shown->spectrum, reference->spectrum);
  return why ? Text(*why) : QString();
}

void TracesMenu::Fill() {
  for (const Axis axis : kAxes) {
    const QString letter(QLatin1Char(Letter(axis)));
    Add(("mnuShow" + letter).toUtf8().constData(), tr("Axis %1\t%1").arg(letter),
        Choice().Shows(axis), [axis](StudyChoice& choice) { ShowOrHide(choice, axis); });
  }
  QMenu* focus = addMenu(tr("In front"));
  for (const Axis axis : kAxes) {
    const QString letter(QLatin1Char(Letter(axis)));
    Add(("mnuFocus" + letter).toUtf8().constData(), tr("%1\tShift+%1").arg(letter),
        Choice().focus == axis, [axis](StudyChoice& choice) { choice.focus = axis; }, focus);
  }
  addSeparator();
  FillKept();
  if (Choice().view == study::View::Time) return;
  addSeparator();
  FillAccumulated();
}

void TracesMenu::FillKept() {
  const bool isEmpty = Model().Get().Shown() == nullptr;
  const QString none = isEmpty ? tr("no record yet") : QString();
  Grey(Do("mnuFreeze", tr("Frozen copy of what is shown"), [this] { Model().Freeze(); }), none);
  Grey(Do("mnuTakeReference", tr("Take what is shown as reference\tR"),
          [this] { Model().TakeReference(); }),
       none);
  const auto show = [&](const char* name, const QString& text, Extra extra, bool isThere) {
    QAction* action = Add(name, text, Choice().Has(extra) && isThere,
                          [extra](StudyChoice& choice) { Toggle(choice, extra); });
    if (!isThere) action->setVisible(false);
  };
  show("mnuShowFrozen", tr("Show the frozen copy"), Extra::Frozen,
       Model().Get().Frozen() != nullptr);
  show("mnuShowReference", tr("Show the reference"), Extra::Reference,
       Model().Get().Reference() != nullptr);
  QAction* difference =
      Add("mnuDifference", tr("Difference to the reference, dB"), Choice().difference,
          [](StudyChoice& choice) { choice.difference = !choice.difference; });
  if (Choice().view == study::View::Time) {
    Grey(difference, tr("of spectra"));
  } else if (!Choice().difference) {
    Grey(difference, WhyNoDifference(Model().Get()));
  }
}

void TracesMenu::FillAccumulated() {
  const auto add = [&](const char* name, const QString& text, Extra extra) {
    const auto* held = Model().Get().Accumulation().Of(extra, Choice().focus);
    const QString count =
        held != nullptr ? tr(" (%n captures)", nullptr, held->captures) : QString();
    Add(name, text + count, Choice().Has(extra),
        [extra](StudyChoice& choice) { Toggle(choice, extra); });
  };
  add("mnuAverage", tr("Average, linear"), Extra::LinearAverage);
  add("mnuExponential", tr("Average, exponential"), Extra::ExponentialAverage);
  add("mnuMaximum", tr("Maximum hold"), Extra::MaximumHold);
  add("mnuMinimum", tr("Minimum hold"), Extra::MinimumHold);
  Do("mnuAverageOf", tr("Averages of %1 captures...").arg(Choice().averageOf), [this] {
    AskNumber(parentWidget(),
              {tr("Averages"), tr("Captures in an average"),
               static_cast<double>(Choice().averageOf), 2, 10000, 0},
              [this](double count) {
                Model().Change(
                    [count](StudyChoice& choice) { choice.averageOf = static_cast<int>(count); });
              });
  });
  Do("mnuRestart", tr("Begin averages and holds anew"), [this] { Model().RestartAccumulation(); });
}

void CursorMenu::Fill() {
  struct Line {
    const char* name;
    QString text;
    CursorKind kind;
  };
  const bool isTime = Choice().view == study::View::Time;
  const std::array<Line, 5> lines{{{"mnuNoCursor", tr("None\tN"), CursorKind::None},
                                   {"mnuSingle", tr("Single\tC"), CursorKind::Single},
                                   {"mnuDelta", tr("Delta\tD"), CursorKind::Delta},
                                   {"mnuHarmonic", tr("Harmonic\tH"), CursorKind::Harmonic},
                                   {"mnuSideband", tr("Sideband\tS"), CursorKind::Sideband}}};
  for (const Line& line : lines) {
    QAction* action = addAction(line.text);
    action->setObjectName(line.name);
    action->setCheckable(true);
    action->setChecked(Choice().cursor == line.kind);
    const bool isOfSpectra = line.kind == CursorKind::Harmonic || line.kind == CursorKind::Sideband;
    if (isTime && isOfSpectra) Grey(action, tr("of spectra"));
    connect(action, &QAction::triggered, this, [this, kind = line.kind] {
      Model().MoveCursor(kind, study::BeginningOf(Model().Get(), kind));
    });
  }
  addSeparator();
  Do("mnuMembers", tr("Members: %1...").arg(Choice().cursorMembers), [this] {
    AskNumber(parentWidget(),
              {tr("Cursor"), tr("Harmonics, or sidebands together"),
               static_cast<double>(Choice().cursorMembers), 2, 50, 0},
              [this](double count) {
                Model().Change([count](StudyChoice& choice) {
                  choice.cursorMembers = static_cast<int>(count);
                });
              });
  });
  Add("mnuClearMarkers", tr("Remove all markers"), false, [](StudyChoice& choice) {
    choice.markers.clear();
  })->setEnabled(!Choice().markers.empty());
}

}  // namespace kestrel
