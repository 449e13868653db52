#include "OvLabelItem.h"

#include "KxGsEditor.h"

#include <QFontMetricsF>
#include <QPainter>

namespace {

const double kPadding = 3.0;
const QColor kBoxColor(20, 20, 20, 175);

} // namespace

OvLabelItem::OvLabelItem(QGraphicsItem* aParent)
    : QGraphicsItem(aParent)
{
    setAcceptedMouseButtons(Qt::NoButton);
    layout.setTextFormat(Qt::PlainText);
}

void OvLabelItem::setLabel(const QString& aText, int aPixelSize, const QColor& aColor)
{
    if (aText != labelText || aPixelSize != font.pixelSize()) {
        prepareGeometryChange();
        labelText = aText;
        font.setPixelSize(aPixelSize);
        measured = false;
        laidOut = false;
    } else if (aColor == color) {
        return;
    }
    color = aColor;
    update();
}

QString OvLabelItem::text() const
{
    return labelText;
}

void OvLabelItem::setFrame(const QPen& aPen)
{
    if (aPen == frame)
        return;
    prepareGeometryChange();
    frame = aPen;
    update();
}

void OvLabelItem::measure() const
{
    if (measured)
        return;
    // As a plain graphics text item measures one line: its advance, and the
    // font's ascent plus descent.
    textSize = QSizeF(QFontMetricsF(font).horizontalAdvance(labelText), lineHeight());
    measured = true;
}

QRectF OvLabelItem::rect() const
{
    measure();
    return QRectF(0.0, 0.0, textSize.width() + 2 * kPadding, textSize.height() + 2 * kPadding);
}

double OvLabelItem::boxHeight() const
{
    return (measured ? textSize.height() : lineHeight()) + 2 * kPadding;
}

double OvLabelItem::lineHeight() const
{
    const QFontMetricsF metrics(font);
    return metrics.ascent() + metrics.descent();
}

QRectF OvLabelItem::boundingRect() const
{
    const double half = frame.style() == Qt::NoPen ? 0.0 : frame.widthF() / 2.0;
    return rect().adjusted(-half, -half, half, half);
}

void OvLabelItem::paint(QPainter* aPainter, const QStyleOptionGraphicsItem*, QWidget*)
{
    // Left out while too many are in view to be read.
    const KxGsEditor* editor = KxGsEditor::existingInstance();
    if (editor && !editor->areLabelsShown())
        return;
    aPainter->setPen(frame);
    aPainter->setBrush(kBoxColor);
    aPainter->drawRect(rect());
    if (!laidOut) {
        layout.setText(labelText);
        layout.prepare(QTransform(), font);
        laidOut = true;
    }
    aPainter->setFont(font);
    aPainter->setPen(color);
    aPainter->drawStaticText(QPointF(kPadding, kPadding), layout);
}
