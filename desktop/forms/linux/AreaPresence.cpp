#include "desktop/forms/AreaPresence.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <string_view>

#include "desktop/forms/linux/ItemHosts.h"

namespace tallyhorn {
namespace {

template <class Reply>
struct FreeReply {
    void operator()(Reply* reply) const { std::free(reply); }
};
template <class Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply<Reply>>;

xcb_connection_t* XConnection() {
    auto* const x = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x != nullptr ? x->connection() : nullptr;
}

/// Returns the window of the X screen's tray: the owner of the selection _NET_SYSTEM_TRAY_S0.
std::optional<std::uint32_t> XTray() {
    xcb_connection_t* const x = XConnection();
    if (x == nullptr)
        return std::nullopt;
    constexpr std::string_view Selection = "_NET_SYSTEM_TRAY_S0";
    const ReplyPointer<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        x, xcb_intern_atom(x, 0, static_cast<std::uint16_t>(Selection.size()), Selection.data()), nullptr));
    if (atom == nullptr)
        return std::nullopt;
    const ReplyPointer<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, atom->atom), nullptr));
    if (owner == nullptr || owner->owner == XCB_NONE)
        return std::nullopt;
    return owner->owner;
}

/// Looks for hosts of status notifier items on the session bus, which Qt prefers, and otherwise for the tray
/// of the X screen.
class LinuxPresence final : public AreaPresence {
public:
    std::optional<std::uint32_t> Area() override {
        // All hosts have the same number, because Qt itself registers its item with each new host.
        const bool host = hosts_.HasHost();
        if (!items_.value_or(host))
            return XTray();
        return host ? std::optional(0U) : std::nullopt;
    }
    void Decide() override { items_ = items_.value_or(hosts_.HasHost()); }
    bool ShowsMenu() const override { return items_.value_or(false); }
    bool OpensAtOnce() const override { return items_.value_or(false); }

private:
    ItemHosts hosts_;
    std::optional<bool> items_;  ///< whether Qt uses status notifier items; empty before Decide
};

}  // namespace

std::unique_ptr<AreaPresence> MakeAreaPresence() {
    return std::make_unique<LinuxPresence>();
}

}  // namespace tallyhorn
