#include "OvCustomSpinBox.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

OvCustomSpinBox::OvCustomSpinBox(QWidget* aParent)
    : QSpinBox(aParent)
{
}

QValidator::State OvCustomSpinBox::validate(QString& anInput, int& aPos) const
{
    const QValidator::State state = QSpinBox::validate(anInput, aPos);
    if (state != QValidator::Invalid)
        return state;
    bool isNumber = false;
    numberPart(anInput).toInt(&isNumber);
    return isNumber ? QValidator::Intermediate : QValidator::Invalid;
}

void OvCustomSpinBox::fixup(QString& anInput) const
{
    bool isNumber = false;
    const int value = numberPart(anInput).toInt(&isNumber);
    if (isNumber)
        anInput = prefix() + textFromValue(qBound(minimum(), value, maximum())) + suffix();
    else
        QSpinBox::fixup(anInput);
}

QString OvCustomSpinBox::numberPart(const QString& aText) const
{
    QString text = aText.trimmed();
    if (!prefix().isEmpty() && text.startsWith(prefix()))
        text.remove(0, prefix().size());
    if (!suffix().isEmpty() && text.endsWith(suffix()))
        text.chop(suffix().size());
    return text.trimmed();
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
