#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <map>
#include <random>

#include "records/AnsiText.h"
#include "tests/support/Notifications.h"
#include "views/messages/ConsolidatedTree.h"

namespace tallyhorn {
namespace {

/// The texts of an alarm, its type and its computer: the names of the three groups above a leaf.
using Path = std::array<std::string, 3>;

/// Implements the tree's rules literally: one collection of nodes in the order of their creation, which is
/// searched from one end to the other; every change edits the displayed text.
class LiteralTree {
public:
    struct Node {
        std::string Key, Name, Text;
        Node* Parent = nullptr;
        std::size_t Count = 0;
        Slot Leaf = -1;
        bool SortsLeaves = false;
    };

    /// `leaf` contains the leaf's key and text.  A type that is none of the five gets no node.
    void Add(Slot slot, const Path& path, Node leaf) {
        Row& row = rows_[slot] = {path, nullptr};
        if (path[1].empty() || path[1] == "Critical")
            return;
        for (std::size_t level = 0; level < path.size(); ++level) {
            const std::string& name = path.at(level);
            Node* const found = Find(row.CountedBy, name);
            if (found == nullptr)
                nodes_.push_back({FreeGroupKey(level, row.CountedBy, name), name, "", row.CountedBy});
            row.CountedBy = found != nullptr ? found : &nodes_.back();
        }
        leaf.Parent = row.CountedBy;
        leaf.Leaf = slot;
        nodes_.push_back(leaf);
        for (Node* group = row.CountedBy; group != nullptr; group = group->Parent)
            group->Text = group->Name + (++group->Count == 1 ? std::string(" ( 1 Event )") : Events(*group));
    }
    void Remove(Slot slot) {
        for (Node* group = rows_.at(slot).CountedBy; group != nullptr; group = group->Parent) {
            --group->Count;
            group->Text.erase(group->Text.find('('));
            group->Text.pop_back();
            group->Text += Events(*group);
        }
        rows_.erase(slot);
        nodes_.remove_if(
            [slot](const Node& node) { return node.Leaf < 0 ? !node.Count : node.Leaf == slot; });
    }
    void SortLeaves(const std::string& computerKey) {
        for (Node& node : nodes_)
            node.SortsLeaves = node.SortsLeaves || node.Key == computerKey;
    }
    std::string NameOf(const std::string& key) const {
        return std::ranges::find(nodes_, key, &Node::Key)->Name;
    }
    /// Returns a line for each node in the displayed order: its position in the collection, its key, its
    /// text.
    std::string Shown(const Node* parent = nullptr, const std::string& indent = "") const {
        std::vector<const Node*> children;
        for (const Node& node : nodes_) {
            if (node.Parent == parent)
                children.push_back(&node);
        }
        if (!children.empty() && (children.front()->Leaf < 0 || parent->SortsLeaves))
            std::stable_sort(children.begin(), children.end(), [](const Node* a, const Node* b) {
                return UpperCase(a->Leaf < 0 ? a->Name : a->Text) <
                       UpperCase(b->Leaf < 0 ? b->Name : b->Text);
            });
        std::string text;
        for (const Node* child : children)
            text += indent + std::to_string(PositionOf(child)) + " " + child->Key + " " + child->Text + "\n" +
                    Shown(child, indent + "  ");
        return text;
    }
    /// Returns the slots of all rows whose path begins with these names.
    std::vector<Slot> SlotsUnder(const std::vector<std::string>& names) const {
        std::vector<Slot> slots;
        for (const auto& [slot, row] : rows_) {
            if (std::equal(names.begin(), names.end(), row.Names.begin()))
                slots.push_back(slot);
        }
        return slots;
    }
    int KeysMoved() const { return keysMoved_; }

private:
    struct Row {
        Path Names;
        Node* CountedBy = nullptr;  ///< its computer, unless it has no leaf
    };

