#include "OvCustomSpinBox.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

OvCustomSpinBox::OvCustomSpinBox(QWidget* aParent)
    : QSpinBox(aParent)
{
}

void OvCustomSpinBox::focusInEvent(QFocusEvent* anEvent)
{
    QSpinBox::focusInEvent(anEvent);
    // QLineEdit places the cursor after the focus event; select afterwards.
    QTimer::singleShot(0, this, [this]() {
        if (hasFocus())
            selectAll();
    });
}

void OvCustomSpinBox::keyPressEvent(QKeyEvent* anEvent)
{
    QSpinBox::keyPressEvent(anEvent);
    if (anEvent->key() == Qt::Key_Return || anEvent->key() == Qt::Key_Enter)
        clearFocus();
}
