#pragma once

#include <QPushButton>
#include <QString>
#include <array>
#include <cstddef>

#include "views/messages/ServerDisplay.h"

namespace tallyhorn {

/// Shows the most urgent notice at the right end of the status bar, with a picture and two words, and is
/// hidden while there is none.  A click or Enter shows the details, which are also its tool tip, and removes
/// a notice that stays only until the user has looked at it.
class NoticeButton final : public QPushButton {
public:
    explicit NoticeButton(QWidget* parent);

    /// See ServerDisplay::ShowNotice.
    void ShowNotice(Notice notice, const QString& details);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void ShowMostUrgent();
    void LookAt();

    std::array<QString, NoticeCount> details_;
    std::size_t shown_ = NoticeCount;  ///< the index of the shown notice
};

}  // namespace tallyhorn
