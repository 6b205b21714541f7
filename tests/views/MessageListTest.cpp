#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "records/AnsiText.h"
#include "views/messages/MessageList.h"

namespace tallyhorn {
namespace {

AlarmRecord Alarm(const std::string& name, std::int64_t seconds = 0, const std::string& computer = "") {
    AlarmRecord alarm;
    alarm.DateTime = AlarmDate{seconds};
    alarm.AlarmName = name;
    alarm.Computer = computer;
    return alarm;
}

/// A list with its rows, and slots that a test hands out.
class MessageListTest : public ::testing::Test {
protected:
    void Add(Slot slot, const AlarmRecord& alarm) {
        rows_.Add(slot, alarm, EventType::Error);
        list_.Add(slot);
    }
    void Remove(Slot slot) {
        list_.Remove(std::span(&slot, 1));
        rows_.Remove(slot);
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

TEST_F(MessageListTest, FirstClickSortsDescendingAndEveryClickTurnsRound) {
    Add(1, Alarm("beta", -5));
    Add(2, Alarm("Alpha", 253'402'300'799));
    Add(3, Alarm("alpha", -59'011'459'200));
    Add(4, Alarm("gamma", -5));
    const struct {
        MessageColumn Column;
        std::vector<Slot> Order;
    } clicks[] = {
        {MessageColumn::DateLogged, {2, 1, 4, 3}},
        {MessageColumn::DateLogged, {3, 1, 4, 2}},
        {MessageColumn::Alarm, {4, 1, 2, 3}},  // another column turns round too, case does not count
        {MessageColumn::Alarm, {2, 3, 1, 4}}};
    for (const auto& [column, order] : clicks) {
        list_.SortBy(column);
        EXPECT_EQ(Slots(), order);
    }
}

TEST_F(MessageListTest, RowsKeepTheTextTheyWereAddedWith) {
    rows_.SetDateStyle({true, "-"});
    Add(1, Alarm("a", 86400));
    rows_.SetDateStyle({false, "."});
    Add(2, Alarm("a", 86400));
    EXPECT_EQ(list_.CellText(0, MessageColumn::DateLogged), "02-01-1970 12:00:00 AM");
    EXPECT_EQ(list_.CellText(1, MessageColumn::DateLogged), "01.02.1970 12:00:00 AM");
    EXPECT_EQ(list_.CellText(1, MessageColumn::RecordNum), "000001440.0000");
}

TEST_F(MessageListTest, TypeAheadGoesRoundFromWhereItStarts) {
    for (Slot slot = 0; slot < 3; ++slot)
        Add(slot, Alarm("a", slot * 31 * 86400));
    EXPECT_EQ(list_.FindByDate("02/01", 0), 1U);
    EXPECT_EQ(list_.FindByDate("01/", 2), 0U);
    EXPECT_EQ(list_.FindByDate("0", 3), 0U) << "behind the last row comes the first";
    EXPECT_EQ(list_.FindByDate("x", 0), std::nullopt);
    Add(3, Alarm("a", 62 * 86400 + 7200));
    EXPECT_EQ(list_.FindByDate("03/04/1970 2", 0), 3U) << "as far as the hour";
    EXPECT_EQ(list_.FindByDate("03/04/1970 12", 0), 2U);
    EXPECT_EQ(MessageList(rows_).FindByDate("0", 0), std::nullopt);
}

TEST_F(MessageListTest, TellsItsObserverOfAllButArrivals) {
    struct Observer : ChangeObserver {
        explicit Observer(MessageList& list) : List(list) {}
        void AboutToChange() override { Told += "(" + std::to_string(List.Size()); }
        void Changed() override { Told += "," + std::to_string(List.Size()) + ")"; }
        MessageList& List;
        std::string Told;
    } observer(list_);
    list_.SetObserver(&observer);
    for (Slot slot = 0; slot < 5; ++slot)
        Add(slot, Alarm("a"));
    EXPECT_EQ(observer.Told, "");
    list_.SortBy(MessageColumn::Alarm);
    list_.Select(0, 1, true);
    list_.RemoveSelected();
    Remove(4);
    Remove(4);
    list_.Clear();
    EXPECT_EQ(observer.Told, "(5,5)(5,3)(3,2)(2,0)");
    list_.SetObserver(nullptr);
}

/// The list against a plain vector that does the same the slow way, over thousands of mixed steps.
TEST_F(MessageListTest, AgreesWithASlowListThroughAnyMixOfSteps) {
    struct Row {
        Slot Number;  ///< the later, the lower
        std::string Name;
        std::int64_t Seconds;
        bool Selected = false;
    };
    std::vector<Row> slow;
    std::optional<MessageColumn> column;
    bool descending = false;
    const auto less = [&](const Row& a, const Row& b) {
        const std::int64_t order = column == MessageColumn::DateLogged ? a.Seconds - b.Seconds
                                   : column == MessageColumn::Alarm    ? CompareNoCase(a.Name, b.Name)
                                                                       : 0;
        return order != 0 ? (order < 0) != descending : a.Number > b.Number;
    };
    std::mt19937 random(7);
    const auto below = [&](std::size_t bound) { return static_cast<std::size_t>(random() % bound); };
    std::size_t largest = 0;
    for (Slot step = 20'000; step > 0; --step) {
        const std::size_t what = below(1000);  // how often each step comes, in thousandths
        if (what < 970 || slow.empty()) {
            // Long common beginnings, so that comparisons have to look at the whole texts.
            const std::string start = below(2) != 0 ? "Common start " : "COMMON START ";
            const Row row{step, start + std::to_string(below(40)), static_cast<std::int64_t>(below(50))};
            Add(step, Alarm(row.Name, row.Seconds));
            slow.insert(std::upper_bound(slow.begin(), slow.end(), row, less), row);
            ASSERT_EQ(slow.at(list_.NewestPosition().value()).Number, step);
        } else if (what < 975) {
            const std::size_t first = below(slow.size());
            const std::size_t last = std::min(slow.size() - 1, first + below(2000));
            const bool selected = below(3) != 0;
            list_.Select(first, last, selected);
            for (std::size_t i = first; i <= last; ++i)
                slow[i].Selected = selected;
        } else if (what < 990) {
            const std::size_t position = below(slow.size());
            Remove(slow[position].Number);
            slow.erase(slow.begin() + static_cast<std::ptrdiff_t>(position));
        } else if (what < 991) {
            rows_.Remove(list_.RemoveSelected());
            std::erase_if(slow, [](const Row& row) { return row.Selected; });
        } else if (what < 993) {
            list_.ClearSelection();
            for (Row& row : slow)
                row.Selected = false;
        } else if (step % 3 == 0) {
            column = below(2) != 0 ? MessageColumn::Alarm : MessageColumn::DateLogged;
            descending = !descending;
            list_.SortBy(*column);
            std::sort(slow.begin(), slow.end(), less);
        }
        largest = std::max(largest, slow.size());
        if (step % 250 != 0)
            continue;
        std::vector<Slot> slots, selected;
        for (const Row& row : slow) {
            ASSERT_EQ(list_.PositionOf(row.Number), slots.size()) << step;
            slots.push_back(row.Number);
            if (row.Selected)
                selected.push_back(row.Number);
        }
        ASSERT_EQ(Slots(), slots) << step;
        ASSERT_EQ(list_.SelectedSlots(), selected) << step;
        ASSERT_EQ(list_.SelectedCount(), selected.size()) << step;
        ASSERT_LE(rows_.Texts().Size(), 81U) << "texts whose rows are gone are still held";
    }
    EXPECT_GT(largest, 2000U) << "enough for several blocks";
}

}  // namespace
}  // namespace tallyhorn
