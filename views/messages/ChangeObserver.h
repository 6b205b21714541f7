#pragma once

namespace tallyhorn {

/// Receives a call before and after every change that removes or reorders entries of a list or the tree.  It
/// is not called for additions: storms add tens of thousands of entries a second, and a view asks for new
/// ones when it is about to show them.
class ChangeObserver {
public:
    virtual ~ChangeObserver() = default;
    virtual void AboutToChange() = 0;
    virtual void Changed() = 0;
};

/// Calls AboutToChange when it is made and Changed when it is destroyed.  The observer may be null.
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
