#pragma once

#include <QString>

class QLabel;
class QPushButton;
class QWidget;

namespace tallyhorn {

// Functions that make controls for several forms.  `name` becomes the control's object name.  The Qt parent
// owns the control.

template <typename Control>
Control* Named(Control* control, const QString& name) {
    control->setObjectName(name);
    return control;
}

/// Returns a label that shows its text as plain text, never as markup.
QLabel* MakeLabel(const QString& text, const QString& name, QWidget* parent);

/// Returns a label beside `control`, with the same parent.  The caption's access key moves the focus to the
/// control, and the caption becomes the control's accessible name.
QLabel* MakeLabelFor(QWidget* control, const QString& caption, const QString& name);

QPushButton* MakeButton(const QString& caption, const QString& name, QWidget* parent);

}  // namespace tallyhorn
