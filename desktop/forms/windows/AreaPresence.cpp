#include "desktop/forms/AreaPresence.h"

#include <QSystemTrayIcon>

namespace tallyhorn {
namespace {

/// The task bar's own.  Qt adds the icon anew to one that was started anew.
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
