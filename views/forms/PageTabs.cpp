#include "views/forms/PageTabs.h"

#include <QTabBar>
#include <algorithm>

namespace tallyhorn {
namespace {

constexpr int CaptionMargin = 2;  ///< the least space above and below a caption, in pixels

class LowTabBar final : public QTabBar {
public:
    LowTabBar(int height, QWidget* parent) : QTabBar(parent), height_(height) {}

protected:
    QSize tabSizeHint(int index) const override {
        QSize size = QTabBar::tabSizeHint(index);
        const int least = fontMetrics().height() + 2 * CaptionMargin;
        size.setHeight(std::min(size.height(), std::max(height_, least)));
        return size;
    }

private:
    const int height_;
};

}  // namespace

PageTabs::PageTabs(int frameTop, QWidget* parent) : QTabWidget(parent) {
    auto* const bar = new LowTabBar(frameTop, this);
    bar->setObjectName(tabBar()->objectName());
    bar->setDrawBase(false);
    setTabBar(bar);
}

}  // namespace tallyhorn
