#include "platform/TerminationSignals.h"

#include <pthread.h>

#include <atomic>
#include <csignal>
#include <thread>
#include <utility>

namespace tallyhorn {
namespace {

/// Receives the signals by sigwait in a thread, since a signal handler may call only few functions.
class WaitedSignals final : public TerminationSignals {
public:
    WaitedSignals() {
        sigemptyset(&signals_);
        for (const int signal : {SIGTERM, SIGINT, SIGHUP, Wake})
            sigaddset(&signals_, signal);
        pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
    }
    ~WaitedSignals() override { WaitedSignals::Stop(); }

    void Start(std::function<void()> ended) override {
        Stop();
        thread_ = std::thread([this, ended = std::move(ended)] {
            int signal = 0;
            while (sigwait(&signals_, &signal) == 0 && !stopping_) {
                if (signal != Wake)
                    ended();
            }
        });
    }

    void Stop() override {
        if (!thread_.joinable())
            return;
        stopping_ = true;
        pthread_kill(thread_.native_handle(), Wake);
        thread_.join();
        stopping_ = false;
    }

private:
    static constexpr int Wake = SIGUSR1;

    sigset_t signals_{};
    /// Set by Stop before it sends Wake; without it, the same signal from another process would end the
    /// thread.
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

}  // namespace

std::unique_ptr<TerminationSignals> MakeTerminationSignals() {
    return std::make_unique<WaitedSignals>();
}

}  // namespace tallyhorn
