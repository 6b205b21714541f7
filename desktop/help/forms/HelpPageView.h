#pragma once

#include <QTextBrowser>

#include "desktop/help/HelpBook.h"

namespace tallyhorn {

/// Shows the pages of one help file.  Never loads anything from other files or from the network.
class HelpPageView final : public QTextBrowser {
    Q_OBJECT

public:
    /// The book must outlive the view.
    HelpPageView(const HelpBook& book, QWidget* parent);

    /// `local` is the path of a page, possibly followed by "#" and an anchor.
    void ShowPage(const std::string& local);
    std::string ShownPage() const { return PageOf(source()); }
    static std::string PageOf(const QUrl& source);
    /// Returns a page's text without its markup.
    QString PlainText(const std::string& page) const;

    QVariant loadResource(int type, const QUrl& name) override;

private:
    void Follow(const QUrl& link);

    const HelpBook& book_;
};

}  // namespace tallyhorn
