#pragma once

#include <QDialog>
#include <functional>

#include "views/MessageDetails.h"
#include "views/forms/CommandQueue.h"
#include "views/messages/MessageContext.h"

class QPlainTextEdit;
class QPushButton;

namespace tallyhorn {

/// Shows the full text of one message.  The user can change to the previous or next message of the view, and
/// delete, copy or suppress the message.  Deletes itself after it is closed, by deleteLater().
class frmMessage final : public QDialog {
    Q_OBJECT

public:
    /// The referenced objects must outlive the window.
    struct Parts : MessageContext {
        CommandQueue& Commands;
        /// Selects the message, and nothing else, in the main window's view.
        std::function<void(ViewNumber view, Slot slot)> SelectEntry;
        /// Deletes what is selected in the main window's view, after its usual question.
        std::function<void(ViewNumber view)> DeleteSelected;
        /// Opens the dialog for a suppression filter made from the current alarm; `over` is its parent.
        std::function<void(QWidget& over)> ShowQuickAdd;
    };
    frmMessage(const Parts& parts, QWidget* parent);

    /// Shows the message of `slot`, if `view` has it.
    void InitForm(ViewNumber view, Slot slot);
    /// Shows the window in front, moved if necessary so that it does not cover `entry`, in screen
    /// coordinates. Centres it on its parent if `entry` is empty.
    void ShowBeside(const QRect& entry);

    /// To be called before rows of any view are removed or reordered.
    void NotePlace() { details_.NotePlace(); }
    /// To be called after rows of any view were added, removed or reordered, while no work is running.  Finds
    /// the message again, or shows the message that MessageDetails chooses instead, or closes the window if
    /// there is none.
    MessageDetails::Found LookAgain();

    /// Enables each arrow if there is a message in its direction.  To be called after another row was
    /// selected in the main window, because the next step goes from that row.
    void UpdateNavigation();

    /// Closes at once. reject(), which Qt calls when the user closes the window, waits until no other work is
    /// running.
    void Close();
    void reject() override { Run(&frmMessage::Close); }

signals:
    /// Emitted when the window has been closed.
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
