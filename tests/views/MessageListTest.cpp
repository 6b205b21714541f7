#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "records/AnsiText.h"
#include "views/MessageList.h"

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
        rows_.Add(slot, alarm, EventPicture::Error, CriticalList);
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
        void AboutToChange() override { Told.append("(").append(std::to_string(List.Size())); }
        void Changed() override { Told.append(",").append(std::to_string(List.Size())).append(")"); }
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
        Slot Number;
        std::string Name;
        std::int64_t Seconds;
        std::uint64_t Arrival;
        bool Selected;
    };
    std::vector<Row> slow;
    std::optional<MessageColumn> column;
    bool descending = false;
    const auto less = [&](const Row& a, const Row& b) {
        int order = 0;
        if (column == MessageColumn::DateLogged)
            order = a.Seconds < b.Seconds ? -1 : a.Seconds > b.Seconds ? 1 : 0;
        else if (column == MessageColumn::Alarm)
            order = CompareNoCase(a.Name, b.Name);
        if (order != 0)
            return descending ? order > 0 : order < 0;
        return a.Arrival < b.Arrival;
    };
    std::mt19937 random(7);
    const auto below = [&](std::size_t bound) { return static_cast<std::size_t>(random() % bound); };
    std::uint64_t arrivals = 0;
    std::size_t largest = 0;
    Slot nextSlot = 0;
    std::vector<Slot> freed;
    for (int step = 0; step < 20'000; ++step) {
        const std::size_t what = below(1000);  // how often each step comes, in thousandths
        if (what < 970 || slow.empty()) {
            Slot slot = nextSlot;
            if (freed.empty()) {
                ++nextSlot;
            } else {
                slot = freed.back();
                freed.pop_back();
            }
            // Long common beginnings, so that comparisons have to look at the whole texts.
            const Row row{slot,
                          (below(2) != 0 ? "Common start " : "COMMON START ") + std::to_string(below(40)),
                          static_cast<std::int64_t>(below(50)), arrivals++, false};
            Add(slot, Alarm(row.Name, row.Seconds));
            slow.insert(std::upper_bound(slow.begin(), slow.end(), row, less), row);
            ASSERT_EQ(slow.at(list_.NewestPosition().value()).Number, slot);
        } else if (what < 975) {
            const std::size_t first = below(slow.size());
            const std::size_t last = std::min(slow.size() - 1, first + below(2000));
            const bool selected = below(3) != 0;
            list_.Select(first, last, selected);
            for (std::size_t i = first; i <= last; ++i)
                slow[i].Selected = selected;
        } else if (what < 990) {
            const std::size_t position = below(slow.size());
            freed.push_back(slow[position].Number);
            Remove(slow[position].Number);
            slow.erase(slow.begin() + static_cast<std::ptrdiff_t>(position));
        } else if (what < 991) {
            const std::vector<Slot> selected = list_.SelectedSlots();
            const std::vector<Slot> gone = list_.RemoveSelected();
            ASSERT_EQ(gone, selected);
            rows_.Remove(gone);
            freed.insert(freed.end(), gone.begin(), gone.end());
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
        ASSERT_EQ(list_.Size(), slow.size());
        largest = std::max(largest, slow.size());
        if (step % 250 != 0)
            continue;
        std::vector<Slot> selected;
        for (std::size_t i = 0; i < slow.size(); ++i) {
            ASSERT_EQ(list_.SlotAt(i), slow[i].Number) << "step " << step;
            ASSERT_EQ(list_.PositionOf(slow[i].Number), i) << "step " << step;
            ASSERT_EQ(list_.IsSelected(i), slow[i].Selected);
            ASSERT_EQ(list_.CellText(i, MessageColumn::Alarm), slow[i].Name);
            if (slow[i].Selected)
                selected.push_back(slow[i].Number);
        }
        ASSERT_EQ(list_.SelectedSlots(), selected);
        ASSERT_EQ(list_.SelectedCount(), selected.size());
        ASSERT_EQ(list_.PositionOf(nextSlot), std::nullopt);
        ASSERT_LE(rows_.Texts().Size(), 81U) << "texts whose rows are gone are still held";
    }
    EXPECT_GT(largest, 2000U) << "enough for several blocks";
}

}  // namespace
}  // namespace tallyhorn
