#pragma once

namespace tallyhorn {

/// Hears of changes to a list or the tree that are more than things coming in: order, removal, emptying.
/// What comes in is not told one by one; who shows it takes it in at its own pace.
class ChangeObserver {
public:
    virtual ~ChangeObserver() = default;
    virtual void AboutToChange() = 0;
    virtual void Changed() = 0;
};

/// Tells the observer, if there is one, before and after a change.
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
