#pragma once

namespace tallyhorn {

/// Is called around every change of a list or the tree that removes, empties or reorders something.  It is
/// not called for an addition: storms add tens of thousands a second, and a view asks for what is new when it
/// is about to show it.
class ChangeObserver {
public:
    virtual ~ChangeObserver() = default;
    virtual void AboutToChange() = 0;
    virtual void Changed() = 0;
};

/// Calls the observer, which may be null, before and after the change made while this object exists.
class Change {
public:
    explicit Change(ChangeObserver* observer) : observer_(observer) {
        if (observer_ != nullptr)
            observer_->AboutToChange();
    }
    ~Change() {
        if (observer_ != nullptr)
            observer_->Changed();
    }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

private:
    ChangeObserver* observer_;
};

}  // namespace tallyhorn
