#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "records/AlarmRecord.h"
#include "records/EventTypes.h"
#include "views/messages/MessageStore.h"

namespace tallyhorn {

// The pages and views of the main window, and the table of everything that differs between the two channels.

/// The pages of the main window's tab control, by index.
enum class MessagePage : std::int16_t { NetBios = 0, Syslog = 1, Consolidated = 2 };
constexpr int MessagePageCount = 3;
/// The captions of the tabs, with "&" before the letter of the access key.
constexpr std::array<std::string_view, MessagePageCount> PageCaptions = {
    "Received Net&BIOS Messages", "Received &Syslog Messages", "Consolidated S&yslog Messages"};

/// One of the six lists, numbered channel by channel from 0, or the consolidated tree.
using ViewNumber = std::int16_t;
constexpr ViewNumber ConsolidatedView = 6;

/// The panels of the status bar, by number.
enum class StatusPanel { NetBiosCount = 1, SyslogCount = 2, ProcessingStatus = 3 };

enum class Channel : std::uint8_t { NetBios, Syslog };
constexpr std::size_t ChannelCount = 2;

/// The texts, numbers and functions in which one channel differs from the other. Code that depends on the
/// channel reads a field of this table if it can; docs/decisions.md names the functions that compare instead.
struct ChannelTraits {
    /// Reads a kept text into `alarm`; a text without a date gets the date `now`.
    using Reader = void (*)(std::string_view text, bool dayFirst, AlarmDate now, AlarmRecord& alarm);

    Channel Id;
    MessagePage Page;      ///< the page with the channel's three lists
    ViewNumber FirstView;  ///< the view of the channel's list 0; those of lists 1 and 2 follow
    bool HasTree;          ///< whether the consolidated tree shows the channel's messages too

    Slot FirstSlot;          ///< the slot of the first message
    Slot UpperBoundAtStart;  ///< the last slot of a new message store
    Slot UpperBoundAfterClear;
    /// compatibility: Tools > Export Messages To Text does nothing if exactly this many messages are kept.
    /// For syslog that is one; scripts that look for the file rely on it.
    Slot CountNotExported;

    StatusPanel CountPanel;
    std::string_view CountText;  ///< follows the number of messages in `CountPanel`
    std::string_view ClearQuestion;
    std::string_view ExportFailure;  ///< precedes the number and text of the error
    /// The captions of the frames, from the top of the page; the list in the first frame is list 2.
    std::array<std::string_view, EventListCount> FrameCaptions;
    /// The names of the controls of frames and lists; the index of each is appended.
    std::string_view FrameName;
    std::string_view ListName;

    Reader ReadKeptText;
};

const ChannelTraits& TraitsOf(Channel channel);

/// Returns the channel whose messages `view` shows: syslog for the tree.
Channel ChannelOfView(ViewNumber view);
/// Returns the channel whose messages `page` shows.  Returns syslog for the tree's page, and also if
/// no page is shown, as the commands that clear and filter messages expect.
Channel ChannelOfPage(MessagePage page);
MessagePage PageOfView(ViewNumber view);
/// Returns the index of the list `view` within its channel.
std::size_t ListOfView(ViewNumber view);
/// Returns the view that shows list `list` of `channel`.
ViewNumber ViewOfList(Channel channel, std::size_t list);

}  // namespace tallyhorn
