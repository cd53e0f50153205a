// The strip of notices: what is not as it seems, with the cure as a button.
// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QPushButton>
#include <QVBoxLayout>
#include <functional>
#include <vector>

namespace kestrel {

// The gravest first.
enum class Gravity { Hint, Offer, Doubt, Fault };

struct Notice {
  QString id;  // one notice of each; part of the object names
  Gravity gravity = Gravity::Hint;
  QString text;  // what is, then what it means
  QString cure;  // caption of the button; empty for none
  std::function<void()> carryOut;
  std::function<void()> closed;  // by the user
};

// Ground, edge and text of notices, for a light or a dark window.
void PaintNotice(QWidget& widget);

// Shows the gravest notice and how many more there are; a press opens the rest. A notice stays
// until it is taken away or closed.
class NoticeStrip : public QFrame {
 public:
  // `leading`, where there is one, is a notice with controls of its own, graver than all others
  // while it is not hidden.
  explicit NoticeStrip(const QString& name, QWidget* leading = nullptr);

  // Shows a notice in the place of an earlier one with its id.
  void Put(const Notice& notice);
  void Take(const QString& id);
  [[nodiscard]] bool Has(const QString& id) const;

  // To be called when the leading notice has been shown or hidden.
  void Arrange();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  struct Line {
    Notice notice;
    QWidget* row;
  };

  [[nodiscard]] QWidget* MakeRow(const Notice& notice);
  void Remove(const QString& id);
  [[nodiscard]] bool Leads() const { return leading_ != nullptr && !leading_->isHidden(); }

  QWidget* leading_;
  QVBoxLayout* rows_;
  QPushButton* cmdMore_;
  std::vector<Line> lines_;  // the gravest first
  bool open_ = false;
};

}  // namespace kestrel
