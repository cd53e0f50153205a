// How the columns are made, and how much room is between them.
// SPDX-License-Identifier: MIT
#include "ui/main/main_layout.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <array>

#include "ui/parts/fit_screen.h"

namespace kestrel {
namespace {

// What a widget asks for is asked again.
void Renew(QLayout& layout) {
  layout.update();
  layout.activate();
}

}  // namespace

void MainLayout::Fill(QMainWindow& window) const {
  auto* left = new QVBoxLayout;
  left->addWidget(&parts_.capture);
  left->addWidget(&parts_.record);
  left->addStretch();
  auto* under = new QHBoxLayout;
  under->addWidget(&parts_.caption, 1);
  under->addWidget(&parts_.analyser, 0, Qt::AlignTop);
  auto* middle = new QVBoxLayout;
  middle->addWidget(&parts_.plot, 1);
  middle->addLayout(under);
  middle->addWidget(&parts_.alarms);
  auto* right = new QVBoxLayout;
  right->addWidget(&parts_.conditions);
  right->addWidget(&parts_.status);
  right->addStretch();

  auto* columns = new QHBoxLayout;
  columns->addLayout(left);
  columns->addLayout(middle, 1);
  columns->addLayout(right);
  auto* all = new QWidget;
  auto* rows = new QVBoxLayout(all);
  rows->addLayout(columns, 1);
  rows->addWidget(&parts_.strip);
  window.setCentralWidget(all);
}

void MainLayout::Space(QMainWindow& window, const Spacing& spacing) const {
  parts_.capture.SetSpacing(spacing);
  parts_.record.SetSpacing(spacing);
  parts_.plot.SetSpacing(spacing);
  parts_.alarms.SetSpacing(spacing);
  parts_.conditions.SetSpacing(spacing);
  parts_.status.SetSpacing(spacing);
  QLayout* rows = window.centralWidget()->layout();
  rows->setContentsMargins(spacing.edge, spacing.edge, spacing.edge, spacing.edge);
  rows->setSpacing(spacing.between);
  for (QLayout* each : rows->findChildren<QLayout*>()) each->setSpacing(spacing.between);
  const std::array<QWidget*, 6> panels{&parts_.capture, &parts_.record,     &parts_.plot,
                                       &parts_.alarms,  &parts_.conditions, &parts_.status};
  for (const QWidget* panel : panels) Renew(*panel->layout());
  Renew(*rows);
  window.layout()->invalidate();
}

void MainLayout::Fit(QMainWindow& window) const {
  window.ensurePolished();
  Space(window, RoomySpacing());
  if (!FitsOnScreen(window)) Space(window, TightSpacing());
  FitScreen(window);
}

}  // namespace kestrel
