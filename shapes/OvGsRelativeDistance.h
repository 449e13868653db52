#pragma once

#include "OvGsDistance.h"

#include <QPointF>
#include <QString>

// A line measured against a base line, or a base line itself: the distance
// line with an active button beside its start. The owning manipulator decides
// the role, the geometry of measured lines, the label and the button's state;
// the item draws, hit-tests and places its buttons.
//
// Departures from the distance line: only a base moves as a whole (a press on
// the body of a measured line selects it but a drag leaves it in place); a
// finished move is reported to the manipulator like a reshape, which writes
// it back together with the lines that depend on the base; the outline is
// solid whatever the pen says while no reshape runs; a press on the active
// button is left to the manipulator, which toggles the base it belongs to.
class OvGsRelativeDistance : public OvGsDistance
{
    Q_OBJECT

public:
    OvGsRelativeDistance(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aTypeName,
                         const QString& aLineName);

    // Also scales the active button's offset (when the host allows it).
    void adjustScale(double aZoom) override;
    // Presses on the active button stay ignored; everything else as the
    // distance line.
    void manipMousePressEvent(QMouseEvent* anEvent) override;

    // Places the active button beside the start point, off the line and inside
    // the editor's area.
    void updateActivePos();

    // A base line: other lines name it in baseName.
    bool isBase;
    // For a measured line the lineName of its base (or of the plain distance
    // serving as base); empty for a base and for a line without base.
    QString baseName;
    // Active button position relative to the start point.
    QPointF activeOffset;

protected:
    void updateButtonPositions() override;
    bool canMoveWhole() const override;
    bool reportsMoves() const override;
    bool solidWhileIdle() const override;
};
