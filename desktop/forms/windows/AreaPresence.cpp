#include "desktop/forms/AreaPresence.h"

#include <QSystemTrayIcon>

namespace tallyhorn {
namespace {

/// The task bar's own.  Qt adds the icon anew to one that was started anew.
class TaskBarPresence final : public AreaPresence {
public:
    bool HasArea() override { return QSystemTrayIcon::isSystemTrayAvailable(); }
    void Decide() override {}
    bool ShowsMenu() const override { return true; }
    bool OpensAtOnce() const override { return false; }
};

}  // namespace

std::unique_ptr<AreaPresence> MakeAreaPresence() {
    return std::make_unique<TaskBarPresence>();
}

}  // namespace tallyhorn
