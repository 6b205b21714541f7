#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/SaveDialog.h"

namespace tallyhorn {

/// Shows the desktop's own dialog, or Qt's if it has none, in front of the main window, once it exists.
/// Closing the dialog's window cancels it.
class QtSaveDialog final : public SaveDialog {
public:
    void SetOwner(QWidget* owner) { owner_ = owner; }

    std::optional<std::filesystem::path> AskFile(const std::filesystem::path& proposal,
                                                 std::string_view fileTypes) override;

private:
    QPointer<QWidget> owner_;
};

}  // namespace tallyhorn
