#include "KxLocalMagnifier.h"

#include "KxGsEditor.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

const int kMinLensSize = 16;
const double kFrameWidth = 2.0;

QSize boundedSize(QSize aSize)
{
    return QSize(std::max(aSize.width(), kMinLensSize), std::max(aSize.height(), kMinLensSize));
}

} // namespace

KxLocalMagnifier::KxLocalMagnifier(KxGsEditor* anEditor, QSize aSize, double aScale, bool aRound, bool aCrossHair,
                                   QPoint aHotspot)
    : editor(anEditor)
    , lensSize(boundedSize(aSize))
    , scale(aScale > 0.0 && std::isfinite(aScale) ? aScale : 1.0)
    , round(aRound)
    , crossHair(aCrossHair)
    , hotspot(aHotspot)
    , placedHotspot(aHotspot)
{
    setFlag(QGraphicsItem::ItemIgnoresTransformations);
    setAcceptedMouseButtons(Qt::NoButton);
    setAcceptHoverEvents(false);
    setZValue(1.0e6);
}

void KxLocalMagnifier::moveTo(const QPointF& aPos, const QPointF& aScenePos)
{
    sourcePos = aPos;
    const QPoint placed = placementFor(aScenePos);
    if (placed != placedHotspot) {
        prepareGeometryChange();
        placedHotspot = placed;
    }
    setPos(aScenePos);
    update();
}

QPoint KxLocalMagnifier::placementFor(const QPointF& aScenePos) const
{
    if (!scene() || scene()->views().isEmpty())
        return hotspot;
    const QGraphicsView* view = scene()->views().first();
    const QRectF port(view->viewport()->rect());
    const QPointF cursor = view->viewportTransform().map(aScenePos);
    const double halfWidth = lensSize.width() / 2.0 + kFrameWidth;
    const double halfHeight = lensSize.height() / 2.0 + kFrameWidth;
    // How far a lens centred at aCentre sticks out of [aLow, aHigh].
    auto overhang = [](double aCentre, double aHalf, double aLow, double aHigh) {
        return std::max(0.0, aLow - (aCentre - aHalf)) + std::max(0.0, (aCentre + aHalf) - aHigh);
    };
    QPoint placed = hotspot;
    if (overhang(cursor.x() - hotspot.x(), halfWidth, port.left(), port.right() + 1.0)
        < overhang(cursor.x() + hotspot.x(), halfWidth, port.left(), port.right() + 1.0))
        placed.setX(-hotspot.x());
    if (overhang(cursor.y() - hotspot.y(), halfHeight, port.top(), port.bottom() + 1.0)
        < overhang(cursor.y() + hotspot.y(), halfHeight, port.top(), port.bottom() + 1.0))
        placed.setY(-hotspot.y());
    return placed;
}

void KxLocalMagnifier::setLensSize(QSize aSize)
{
    const QSize size = boundedSize(aSize);
    if (size == lensSize)
        return;
    prepareGeometryChange();
    lensSize = size;
    update();
}

KxGsEditor* KxLocalMagnifier::getEditor() const
{
    return editor.data();
}

QPointF KxLocalMagnifier::getSourcePos() const
{
    return sourcePos;
}

QSize KxLocalMagnifier::getLensSize() const
{
    return lensSize;
}

double KxLocalMagnifier::getScale() const
{
    return scale;
}

bool KxLocalMagnifier::isRound() const
{
    return round;
}

bool KxLocalMagnifier::hasCrossHair() const
{
    return crossHair;
}

QPoint KxLocalMagnifier::getHotspot() const
{
    return hotspot;
}

QPoint KxLocalMagnifier::getPlacedHotspot() const
{
    return placedHotspot;
}

QRectF KxLocalMagnifier::lensRect() const
{
    return QRectF(QPointF(placedHotspot) - QPointF(lensSize.width() / 2.0, lensSize.height() / 2.0), QSizeF(lensSize));
}

QRectF KxLocalMagnifier::boundingRect() const
{
    const double margin = kFrameWidth;
    return lensRect().adjusted(-margin, -margin, margin, margin);
}

QPainterPath KxLocalMagnifier::shape() const
{
    QPainterPath path;
    if (round)
        path.addEllipse(lensRect());
    else
        path.addRect(lensRect());
    return path;
}

double KxLocalMagnifier::screenScale(const QWidget* aWidget) const
{
    if (!editor)
        return 1.0;
    QTransform transform = editor->sceneTransform();
    const QGraphicsView* view = nullptr;
    if (aWidget)
        view = qobject_cast<const QGraphicsView*>(aWidget->parentWidget());
    if (!view && editor->scene() && !editor->scene()->views().isEmpty())
        view = editor->scene()->views().first();
    if (view)
        transform *= view->viewportTransform();
    const double factor = std::sqrt(std::abs(transform.determinant()));
    return factor > 1e-12 && std::isfinite(factor) ? factor : 1.0;
}

void KxLocalMagnifier::drawLens(QPainter* aPainter, double aScreenScale) const
{
    const QRectF lens = lensRect();
    const QPainterPath outline = shape();
    aPainter->save();
    aPainter->setClipPath(outline);
    aPainter->fillRect(lens, QColor(24, 24, 24));
    if (editor && !editor->getImage().isNull()) {
        // Picture pixels covered by the lens: the lens shows them aScale
        // times larger than the view does.
        const double factor = scale * aScreenScale;
        const QSizeF sourceSize(lens.width() / factor, lens.height() / factor);
        const QRectF source(sourcePos - QPointF(sourceSize.width() / 2.0, sourceSize.height() / 2.0), sourceSize);
        aPainter->setRenderHint(QPainter::SmoothPixmapTransform, false);
        aPainter->drawImage(lens, editor->getImage(), source);
    }
    if (crossHair) {
        const QPointF centre = lens.center();
        const double arm = std::min(lens.width(), lens.height()) / 4.0;
        aPainter->setRenderHint(QPainter::Antialiasing, false);
        for (const QPen& pen : {QPen(QColor(0, 0, 0, 160), 3.0), QPen(QColor(255, 255, 255), 1.0)}) {
            aPainter->setPen(pen);
            aPainter->drawLine(QLineF(centre.x() - arm, centre.y(), centre.x() - 3.0, centre.y()));
            aPainter->drawLine(QLineF(centre.x() + 3.0, centre.y(), centre.x() + arm, centre.y()));
            aPainter->drawLine(QLineF(centre.x(), centre.y() - arm, centre.x(), centre.y() - 3.0));
            aPainter->drawLine(QLineF(centre.x(), centre.y() + 3.0, centre.x(), centre.y() + arm));
        }
    }
    aPainter->restore();
}

QImage KxLocalMagnifier::renderLens() const
{
    QImage result(lensSize, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.translate(-lensRect().topLeft());
    drawLens(&painter, screenScale(nullptr));
    return result;
}

void KxLocalMagnifier::paint(QPainter* aPainter, const QStyleOptionGraphicsItem*, QWidget* aWidget)
{
    drawLens(aPainter, screenScale(aWidget));
    aPainter->save();
    aPainter->setRenderHint(QPainter::Antialiasing, true);
    aPainter->setBrush(Qt::NoBrush);
    aPainter->setPen(QPen(QColor(200, 200, 200), kFrameWidth));
    if (round)
        aPainter->drawEllipse(lensRect());
    else
        aPainter->drawRect(lensRect());
    aPainter->restore();
}
