#include "desktop/forms/AreaPresence.h"

#include <QSystemTrayIcon>

namespace tallyhorn {
namespace {

/// The notification area of the task bar.  After a restart of the task bar, Qt itself adds the icon again.
class TaskBarPresence final : public AreaPresence {
public:
    std::optional<std::uint32_t> Area() override {
        return QSystemTrayIcon::isSystemTrayAvailable() ? std::optional(0U) : std::nullopt;
    }
    void Decide() override {}
    bool ShowsMenu() const override { return true; }
    bool OpensAtOnce() const override { return false; }
};

}  // namespace

std::unique_ptr<AreaPresence> MakeAreaPresence() {
    return std::make_unique<TaskBarPresence>();
}

}  // namespace tallyhorn
