#pragma once

#include "support/SessionBus.h"

#include <QDBusConnection>

namespace vantro::test {

/// A session bus of the test's own, for Qt.
class PrivateBus : public SessionBus {
  public:
    QDBusConnection connect(const QString& name) const {
        return QDBusConnection::connectToBus(QString::fromStdString(address()), name);
    }
};

} // namespace vantro::test
