// The message to the service, from a thread that may wait for it.
// SPDX-License-Identifier: MIT
#include "ui/watch/desktop_notifier.h"

#include <QCoreApplication>

#ifdef KESTREL_DBUS
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QThread>
#include <QVariantMap>
#else
#include <QApplication>
#include <QStyle>
#include <QSystemTrayIcon>
#endif

namespace kestrel {

#ifdef KESTREL_DBUS
namespace {

constexpr int kAsTheServiceHasIt = -1;  // how long it is shown
constexpr unsigned long kEndMs = 500;

void Send(const QString& title, const QString& text) {
  QDBusMessage message = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.Notifications"),
      QStringLiteral("/org/freedesktop/Notifications"),
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
  // Some services take the text for markup.
  message << QStringLiteral("Kestrel") << 0U << QStringLiteral("kestrel") << title
          << text.toHtmlEscaped() << QStringList()
          << QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("io.kestrel.evaluation")}}
          << kAsTheServiceHasIt;
  static_cast<void>(QDBusConnection::sessionBus().send(message));
}

}  // namespace

// To connect to a bus that hangs takes its time: a thread of its own waits for that, and is left
// behind at the end where it still does.
class DesktopNotifier::Way {
 public:
  Way() {
    sender_->moveToThread(thread_);
    thread_->start();
  }
  ~Way() {
    sender_->deleteLater();
    thread_->quit();
    if (thread_->wait(kEndMs)) delete thread_;
  }
  Way(const Way&) = delete;
  Way& operator=(const Way&) = delete;

  void Tell(const QString& title, const QString& text) {
    QMetaObject::invokeMethod(
        sender_, [title, text] { Send(title, text); }, Qt::QueuedConnection);
  }

 private:
  QThread* thread_ = new QThread;
  QObject* sender_ = new QObject;
};
#else
class DesktopNotifier::Way {
 public:
  void Tell(const QString& title, const QString& text) {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) return;
    icon_.show();
    icon_.showMessage(title, text, QSystemTrayIcon::NoIcon);
  }

 private:
  QSystemTrayIcon icon_{QApplication::style()->standardIcon(QStyle::SP_ComputerIcon)};
};
#endif

DesktopNotifier::DesktopNotifier() = default;
DesktopNotifier::~DesktopNotifier() = default;

void DesktopNotifier::Tell(const QString& title, const QString& text) {
  if (!way_) way_ = std::make_unique<Way>();
  way_->Tell(title, text);
}

}  // namespace kestrel
