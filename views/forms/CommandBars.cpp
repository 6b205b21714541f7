#include "views/forms/CommandBars.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <array>
#include <span>
#include <utility>

#include "ui/Pictures.h"

namespace tallyhorn {
namespace {

/// An entry whose caption is null is a separator; its command is not used.
struct MenuEntry {
    const char* Name;
    const char* Caption;
    ServerCommand Command;
};

constexpr std::array FileMenu = {
    MenuEntry{"mnuFile_ViewMsg", "&View Message Details", ServerCommand::ViewMessage},
    MenuEntry{"mnuFile_DeleteMsg", "&Delete Selected Message(s)", ServerCommand::DeleteMessages},
    MenuEntry{"mnuFile_ClearAll", "&Clear All Messages", ServerCommand::ClearAll},
    MenuEntry{"mnuFile_Dash", nullptr, ServerCommand::Exit},
    MenuEntry{"mnuFile_Exit", "E&xit", ServerCommand::Exit},
};
constexpr std::array EditMenu = {
    MenuEntry{"mnuEdit_Filter", "&Apply a Filter to Received Messages", ServerCommand::ToggleFilter},
    MenuEntry{"mnuEdit_DropFilters", "&Manage Suppression Filters...", ServerCommand::ManageFilters},
    MenuEntry{"mnuEdit_Dash", nullptr, ServerCommand::Pause},
    MenuEntry{"mnuEditPause", "&Pause Message Processing", ServerCommand::Pause},
};
constexpr std::array ToolsMenu = {
    MenuEntry{"mnuTools_EventLog", "E&vent Log Viewer", ServerCommand::EventLog},
    MenuEntry{"mnuTools_Export", "Ex&port Messages To Text", ServerCommand::Export},
};
constexpr std::array OptionsMenu = {
    MenuEntry{"mnuOptions_Preferences", "Listener Console &Preferences", ServerCommand::Preferences},
};
constexpr std::array HelpMenu = {
    MenuEntry{"mnuHelp_HelpFile", "&Tallyhorn Listener Console Help File", ServerCommand::Help},
    MenuEntry{"mnuHelp_About", "&About Tallyhorn Listener Console", ServerCommand::About},
};

struct Menu {
    const char* Name;
    const char* Caption;
    std::span<const MenuEntry> Entries;
};

constexpr std::array Menus = {
    Menu{"mnuFile", "&File", FileMenu},    Menu{"mnuEdit", "&Edit", EditMenu},
    Menu{"mnuTools", "&Tools", ToolsMenu}, Menu{"mnuOptions", "&Options", OptionsMenu},
    Menu{"mnuHelp", "&Help", HelpMenu},
};

struct Button {
    const char* Key;
    const char* Tip;
    CommandPicture Picture;
    ServerCommand Command;
    bool EndsGroup = false;
};

constexpr std::array Buttons = {
    Button{"view", "View Selected Message", CommandPicture::View, ServerCommand::ViewMessage},
    Button{"delete", "Delete Message(s)", CommandPicture::Delete, ServerCommand::DeleteMessages},
    Button{"clear", "Clear All Messages", CommandPicture::Clear, ServerCommand::ClearAll, true},
    Button{"filter", "Apply Filter", CommandPicture::Filter, ServerCommand::ToggleFilter},
    Button{"suppression", "Manage Suppression Filters", CommandPicture::Suppress,
           ServerCommand::ManageFilters, true},
    Button{"pause", "Pause Message Processing", CommandPicture::Pause, ServerCommand::Pause, true},
    Button{"eventviewer", "Open Event Viewer", CommandPicture::EventViewer, ServerCommand::EventLog},
    Button{"exporttext", "Export To Text", CommandPicture::Export, ServerCommand::Export, true},
    Button{"configure", "Listener Console Preferences", CommandPicture::Configure,
           ServerCommand::Preferences},
    Button{"help", "Display Help", CommandPicture::Help, ServerCommand::Help},
};

constexpr int ButtonPictureSide = 16;

}  // namespace

CommandBars::CommandBars(QMainWindow& window, Handler handle) : window_(window), handle_(std::move(handle)) {
    BuildMenus();
    BuildToolBar();
}

QAction* CommandBars::AddAction(const QString& name, const QString& caption, ServerCommand command) {
    auto* const action = new QAction(caption, &window_);
    action->setObjectName(name);
    // An action with a role such as "Preferences" would be moved to another menu on macOS.
    action->setMenuRole(QAction::NoRole);
    QObject::connect(action, &QAction::triggered, &window_, [handle = handle_, command] { handle(command); });
    return action;
}

void CommandBars::BuildMenus() {
    for (const Menu& menu : Menus) {
        QMenu* const shown = window_.menuBar()->addMenu(QString::fromLatin1(menu.Caption));
        shown->setObjectName(QString::fromLatin1(menu.Name));
        for (const MenuEntry& entry : menu.Entries) {
            if (entry.Caption == nullptr) {
                shown->addSeparator()->setObjectName(QString::fromLatin1(entry.Name));
                continue;
            }
            shown->addAction(AddAction(QString::fromLatin1(entry.Name), QString::fromLatin1(entry.Caption),
                                       entry.Command));
        }
    }
    mnuEdit_Filter = window_.findChild<QAction*>(QStringLiteral("mnuEdit_Filter"));
    mnuEditPause = window_.findChild<QAction*>(QStringLiteral("mnuEditPause"));
}

void CommandBars::BuildToolBar() {
    tbrMain = window_.addToolBar(QStringLiteral("Commands"));
    tbrMain->setObjectName(QStringLiteral("tbrMain"));
    tbrMain->setMovable(false);
    tbrMain->setFloatable(false);
    tbrMain->setIconSize(QSize(ButtonPictureSide, ButtonPictureSide));
    for (const Button& button : Buttons) {
        QAction* const shown =
            AddAction(QString::fromLatin1(button.Key), QString::fromLatin1(button.Tip), button.Command);
        shown->setIcon(CommandIcon(button.Picture));
        tbrMain->addAction(shown);
        if (button.EndsGroup)
            tbrMain->addSeparator();
    }
    tbrPause = window_.findChild<QAction*>(QStringLiteral("pause"));
    tbrFilter = window_.findChild<QAction*>(QStringLiteral("filter"));
    tbrFilter->setCheckable(true);
    // A click toggles a checkable button.  This is undone here, because the button shows whether a filter is
    // in force.
    QObject::connect(tbrFilter, &QAction::toggled, &window_,
                     [this] { tbrFilter->setChecked(filterInForce_); });
}

void CommandBars::ShowPause(bool paused) {
    tbrPause->setIcon(CommandIcon(paused ? CommandPicture::Resume : CommandPicture::Pause));
    tbrPause->setText(paused ? QStringLiteral("Resume Message Processing")
                             : QStringLiteral("Pause Message Processing"));
    mnuEditPause->setText(paused ? QStringLiteral("&Resume Message Processing")
                                 : QStringLiteral("&Pause Message Processing"));
}

void CommandBars::ShowFilter(bool inForce) {
    filterInForce_ = inForce;
    tbrFilter->setChecked(inForce);
    tbrFilter->setText(inForce ? QStringLiteral("Remove Filter") : QStringLiteral("Apply Filter"));
    mnuEdit_Filter->setText(inForce ? QStringLiteral("&Remove Filter")
                                    : QStringLiteral("&Apply a Filter to Received Alarms"));
}

}  // namespace tallyhorn
