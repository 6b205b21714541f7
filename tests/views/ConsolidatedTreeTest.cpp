#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "records/AnsiText.h"
#include "views/messages/ConsolidatedTree.h"

namespace tallyhorn {
namespace {

AlarmRecord Record(const std::string& alarm, const std::string& type, const std::string& computer,
                   const std::string& logType = "System") {
    AlarmRecord record;
    record.DateTime = MakeAlarmDate({.Year = 2008, .Month = 8, .Day = 21, .Hour = 14, .Minute = 5}).value();
    record.AlarmName = alarm;
    record.LogType = logType;
    record.Source = "Disk";
    record.TypeOfEvent = type;
    record.EventID = 7;
    record.AccountName = "ADMIN";
    record.Computer = computer;
    return record;
}

const std::vector<std::string> TypeWords = {"information", "warning", "error", "failureaudit",
                                            "successaudit"};

/// The tree as its rules tell it: one collection of nodes in the order in which they were made, walked from
/// one end to the other.
struct WalkedTree {
    struct Node {
        std::string Key, Name;
        Node* Parent = nullptr;
        std::size_t Leaves = 0;
        Slot Tag = -1;
    };
    std::list<Node> Collection;
    /// The last group that there is for each message: its computer, unless a key was taken.
    std::map<Slot, Node*> CountedBy;

    Node* Find(const Node* parent, const std::string& name) {
        const auto found = std::find_if(Collection.begin(), Collection.end(), [&](const Node& node) {
            return node.Parent == parent && node.Tag < 0 && node.Name == name;
        });
        return found == Collection.end() ? nullptr : &*found;
    }
    std::string Index(const Node* node) const {
        const auto at = std::find_if(Collection.begin(), Collection.end(),
                                     [&](const Node& other) { return &other == node; });
        const std::string digits = std::to_string(std::distance(Collection.begin(), at) + 1);
        return std::string(digits.size() < 4 ? 4 - digits.size() : 0, '0') + digits;
    }
    Node* Append(const Node& node) {
        const bool taken = std::any_of(Collection.begin(), Collection.end(),
                                       [&](const Node& other) { return other.Key == node.Key; });
        return taken ? nullptr : &Collection.emplace_back(node);
    }
    void Add(Slot slot, const std::string& alarm, const std::string& type, const std::string& computer) {
        Node* group = Find(nullptr, alarm);
        if (group == nullptr)
            group = Append({"ALARM_" + alarm, alarm});
        bool whole = true;
        for (const auto& [kind, name] : {std::pair("EVENT_", type), std::pair("COMPUTER_", computer)}) {
            Node* below = Find(group, name);
            if (whole && below == nullptr)
                below = Append({kind + Index(group) + "_" + name, name, group});
            whole = whole && below != nullptr;
            group = whole ? below : group;
        }
        if (whole)
            Append({"FIELDS_" + std::to_string(slot), "", group, 0, slot});
        CountedBy[slot] = group;
        for (; group != nullptr; group = group->Parent)
            ++group->Leaves;
    }
    void Remove(Slot slot) {
        for (Node* group = CountedBy.at(slot); group != nullptr; group = group->Parent)
            --group->Leaves;
        CountedBy.erase(slot);
        Collection.remove_if(
            [slot](const Node& node) { return node.Tag < 0 ? node.Leaves == 0 : node.Tag == slot; });
    }
};

class ConsolidatedTreeTest : public ::testing::Test {
protected:
    void Add(Slot slot, const AlarmRecord& record) {
        rows_.Add(slot, record, EventTypeOf(record.TypeOfEvent));
        tree_.AddMessageToConsolidatedTree(slot, record);
    }
    void Remove(std::vector<Slot> slots) {
        tree_.RemoveLeaves(slots);
        rows_.Remove(slots);
    }
    /// The tree as it is shown: two blanks a level.
    std::string Shown() const { return Below(TreeNode(), ""); }
    std::string Below(TreeNode parent, const std::string& indent) const {
        std::string text;
        for (std::size_t i = 0; i < tree_.ChildCount(parent); ++i) {
            const TreeNode child = tree_.ChildAt(parent, i);
            EXPECT_EQ(tree_.Parent(child), parent);
            EXPECT_EQ(tree_.PositionOf(child), i);
            TreeNode next = child;
            EXPECT_EQ(tree_.FindNextAlarmNode(next), i + 1 < tree_.ChildCount(parent));
            EXPECT_EQ(tree_.PositionOf(next), std::min(i + 1, tree_.ChildCount(parent) - 1));
            text += indent + tree_.Text(child) + "\n" + Below(child, indent + "  ");
        }
        return text;
    }
    /// Every node of one stands in the other, at the same position of the collection and with the same key.
    void CompareWith(const WalkedTree& walked) const {
        std::vector<std::string> keys(walked.Collection.size());
        CollectKeys(TreeNode(), keys);
        auto key = keys.begin();
        for (const WalkedTree::Node& node : walked.Collection)
            EXPECT_EQ(*key++, node.Key + " " + std::to_string(node.Leaves));
    }
    void CollectKeys(TreeNode parent, std::vector<std::string>& keys) const {
        for (std::size_t i = 0; i < tree_.ChildCount(parent); ++i) {
            const TreeNode child = tree_.ChildAt(parent, i);
            const std::size_t position = tree_.PositionInCollection(child);
            ASSERT_LE(position, keys.size());
            keys[position - 1] = child.IsLeaf() ? "FIELDS_" + std::to_string(child.LeafSlot()) + " 0"
                                                : tree_.Key(child) + " " + std::to_string(tree_.Count(child));
            ASSERT_EQ(tree_.PositionOf(child), i);
            CollectKeys(child, keys);
        }
    }
    TreeNode First(int level) const {
        TreeNode node;
        while (level-- > 0)
            node = tree_.ChildAt(node, 0);
        return node;
    }

