// Tests of desktop notifications over a bus of the test's own.
// SPDX-License-Identifier: MIT
#include "ui/watch/desktop_notifier.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QProcess>

namespace kestrel {
namespace {

// The desktop's part of it.
class Service : public QDBusVirtualObject {
 public:
  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() != QStringLiteral("Notify")) return false;
    told.push_back(message.arguments());
    connection.send(message.createReply(QVariant(1U)));
    return true;
  }
  std::vector<QVariantList> told;
};

TEST(DesktopNotifier, TellsTheServiceAndWaitsForNobody) {
  QProcess bus;
  bus.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
  ASSERT_TRUE(bus.waitForStarted());
  ASSERT_TRUE(bus.waitForReadyRead());
  const QByteArray address = bus.readLine().trimmed();
  qputenv("DBUS_SESSION_BUS_ADDRESS", address);
  Service service;
  {
    QDBusConnection desktop = QDBusConnection::connectToBus(address, "desktop");
    ASSERT_TRUE(desktop.registerVirtualObject("/org/freedesktop/Notifications", &service));
    ASSERT_TRUE(desktop.registerService("org.freedesktop.Notifications"));
    DesktopNotifier notifier;
    notifier.Tell("Alarm: Pump 7", "Fault 3 <Z>");
    ASSERT_TRUE(QTest::qWaitFor([&] { return service.told.size() == 1; }, 20'000));
    const QVariantList& told = service.told.front();
    ASSERT_EQ(told.size(), 8);
    EXPECT_EQ(told[3].toString(), "Alarm: Pump 7");
    EXPECT_EQ(told[4].toString(), "Fault 3 &lt;Z&gt;") << "the text is not markup";
  }
  QDBusConnection::disconnectFromBus("desktop");
  bus.terminate();
  ASSERT_TRUE(bus.waitForFinished());
  // Nobody is there any more.
  QElapsedTimer time;
  time.start();
  {
    DesktopNotifier notifier;
    for (int i = 0; i < 20; ++i) notifier.Tell("Alarm", "again");
    EXPECT_LT(time.elapsed(), 200);
  }
  EXPECT_LT(time.elapsed(), 5000);
}

}  // namespace
}  // namespace kestrel
