// The form of a bearing, beside the list of those that are kept.
// SPDX-License-Identifier: MIT
#include "ui/machine/bearing_dialog.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "numeric/number_texts.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

NumberField* Field(const char* name, const char* what, const char* range,
                   std::function<bool(double)> holds) {
  return new NumberField(QLatin1String(name), QLatin1String(what),
                         {QLatin1String(what), QLatin1String(range), std::move(holds)});
}

bool IsSize(double value) {
  return value > 0;
}

NumberField* FactorField(const char* name, const char* what) {
  return Field(name, what, "above 0, as a multiple of the shaft's frequency", IsSize);
}

QPushButton* Button(const char* name, const QString& text, const QString& tip) {
  auto* button = new QPushButton(text);
  button->setToolTip(tip);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  return button;
}

double NumberOf(const NumberField* field) {
  return field->Number().value_or(0);
}

}  // namespace

BearingDialog::BearingDialog(study::BearingLibrary library, QWidget* parent)
    : QDialog(parent),
      library_(std::move(library)),
      list_(new QListWidget),
      name_(new QLineEdit),
      mode_(new QComboBox),
      geometry_{
          Field("elements", "number of elements", "a whole number, 1 to 200",
                [](double n) { return n >= 1 && n <= 200 && std::floor(n) == n; }),
          Field("elementDiameter", "element diameter", "above 0, in the pitch's unit", IsSize),
          Field("pitchDiameter", "pitch diameter", "above 0, in the element's unit", IsSize),
          Field("contactAngle", "contact angle", "0 up to 90 degrees",
                [](double a) { return a >= 0 && a < 90; })},
      factors_{FactorField("outerFactor", "outer race factor"),
               FactorField("innerFactor", "inner race factor"),
               FactorField("spinFactor", "element spin factor"),
               Field("cageFactor", "cage factor", "above 0 and below 1",
                     [](double f) { return f > 0 && f < 1; })},
      byGeometry_(new QWidget),
      byFactors_(new QWidget),
      said_(new QLabel) {
  setObjectName(QStringLiteral("bearingDialog"));
  setWindowTitle(QStringLiteral("Bearing"));
  setAttribute(Qt::WA_DeleteOnClose);
  geometry_[3]->SetNumber(0.0);
  LayOut();
  for (NumberField* field : geometry_) {
    connect(field, &NumberField::Entered, this, &BearingDialog::ShowFactors);
  }
  for (NumberField* field : factors_) {
    connect(field, &NumberField::Entered, this, &BearingDialog::ShowFactors);
  }
  connect(mode_, &QComboBox::currentIndexChanged, this, [this](int i) { SetMode(i == 1); });
  connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (row >= 0) Show(library_[static_cast<std::size_t>(row)]);
  });
  ShowLibrary();
  SetMode(false);
}

void BearingDialog::LayOut() {
  list_->setObjectName(QStringLiteral("bearingList"));
  list_->setAccessibleName(QStringLiteral("Bearings that are kept"));
  name_->setObjectName(QStringLiteral("bearingName"));
  name_->setAccessibleName(QStringLiteral("Name"));
  name_->setToolTip(QStringLiteral("As it stands in the list, the tables and beside its marks"));
  mode_->setObjectName(QStringLiteral("bearingMode"));
  mode_->setAccessibleName(QStringLiteral("Given by"));
  mode_->setToolTip(QStringLiteral("By its dimensions, or by the factors that its maker gives"));
  mode_->addItems({QStringLiteral("Geometry"), QStringLiteral("Factors")});
  said_->setObjectName(QStringLiteral("bearingSaid"));
  said_->setWordWrap(true);
  const auto fill = [](QWidget* page, const auto& fields, const QStringList& captions) {
    auto* form = new QFormLayout(page);
    form->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 4; ++i) form->addRow(captions[i], fields[static_cast<std::size_t>(i)]);
  };
  fill(byGeometry_, geometry_,
       {QStringLiteral("Rolling elements"), QStringLiteral("Element diameter"),
        QStringLiteral("Pitch diameter"), QStringLiteral("Contact angle, degrees")});
  fill(byFactors_, factors_,
       {QStringLiteral("Outer race"), QStringLiteral("Inner race"), QStringLiteral("Element spin"),
        QStringLiteral("Cage")});
  auto* head = new QFormLayout;
  head->addRow(QStringLiteral("Name"), name_);
  head->addRow(QStringLiteral("Given by"), mode_);
  auto* right = new QVBoxLayout;
  right->addLayout(head);
  right->addWidget(byGeometry_);
  right->addWidget(byFactors_);
  right->addWidget(said_);
  right->addStretch();
  auto* both = new QHBoxLayout;
  both->addWidget(list_);
  both->addLayout(right, 1);
  auto* column = new QVBoxLayout(this);
  column->addLayout(both);
  column->addLayout(Buttons());
}