    MessageRows rows_;
    ConsolidatedTree tree_{rows_};
};

TEST_F(ConsolidatedTreeTest, GroupsByAlarmTypeAndComputer) {
    Add(0, Record("Full", "Warning", "PC2"));
    Add(1, Record("Full", "Failure Audit", "PC1", "SECURITY"));
    Add(2, Record("Full", "Warning", "PC1"));
    Add(3, Record("Empty", "Error", ""));
    Add(4, Record("full", "Error", "PC1"));
    Add(5, Record("Full", "Critical", "PC1"));
    Add(6, Record("Full", "", "PC1"));
    const std::string system =
        "System Log  ||  Source: Disk  ||  Event ID: 7  ||  Date Logged: 08/21/2008 2:05:00 PM\n";
    EXPECT_EQ(
        Shown(),
        "Empty ( 1 Event )\n  Error ( 1 Event )\n     ( 1 Event )\n      " + system +
            "Full ( 3 Events )\n  Failure Audit ( 1 Event )\n    PC1 ( 1 Event )\n"
            "      SECURITY Log  ||  Event ID: 7  ||  User: ADMIN  ||  Date Logged: 08/21/2008 2:05:00 PM\n"
            "  Warning ( 2 Events )\n    PC1 ( 1 Event )\n      " +
            system + "    PC2 ( 1 Event )\n      " + system +
            "full ( 1 Event )\n  Error ( 1 Event )\n    PC1 ( 1 Event )\n      " + system)
        << "in the order of the texts; unknown types have no leaf; names differ by case too";
    EXPECT_EQ(tree_.Type(First(1)), std::nullopt);
    EXPECT_EQ(tree_.Type(First(4)), EventType::Error);
}

TEST_F(ConsolidatedTreeTest, ARemovalLeavesThePluralAndCutsAtTheFirstParenthesis) {
    for (Slot slot = 0; slot < 3; ++slot)
        Add(slot, Record("Link (one) (two)", "Error", "PC"));
    Remove({1});
    EXPECT_EQ(tree_.Text(First(1)), "Link ( 2 Events )");
    Remove({0});
    EXPECT_EQ(tree_.Text(First(1)) + tree_.Text(First(3)), "Link ( 1 Events )PC ( 1 Events )");
    Add(0, Record("Link (one) (two)", "Error", "PC"));
    EXPECT_EQ(tree_.Text(First(1)), "Link (one) (two) ( 2 Events )");
    Remove({0, 2});
    EXPECT_EQ(tree_.LeafCount(), 0U);
    EXPECT_EQ(Shown(), "");
}

TEST_F(ConsolidatedTreeTest, AKeyHoldsThePositionThatItsParentHad) {
    Add(0, Record("A", "Error", "PC"));
    Add(12345, Record("B", "Error", "PC", "Sys"));
    const TreeNode leaf = TreeNode::Leaf(12345);
    const TreeNode type = tree_.Parent(tree_.Parent(leaf));
    const TreeNode b = tree_.Parent(type);
    EXPECT_EQ(tree_.Key(b) + " " + tree_.Key(type) + " " + tree_.Key(tree_.Parent(leaf)),
              "ALARM_B EVENT_0005_error COMPUTER_0006_PC");
    EXPECT_EQ(tree_.Key(leaf) + " " + tree_.Key(First(4)), "FIELDS_12345_Sys FIELDS_0000_System");
    Remove({0});
    EXPECT_EQ(tree_.PositionInCollection(b), 1U) << "positions move down";
    EXPECT_EQ(tree_.Key(type), "EVENT_0005_error") << "keys stay";

    Add(1, Record("C", "Error", "PC"));
    EXPECT_FALSE(tree_.HasLeaf(1))
        << "C is the fifth node, and B's type has the key that its type would have";
    EXPECT_EQ(Shown().substr(Shown().rfind("C (")), "C ( 1 Event )\n") << "but it is there and counts";
    Remove({1});
    EXPECT_EQ(tree_.ChildCount(TreeNode()), 1U) << "and goes with its row";
    Add(1, Record("C", "Error", "PC"));
    Add(2, Record("C", "Warning", "PC9"));
    EXPECT_TRUE(tree_.HasLeaf(2));
    EXPECT_EQ(tree_.Text(tree_.ChildAt(TreeNode(), 1)), "C ( 2 Events )");
    EXPECT_EQ(tree_.SlotsUnder(tree_.ChildAt(TreeNode(), 1)), (std::vector<Slot>{2, 1}))
        << "an alarm covers the rows that have no leaf as well";
    EXPECT_EQ(tree_.SlotsUnder(tree_.Parent(TreeNode::Leaf(2))), std::vector<Slot>{2});
}

TEST_F(ConsolidatedTreeTest, LeavesAreSortedByTheirTextsOnceAskedFor) {
    std::mt19937 random(5);
    for (const bool dayFirst : {false, true, false}) {
        rows_.SetDateStyle({dayFirst, "-"});
        for (Slot i = 0; i < 300; ++i) {
            AlarmRecord record = Record("A", "Error", "PC", random() % 2 == 0 ? "Security" : "security");
            record.DateTime.Seconds += static_cast<std::int64_t>(random() % 100'000'000);
            record.EventID = static_cast<std::int32_t>(random() % 200);
            Add(rows_.Holds(0) ? static_cast<Slot>(tree_.LeafCount()) : 0, record);
        }
        const TreeNode computer = First(3);
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < tree_.ChildCount(computer); ++i) {
            texts.push_back(UpperCase(tree_.Text(tree_.ChildAt(computer, i))));
            ASSERT_EQ(tree_.PositionOf(tree_.ChildAt(computer, i)), i);
        }
        EXPECT_EQ(std::is_sorted(texts.begin(), texts.end()), texts.size() > 300)
            << "the later ones went into their places";
        EXPECT_EQ(tree_.SortChildren(computer), texts.size() == 300);
        EXPECT_FALSE(tree_.SortChildren(First(2))) << "groups are always sorted";
    }
}

TEST_F(ConsolidatedTreeTest, AgreesWithAWalkOverTheWholeCollection) {
    WalkedTree walked;
    std::mt19937 random(1);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    std::vector<Slot> used;
    std::size_t refused = 0;
    for (Slot step = 0; step < 6000; ++step) {
        // Waves of growing and shrinking, so that positions move and keys come to be taken.
        const bool grows = step / 150 % 2 == 0;
        if (below(10) < (grows ? 8U : 3U) || used.empty()) {
            const std::string alarm = "a" + std::to_string(below(9));
            const std::string& type = TypeWords[below(TypeWords.size())];
            const std::string computer = "PC" + std::to_string(below(4));
            Add(step, Record(alarm, type, computer));
            walked.Add(step, alarm, type, computer);
            refused += tree_.HasLeaf(step) ? 0 : 1;
            used.push_back(step);
        } else {
            std::shuffle(used.begin(), used.end(), random);
            const std::size_t count = 1 + below(std::min<std::size_t>(used.size(), 6));
            const std::vector<Slot> gone(used.end() - static_cast<std::ptrdiff_t>(count), used.end());
            used.resize(used.size() - count);
            Remove(gone);
            for (const Slot slot : gone)
                walked.Remove(slot);
        }
        if (step % 1500 == 1499) {
            tree_.Clear();
            rows_.Clear();
            walked = WalkedTree();
            used.clear();
        }
        if (step % 10 == 0) {
            ASSERT_NO_FATAL_FAILURE(CompareWith(walked)) << step;
        }
    }
    EXPECT_GT(refused, 20U) << "else nothing was seen of keys that are taken";
}

TEST_F(ConsolidatedTreeTest, PositionsStayRightThroughAGreatManyNodes) {
    constexpr Slot Leaves = 30'000;
    for (Slot slot = 0; slot < Leaves; ++slot)
        Add(slot, Record("A", "Error", "PC" + std::to_string(slot % 100)));
    std::vector<Slot> gone;
    for (Slot slot = 0; slot < Leaves; ++slot) {
        if (slot % 10 != 0)
            gone.push_back(slot);
    }
    Remove(gone);
    // One alarm and one type, and the first leaf of each of ten computers stands behind it.
    for (Slot left = 0; left < Leaves / 10; ++left)
        ASSERT_EQ(tree_.PositionInCollection(TreeNode::Leaf(left * 10)),
                  static_cast<std::size_t>(2 + left + 1 + std::min(left + 1, 10)));
}

}  // namespace
}  // namespace tallyhorn
