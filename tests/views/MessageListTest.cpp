#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

#include "records/AnsiText.h"
#include "views/messages/MessageList.h"

namespace tallyhorn {
namespace {

/// Records the sizes of the list before and after each change that it announces.
struct Observer : ChangeObserver {
    explicit Observer(MessageList& list) : List(list) { List.SetObserver(this); }
    ~Observer() override { List.SetObserver(nullptr); }
    void AboutToChange() override { Sizes.push_back(List.Size()); }
    void Changed() override { AboutToChange(); }
    MessageList& List;
    std::vector<std::size_t> Sizes;
};

class MessageListTest : public ::testing::Test {
protected:
    void Add(Slot slot, const std::string& name, std::int64_t seconds) {
        AlarmRecord alarm;
        alarm.DateTime = AlarmDate{seconds};
        alarm.AlarmName = name;
        rows_.Add(slot, alarm, EventType::Error);
        list_.Add(slot);
    }
    std::vector<Slot> Slots() const {
        std::vector<Slot> slots;
        for (std::size_t i = 0; i < list_.Size(); ++i)
            slots.push_back(list_.SlotAt(i));
        return slots;
    }

    MessageRows rows_;
    MessageList list_{rows_};
};

TEST_F(MessageListTest, TypeAheadGoesRoundFromWhereItStarts) {
    for (Slot slot = 0; slot < 3; ++slot)
        Add(slot, "a", slot * 31 * 86400);
    EXPECT_EQ(list_.FindByDate("02/01", 0), 1U);
    EXPECT_EQ(list_.FindByDate("01/", 2), 0U);
    EXPECT_EQ(list_.FindByDate("0", 3), 0U) << "the search continues at the first row";
    EXPECT_EQ(list_.FindByDate("x", 0), std::nullopt);
    Add(3, "a", 62 * 86400 + 7200);
    EXPECT_EQ(list_.CellText(3, MessageColumn::RecordNum), "000089400.0000");
    EXPECT_EQ(list_.FindByDate("03/04/1970 2", 0), 3U) << "the text may include the hour";
    EXPECT_EQ(list_.FindByDate("03/04/1970 12", 0), 2U);
    rows_.SetDateStyle({true, "-"});
    Add(4, "a", 62 * 86400 + 7200);
    EXPECT_EQ(list_.FindByDate("04-03", 2), 4U) << "dates are compared as they are displayed";
    EXPECT_EQ(MessageList(rows_).FindByDate("0", 0), std::nullopt);
}

/// Compares the list with a vector after random steps.  Waves of growth and removal split and join blocks,
/// also blocks with selected rows.  The list announces all changes except additions.
TEST_F(MessageListTest, AgreesWithAVectorThroughRandomSteps) {
    struct Row {
        Slot Of;  ///< smaller for later rows, so that slots and arrivals differ in order
        std::string Name;
        std::int64_t Seconds;
        bool Selected = false;
    };
    std::vector<Row> rows;
    std::optional<MessageColumn> column;
    bool descending = false;
    const auto sortsBefore = [&](const Row& a, const Row& b) {
        const std::int64_t order = column == MessageColumn::DateLogged ? a.Seconds - b.Seconds
                                   : column == MessageColumn::Alarm    ? CompareNoCase(a.Name, b.Name)
                                                                       : 0;
        return order != 0 ? (order < 0) != descending : a.Of > b.Of;
    };
    std::mt19937 random(7);
    const auto below = [&](std::size_t bound) { return static_cast<std::size_t>(random() % bound); };
    std::size_t largest = 0;
    Observer observer(list_);
    for (Slot step = 25'000; step > 0; --step) {
        const std::size_t what = below(1000);
        const std::size_t before = rows.size();
        if (what < 980 || rows.empty()) {
            // The names begin alike, so that their first eight bytes do not decide the order.
            const std::string start = below(2) != 0 ? "Common start " : "COMMON START ";
            const Row row{step, start + std::to_string(below(40)), static_cast<std::int64_t>(below(50)) - 25};
            Add(step, row.Name, row.Seconds);
            rows.insert(std::upper_bound(rows.begin(), rows.end(), row, sortsBefore), row);
            ASSERT_EQ(rows.at(list_.NewestPosition().value()).Of, step);
        } else if (what < 985) {
            const bool selected = below(3) != 0;
            const std::size_t first = below(rows.size());
            const std::size_t last = std::min(rows.size() - 1, first + (below(2) != 0 ? below(2000) : 0));
            list_.Select(first, last, selected);
            for (std::size_t i = first; i <= last; ++i)
                rows[i].Selected = selected;
        } else if (what < 988) {
            list_.ClearSelection();
            for (Row& row : rows)
                row.Selected = false;
        } else if (what < 997) {
            std::vector<Slot> gone;
            const std::size_t kept =
                rows.size() > 3000 && below(3) == 0 ? 20 : 0;  // keeps one row in 20, or all but about one
            for (const Row& row : rows) {
                if (kept > 0 ? below(kept) != 0 : below(rows.size()) == 0)
                    gone.push_back(row.Of);
            }
            std::shuffle(gone.begin(), gone.end(), random);
            const std::vector<Slot> removed = list_.Remove(gone);
            rows_.Remove(removed);
            ASSERT_TRUE(std::is_permutation(removed.begin(), removed.end(), gone.begin(), gone.end()));
            std::erase_if(rows, [&](const Row& row) { return !rows_.Holds(row.Of); });
        } else if (what < 998) {
            rows_.Remove(list_.RemoveSelected());
            std::erase_if(rows, [](const Row& row) { return row.Selected; });
        } else if (below(8) == 0) {
            list_.Clear();
            rows_.Clear();
            rows.clear();
        } else {
            column = below(2) != 0 ? MessageColumn::Alarm : MessageColumn::DateLogged;
            descending = !descending;
            list_.SortBy(*column);
            std::sort(rows.begin(), rows.end(), sortsBefore);
        }
        largest = std::max(largest, rows.size());
        std::vector<std::size_t> announced;
        if (before > 0 && (what >= 997 || (what >= 988 && rows.size() < before)))
            announced = {before, rows.size()};
        ASSERT_EQ(std::exchange(observer.Sizes, {}), announced) << step;
        if (what < 980 && step % 500 != 0)
            continue;
        std::vector<Slot> slots, selected;
        for (const Row& row : rows) {
            slots.push_back(row.Of);
            if (row.Selected)
                selected.push_back(row.Of);
        }
        ASSERT_EQ(Slots(), slots) << step;
        ASSERT_EQ(list_.SelectedSlots(), selected) << step;
        ASSERT_EQ(list_.SelectedCount(), selected.size()) << step;
        for (std::size_t i = below(7); i < slots.size(); i += 7)
            ASSERT_EQ(list_.PositionOf(slots[i]), i) << step;
        ASSERT_LE(rows_.Texts().IdBound(), 81U) << "texts whose rows are removed are still held";
    }
    EXPECT_GT(largest, 3000U) << "too few rows for several blocks";
}

}  // namespace
}  // namespace tallyhorn
