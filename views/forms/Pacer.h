#pragma once

#include <QElapsedTimer>
#include <functional>

class QObject;
class QTimer;

namespace tallyhorn {

/// Keeps costly work, such as showing what came, from being done too often: a request is met at once where
/// the last time is long enough ago, and otherwise a little later, together with those that come meanwhile.
/// User-interface thread only.
class Pacer {
public:
    /// Its timer is a child of `owner`, whose member the pacer is.
    Pacer(QObject* owner, std::function<void()> work);

    Pacer(const Pacer&) = delete;
    Pacer& operator=(const Pacer&) = delete;

    void Request();
    /// At once in any case, where something was requested.
    void Flush();

private:
    void Work();

    const std::function<void()> work_;
    QTimer* const timer_;
    QElapsedTimer sinceWork_;
    int interval_;  ///< in milliseconds, from the end of one piece of work to the start of the next
};

}  // namespace tallyhorn
