// Receives texts that another process writes into a real mailslot and shows them as rows of a window on Qt's
// "offscreen" platform.  Measures the processor time per text, and how long a click waits meanwhile.

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QMouseEvent>
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/ConsoleUnderLoad.h"
#include "bench/ProcessorTime.h"
#include "platform/Heap.h"
#include "tools/DemoFeed.h"
#include "views/forms/MessageListView.h"

namespace tallyhorn {
namespace {

using SteadyClock = std::chrono::steady_clock;

/// Owns a console with its own mailslot folder, and a sending process.
class Road {
public:
    /// Forks the sender, which will write `count` texts, `rate` per second; 0 means as fast as possible.
    /// Forks before the console exists, because pages shared with the sender would have to be copied when the
    /// console writes to them.
    Road(int count, int rate) {
        setenv("XDG_RUNTIME_DIR", folder_.Path().c_str(), 1);
        if (pipe(start_.data()) != 0)
            std::abort();
        // Returns memory freed by an earlier run to the system, so that it is not shared with the sender.
        malloc_trim(0);
        sender_ = fork();
        if (sender_ == 0)
            SendAndExit(count, rate);
        console_ = std::make_unique<ConsoleUnderLoad>(folder_, *datagrams_);
    }

    frmServer& Window() { return console_->Window(); }

    /// Lets the sender start.
    void Send() { (void)!write(start_[1], "", 1); }

    /// Runs pending events until the lists show `count` rows.  Returns false after two minutes.
    [[nodiscard]] bool AwaitRows(int count) {
        const bool all = ConsoleUnderLoad::WorkUntil([&] { return Rows() >= count; });
        waitpid(sender_, nullptr, 0);
        return all;
    }

    int Rows() const { return console_->Rows(); }

private:
    [[noreturn]] void SendAndExit(int count, int rate) {
        std::vector<std::string> texts;
        DemoFeed feed(1);
        while (texts.size() < 5000) {
            if (std::string text = feed.Next().Text + '\0'; text.size() < 400)
                texts.push_back(std::move(text));
        }
        char go = 0;
        (void)!read(start_[0], &go, 1);
        const auto client = MakeMailslotTransport()->Open(R"(\\.\mailslot\TallyhornEngine)");
        const auto start = SteadyClock::now();
        for (int i = 0; i < count; ++i) {
            if (rate > 0 && i % 100 == 0)
                std::this_thread::sleep_until(start + std::chrono::microseconds(1'000'000LL * i / rate));
            client->Write(texts[static_cast<std::size_t>(i) % texts.size()]);
        }
        _exit(0);
    }

    TemporaryFolder folder_;
    std::array<int, 2> start_{};
    std::unique_ptr<DatagramSockets> datagrams_ = MakeDatagramSockets();
    std::unique_ptr<ConsoleUnderLoad> console_;
    pid_t sender_ = 0;
};

void MailslotToRow(benchmark::State& state) {
    constexpr int Texts = 300'000;
    for (auto _ : state) {
        Road road(Texts, 0);
        road.Window().resize(1280, 800);
        const double before = UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID);
        const double beforeHere = UsedProcessorSeconds(CLOCK_THREAD_CPUTIME_ID);
        road.Send();
        const bool all = road.AwaitRows(Texts);
        const double time = UsedProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID) - before;
        const double timeHere = UsedProcessorSeconds(CLOCK_THREAD_CPUTIME_ID) - beforeHere;
        state.SetIterationTime(time / Texts);
        state.counters["window_us"] = timeHere / Texts * 1e6;
        state.counters["receiving_us"] = (time - timeHere) / Texts * 1e6;
        if (!all || road.Rows() != Texts)
            state.SkipWithError("texts were lost");
    }
}
BENCHMARK(MailslotToRow)->UseManualTime()->Iterations(3)->Unit(benchmark::kMicrosecond);

/// Posts clicks from another thread, so that they arrive while the window is busy.
void ClickUnderLoad(benchmark::State& state) {
    constexpr int Rate = 20'000;
    constexpr int Seconds = 5;
    for (auto _ : state) {
        Road road(Rate * Seconds, Rate);
        auto* const list = road.Window().findChild<MessageListView*>(QStringLiteral("lvwMessages2"));
        std::atomic<SteadyClock::rep> sent{0};
        std::vector<double> answers;
        QObject::connect(list, &MessageListView::Touched, [&] {
            const SteadyClock::duration waited(SteadyClock::now().time_since_epoch().count() -
                                               sent.exchange(0));
            answers.push_back(std::chrono::duration<double, std::milli>(waited).count());
        });
        std::atomic<bool> over{false};
        std::atomic<bool> listening{false};
        QObject::connect(list->model(), &QAbstractItemModel::rowsInserted,
                         [&] { listening = list->isEnabled(); });
        std::thread hand([&] {
            while (!over) {
                std::this_thread::sleep_for(std::chrono::milliseconds(23));
                // A list without rows is disabled and ignores clicks.
                if (sent != 0 || !listening)
                    continue;
                sent = SteadyClock::now().time_since_epoch().count();
                QCoreApplication::postEvent(
                    list->viewport(),
                    new QMouseEvent(QEvent::MouseButtonPress, QPointF(50, 50), QPointF(50, 50),
                                    Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
                QCoreApplication::postEvent(
                    list->viewport(),
                    new QMouseEvent(QEvent::MouseButtonRelease, QPointF(50, 50), QPointF(50, 50),
                                    Qt::LeftButton, Qt::NoButton, Qt::NoModifier));
            }
        });
        const auto start = SteadyClock::now();
        road.Send();
        if (!road.AwaitRows(Rate * Seconds))
            state.SkipWithError("texts were lost");
        state.SetIterationTime(std::chrono::duration<double>(SteadyClock::now() - start).count());
        over = true;
        hand.join();
        QCoreApplication::processEvents();
        std::sort(answers.begin(), answers.end());
        state.counters["clicks"] = static_cast<double>(answers.size());
        state.counters["median_ms"] = answers.empty() ? 0 : answers[answers.size() / 2];
        state.counters["longest_ms"] = answers.empty() ? 0 : answers.back();
        state.counters["rows"] = road.Rows();
    }
}
BENCHMARK(ClickUnderLoad)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyhorn

int main(int argc, char** argv) {
    tallyhorn::GrowHeapInLargeSteps();  // the console does this too
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
