// Showing the message window so that it is painted at once.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmMsg.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFontMetrics>
#include <QVBoxLayout>
#include <QWindow>

namespace kestrel {

frmMsg::frmMsg() : txtMsg_(new QPlainTextEdit(this)) {
  setObjectName("frmMsg");
  txtMsg_->setObjectName("txtMsg");
  txtMsg_->setAccessibleName(tr("Progress"));
  txtMsg_->setReadOnly(true);
  txtMsg_->setLineWrapMode(QPlainTextEdit::NoWrap);
  txtMsg_->setFrameShape(QFrame::NoFrame);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(txtMsg_);
  const QFontMetrics metrics(font());
  resize(42 * metrics.averageCharWidth(), 11 * metrics.lineSpacing());
}

void frmMsg::ShowPainted(const std::string& caption, const std::string& text) {
  constexpr int kPatienceMs = 1000;
  constexpr int kSliceMs = 10;
  setWindowTitle(QString::fromStdString(caption));
  SetText(text);
  show();
  QElapsedTimer waited;
  waited.start();
  while (!windowHandle()->isExposed() && waited.elapsed() < kPatienceMs) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, kSliceMs);
  }
  repaint();
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void frmMsg::SetText(const std::string& text) {
  txtMsg_->setPlainText(QString::fromStdString(text));
}

}  // namespace kestrel