    Node* Find(const Node* parent, const std::string& name) {
        const auto at = std::ranges::find_if(nodes_, [&](const Node& node) {
            return node.Parent == parent && node.Leaf < 0 && node.Name == name;
        });
        return at == nodes_.end() ? nullptr : &*at;
    }
    std::size_t PositionOf(const Node* node) const {
        const auto at = std::ranges::find(nodes_, node, [](const Node& other) { return &other; });
        return static_cast<std::size_t>(std::distance(nodes_.begin(), at)) + 1;
    }
    /// Returns the first key that no other node has, counting from the parent's position.
    std::string FreeGroupKey(std::size_t level, const Node* parent, std::string name) {
        if (level == 0)
            return "ALARM_" + name;
        if (level == 1) {  // "Failure Audit" becomes "failureaudit"
            std::erase(name, ' ');
            std::transform(name.begin(), name.end(), name.begin(), [](char c) { return ToLower(c); });
        }
        for (std::size_t number = PositionOf(parent);; ++number, ++keysMoved_) {
            std::string key =
                (level == 1 ? "EVENT_" : "COMPUTER_") + PadWithZeros(std::to_string(number), 4) + "_" + name;
            if (std::ranges::find(nodes_, key, &Node::Key) == nodes_.end())
                return key;
        }
    }
    static std::string Events(const Node& group) { return " ( " + std::to_string(group.Count) + " Events )"; }

    std::list<Node> nodes_;
    std::map<Slot, Row> rows_;
    int keysMoved_ = 0;
};

const std::vector<std::string> Types = {"Information",   "Warning",  "Error", "Failure Audit",
                                        "Success Audit", "Critical", ""};
const std::vector<std::string> Alarms = {"a1", "A1", "Link (one) (two)", "b", "c", "d", "e", "f", ""};
const std::vector<std::string> Logs = {"System", "security", "SECURITY"};

/// Applies random steps to the tree and to a LiteralTree, and compares them.
class ConsolidatedTreeTest : public ::testing::Test {
protected:
    std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(random_() % bound); }
    const std::string& AnyOf(const std::vector<std::string>& texts) { return texts[Below(texts.size())]; }

