#include "ui/platform/AccessibleApplication.h"

#include <QAccessibleObject>
#include <QGuiApplication>

namespace vantro::ui {
namespace {

class ApplicationNode final : public QAccessibleApplication {
  public:
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? QGuiApplication::applicationDisplayName()
                                         : QAccessibleApplication::text(kind);
    }
};

QAccessibleInterface* makeApplicationNode(const QString& /*className*/, QObject* object) {
    return object == qApp ? new ApplicationNode : nullptr; // Qt's from now on
}

} // namespace

void tellDisplayName() {
    QAccessible::installFactory(makeApplicationNode);
}

} // namespace vantro::ui
