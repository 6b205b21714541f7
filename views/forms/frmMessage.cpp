#include "views/forms/frmMessage.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <string>

#include "desktop/help/HelpContexts.h"
#include "ui/AnsiString.h"
#include "ui/Controls.h"
#include "ui/Pictures.h"

namespace tallyhorn {
namespace {

constexpr std::string_view SuppressQuestion =
    "Are you sure you want to suppress future occurrences of this event?";

constexpr int CharactersAcross = 84;
constexpr int LinesDown = 18;
constexpr int LeastLinesDown = 4;
/// A text with a longer word is wrapped at any character: in a word of many thousand characters Qt spends
/// seconds looking for boundaries.
constexpr std::size_t LongestWrappedWord = 1000;
constexpr int GroupGap = 12;  ///< between buttons of different kinds, in pixels
constexpr int EntryGap = 6;   ///< between the window and the row or node of its message, in pixels

/// Returns a window frame of the size `outer` below `entry`, or above it if there is not enough room below.
/// If neither side has room, the frame gets the height of the larger one.
QRect Beside(const QRect& entry, QSize outer, const QRect& screen) {
    const int below = screen.bottom() - entry.bottom() - EntryGap;
    const int above = entry.top() - screen.top() - EntryGap;
    const bool goesBelow = below >= outer.height() || below >= above;
    QRect frame(QPoint(entry.left(), 0),
                QSize(outer.width(), std::min(outer.height(), goesBelow ? below : above)));
    if (goesBelow)
        frame.moveTop(entry.bottom() + 1 + EntryGap);
    else
        frame.moveBottom(entry.top() - 1 - EntryGap);
    return frame;
}

/// Returns the desktop's fixed-pitch font, or "monospace" if the desktop names a proportional font for it.
QString FixedPitchFamily() {
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    return QFontInfo(fixed).fixedPitch() ? fixed.family() : QStringLiteral("monospace");
}

QRect Within(QRect frame, const QRect& screen) {
    frame.setSize(frame.size().boundedTo(screen.size()));
    frame.moveLeft(std::clamp(frame.left(), screen.left(), screen.right() + 1 - frame.width()));
    frame.moveTop(std::clamp(frame.top(), screen.top(), screen.bottom() + 1 - frame.height()));
    return frame;
}

}  // namespace

frmMessage::frmMessage(const Parts& parts, QWidget* parent)
    : QDialog(parent), parts_(parts), details_(parts.Received), txtMessage(new QPlainTextEdit(this)) {
    setObjectName(QStringLiteral("frmMessage"));
    setWindowTitle(QStringLiteral("Full Message Contents"));
    setProperty(HelpContextProperty, HelpNumber(HelpContext::Details));
    txtMessage->setObjectName(QStringLiteral("txtMessage"));
    txtMessage->setAccessibleName(QStringLiteral("Message"));
    txtMessage->setReadOnly(true);
    txtMessage->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtMessage->setUndoRedoEnabled(false);
    txtMessage->setTabChangesFocus(true);
    cmdUp = AddButton("cmdUp", QStringLiteral("Previous message (Ctrl-Up Arrow)"),
                      CommandIcon(CommandPicture::Up), &frmMessage::Previous);
    cmdDown = AddButton("cmdDown", QStringLiteral("Next message (Ctrl-Down Arrow)"),
                        CommandIcon(CommandPicture::Down), &frmMessage::Next);
    cmdDelete = AddButton("cmdDelete", QStringLiteral("Delete This Message (Ctrl-Del)"),
                          CommandIcon(CommandPicture::Delete), &frmMessage::Delete);
    cmdClipboard = AddButton("cmdClipboard", QStringLiteral("Copy Message to Clipboard (Ctrl-C)"),
                             CommandIcon(CommandPicture::Copy), &frmMessage::Copy);
    cmdSuppress =
        AddButton("cmdSuppress", QStringLiteral("Suppress This Message (Ctrl-S)"),
                  CommandIcon(CommandPicture::Suppress), &frmMessage::Suppress, CommandQueue::Kind::Dialog);
    cmdExit = MakeButton(QStringLiteral("Close"), QStringLiteral("cmdExit"), this);
    cmdExit->setDefault(true);
    connect(cmdExit, &QPushButton::clicked, this, &frmMessage::reject);
    LayOut();
    installEventFilter(this);
    for (QWidget* const control : findChildren<QWidget*>())
        control->installEventFilter(this);
}

QPushButton* frmMessage::AddButton(const char* name, const QString& tip, const QIcon& icon, Routine routine,
                                   CommandQueue::Kind kind) {
    auto* const button = new QPushButton(icon, QString(), this);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(tip);
    button->setAccessibleName(tip.left(tip.indexOf(QStringLiteral(" ("))));
    button->setAccessibleDescription(tip);
    connect(button, &QPushButton::clicked, this, [this, routine, kind] { Run(routine, kind); });
    return button;
}

void frmMessage::LayOut() {
    auto* const buttons = new QHBoxLayout;
    for (QPushButton* const button : {cmdUp, cmdDown})
        buttons->addWidget(button);
    buttons->addSpacing(GroupGap);
    for (QPushButton* const button : {cmdDelete, cmdClipboard, cmdSuppress})
        buttons->addWidget(button);
    buttons->addStretch();
    buttons->addWidget(cmdExit);
    auto* const all = new QVBoxLayout(this);
    all->addWidget(txtMessage);
    all->addLayout(buttons);
    const QFontMetrics letters = fontMetrics();
    txtMessage->setMinimumHeight(letters.lineSpacing() * LeastLinesDown);
    resize(letters.averageCharWidth() * CharactersAcross,
           letters.lineSpacing() * LinesDown + buttons->sizeHint().height());
    txtMessage->setFocus();
}

// ---- what is shown

void frmMessage::InitForm(ViewNumber view, Slot slot) {
    if (details_.Show(view, slot))
        ShowText();
    UpdateNavigation();
}

/// Shows the stored text; a control character other than a tab or a line end becomes a middle dot.
void frmMessage::ShowText() {
    // The text is cleared first, because each of the calls below would lay out the old text again.
    txtMessage->clear();
    QFont letters = font();
    if (IsTabular(details_.Text())) {
        letters.setFamily(FixedPitchFamily());
        letters.setStyleHint(QFont::Monospace);
    }
    txtMessage->setFont(letters);
    txtMessage->setTabStopDistance(QFontMetricsF(letters).horizontalAdvance(QLatin1Char(' ')) * 8);
    txtMessage->setWordWrapMode(LongestWord(details_.Text()) > LongestWrappedWord
                                    ? QTextOption::WrapAnywhere
                                    : QTextOption::WrapAtWordBoundaryOrAnywhere);
    txtMessage->setPlainText(ToVisibleText(details_.Text()));
}

void frmMessage::ShowBeside(const QRect& entry) {
    const QSize margins = isVisible() ? frameGeometry().size() - size()
                                      : QSize(0, style()->pixelMetric(QStyle::PM_TitleBarHeight));
    const QRect room = parentWidget()->screen()->availableGeometry();
    QRect frame(pos(), size() + margins);
    if (entry.isEmpty() && !isVisible())
        frame.moveCenter(parentWidget()->frameGeometry().center());
    else if (!entry.isEmpty() && (!isVisible() || frame.intersects(entry)))
        frame = Beside(entry, frame.size(), room);
    frame = Within(frame, room);
    resize(frame.size() - margins);
    move(frame.topLeft());
    show();
    raise();
    activateWindow();
}

MessageDetails::Found frmMessage::LookAgain() {
    const MessageDetails::Found found = details_.LookAgain();
    if (found == MessageDetails::Found::Nothing) {
        Close();
        return found;
    }
    if (found == MessageDetails::Found::Other)
        ShowText();
    UpdateNavigation();
    return found;
}

void frmMessage::UpdateNavigation() {
    if (details_.View() != ConsolidatedView)
        details_.StepFrom(parts_.Display.SelectedSlot(details_.View()));
    Enable(cmdUp, details_.HasPrevious());
    Enable(cmdDown, details_.HasNext());
}

/// Moves the focus to the text before disabling a button that has it; Qt would move it to the next button,
/// perhaps Delete.
void frmMessage::Enable(QPushButton* button, bool enabled) {
    if (!enabled && focusWidget() == button)
        txtMessage->setFocus();
    button->setEnabled(enabled);
}

// ---- commands

/// Runs the routine as a command.  Does nothing if the window was closed while the command waited.
void frmMessage::Run(Routine routine, CommandQueue::Kind kind) {
    parts_.Commands.Run(
        [self = QPointer(this), routine] {
            if (self != nullptr && self->isVisible())
                (self->*routine)();
        },
        kind);
}

void frmMessage::Close() {
    hide();
    emit Closed();
    deleteLater();
}

void frmMessage::Previous() {
    UpdateNavigation();
    ShowStep(details_.ShowPrevious());
}

void frmMessage::Next() {
    UpdateNavigation();
    ShowStep(details_.ShowNext());
}

void frmMessage::ShowStep(bool stepped) {
    if (stepped) {
        parts_.SelectEntry(details_.View(), details_.ShownSlot());
        ShowText();
    }
    UpdateNavigation();
}

/// Selects the shown message in the main window first, because the user may have selected another one there.
void frmMessage::Delete() {
    const ViewNumber view = details_.View();
    parts_.Received.SetActiveView(view);
    parts_.SelectEntry(view, details_.ShownSlot());
    parts_.DeleteSelected(view);
    parts_.Received.SetActiveView(view);
    if (LookAgain() == MessageDetails::Found::Other)
        parts_.SelectEntry(view, details_.ShownSlot());
}

/// Copies the whole text, even if only a part of it is selected.  NULs are left out: on Windows the clipboard
/// would end the text at the first one.
void frmMessage::Copy() {
    QClipboard* const clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(ToQString(details_.Text()).remove(QChar(u'\0')));
}

void frmMessage::Suppress() {
    if (!parts_.Boxes.Confirm(SuppressQuestion))
        return;
    details_.FillCurrentAlarm(parts_.CurrentAlarm, AlarmDate{parts_.Time.LocalSeconds()});
    parts_.ShowQuickAdd(*this);
}

// ---- keys

QPushButton* frmMessage::ButtonOfKey(int key) const {
    switch (key) {
        case Qt::Key_Up:
            return cmdUp;
        case Qt::Key_Down:
            return cmdDown;
        case Qt::Key_Delete:
            return cmdDelete;
        case Qt::Key_C:
            return cmdClipboard;
        case Qt::Key_S:
            return cmdSuppress;
        default:
            return nullptr;
    }
}

/// Handles the window's Ctrl keys before its controls receive them.  A key acts on its release, so that
/// holding it acts only once.  Presses are consumed, because the text box would scroll or copy its selection.
bool frmMessage::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease && type != QEvent::ShortcutOverride)
        return QDialog::eventFilter(watched, event);
    auto* const key = static_cast<QKeyEvent*>(event);
    QPushButton* const button = ButtonOfKey(key->key());
    if (button == nullptr || (key->modifiers() & ~Qt::KeypadModifier) != Qt::ControlModifier)
        return QDialog::eventFilter(watched, event);
    event->accept();
    if (type == QEvent::KeyRelease && !key->isAutoRepeat())
        button->click();
    return true;
}

}  // namespace tallyhorn