    void AddAny(Slot slot) {
        AlarmRecord record = RecordOf({.Name = AnyOf(Alarms),
                                       .Log = AnyOf(Logs),
                                       .Computer = "PC" + std::to_string(Below(4)),
                                       .Type = AnyOf(Types)});
        record.EventID = static_cast<std::int32_t>(Below(2) * Below(20));
        record.DateTime.Seconds += static_cast<std::int64_t>(Below(100'000'000));
        const DateStyle style{Below(2) == 0, "/"};
        const std::string id = "Event ID: " + std::to_string(record.EventID) + "  ||  ";
        const std::string text =
            record.LogType + " Log  ||  " +
            (record.LogType == "System" ? "Source: Disk  ||  " + id : id + "User: JOE  ||  ") +
            "Date Logged: " + FormatAlarmDate(record.DateTime, style.Pattern(), "/");
        literal_.Add(slot, {record.AlarmName, record.TypeOfEvent, record.Computer},
                     {"FIELDS_" + PadWithZeros(std::to_string(slot), 4) + "_" + record.LogType, "", text});
        rows_.SetDateStyle(style);
        rows_.Add(slot, record, EventTypeOf(record.TypeOfEvent));
        tree_.AddMessageToConsolidatedTree(slot, record);
        used_.push_back(slot);
    }
    /// Selects a node that may be removed with its messages, and then removes one to six random messages, or
    /// sometimes any number.
    void RemoveSome() {
        std::shuffle(used_.begin(), used_.end(), random_);
        const std::size_t count =
            1 + Below(Below(20) == 0 ? used_.size() : std::min<std::size_t>(used_.size(), 6));
        const std::vector<Slot> removed(used_.end() - static_cast<std::ptrdiff_t>(count), used_.end());
        used_.resize(used_.size() - count);
        const TreeNode leaf = TreeNode::Leaf(removed.front());
        const TreeNode selected = tree_.Holds(leaf) ? tree_.Parent(leaf) : TreeNode();
        tree_.SelectNode(selected);
        tree_.RemoveLeaves(removed);
        rows_.Remove(removed);
        for (const Slot slot : removed)
            literal_.Remove(slot);
        ASSERT_EQ(tree_.SelectedNode(), tree_.Holds(selected) ? selected : TreeNode());
    }
    void SortAny() {
        if (used_.empty() || !tree_.HasLeaf(used_.back()))
            return;
        const TreeNode computer = tree_.Parent(TreeNode::Leaf(used_.back()));
        tree_.SortChildren(computer);
        literal_.SortLeaves(tree_.Key(computer));
    }
    /// Returns the tree in the form of LiteralTree::Shown.
    std::string Shown(TreeNode parent = {}, const std::string& indent = "") const {
        std::string text;
        const std::size_t count = tree_.ChildCount(parent);
        std::size_t below = parent.IsLeaf() ? 1 : 0;
        for (std::size_t i = 0; i < count; ++i) {
            const TreeNode child = tree_.ChildAt(parent, i);
            below += tree_.Count(child);
            EXPECT_EQ(tree_.Parent(child), parent);
            EXPECT_EQ(tree_.PositionOf(child), i);
            TreeNode next = child, previous = child;
            EXPECT_EQ(tree_.FindNextAlarmNode(next), i + 1 < count);
            EXPECT_EQ(next, tree_.ChildAt(parent, std::min(i + 1, count - 1)));
            EXPECT_EQ(tree_.FindPreviousAlarmNode(previous), i > 0);
            EXPECT_EQ(previous, tree_.ChildAt(parent, i > 0 ? i - 1 : 0));
            EXPECT_EQ(tree_.Type(child).has_value(), tree_.Level(child) != TreeLevel::Alarm);
            text += indent + std::to_string(tree_.PositionInCollection(child)) + " " + tree_.Key(child) +
                    " " + tree_.Text(child) + "\n" + Shown(child, indent + "  ");
        }
        EXPECT_EQ(below, tree_.Count(parent));
        return text;
    }
    /// Compares the results of both SlotsUnder functions for each node on one random path.
    void CompareSlots() {
        std::vector<std::string> names;
        for (TreeNode node; tree_.ChildCount(node) > 0;
             node = tree_.ChildAt(node, Below(tree_.ChildCount(node)))) {
            if (node.IsRoot())
                continue;
            names.push_back(literal_.NameOf(tree_.Key(node)));
            std::vector<Slot> slots = tree_.SlotsUnder(node);
            std::sort(slots.begin(), slots.end());
            ASSERT_EQ(slots, literal_.SlotsUnder(names));
        }
    }

    MessageRows rows_;
    ConsolidatedTree tree_{rows_};
    LiteralTree literal_;
    std::mt19937 random_{1};
    std::vector<Slot> used_;
};

/// Keys contain positions, which waves of growth and removal move, so that keys are often taken.  In the end,
/// far more nodes have been removed than exist.
TEST_F(ConsolidatedTreeTest, AgreesWithItsRulesTakenLiterally) {
    for (Slot step = 0; step < 16'000; ++step) {
        SCOPED_TRACE(step);
        const bool grows = step / 300 % 2 == 0;
        if (step == 3000) {
            tree_.Clear();
            rows_.Clear();
            literal_ = LiteralTree();
            used_.clear();
        } else if (used_.empty() || Below(10) < (grows ? 9U : 3U)) {
            AddAny(step);
        } else {
            ASSERT_NO_FATAL_FAILURE(RemoveSome());
        }
        if (Below(30) == 0)
            SortAny();
        if (step % 20 != 0)
            continue;
        ASSERT_EQ(Shown(), literal_.Shown());
        ASSERT_EQ(static_cast<std::ptrdiff_t>(tree_.LeafCount()),
                  std::ranges::count_if(used_, [this](Slot slot) { return IsKnown(rows_[slot].Type); }));
        ASSERT_NO_FATAL_FAILURE(CompareSlots());
    }
    EXPECT_GT(literal_.KeysMoved(), 20) << "too few taken keys to test their rule";
}

}  // namespace
}  // namespace tallyhorn
