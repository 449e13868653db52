#pragma once

#include "KxHostGlobal.h"

#include <QSpinBox>

// The tool panels' spin box: selects its whole text when it gets the focus
// (so a typed number replaces the old one) and gives the focus back on
// Return/Enter once the value is taken. A typed number outside the range is
// accepted while typing and clamped to the range when it is taken, so "30"
// in a 1..20 box gives 20 rather than a refused keystroke.
class KX_HOST_EXPORT OvCustomSpinBox : public QSpinBox
{
    Q_OBJECT

public:
    explicit OvCustomSpinBox(QWidget* aParent = nullptr);

protected:
    QValidator::State validate(QString& anInput, int& aPos) const override;
    void fixup(QString& anInput) const override;
    void focusInEvent(QFocusEvent* anEvent) override;
    void keyPressEvent(QKeyEvent* anEvent) override;

private:
    // The text without prefix and suffix.
    QString numberPart(const QString& aText) const;
};
