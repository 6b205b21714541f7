#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QTimer>
#include <functional>
#include <string>
#include <utility>

#include "tests/forms/Await.h"

namespace tallyhorn {

/// Operates a window with real clicks and keys, and reads what it shows.  Controls are found by object name.
class DialogFixture : public ::testing::Test {
protected:
    /// Returns the window under test.
    virtual QWidget& Dialog() = 0;

    ~DialogFixture() override { EXPECT_EQ(waitingActs_, 0) << "a dialog did not open"; }

    /// Calls `act` once the next modal dialog is open.  `act` has to close it.
    template <class Modal = QWidget, class Act>
    void InDialog(Act act) {
        ++waitingActs_;
        ActOnceModal(QApplication::activeModalWidget(), [act = std::move(act)](QWidget& window) {
            auto* const modal = qobject_cast<Modal*>(&window);
            ASSERT_NE(modal, nullptr) << window.metaObject()->className();
            act(*modal);
        });
    }

    void ShowDialog() {
        Dialog().show();
        Dialog().activateWindow();
        AWAIT(Dialog().isActiveWindow());
    }
    template <class Control = QWidget>
    Control* Find(const std::string& name) {
        auto* const control = Dialog().findChild<Control*>(QString::fromStdString(name));
        EXPECT_NE(control, nullptr) << name;
        return control;
    }
    template <class Control = QAbstractButton>
    static Control* In(const QWidget& dialog, const char* name) {
        return dialog.findChild<Control*>(QLatin1String(name));
    }
    /// Clicks near the left edge, where a check box has its box.
    void Click(const std::string& name) {
        auto* const control = Find(name);
        QTest::mouseClick(control, Qt::LeftButton, {}, QPoint(8, control->height() / 2));
    }
    /// Sends a key to the control that has the focus.
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* const focus = Dialog().focusWidget();
        QTest::keyClick(focus != nullptr ? focus : &Dialog(), key, modifiers);
    }
    /// Replaces the text in the box.
    void Type(const std::string& name, const QString& text) {
        auto* const box = Find<QLineEdit>(name);
        box->setFocus();
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(box, Qt::Key_Delete);
        for (const QChar character : text)
            QTest::sendKeyEvent(QTest::Click, box, Qt::Key_unknown, QString(character), Qt::NoModifier);
    }
    std::string Text(const std::string& name) { return Find<QLineEdit>(name)->text().toStdString(); }
    bool IsChecked(const std::string& name) { return Find<QAbstractButton>(name)->isChecked(); }
    std::string Focus() {
        const QWidget* const widget = Dialog().focusWidget();
        return widget == nullptr ? "" : widget->objectName().toStdString();
    }

private:
    void ActOnceModal(const QWidget* before, const std::function<void(QWidget&)>& act) {
        QTimer::singleShot(10, &actor_, [this, before, act] {
            QWidget* const modal = QApplication::activeModalWidget();
            // Waits until the new dialog is active.
            if (modal == nullptr || modal == before || !modal->isVisible() || !modal->isActiveWindow())
                return ActOnceModal(before, act);
            --waitingActs_;
            act(*modal);
        });
    }

    QObject actor_;  ///< its destruction stops the timers of ActOnceModal
    int waitingActs_ = 0;
};

}  // namespace tallyhorn
