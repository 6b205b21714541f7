// The whole road, from texts that another process writes into a real mailslot to rows in a real window
// without a screen: the processor time of a text, and how soon a click is answered meanwhile.

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QEventLoop>
#include <QMouseEvent>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "app/Console.h"
#include "app/QuietParts.h"
#include "tests/fakes/FakeWindow.h"
#include "tests/fakes/TemporaryFolder.h"
#include "tools/DemoFeed.h"
#include "views/forms/MessageListView.h"

namespace tallyhorn {
namespace {

using SteadyClock = std::chrono::steady_clock;

double ProcessorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// A console over a mailslot folder of its own, with a sender in another process.
class Road {
public:
    Road() {
        setenv("XDG_RUNTIME_DIR", folder_.Path().c_str(), 1);
        mailslots_ = MakeMailslotTransport();
        console_ = std::make_unique<Console>(
            Console::Machine{instance_, *mailslots_, *profiles_, clock_, boxes_, signals_, filter_},
            folder_.Path());
        console_->Start();
    }

    frmServer& Window() { return console_->Window(); }

    /// Writes `count` texts, `rate` a second or as fast as can be for 0.
    void Send(int count, int rate) {
        sender_ = fork();
        if (sender_ != 0)
            return;
        SystemClock clock;
        const auto mailslots = MakeMailslotTransport();
        const auto client = mailslots->Open(R"(\\.\mailslot\TallyhornEngine)");
        std::vector<std::string> texts;
        DemoFeed feed(1);
        while (texts.size() < 5000) {
            if (std::string text = feed.Next().Text + '\0'; text.size() < 400)
                texts.push_back(std::move(text));
        }
        const auto start = SteadyClock::now();
        for (int i = 0; i < count; ++i) {
            if (rate > 0 && i % 100 == 0)
                std::this_thread::sleep_until(start + std::chrono::microseconds(1'000'000LL * i / rate));
            client->Write(texts[static_cast<std::size_t>(i) % texts.size()]);
        }
        _exit(0);
    }

    /// Lets the window work until the status bar counts `count` texts.
    void AwaitRows(int count) {
        QEventLoop loop;
        QTimer watch;
        const auto end = SteadyClock::now() + std::chrono::minutes(2);
        QObject::connect(&watch, &QTimer::timeout, [&] {
            if (Rows() >= count || SteadyClock::now() > end)
                loop.quit();
        });
        watch.start(5);
        loop.exec();
        waitpid(sender_, nullptr, 0);
    }

    int Rows() {
        int rows = 0;
        for (const MessageListView* const list : Window().findChildren<MessageListView*>())
            rows += list->model()->rowCount();
        return rows;
    }

private:
    TemporaryFolder folder_;
    InstanceLock instance_{"bench", folder_ / "locks"};
    std::unique_ptr<MailslotTransport> mailslots_;
    std::unique_ptr<ProfileFunctions> profiles_ = MakeProfileFunctions();
    SystemClock clock_;
    FakeMessageBoxes boxes_;
    QuietSignals signals_;
    NoViewFilter filter_;
    std::unique_ptr<Console> console_;
    pid_t sender_ = 0;
};

void MailslotToRow(benchmark::State& state) {
    constexpr int Texts = 300'000;
    for (auto _ : state) {
        Road road;
        road.Window().resize(1280, 800);
        const double before = ProcessorSeconds();
        road.Send(Texts, 0);
        road.AwaitRows(Texts);
        const double time = ProcessorSeconds() - before;
        state.SetIterationTime(time / Texts);
        if (road.Rows() != Texts)
            state.SkipWithError("texts were lost");
    }
}
BENCHMARK(MailslotToRow)->UseManualTime()->Iterations(3)->Unit(benchmark::kMicrosecond);

/// Clicks come from another thread, so that they fall into whatever the window is doing.
void ClickUnderLoad(benchmark::State& state) {
    constexpr int Rate = 20'000;
    constexpr int Seconds = 5;
    for (auto _ : state) {
        Road road;
        auto* const list = road.Window().findChild<MessageListView*>(QStringLiteral("lvwMessages2"));
        std::atomic<SteadyClock::rep> sent{0};
        std::vector<double> answers;
        QObject::connect(list, &MessageListView::Touched, [&] {
            const SteadyClock::duration waited(SteadyClock::now().time_since_epoch().count() -
                                               sent.exchange(0));
            answers.push_back(std::chrono::duration<double, std::milli>(waited).count());
        });
        std::atomic<bool> over{false};
        std::thread hand([&] {
            while (!over) {
                std::this_thread::sleep_for(std::chrono::milliseconds(23));
                if (sent != 0)
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
        road.Send(Rate * Seconds, Rate);
        road.AwaitRows(Rate * Seconds);
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
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
