#pragma once

#include <QWidget>
#include <array>

#include "views/ServerLayout.h"
#include "views/messages/ReceivedMessages.h"

class QGroupBox;
class QTabWidget;

namespace tallyhorn {

class ConsolidatedTreeView;
class MessageListView;

/// Converts between lengths of the layout and pixels of the screen that shows the widget.
int InPixels(Twips length, const QWidget& on);
Twips InTwips(int pixels, const QWidget& on);

/// The inside of the main window: owns the tab control with the frames, the six lists and the tree, and
/// places them.  Keeps the widths of the lists' columns.
class ServerPages final : public QWidget {
public:
    explicit ServerPages(QWidget* mainWindow);
    /// Makes the lists and the tree, which do not exist before.  `received` must outlive them.
    void Load(ReceivedMessages& received);

    QTabWidget& Tabs() const { return *tabMessageTypes; }
    MessageListView& List(ViewNumber view) const;
    ConsolidatedTreeView& Tree() const { return *tvwConsolidated; }
    /// The lists and all views, by view number.
    std::array<MessageListView*, ConsolidatedView> Lists() const;
    std::array<QWidget*, ConsolidatedView + 1> Views() const;

    /// Lets the lists and the visible tree show what has arrived.
    void ShowNewRows();
    /// Enables or disables a view.  If a view that has the focus is disabled, the focus moves to the tabs.
    void EnableView(ViewNumber view, bool enabled);
    /// Shows or hides a view.  If a view that has the focus is hidden, the focus moves to the tabs until the
    /// view is shown again.
    void ShowView(ViewNumber view, bool shown);

    /// Places the tab control, the frames and the views for the present size.
    void Place();
    /// Sets the columns' widths for the next layout; all widths are 0 if none were saved.
    void SetColumnWidths(const ColumnWidthArray& widths) { columnWidths_ = widths; }
    const ColumnWidthArray& ColumnWidths() const { return columnWidths_; }
    /// Gives all lists the kept widths, or each its own shares if none are kept.
    void ApplyColumnWidths();
    /// Keeps the widths that the user gave to the columns of a list.  compatibility: only the lists of the
    /// same channel get them at once; those of the other channel get them at the next layout.
    void KeepColumnWidths(ViewNumber view);

private:
    /// The controls on the page of one channel: fraNetBiosTypes and lvwMessages, or fraSyslogTypes and
    /// lvwSyslog.
    struct ChannelControls {
        std::array<QGroupBox*, EventListCount> Frames{};       ///< in their order from the top of the page
        std::array<MessageListView*, EventListCount> Lists{};  ///< by list index
    };

    QGroupBox* AddFrame(MessagePage page, std::string_view caption, const QString& name);
    void BuildLists(ReceivedMessages& received, const ChannelTraits& traits);
    ChannelControls& ControlsOf(Channel channel);
    QWidget* View(ViewNumber view) const;
    int Pixels(Twips length) const { return InPixels(length, *this); }
    Twips InTwips(int pixels) const { return tallyhorn::InTwips(pixels, *this); }

    QTabWidget* tabMessageTypes = nullptr;
    std::array<ChannelControls, ChannelCount> channels_;
    QGroupBox* fraConsolidated = nullptr;
    ConsolidatedTreeView* tvwConsolidated = nullptr;  ///< made by Load, like the lists
    QWidget* focusBeforeHiding_ = nullptr;
    ColumnWidthArray columnWidths_{};
};

}  // namespace tallyhorn
