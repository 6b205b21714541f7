#pragma once

#include <cstdint>

#include "views/messages/MessageStore.h"

namespace tallyhorn {

/// A group's number; the root has 0.
using GroupId = std::uint32_t;

/// A node of the consolidated tree: a group by its number, or a leaf by its message's slot.  It stays valid
/// as a value when the node is removed; ConsolidatedTree::Holds returns whether the node still exists.
class TreeNode {
public:
    TreeNode() = default;
    static TreeNode Group(tallyhorn::GroupId group) { return TreeNode(group); }
    static TreeNode Leaf(Slot slot) { return TreeNode(LeafBit | static_cast<std::uint32_t>(slot)); }
    /// Returns the node whose Number() is `number`.
    static TreeNode FromNumber(std::uint32_t number) { return TreeNode(number); }

    /// Returns whether this is the root, which is the parent of all alarms and is never shown.
    bool IsRoot() const { return number_ == 0; }
    bool IsLeaf() const { return (number_ & LeafBit) != 0; }
    tallyhorn::GroupId GroupId() const { return number_; }
    Slot LeafSlot() const { return static_cast<Slot>(number_ & ~LeafBit); }
    std::uint32_t Number() const { return number_; }

    bool operator==(const TreeNode&) const = default;

private:
    static constexpr std::uint32_t LeafBit = 0x80000000U;
    explicit TreeNode(std::uint32_t number) : number_(number) {}

    std::uint32_t number_ = 0;
};

/// The depth of a node below the root.
enum class TreeLevel : std::uint8_t { Root, Alarm, Type, Computer, Leaf };

}  // namespace tallyhorn
