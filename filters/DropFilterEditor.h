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
    Plain = 1,    ///< before InitFormAsManager or InitFormAsQuickAdd
    Manage = 2,   ///< the list of filters is shown
    Adding = 3,   ///< the fields describe a new filter
    Editing = 4,  ///< the fields describe the selected filter
};

/// Owns the state of the suppression filter dialog: its mode, the entries of its list and the selected entry.
/// Writes each change to the filter file at once; notifications are matched against the old filters until
/// Unload.  If a change cannot be written, it fills the list again from the file, so that the list shows no
/// filter that the file lacks.
class DropFilterEditor {
public:
    /// A record of the filter file that is not blank.
    struct Entry {
        std::string FilterName;
        std::int32_t RecordNumber = 0;
    };
    enum class Order { ByRecord, Ascending, Descending };
    /// The outcome of Save: the filter was saved, or the field for which it was refused, or the file could
    /// not be written.
    enum class Answer { Saved, NoName, NameInUse, NameTooLong, NoEventID, NotWritten };

    DropFilterEditor(SuppressionFilters& filters, MessageBoxes& boxes) : filters_(filters), boxes_(boxes) {}

    /// Sets the observer, which is called before and after every change of the entries; nullptr removes it.
    void SetObserver(ChangeObserver* observer) { observer_ = observer; }

    void InitForm() { mode_ = DialogMode::Plain; }
    void InitFormAsManager();
    /// Changes to the mode Adding.  Returns the proposed fields of a filter for notifications like `alarm`.
    FilterFields InitFormAsQuickAdd(const AlarmRecord& alarm);

    DialogMode Mode() const { return mode_; }
    /// Returns the filters among the first SuppressionFilters::MaxRecords records of the file, and those
    /// added since the list was filled.
    const std::vector<Entry>& Entries() const { return entries_; }
    /// Returns the entry on which Edit, Delete and Save act.  An entry is always selected unless the list is
    /// empty.
    std::optional<std::size_t> Selected() const { return selected_; }
    void Select(std::size_t entry);
    /// Sorts the entries by record number or by name, ignoring case, and keeps that order when entries
    /// change.
    void Sort(Order order);

    void Add() { mode_ = DialogMode::Adding; }
    /// Returns the fields of the selected filter.
    FilterFields Edit();
    /// Returns the fields of the selected filter, as the file has them, or empty ones if none is selected.
    /// Unlike Edit, it does not change SuppressionFilters::CurrentFilter, because Delete writes the dates of
    /// that filter to the file.
    FilterFields SelectedFields();
    /// Deletes the selected filter, if any.  Returns false if the file could not be written.
    bool Delete();
    /// Saves the fields as a new filter or as the selected one, depending on the mode, and returns to Manage,
    /// even if the file could not be written.  If it refuses a field, it keeps the mode and, except for
    /// NoEventID, shows the reason.
    Answer Save(FilterFields& fields);
    /// Returns true if the dialog is to close; otherwise changes to the mode Manage and returns false.
    bool Cancel();
    /// Loads the filters again.  Call it when the dialog closes.
    void Unload();

private:
    /// Reads the list from the file and selects the entry with that record number, or else the first.
    void FillFilterList(std::int32_t selectedRecord);
    bool AddFilter(const std::string& name);
    bool UpdateFilter(const std::string& name);
    void ReadFileAgain();
    /// Sorts the entries and selects the one with this record number, or the first if there is none.
    void Arrange(std::int32_t selectedRecord);
    std::int32_t SelectedRecord() const;

    SuppressionFilters& filters_;
    MessageBoxes& boxes_;
    DialogMode mode_ = DialogMode::Plain;
    std::vector<Entry> entries_;
    std::optional<std::size_t> selected_;
    Order order_ = Order::ByRecord;
    ChangeObserver* observer_ = nullptr;
};

}  // namespace tallyhorn
