#pragma once

#include <QStringList>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "desktop/help/HelpBook.h"

class QAction;
class QLineEdit;
class QListWidget;
class QTabWidget;
class QUrl;
class QTreeWidget;

namespace tallyhorn {

class HelpPageView;

/// The console's own help window: contents, pages, and a search through all pages.  Can be used while a modal
/// dialog is open.  Deletes itself when it is closed.
class frmHelp final : public QWidget {
    Q_OBJECT

public:
    explicit frmHelp(std::unique_ptr<const HelpBook> book);
    ~frmHelp() override;

    /// Shows the page with the number `context` and brings the help window to the front.  The help window
    /// stays in front of the window `owner`.
    void ShowContext(unsigned context, WId owner);

signals:
    /// Emitted when a modal dialog blocks the window.
    void Blocked();

protected:
    bool event(QEvent* event) override;

private:
    QWidget* BuildBar();
    QWidget* BuildParts();
    QAction* AddCommand(const char* name, const QString& text, const QKeySequence& key,
                        void (frmHelp::*routine)());
    QWidget* BuildSides();
    QWidget* BuildSearch();
    void FillContents();
    void PlaceBesideActiveWindow();
    void Leave() { close(); }
    void Home();
    void Back();
    void Forward();
    void StartSearch();
    void Search();
    void FindNext() { Find(true); }
    void FindPrevious() { Find(false); }
    void Find(bool onward);
    bool FindInPage(bool onward);
    void ShowFoundPage(int row);
    void FollowPage(const QUrl& source);
    void StayInFront();

    std::unique_ptr<const HelpBook> book_;
    WId owner_ = 0;
    std::vector<std::string> pages_;
    QStringList texts_;                    ///< the text of each page; filled by the first search
    std::vector<std::string> foundPages_;  ///< the pages that contain the searched text
    HelpPageView* txtPage;
    QTabWidget* tabSides;
    QTreeWidget* tvwContents;
    QLineEdit* txtFind;
    QListWidget* lvwFound;
};

}  // namespace tallyhorn
