#pragma once

#include "OvGsHandleShape.h"

#include <QLineF>
#include <QPainterPath>
#include <QPointF>
#include <QPolygonF>
#include <QString>

class KxGsManipulator;
class QPainter;
class QStyleOptionGraphicsItem;
class QWidget;

// The infinite line through aP1 and aP2 clipped to the rectangle (0, 0)-(aWidth, aHeight).
// Points less than 0.001 apart in y (in x) give the horizontal (vertical) line across it.
QLineF calcLine(const QPointF& aP1, const QPointF& aP2, double aWidth, double aHeight);
// Where the infinite lines through l1 and l2 cross, each coordinate rounded to single
// precision. (0, 0) stands for none: a null line, lines parallel within 0.0001, or a
// crossing 10^9 or more away.
QPointF calcLinesIntersection(const QLineF& aL1, const QLineF& aL2);
// 1 when a is strictly nearer to aFrom than b, else 2 (a tie gives 2).
int findCloserPoint(const QPointF& aFrom, const QPointF& aA, const QPointF& aB);

// One angle measurement: two straight lines, each through two nodes the user placed,
// the arc between them around their crossing (the vertex) and the value label.
//
// While it is created or a node is dragged the item shows both lines across the whole
// picture, dashed. setFinalShape() then orders the nodes (0 and 2 the inner nodes of
// the arms, a quarter of the way from the vertex to the outer nodes 1 and 3) and puts
// the item's origin on the vertex; the finished angle shows the two arms from the
// vertex (only their parts inside the picture when the vertex lies outside) and the
// arc. Parallel lines have no vertex: no arc, angle 0, nodes kept as placed.
// The label keeps its offset from the arc's start, where its leader line points.
class OvGsAngle : public OvGsHandleShape
{
    Q_OBJECT

public:
    enum { Type = QGraphicsItem::UserType + 1115 };

    OvGsAngle(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aName);

    // Also keeps the arc radius (40 screen pixels) and the trash offset on screen.
    void adjustScale(double aZoom) override;
    int type() const override;
    // Every node lies inside aRect (item coordinates).
    bool isRectContainsObject(const QRectF& aRect) const override;
    void paint(QPainter* aPainter, const QStyleOptionGraphicsItem* anOption, QWidget* aWidget) override;
    // Everything painted: node squares, the arms, the lines while editing, the arc.
    QRectF boundingRect() const override;

    // A new angle: anInner chooses the inner angle (below 180 degrees) or the outer one.
    void startCreationMode(bool anInner);
    // aPoint in the parent's coordinates. The first node fixes the item's position, the
    // second is appended; with 2 or 3 nodes anIndex equal to the count appends, a lower
    // one replaces. Indices outside 0..3 or above the count are ignored.
    void setNode(int anIndex, const QPointF& aPoint);
    // Replaces the nodes (item coordinates, at most 4 are used); the position stays.
    void setAllNodes(const QPolygonF& aNodes);
    // Normalises a finished angle (4 nodes); ends creating and reshaping.
    void setFinalShape();
    // Clipped lines, arc, angle and trash from the nodes.
    void recalcGeometry();
    // The arc between the arms and its angle in degrees (inner or outer by innerAngle);
    // anAngle and aLabelAnchor (the arc's start) are left alone when there is no vertex.
    QPainterPath createArc(double& anAngle, QPointF& aLabelAnchor) const;
    // With more than 2 nodes the trash button sits at node 0 plus trashOffset.
    void updateTrashPos();
    // aPoint in item coordinates; anIndex gets the first node hit, -1 when none.
    bool isPointOnNode(const QPointF& aPoint, int& anIndex, int aTol) const;

    // The last computed angle in degrees, inner or outer after innerAngle.
    double angleValue;
    // At most 4, item coordinates: nodes 0 and 1 define the first line, 2 and 3 the second.
    QPolygonF nodes;
    // The lines through the node pairs clipped to the picture, item coordinates.
    QLineF firstLine;
    QLineF secondLine;
    QPainterPath arcPath;
    bool creating;
    double arcRadius;
    bool innerAngle;

protected:
    // The arms from the origin to the outer nodes, probed along the tolerance square's
    // diagonals.
    bool isPointOnBody(const QPointF& aPoint, int aTol) const override;
    int handleAt(const QPointF& aPoint, int aTol) const override;
    // The node follows the pointer; lines and arc follow.
    void dragHandle(int aHandle, const QPointF& aPoint, const QPointF& aDelta) override;
    // A node drag ends in setFinalShape(), so inner nodes and vertex are found again.
    void reshapeFinished() override;

private:
    // The picture: the parent's bounding rectangle.
    QRectF parentRect() const;
    // The node of the pair (aFirst, aFirst + 1) farther from the origin.
    QPointF outerNode(int aFirst) const;
    void rebuildArc();
};
