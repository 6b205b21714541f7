#include "ui/Controls.h"

#include <QLabel>
#include <QPushButton>

#include "ui/AnsiString.h"

namespace tallyhorn {

QLabel* MakeLabel(const QString& text, const QString& name, QWidget* parent) {
    auto* const label = Named(new QLabel(text, parent), name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel* MakeLabelFor(QWidget* control, const QString& caption, const QString& name) {
    QLabel* const label = MakeLabel(caption, name, control->parentWidget());
    label->setBuddy(control);
    control->setAccessibleName(WithoutAccessKey(caption));
    return label;
}

QPushButton* MakeButton(const QString& caption, const QString& name, QWidget* parent) {
    return Named(new QPushButton(caption, parent), name);
}

}  // namespace tallyhorn
