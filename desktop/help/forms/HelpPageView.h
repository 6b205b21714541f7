#pragma once

#include <QTextBrowser>

#include "desktop/help/HelpBook.h"

namespace tallyhorn {

/// Shows the pages of one help file, and takes nothing from anywhere else: neither files nor the network.
/// User-interface thread only.
class HelpPageView final : public QTextBrowser {
    Q_OBJECT

public:
    /// The book outlives the view.
    HelpPageView(const HelpBook& book, QWidget* parent);

    /// `local` is a page, perhaps with "#" and an anchor.
    void ShowPage(const std::string& local);
    std::string ShownPage() const { return PageOf(source()); }
    static std::string PageOf(const QUrl& source);
    /// What a page says, without its markup.
    QString PlainText(const std::string& page) const;

    QVariant loadResource(int type, const QUrl& name) override;

private:
    void Follow(const QUrl& link);

    const HelpBook& book_;
};

}  // namespace tallyhorn
