#pragma once

#include "KxHostGlobal.h"

#include <QSpinBox>

// The tool panels' spin box: selects its whole text when it gets the focus
// (so a typed number replaces the old one) and gives the focus back on
// Return/Enter once the value is taken.
class KX_HOST_EXPORT OvCustomSpinBox : public QSpinBox
{
    Q_OBJECT

public:
    explicit OvCustomSpinBox(QWidget* aParent = nullptr);

protected:
    void focusInEvent(QFocusEvent* anEvent) override;
    void keyPressEvent(QKeyEvent* anEvent) override;
};
