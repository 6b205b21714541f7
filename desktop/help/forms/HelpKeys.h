#pragma once

#include <QObject>
#include <functional>

#include "desktop/help/HelpContexts.h"

namespace tallyhorn {

/// Lets F1 in any window of the program ask for the page of what has the focus, as far as that or what it
/// lies in has one (`HelpContextProperty`).  User-interface thread only; as long as it lives.
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
