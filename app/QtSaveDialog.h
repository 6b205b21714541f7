#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/SaveDialog.h"

namespace tallyhorn {

/// Shows the desktop's save dialog, or Qt's own if the desktop has none, in front of the window that
/// DialogOwner returns.  Closing the dialog's window cancels the dialog.
class QtSaveDialog final : public SaveDialog {
public:
    void SetOwner(QWidget* owner) { owner_ = owner; }

    std::optional<std::filesystem::path> AskFile(const std::filesystem::path& proposal,
                                                 std::string_view fileTypes) override;

private:
    QPointer<QWidget> owner_;
};

}  // namespace tallyhorn
