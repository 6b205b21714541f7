#pragma once

#include <QPoint>
#include <QTimer>
#include <functional>
#include <optional>

class QMouseEvent;
class QWidget;

namespace tallyhorn {

/// A drag with the left mouse button over the rows of a view, from a press on a row to the release.  While
/// the pointer is held above or below the view, the drag goes on by a timer, so that the view scrolls.
class RowDrag {
public:
    /// Receives the pointer's height in the viewport and whether Ctrl is held.
    using Step = std::function<void(int y, bool withControl)>;

    /// `viewport` must outlive the drag.
    RowDrag(const QWidget& viewport, Step step);

    /// To be called for each press; `onRow` is whether the press with the left button was on a row.  A press
    /// on empty space begins no drag.
    void Press(const QMouseEvent& event, bool onRow);
    void Move(const QMouseEvent& event);
    void End();

private:
    void Continue() const { step_(y_, withControl_); }

    const QWidget& viewport_;
    const Step step_;
    QTimer timer_;
    std::optional<QPoint> pressedAt_;  ///< empty while no drag can begin
    bool begun_ = false;
    int y_ = 0;
    bool withControl_ = false;
};

}  // namespace tallyhorn
