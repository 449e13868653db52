#include "QShadowLabel.h"

#include <QPainter>
#include <QStyle>
#include <QTextDocument>

QShadowLabel::QShadowLabel(QWidget* aParent)
    : QLabel(aParent)
{
}

QShadowLabel::QShadowLabel(const QString& aText, QWidget* aParent)
    : QLabel(aText, aParent)
{
}

QString QShadowLabel::fontFamily() const
{
    return font().family();
}

void QShadowLabel::setFontFamily(const QString& aFamily)
{
    QFont changed = font();
    changed.setFamily(aFamily);
    setFont(changed);
}

int QShadowLabel::fontSize() const
{
    return font().pixelSize() > 0 ? font().pixelSize() : QFontInfo(font()).pixelSize();
}

void QShadowLabel::setFontSize(int aPixelSize)
{
    if (aPixelSize < 1)
        return;
    QFont changed = font();
    changed.setPixelSize(aPixelSize);
    setFont(changed);
}

QColor QShadowLabel::shadowColor() const
{
    return shadow;
}

void QShadowLabel::setShadowColor(const QColor& aColor)
{
    shadow = aColor;
    update();
}

QPoint QShadowLabel::shadowOffset() const
{
    return offset;
}

void QShadowLabel::setShadowOffset(const QPoint& anOffset)
{
    offset = anOffset;
    update();
}

void QShadowLabel::paintEvent(QPaintEvent* anEvent)
{
    // Only plain text gets a shadow; rich text, pixmaps and movies are drawn
    // as by QLabel.
    const bool plain = textFormat() == Qt::PlainText || (textFormat() == Qt::AutoText && !Qt::mightBeRichText(text()));
    if (plain && !text().isEmpty() && shadow.alpha() > 0 && (!offset.isNull())) {
        QPainter painter(this);
        QRect area = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
        int flags = int(alignment());
        if (wordWrap())
            flags |= Qt::TextWordWrap;
        QPalette shadowPalette = palette();
        shadowPalette.setColor(QPalette::WindowText, shadow);
        style()->drawItemText(&painter, area.translated(offset), flags, shadowPalette, isEnabled(), text(),
                              QPalette::WindowText);
    }
    QLabel::paintEvent(anEvent);
}