QLayout* BearingDialog::Buttons() {
  auto* keep = Button("keepBearing", QStringLiteral("Keep in library"),
                      QStringLiteral("Keeps it under its name for other machines"));
  auto* forget = Button("forgetBearing", QStringLiteral("Remove from library"),
                        QStringLiteral("Takes the selected bearing out of the list"));
  auto* use = Button("useBearing", QStringLiteral("Put on the machine"),
                     QStringLiteral("Its frequencies are marked in the spectrum"));
  use->setDefault(true);
  auto* close = Button("closeBearing", QStringLiteral("Close"), {});
  connect(keep, &QPushButton::clicked, this, &BearingDialog::Keep);
  connect(forget, &QPushButton::clicked, this, &BearingDialog::Forget);
  connect(use, &QPushButton::clicked, this, &BearingDialog::Use);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(forget);
  buttons->addStretch();
  for (QPushButton* button : {keep, use, close}) buttons->addWidget(button);
  return buttons;
}

void BearingDialog::SetMode(bool byFactors) {
  byGeometry_->setVisible(!byFactors);
  byFactors_->setVisible(byFactors);
  ShowFactors();
}

void BearingDialog::Show(const analysis::Bearing& bearing) {
  name_->setText(Text(bearing.name));
  const auto& f = bearing.factors;
  const std::array factors{f.outer, f.inner, f.spin, f.cage};
  for (std::size_t i = 0; i < 4; ++i) factors_[i]->SetNumber(factors[i]);
  if (bearing.geometry) {
    const auto& g = *bearing.geometry;
    const std::array sizes{double(g.elements), g.elementDiameter, g.pitchDiameter,
                           g.contactDegrees};
    for (std::size_t i = 0; i < 4; ++i) geometry_[i]->SetNumber(sizes[i]);
  }
  mode_->setCurrentIndex(bearing.geometry ? 0 : 1);
  ShowFactors();
}

void BearingDialog::ShowLibrary() {
  const QSignalBlocker quiet(list_);
  list_->clear();
  for (const analysis::Bearing& bearing : library_) list_->addItem(Text(bearing.name));
}

analysis::Told<analysis::Bearing> BearingDialog::Told() const {
  const std::string name = name_->text().trimmed().toStdString();
  if (name.empty()) {
    return analysis::Refusal{.reason = "The bearing has no name.", .cure = "Give it one"};
  }
  analysis::Bearing bearing{.name = name, .factors = {}, .geometry = {}};
  if (ByFactors()) {
    bearing.factors = {NumberOf(factors_[0]), NumberOf(factors_[1]), NumberOf(factors_[2]),
                       NumberOf(factors_[3])};
    if (!analysis::AreFactors(bearing.factors)) {
      return analysis::Refusal{.reason = "A factor is missing.",
                               .cure = "Give all four, above 0, the cage below 1"};
    }
    return bearing;
  }
  bearing.geometry =
      analysis::BearingGeometry{static_cast<int>(NumberOf(geometry_[0])), NumberOf(geometry_[1]),
                                NumberOf(geometry_[2]), NumberOf(geometry_[3])};
  const auto factors = analysis::FactorsOf(*bearing.geometry);
  if (!factors) return factors.Why();
  bearing.factors = *factors;
  return bearing;
}

// The factors as they come of the fields, and whether their sum makes sense.
void BearingDialog::ShowFactors() {
  const auto bearing = Told();
  if (!bearing) {
    said_->clear();
    return;
  }
  const auto& f = bearing->factors;
  std::string text;
  if (!ByFactors()) {
    text = "Outer race " + analysis::NumberText(f.outer, 3) + "×, inner race " +
           analysis::NumberText(f.inner, 3) + "×, element spin " + analysis::NumberText(f.spin, 3) +
           "×, cage " + analysis::NumberText(f.cage, 3) + "×.";
  } else if (const auto elements = analysis::ElementsOf(f)) {
    text = std::to_string(*elements) + " rolling elements.";
  } else {
    text = "Outer and inner race together are " + analysis::NumberText(f.outer + f.inner, 2) +
           ", no whole number of elements. Check the two.";
  }
  said_->setText(Text(text));
}

std::optional<analysis::Bearing> BearingDialog::TakenOrSaid() {
  const auto bearing = Told();
  if (bearing) return *bearing;
  said_->setText(Text(bearing.Why().reason + " " + bearing.Why().cure + "."));
  return std::nullopt;
}

void BearingDialog::Keep() {
  const auto bearing = TakenOrSaid();
  if (!bearing) return;
  study::Put(library_, *bearing);
  ShowLibrary();
  emit LibraryChanged(library_);
}

void BearingDialog::Forget() {
  const int row = list_->currentRow();
  if (row < 0) return;
  study::Drop(library_, library_[static_cast<std::size_t>(row)].name);
  ShowLibrary();
  emit LibraryChanged(library_);
}

void BearingDialog::Use() {
  const auto bearing = TakenOrSaid();
  if (!bearing) return;
  emit Chosen(*bearing);
  accept();
}

}  // namespace kestrel
