#include "tests/forms/ControlChecks.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QComboBox>
#include <QImage>
#include <QKeySequence>
#include <QLabel>
#include <QRadioButton>
#include <QToolBar>
#include <algorithm>
#include <map>
#include <vector>

#include "tests/forms/Await.h"

namespace tallyhorn {
namespace {

using Widgets = std::vector<QWidget*>;

/// Returns false for parts of other controls and for tool buttons, which need no names.
bool IsControl(const QWidget& widget) {
    const QWidget* const parent = widget.parentWidget();
    return !widget.objectName().startsWith(QLatin1String("qt_")) &&
           qobject_cast<const QAbstractScrollArea*>(parent) == nullptr &&
           qobject_cast<const QComboBox*>(parent) == nullptr &&
           qobject_cast<const QToolBar*>(parent) == nullptr;
}

QString Caption(const QWidget& widget) {
    const QString text = widget.property("text").toString();
    return widget.inherits("QLineEdit") || widget.inherits("QAbstractSpinBox")
               ? QString()
               : text + widget.property("title").toString();
}

bool IsTabStop(const QWidget& control) {
    return (control.focusPolicy() & Qt::TabFocus) != 0 && control.focusProxy() == nullptr;
}

Widgets VisibleControls(const QWidget& window) {
    Widgets controls;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->window() == &window && IsControl(*widget))
            controls.push_back(widget);
    }
    return controls;
}

/// Returns the rectangle of the frame's child that contains the control.
QRect PartWith(const QWidget* control, const QWidget* frame) {
    while (control->parentWidget() != frame)
        control = control->parentWidget();
    return control->geometry();
}

/// Returns whether `one` is to the left of `other` in the same line, or above it.  Compares the children of
/// the innermost frame that contains both, so that the controls of one frame stay together.
bool IsReadBefore(const QWidget* one, const QWidget* other) {
    const QWidget* frame = one->parentWidget();
    while (!frame->isAncestorOf(other))
        frame = frame->parentWidget();
    const QRect a = PartWith(one, frame);
    const QRect b = PartWith(other, frame);
    const bool inOneLine = a.top() <= b.bottom() && b.top() <= a.bottom();
    return inOneLine ? a.left() < b.left() : a.top() < b.top();
}

/// Presses Tab until the first control has the focus again.  Returns the controls in the order of the focus,
/// and checks that each looks different with the focus and without.
Widgets TabRound(const QWidget& window) {
    Widgets reached{window.focusWidget()};
    for (int i = 0; i < 200; ++i) {
        QWidget* const left = window.focusWidget();
        const QImage focused = left->grab().toImage();
        QTest::keyClick(left, Qt::Key_Tab);
        if (window.focusWidget() != left && i > 0) {
            EXPECT_NE(left->grab().toImage(), focused)
                << left->objectName().toStdString() << " does not show the focus";
        }
        if (window.focusWidget() == reached.front())
            break;
        if (window.focusWidget() != reached.back())  // Tab visits each part of a date picker
            reached.push_back(window.focusWidget());
    }
    return reached;
}

void ExpectTabOrder(QWidget& window, const Widgets& controls) {
    ASSERT_NE(window.focusWidget(), nullptr);
    window.activateWindow();
    AWAIT(window.isActiveWindow());
    Widgets order = TabRound(window);
    std::rotate(order.begin(), std::min_element(order.begin(), order.end(), IsReadBefore), order.end());
    for (std::size_t i = 0; i < order.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_FALSE(IsReadBefore(order[i], order[j]))
                << order[i]->objectName().toStdString() << " comes after "
                << order[j]->objectName().toStdString();
    }
    for (const QWidget* const control : controls) {
        const auto* const radio = qobject_cast<const QRadioButton*>(control);
        const bool expected =
            control->isEnabled() && IsTabStop(*control) && (radio == nullptr || radio->isChecked());
        EXPECT_EQ(std::count(order.begin(), order.end(), control), expected ? 1 : 0)
            << control->objectName().toStdString();
    }
}

}  // namespace

void ExpectSoundControls(QWidget& window, const std::string& sharedKeys) {
    const Widgets controls = VisibleControls(window);
    std::map<QString, int> keys;
    for (QWidget* const control : controls) {
        if (!IsTabStop(*control) && Caption(*control).isEmpty())
            continue;
        SCOPED_TRACE(control->objectName().toStdString() + ": " + Caption(*control).toStdString());
        EXPECT_FALSE(control->objectName().isEmpty());
        const QAccessibleInterface& accessible = *QAccessible::queryAccessibleInterface(control);
        EXPECT_FALSE(accessible.text(QAccessible::Name).trimmed().isEmpty());
        const auto* const button = qobject_cast<QAbstractButton*>(control);
        if (button != nullptr && button->text().isEmpty()) {
            EXPECT_FALSE(button->icon().isNull() || button->toolTip().isEmpty());
        }
        const QKeySequence key = QKeySequence::mnemonic(Caption(*control));
        if (!key.isEmpty())
            ++keys[key.toString().right(1)];
    }
    std::string shared;
    for (const auto& [key, count] : keys)
        shared += count > 1 ? key.toStdString() : "";
    EXPECT_EQ(shared, sharedKeys);
    if (std::any_of(controls.begin(), controls.end(), [](QWidget* control) { return IsTabStop(*control); }))
        ExpectTabOrder(window, controls);
}

}  // namespace tallyhorn
