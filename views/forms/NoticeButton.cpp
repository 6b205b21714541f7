#include "views/forms/NoticeButton.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "ui/Pictures.h"

namespace tallyhorn {
namespace {

struct Look {
    const char* Text;
    EventType Picture;
    bool UntilLookedAt;
};
/// Indexed by Notice; the most urgent one is first.
constexpr std::array<Look, NoticeCount> Looks = {
    {{"Not protected", EventType::Error, false}, {"Damaged backup", EventType::Warning, true}}};

}  // namespace

NoticeButton::NoticeButton(QWidget* parent) : QPushButton(parent) {
    setObjectName(QStringLiteral("cmdNotice"));
    setFlat(true);
    setFocusPolicy(Qt::TabFocus);
    // The status bar must not grow when a notice appears.
    const int height = fontMetrics().height();
    setFixedHeight(height);
    setIconSize(QSize(height - 2, height - 2));
    hide();
    connect(this, &QPushButton::clicked, this, [this] { LookAt(); });
}

void NoticeButton::ShowNotice(Notice notice, const QString& details) {
    QString& present = details_.at(static_cast<std::size_t>(notice));
    if (present == details)
        return;
    present = details;
    ShowMostUrgent();
}

void NoticeButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QPushButton::keyPressEvent(event);
}

void NoticeButton::ShowMostUrgent() {
    const auto* const first = std::find_if(details_.begin(), details_.end(),
                                           [](const QString& details) { return !details.isEmpty(); });
    const auto found = static_cast<std::size_t>(first - details_.begin());
    const bool isNew = found != std::exchange(shown_, found);
    if (found == NoticeCount) {
        setText(QString());
        return hide();
    }
    setText(QLatin1String(Looks.at(found).Text));
    setIcon(EventIcon(Looks.at(found).Picture));
    setToolTip(*first);
    setAccessibleDescription(*first);
    show();
    if (isNew) {
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void NoticeButton::LookAt() {
    if (shown_ == NoticeCount)
        return;
    // The tool tip belongs to the window, because a tool tip disappears together with its control.
    QToolTip::showText(mapToGlobal(QPoint(0, -height())), details_.at(shown_), window());
    if (Looks.at(shown_).UntilLookedAt)
        ShowNotice(static_cast<Notice>(shown_), QString());
}

}  // namespace tallyhorn
