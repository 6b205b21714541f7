#include "views/forms/RowDrag.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>
#include <utility>

namespace tallyhorn {
namespace {

constexpr int ScrollInterval = 50;  ///< milliseconds

}  // namespace

RowDrag::RowDrag(const QWidget& viewport, Step step) : viewport_(viewport), step_(std::move(step)) {
    timer_.setInterval(ScrollInterval);
    timer_.callOnTimeout([this] { Continue(); });
}

void RowDrag::Press(const QMouseEvent& event, bool onRow) {
    End();
    if (onRow && event.button() == Qt::LeftButton)
        pressedAt_ = event.position().toPoint();
}

/// A small movement during a click is no drag: in a sorted list, another row may by then be under the
/// pointer.
void RowDrag::Move(const QMouseEvent& event) {
    const QPoint at = event.position().toPoint();
    if (!pressedAt_ || (event.buttons() & Qt::LeftButton) == 0)
        return;
    begun_ = begun_ || (at - *pressedAt_).manhattanLength() >= QApplication::startDragDistance();
    if (!begun_)
        return;
    y_ = at.y();
    withControl_ = (event.modifiers() & Qt::ControlModifier) != 0;
    const bool outside = y_ < 0 || y_ >= viewport_.height();
    if (!outside)
        timer_.stop();
    else if (!timer_.isActive())
        timer_.start();
    Continue();
}

void RowDrag::End() {
    pressedAt_.reset();
    begun_ = false;
    timer_.stop();
}

}  // namespace tallyhorn
