#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "filters/FilterFields.h"
#include "filters/SuppressionFilters.h"
#include "platform/MessageBoxes.h"
#include "records/AlarmRecord.h"
#include "views/messages/ChangeObserver.h"

namespace tallyhorn {

enum class DialogMode : std::int16_t {
    Plain = 1,    ///< about to be given one of the others
    Manage = 2,   ///< the list is shown
    Adding = 3,   ///< the fields are a new filter's
    Editing = 4,  ///< the fields are the selected filter's
};

/// Owns what the suppression filter dialog knows: its mode, the entries of its list and the selected one, and
/// writes each change to the filter file at once.  The user-interface thread alone may call it; the table
/// that notifications are matched against follows with Unload, and files that fail are never reported.
class DropFilterEditor {
public:
    /// A record that is not blank.
    struct Entry {
        std::string FilterName;
        std::int32_t RecordNumber = 0;
    };
    enum class Order { OfFile, Ascending, Descending };
    /// What became of OK, and so where the focus goes.
    enum class Answer { Saved, NoName, NameInUse, NameTooLong, NoEventID };

    DropFilterEditor(SuppressionFilters& filters, MessageBoxes& boxes) : filters_(filters), boxes_(boxes) {}

    /// Hears of every change of the entries.
    void SetObserver(ChangeObserver* observer) { observer_ = observer; }

    void InitForm() { mode_ = DialogMode::Plain; }
    void InitFormAsManager();
    /// The fields that it proposes for the notification.
    FilterFields InitFormAsQuickAdd(const AlarmRecord& alarm);

    DialogMode Mode() const { return mode_; }
    /// At most as many records are listed as are matched; an added one is listed all the same.
    const std::vector<Entry>& Entries() const { return entries_; }
    /// The entry that Edit, Delete and OK are about: one is selected as long as there is any.
    std::optional<std::size_t> Selected() const { return selected_; }
    void Select(std::size_t entry);
    /// By name without regard to case; later changes keep the order.
    void Sort(Order order);

    void Add() { mode_ = DialogMode::Adding; }
    /// The selected filter's fields.
    FilterFields Edit();
    void Delete();
    /// OK: saves the fields as a new filter or as the selected one, or tells why not and stays.
    Answer Save(FilterFields& fields);
    /// Whether the dialog is to close; otherwise it goes back to its list.
    bool Cancel();
    /// The dialog has closed: the table follows the file.
    void Unload();

private:
    void FillFilterList();
    void AddFilter(const std::string& name);
    void UpdateFilter(const std::string& name);
    /// Puts the entries into their order and selects the one of that record.
    void Arrange(std::int32_t selectedRecord);
    std::int32_t SelectedRecord() const;

    SuppressionFilters& filters_;
    MessageBoxes& boxes_;
    DialogMode mode_ = DialogMode::Plain;
    std::vector<Entry> entries_;
    std::optional<std::size_t> selected_;
    Order order_ = Order::OfFile;
    ChangeObserver* observer_ = nullptr;
};

}  // namespace tallyhorn
