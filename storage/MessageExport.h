#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "platform/MessageBoxes.h"
#include "platform/SaveDialog.h"
#include "platform/SystemError.h"
#include "platform/TimeSlices.h"
#include "records/AlarmRecord.h"
#include "views/messages/ReceivedMessages.h"
#include "views/messages/ServerDisplay.h"

namespace tallyhorn {

/// The command that writes what was received to a text file of the user's choice; owns nothing.
/// User-interface thread only; events run while it is at work, and whoever starts commands holds back others
/// until it is done.  What it is given outlives it.
class MessageExport {
public:
    struct Parts {
        ReceivedMessages& Received;
        ServerDisplay& Display;
        MessageBoxes& Boxes;
        SaveDialog& Dialog;
        TimeSlices& Slices;
        const Clock& Time;
        AlarmRecord& CurrentAlarm;
    };

    /// Names for files are proposed in `folder`; the console's own files in it, named by `ownFiles`, are
    /// never written over.
    MessageExport(const Parts& parts, std::filesystem::path folder, std::vector<std::string> ownFiles);

    /// Exports what the page on show stands for: all messages of a channel, whatever a view filter lets
    /// through, or the branch of the tree that is chosen.  Asks first, and tells a failure, which leaves what
    /// stood at the file's name as it was.  Silent where there is nothing to export, which for syslog is
    /// where exactly one message is held.
    void ExportMessages();

private:
    using Slots = std::vector<Slot>;

    void ExportNetBiosMessages() { ExportChannel(parts_.Received.NetBios); }
    void ExportSyslogMessages() { ExportChannel(parts_.Received.Syslog); }
    void ExportChannel(const MessageChannel& channel);
    bool AskAboutChannel(const MessageChannel& channel);
    std::optional<std::filesystem::path> AskFile(MessagePage page);
    void ExportTreeBranch();
    void ExportTreeBranchNode(TreeNode node, Slots& leaves);
    void Export(const MessageChannel& channel, const std::filesystem::path& file, const Slots& slots);
    std::optional<SystemError> Write(const MessageChannel& channel, const std::filesystem::path& file,
                                     const Slots& slots);

    bool IsOwnFile(const std::filesystem::path& file) const;

    const Parts parts_;
    const std::filesystem::path folder_;
    const std::vector<std::string> ownFiles_;
};

}  // namespace tallyhorn
