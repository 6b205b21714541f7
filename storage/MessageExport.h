#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/SaveDialog.h"
#include "platform/SystemError.h"
#include "views/messages/MessageContext.h"

namespace tallyhorn {

/// The command **Export Messages To Text**.  It lets pending events run, so the caller must start no other
/// command until it returns.
class MessageExport {
public:
    /// All referenced objects must outlive the export.
    struct Parts : MessageContext {
        SaveDialog& Dialog;
    };

    /// Proposes file names in `folder`.  `ownFiles` are the names of the console's own files in that folder,
    /// which an export never overwrites.
    MessageExport(const Parts& parts, std::filesystem::path folder, std::vector<std::string> ownFiles);

    /// Asks the user for a file and writes to it all messages of the channel that `page` shows, including
    /// those that a view filter hides, or, on the tree's page, the messages under the selected node.  If that
    /// fails, shows the error and leaves an existing file unchanged.  Does nothing if there is nothing to
    /// export.  compatibility: on the syslog page it does nothing if exactly one message is kept, but if none
    /// is kept it writes a file with only the header.
    void ExportMessages(MessagePage page);

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
