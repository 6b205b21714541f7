#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QString>

namespace tallyhorn {

/// The text that the user types to find a row.  Characters typed within the keyboard input interval of each
/// other form one text.
class TypeAhead {
public:
    /// Returns whether the next character continues the text.
    bool IsGoingOn() const {
        return sinceLast_.isValid() && sinceLast_.elapsed() < QApplication::keyboardInputInterval();
    }
    /// Adds what was typed, or begins a new text with it, and returns the text.
    const QString& Add(const QString& typed) {
        text_ = IsGoingOn() ? text_ + typed : typed;
        sinceLast_.start();
        return text_;
    }

private:
    QString text_;
    QElapsedTimer sinceLast_;
};

}  // namespace tallyhorn
