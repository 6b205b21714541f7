#pragma once

#include <cstdint>

#include "views/messages/MessageStore.h"

namespace tallyhorn {

/// A node of the consolidated tree by number: a group, or a leaf by its message's slot.  A plain value.
class TreeNode {
public:
    TreeNode() = default;
    static TreeNode Group(std::uint32_t group) { return TreeNode(group); }
    static TreeNode Leaf(Slot slot) { return TreeNode(LeafBit | static_cast<std::uint32_t>(slot)); }
    /// What Number gave.
    static TreeNode FromNumber(std::uint32_t number) { return TreeNode(number); }

    /// What all alarms hang under; it is never shown.
    bool IsRoot() const { return number_ == 0; }
    bool IsLeaf() const { return (number_ & LeafBit) != 0; }
    std::uint32_t GroupId() const { return number_; }
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
