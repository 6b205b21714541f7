#pragma once

#include <QDialog>
#include <functional>

#include "platform/Clock.h"
#include "platform/MessageBoxes.h"
#include "records/AlarmRecord.h"
#include "views/MessageDetails.h"
#include "views/forms/CommandQueue.h"

class QPlainTextEdit;
class QPushButton;

namespace tallyhorn {

/// The window that shows one notification in full and steps through its view, deletes, copies and suppresses.
/// User-interface thread only; once closed it deletes itself, as soon as nothing of it runs any more.
class frmMessage final : public QDialog {
    Q_OBJECT

public:
    /// What the window commands; all of it outlives the window.
    struct Parts {
        ReceivedMessages& Received;
        MessageBoxes& Boxes;
        AlarmRecord& CurrentAlarm;
        const Clock& Time;
        CommandQueue& Commands;
        /// Makes the entry the only selected one of its view in the main window.
        std::function<void(ViewNumber view, Slot slot)> SelectEntry;
        /// The main window's delete of what is selected in the view.
        std::function<void(ViewNumber view)> DeleteSelected;
        /// Asks for a suppression filter made from the current alarm, over `over`.
        std::function<void(QWidget& over)> ShowQuickAdd;
    };
    frmMessage(const Parts& parts, QWidget* parent);

    /// Takes the notification of `slot` in `view` into the window.
    void InitForm(ViewNumber view, Slot slot);
    /// Brings the window to the front, and to a place where it does not cover `entry`, a part of the screen,
    /// as far as there is room; with an empty one to the middle of its parent.
    void ShowBeside(const QRect& entry);

    /// Entries of some view are about to go or to be moved.
    void NotePlace() { details_.NotePlace(); }
    /// Entries came, went or were moved, and no work is under way: follows the notification, shows what took
    /// its place, or closes.
    MessageDetails::Found LookAgain();

    /// At once, unlike what the user asks for, which waits for other work.
    void Close();
    void reject() override { Run(&frmMessage::Close); }

signals:
    /// The window has gone.
    void Closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Routine = void (frmMessage::*)();

    QPushButton* AddButton(const char* name, const QString& tip, const QIcon& icon, Routine routine,
                           CommandQueue::Kind kind = CommandQueue::Kind::Work);
    void LayOut();
    void Run(Routine routine, CommandQueue::Kind kind = CommandQueue::Kind::Work);
    void ShowText();
    void UpdateNavigation();
    void Enable(QPushButton* button, bool enabled);

    void Previous();
    void Next();
    void ShowStep(bool stepped);
    void Delete();
    void Copy();
    void Suppress();
    QPushButton* ButtonOfKey(int key) const;

    Parts parts_;
    MessageDetails details_;
    QPlainTextEdit* txtMessage;
    QPushButton* cmdUp;
    QPushButton* cmdDown;
    QPushButton* cmdDelete;
    QPushButton* cmdClipboard;
    QPushButton* cmdSuppress;
    QPushButton* cmdExit;
};

}  // namespace tallyhorn
