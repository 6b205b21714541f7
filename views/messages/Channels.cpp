#include "views/messages/Channels.h"

#include "records/NetBiosFormat.h"
#include "records/SyslogFormat.h"

namespace tallyhorn {
namespace {

void ReadNetBiosText(std::string_view text, bool, AlarmDate, AlarmRecord& alarm) {
    ParseCurrentAlarm(text, alarm);
}

constexpr std::array<ChannelTraits, ChannelCount> Table = {{
    {
        .Id = Channel::NetBios,
        .Page = MessagePage::NetBios,
        .FirstView = 0,
        .HasTree = false,
        .FirstSlot = 1,
        .UpperBoundAtStart = 0,
        .UpperBoundAfterClear = 0,
        .CountNotExported = 0,
        .CountPanel = StatusPanel::NetBiosCount,
        .CountText = " NetBIOS Message(s)",
        .ClearQuestion = "Are you sure you want to erase all of the NetBIOS messages received?",
        .ExportFailure = "The following error occurred when attempting to export received NetBIOS messages "
                         "to text.  Error # ",
        .FrameCaptions = {"I&nformation Events and Success Audits", "W&arning Events",
                          "C&ritical Events (Errors, Failure Audits)"},
        .FrameName = "fraNetBiosTypes",
        .ListName = "lvwMessages",
        .ReadKeptText = ReadNetBiosText,
    },
    {
        .Id = Channel::Syslog,
        .Page = MessagePage::Syslog,
        .FirstView = 3,
        .HasTree = true,
        .FirstSlot = 0,
        .UpperBoundAtStart = 50000,
        .UpperBoundAfterClear = 100,
        .CountNotExported = 1,
        .CountPanel = StatusPanel::SyslogCount,
        .CountText = " Syslog Message(s)",
        .ClearQuestion = "Are you sure you want to erase all of the syslog messages received?",
        .ExportFailure = "The following error occurred when attempting to export received syslog messages "
                         "to text.  Error # ",
        .FrameCaptions = {"&Information Events and Success Audits", "&Warning Events",
                          "&Critical Events (Errors, Failure Audits)"},
        .FrameName = "fraSyslogTypes",
        .ListName = "lvwSyslog",
        .ReadKeptText = ReadStoredText,
    },
}};
static_assert(Table[0].Id == Channel::NetBios && Table[1].Id == Channel::Syslog);

}  // namespace

const ChannelTraits& TraitsOf(Channel channel) {
    return Table.at(static_cast<std::size_t>(channel));
}

Channel ChannelOfView(ViewNumber view) {
    return view == ConsolidatedView ? Channel::Syslog : static_cast<Channel>(view / EventListCount);
}

Channel ChannelOfPage(MessagePage page) {
    for (const ChannelTraits& traits : Table) {
        if (traits.Page == page)
            return traits.Id;
    }
    return Channel::Syslog;
}

MessagePage PageOfView(ViewNumber view) {
    return view == ConsolidatedView ? MessagePage::Consolidated : TraitsOf(ChannelOfView(view)).Page;
}

std::size_t ListOfView(ViewNumber view) {
    return static_cast<std::size_t>(view - TraitsOf(ChannelOfView(view)).FirstView);
}

ViewNumber ViewOfList(Channel channel, std::size_t list) {
    return static_cast<ViewNumber>(TraitsOf(channel).FirstView + static_cast<ViewNumber>(list));
}

}  // namespace tallyhorn
