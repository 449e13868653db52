#pragma once

#include "KxHostGlobal.h"

#include <QGraphicsObject>
#include <QPoint>
#include <QPointF>
#include <QPointer>
#include <QSize>

class KxGsEditor;

// The lens that shows the picture enlarged around the cursor while a
// measurement is placed. A top-level scene item that ignores transformations:
// its size is in screen pixels whatever the zoom. It never takes mouse or
// hover events and is not a measurement item.
class KX_HOST_EXPORT KxLocalMagnifier : public QGraphicsObject
{
    Q_OBJECT

public:
    KxLocalMagnifier(KxGsEditor* anEditor, QSize aSize, double aScale, bool aRound, bool aCrossHair,
                     QPoint aHotspot);

    // aPos: the picture point shown at the centre (editor-item coordinates);
    // aScenePos: the cursor, which the lens sits beside: at the hotspot, or
    // mirrored to the other side of the cursor in x and/or y where the lens
    // would otherwise stick out of the view further.
    void moveTo(const QPointF& aPos, const QPointF& aScenePos);
    // Sizes below 16 pixels are raised to 16.
    void setLensSize(QSize aSize);

    KxGsEditor* getEditor() const;
    QPointF getSourcePos() const;
    QSize getLensSize() const;
    double getScale() const;
    bool isRound() const;
    bool hasCrossHair() const;
    QPoint getHotspot() const;
    // The hotspot as placed by the last moveTo(): signs flipped where the lens
    // sits on the other side of the cursor.
    QPoint getPlacedHotspot() const;
    // The lens in its own (screen pixel) coordinates; (0, 0) is the cursor.
    QRectF lensRect() const;
    // The lens contents as painted (without the frame): lensSize pixels.
    QImage renderLens() const;

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* aPainter, const QStyleOptionGraphicsItem* anOption, QWidget* aWidget) override;

private:
    // Screen pixels per picture pixel in the first view showing the editor.
    double screenScale(const QWidget* aWidget) const;
    // The lens centre offset that keeps the lens inside the first view.
    QPoint placementFor(const QPointF& aScenePos) const;
    void drawLens(QPainter* aPainter, double aScreenScale) const;

    QPointer<KxGsEditor> editor;
    QPointF sourcePos;
    QSize lensSize;
    double scale;
    bool round;
    bool crossHair;
    QPoint hotspot;
    QPoint placedHotspot;
};
