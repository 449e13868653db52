#include "OvGsRelativeDistance.h"

#include "OvQtCompat.h"

#include <QMouseEvent>

namespace {

const double kActiveOffset = 10.0;

} // namespace

OvGsRelativeDistance::OvGsRelativeDistance(KxGsManipulator* aManipulator, QGraphicsItem* aParent,
                                           const QString& aTypeName, const QString& aLineName)
    : OvGsDistance(aManipulator, aParent, aTypeName, aLineName)
    , isBase(false)
    , activeOffset(-kActiveOffset, kActiveOffset)
{
}

void OvGsRelativeDistance::adjustScale(double aZoom)
{
    if (isUsableZoom(aZoom) && isScaleAdjustAllowed())
        activeOffset = QPointF(-kActiveOffset / aZoom, kActiveOffset / aZoom);
    OvGsDistance::adjustScale(aZoom);
}

void OvGsRelativeDistance::manipMousePressEvent(QMouseEvent* anEvent)
{
    if (!hidden && isVisible() && isPointOnActiveButton(OvQtCompat::localPos(anEvent))) {
        moving = false;
        reshaping = false;
        anEvent->ignore();
        return;
    }
    OvGsDistance::manipMousePressEvent(anEvent);
}

void OvGsRelativeDistance::updateActivePos()
{
    setActivePos(placeButton(getActiveButton(), activeOffset, activeOffset.y()));
}

void OvGsRelativeDistance::updateButtonPositions()
{
    updateTrashPos();
    updateActivePos();
}

bool OvGsRelativeDistance::canMoveWhole() const
{
    return isBase;
}

bool OvGsRelativeDistance::reportsMoves() const
{
    return true;
}

bool OvGsRelativeDistance::solidWhileIdle() const
{
    return true;
}
