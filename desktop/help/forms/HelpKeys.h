#pragma once

#include <QObject>
#include <functional>

#include "desktop/help/HelpContexts.h"

namespace tallyhorn {

/// Handles the key F1 in all windows of the program for as long as this object exists.  Calls the handler
/// with the help page of the widget that has the focus, or of its nearest ancestor that has a page
/// (`HelpContextProperty`).
class HelpKeys final : public QObject {
public:
    using Handler = std::function<void(HelpContext)>;

    explicit HelpKeys(Handler show);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const Handler show_;
};

}  // namespace tallyhorn
