// Adds batches of rows to a visible list, which scrolls to the newest row and paints it.  For comparison, a
// minimal widget paints the same rows.  The run fails if a batch was not painted separately.

#include <benchmark/benchmark.h>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>
#include <array>
#include <vector>

#include "records/NetBiosFormat.h"
#include "tools/DemoFeed.h"
#include "ui/AnsiString.h"
#include "ui/Pictures.h"
#include "views/forms/MessageListView.h"

namespace tallyhorn {
namespace {

constexpr QSize ViewSize(1200, 600);
constexpr int RowHeight = 20;
constexpr int CellMargin = 4;
constexpr int IconSide = 16;

const std::vector<AlarmRecord>& Alarms() {
    static const std::vector<AlarmRecord> Parsed = [] {
        DemoFeed feed(1);
        std::vector<AlarmRecord> made(20'000);
        for (AlarmRecord& alarm : made)
            ParseCurrentAlarm(feed.Next().Text, alarm);
        return made;
    }();
    return Parsed;
}

constexpr std::array<int, SizedColumnCount> Widths = {276, 264, 180, 252, 180};

/// For comparison: paints rows of ready-made strings cell by cell, without selection, sorting or resizing.
class BareArea final : public QAbstractScrollArea {
public:
    using Row = std::array<QString, SizedColumnCount>;
    std::vector<Row> Rows;

    void TakeIn() {
        verticalScrollBar()->setRange(0, std::max(0, static_cast<int>(Rows.size()) - Visible()));
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
        viewport()->update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(viewport());
        const int first = verticalScrollBar()->value();
        const int last = std::min(static_cast<int>(Rows.size()), first + Visible() + 1);
        for (int row = first; row < last; ++row) {
            const int top = (row - first) * RowHeight;
            int left = 0;
            icon_.paint(&painter, QRect(CellMargin, top + 2, IconSide, IconSide));
            for (std::size_t column = 0; column < Widths.size(); ++column) {
                const int indent = column == 0 ? CellMargin + IconSide + CellMargin : CellMargin;
                painter.drawText(QRect(left + indent, top, Widths[column] - indent - CellMargin, RowHeight),
                                 Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                                 Rows[static_cast<std::size_t>(row)][column]);
                left += Widths[column];
            }
        }
    }

private:
    int Visible() const { return viewport()->height() / RowHeight; }

    QIcon icon_ = EventIcon(EventType::Error);
};

/// Counts how often a widget is painted.
class PaintCounter final : public QObject {
public:
    explicit PaintCounter(QWidget* painted) { painted->installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        Painted += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    std::int64_t Painted = 0;
};

/// Fails the run unless the newest row is at the bottom and every batch was painted.
void Check(benchmark::State& state, const QScrollBar& bar, const PaintCounter& paints) {
    if (bar.maximum() == 0 || bar.value() != bar.maximum())
        state.SkipWithError("the newest row is not in view");
    if (paints.Painted < state.max_iterations)
        state.SkipWithError("not every batch was painted");
}

void FlushBare(benchmark::State& state) {
    BareArea area;
    area.resize(ViewSize);
    area.show();
    QCoreApplication::processEvents();
    const PaintCounter paints(area.viewport());
    std::size_t next = 0;
    MessageRows rows;
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<BareArea::Row> batch;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            rows.Add(0, Alarms()[next++ % Alarms().size()], EventType::None);
            BareArea::Row row;
            for (std::size_t column = 0; column < row.size(); ++column)
                row[column] = ToVisibleLine(rows.CellText(0, static_cast<MessageColumn>(column)));
            rows.Remove(0);
            batch.push_back(std::move(row));
        }
        state.ResumeTiming();
        area.Rows.insert(area.Rows.end(), batch.begin(), batch.end());
        area.TakeIn();
        QCoreApplication::processEvents();
    }
    Check(state, *area.verticalScrollBar(), paints);
}
BENCHMARK(FlushBare)->Arg(10)->Arg(200)->Iterations(500);

void FlushList(benchmark::State& state) {
    MessageRows rows;
    MessageList list(rows);
    MessageListView view(list);
    for (int column = 0; column < SizedColumnCount; ++column)
        view.SetColumnWidth(column, Widths.at(static_cast<std::size_t>(column)));
    view.resize(ViewSize);
    view.show();
    QCoreApplication::processEvents();
    const PaintCounter paints(view.viewport());
    auto* const throttle = view.findChild<QTimer*>(QStringLiteral("repaintThrottle"));
    Slot next = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const Slot first = next;
        for (std::int64_t i = 0; i < state.range(0); ++i, ++next)
            rows.Add(next, Alarms()[static_cast<std::size_t>(next) % Alarms().size()], EventType::Error);
        state.ResumeTiming();
        for (Slot slot = first; slot < next; ++slot)
            list.Add(slot);
        view.ShowNewRows();
        // The list waits a moment to show several batches together.  Ends this wait at once.
        if (throttle->isActive()) {
            throttle->start(0);
            QCoreApplication::processEvents();
        }
        QCoreApplication::processEvents();
    }
    Check(state, *view.verticalScrollBar(), paints);
}
BENCHMARK(FlushList)->Arg(10)->Arg(200)->Iterations(500);

}  // namespace
}  // namespace tallyhorn

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
