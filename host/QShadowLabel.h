#pragma once

#include "KxHostGlobal.h"

#include <QColor>
#include <QLabel>
#include <QPoint>
#include <QString>

// A label whose plain text carries a subtle drop shadow, for the dark tool
// panels. Font family and pixel size are properties, so a Designer form can
// set them.
class KX_HOST_EXPORT QShadowLabel : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(QString fontFamily READ fontFamily WRITE setFontFamily)
    Q_PROPERTY(int fontSize READ fontSize WRITE setFontSize)
    Q_PROPERTY(QColor shadowColor READ shadowColor WRITE setShadowColor)
    Q_PROPERTY(QPoint shadowOffset READ shadowOffset WRITE setShadowOffset)

public:
    explicit QShadowLabel(QWidget* aParent = nullptr);
    explicit QShadowLabel(const QString& aText, QWidget* aParent = nullptr);

    QString fontFamily() const;
    void setFontFamily(const QString& aFamily);
    // Pixel size; values below 1 are ignored.
    int fontSize() const;
    void setFontSize(int aPixelSize);
    QColor shadowColor() const;
    void setShadowColor(const QColor& aColor);
    QPoint shadowOffset() const;
    void setShadowOffset(const QPoint& anOffset);

protected:
    void paintEvent(QPaintEvent* anEvent) override;

private:
    QColor shadow = QColor(0, 0, 0, 110);
    QPoint offset = QPoint(1, 1);
};
