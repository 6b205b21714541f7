#include "views/forms/ServerPages.h"

#include <QGroupBox>
#include <QTabBar>
#include <algorithm>

#include "ui/AnsiString.h"
#include "ui/Controls.h"
#include "views/forms/ConsolidatedTreeView.h"
#include "views/forms/MessageListView.h"
#include "views/forms/PageTabs.h"

namespace tallyhorn {
namespace {

constexpr int TwipsPerInch = 1440;
constexpr Twips FrameMargin = 135;
constexpr Twips ListMargin = 240;

constexpr const char* ConsolidatedCaption = "Consoli&dated Syslog Messages";

/// Does nothing if the width or height is negative, as in a very small window.
void ResizeIfFits(QWidget* widget, int width, int height) {
    if (width >= 0 && height >= 0)
        widget->resize(width, height);
}

}  // namespace

int InPixels(Twips length, const QWidget& on) {
    return static_cast<int>(static_cast<std::int64_t>(length) * on.logicalDpiX() / TwipsPerInch);
}

Twips InTwips(int pixels, const QWidget& on) {
    return static_cast<Twips>(static_cast<std::int64_t>(pixels) * TwipsPerInch / on.logicalDpiX());
}

ServerPages::ServerPages(QWidget* mainWindow) : QWidget(mainWindow) {
    tabMessageTypes =
        Named(new PageTabs(Pixels(ServerLayout::FramesTop), this), QStringLiteral("tabMessageTypes"));
    for (const std::string_view caption : PageCaptions)
        tabMessageTypes->addTab(new QWidget, ToQString(caption));

    for (std::size_t channel = 0; channel < ChannelCount; ++channel) {
        const ChannelTraits& traits = TraitsOf(static_cast<Channel>(channel));
        for (std::size_t i = 0; i < EventListCount; ++i)
            channels_.at(channel).Frames.at(i) = AddFrame(traits.Page, traits.FrameCaptions.at(i),
                                                          ToQString(traits.FrameName) + QString::number(i));
    }
    fraConsolidated =
        AddFrame(MessagePage::Consolidated, ConsolidatedCaption, QStringLiteral("fraConsolidated"));
}

QGroupBox* ServerPages::AddFrame(MessagePage page, std::string_view caption, const QString& name) {
    auto* const frame = new QGroupBox(ToQString(caption), tabMessageTypes->widget(static_cast<int>(page)));
    frame->setObjectName(name);
    return frame;
}

void ServerPages::Load(ReceivedMessages& received) {
    for (std::size_t channel = 0; channel < ChannelCount; ++channel)
        BuildLists(received, TraitsOf(static_cast<Channel>(channel)));
    tvwConsolidated = new ConsolidatedTreeView(received.Tree, fraConsolidated);
    tvwConsolidated->setObjectName(QStringLiteral("tvwConsolidated"));
    tvwConsolidated->setAccessibleName(WithoutAccessKey(fraConsolidated->title()));
}

void ServerPages::BuildLists(ReceivedMessages& received, const ChannelTraits& traits) {
    ChannelControls& controls = ControlsOf(traits.Id);
    for (std::size_t frame = 0; frame < controls.Frames.size(); ++frame) {
        const std::size_t element = controls.Frames.size() - 1 - frame;
        const ViewNumber view = ViewOfList(traits.Id, element);
        auto* const list = new MessageListView(received.List(view), controls.Frames.at(frame));
        list->setObjectName(ToQString(traits.ListName) + QString::number(element));
        list->setAccessibleName(WithoutAccessKey(controls.Frames.at(frame)->title()));
        controls.Lists.at(element) = list;
    }
}

void ServerPages::ShowNewRows() {
    for (ViewNumber view = 0; view < ConsolidatedView; ++view)
        List(view).ShowNewRows();
    if (tvwConsolidated->isVisible())
        tvwConsolidated->ShowNewNodes();
}

void ServerPages::EnableView(ViewNumber number, bool enabled) {
    QWidget* const view = View(number);
    // Qt would move the focus from a disabled list to the next list, and the next press of the Delete key
    // would then act on that list. focusWidget() is used because a dialog may be open in front of the
    // main window.
    if (!enabled && window()->focusWidget() == view)
        tabMessageTypes->tabBar()->setFocus();
    view->setEnabled(enabled);
}

void ServerPages::ShowView(ViewNumber number, bool shown) {
    QWidget* const view = View(number);
    if (!shown && window()->focusWidget() == view) {
        focusBeforeHiding_ = view;
        tabMessageTypes->tabBar()->setFocus();
    }
    view->setVisible(shown);
    if (shown && focusBeforeHiding_ == view) {
        focusBeforeHiding_ = nullptr;
        view->setFocus();
    }
}

// ---- layout

void ServerPages::Place() {
    const QSize room = size();
    tabMessageTypes->resize(room);
    const QWidget* const page = tabMessageTypes->currentWidget();
    const int pageTop = page != nullptr ? page->mapTo(tabMessageTypes, QPoint(0, 0)).y() : 0;
    const ServerLayout layout = LayOutServer(
        {InTwips(room.width()), InTwips(room.height()) + ServerLayout::BarsHeight}, InTwips(pageTop));

    const auto place = [this](QWidget* frame, QWidget* inside, int top, TwipsSize frameSize,
                              TwipsSize insideSize) {
        frame->move(Pixels(FrameMargin), top);
        ResizeIfFits(frame, Pixels(frameSize.Width), Pixels(frameSize.Height));
        // The list is placed below the frame's line, whose position depends on the font, but not beyond the
        // frame's lower edge.
        const int lowest = frame->height() - Pixels(insideSize.Height);
        const int line = frame->contentsRect().top();
        inside->move(Pixels(ListMargin), std::max(Pixels(ListMargin), std::min(line, lowest)));
        ResizeIfFits(inside, Pixels(insideSize.Width), Pixels(insideSize.Height));
    };
    for (const ChannelControls& controls : channels_) {
        for (std::size_t i = 0; i < controls.Frames.size(); ++i) {
            const std::size_t element = controls.Frames.size() - 1 - i;
            place(controls.Frames.at(i), controls.Lists.at(element), Pixels(layout.FrameTops.at(i)) - pageTop,
                  layout.Frame, layout.List);
        }
    }
    place(fraConsolidated, tvwConsolidated, Pixels(layout.FrameTops.front()) - pageTop,
          layout.ConsolidatedFrame, layout.Tree);
}

void ServerPages::ApplyColumnWidths() {
    for (ViewNumber view = 0; view < ConsolidatedView; ++view) {
        MessageListView& list = List(view);
        const ColumnWidthArray widths = ListColumnWidths(columnWidths_, InTwips(list.width()));
        for (int column = 0; column < SizedColumnCount; ++column)
            list.SetColumnWidth(column, Pixels(widths.at(static_cast<std::size_t>(column))));
    }
}

void ServerPages::KeepColumnWidths(ViewNumber view) {
    for (int column = 0; column < SizedColumnCount; ++column) {
        Twips& kept = columnWidths_.at(static_cast<std::size_t>(column));
        const int width = List(view).ColumnWidth(column);
        if (Pixels(kept) == width && kept != 0)
            continue;
        kept = InTwips(width);
        for (MessageListView* const list : ControlsOf(ChannelOfView(view)).Lists)
            list->SetColumnWidth(column, width);
    }
}

QWidget* ServerPages::View(ViewNumber view) const {
    if (view == ConsolidatedView)
        return tvwConsolidated;
    return &List(view);
}

MessageListView& ServerPages::List(ViewNumber view) const {
    return *channels_.at(static_cast<std::size_t>(ChannelOfView(view))).Lists.at(ListOfView(view));
}

ServerPages::ChannelControls& ServerPages::ControlsOf(Channel channel) {
    return channels_.at(static_cast<std::size_t>(channel));
}

std::array<MessageListView*, ConsolidatedView> ServerPages::Lists() const {
    std::array<MessageListView*, ConsolidatedView> lists{};
    for (ViewNumber view = 0; view < ConsolidatedView; ++view)
        lists.at(static_cast<std::size_t>(view)) = &List(view);
    return lists;
}

std::array<QWidget*, ConsolidatedView + 1> ServerPages::Views() const {
    std::array<QWidget*, ConsolidatedView + 1> views{};
    for (ViewNumber view = 0; view <= ConsolidatedView; ++view)
        views.at(static_cast<std::size_t>(view)) = View(view);
    return views;
}

}  // namespace tallyhorn
