#include "KxGsObject.h"

#include "KxGsEditor.h"

#include <QGraphicsScene>
#include <QLineF>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>

bool KxGsObject::theScaleAdjustAllowed = true;

namespace {

KxGsEditor* editorOf(QGraphicsItem* anItem)
{
    return anItem ? qobject_cast<KxGsEditor*>(anItem->toGraphicsObject()) : nullptr;
}

} // namespace

KxGsObject::KxGsObject(KxGsManipulator* aManipulator, QGraphicsItem* aParent)
    : QGraphicsObject(editorOf(aParent) ? nullptr : aParent)
    , currentPen(QColor(0, 177, 253), 1)
    , normalPen(QColor(0, 177, 253), 1)
    , gsManipulator(aManipulator)
    , ownerEditor(editorOf(aParent))
{
    if (ownerEditor)
        ownerEditor->adoptGsObject(this);
    // The editor underneath routes every event; the item must not eat them.
    setAcceptedMouseButtons(Qt::NoButton);
    setAcceptHoverEvents(false);
    setFlag(QGraphicsItem::ItemIsSelectable, false);
    setFlag(QGraphicsItem::ItemIsFocusable, false);
}

KxGsObject::~KxGsObject()
{
    if (ownerEditor) {
        ownerEditor->forgetObject(this);
        ownerEditor->releaseGsObject(this);
    }
    if (KxGsEditor* editor = KxGsEditor::existingInstance())
        editor->forgetObject(this);
}

KxGsEditor* KxGsObject::getEditor() const
{
    return ownerEditor.data();
}

void KxGsObject::adjustScale(double)
{
}

void KxGsObject::zoomSettled()
{
}

void KxGsObject::setScreenUnits(double)
{
}

bool KxGsObject::isPointOnObject(const QPointF& aPoint, int& aPart, int aTolerance) const
{
    aPart = 0;
    const double half = aTolerance / 2.0;
    return boundingRect().adjusted(-half, -half, half, half).contains(aPoint);
}

bool KxGsObject::isPointInsideOnly(const QPointF&, int) const
{
    return false;
}

bool KxGsObject::isRectContainsObject(const QRectF& aRect) const
{
    return aRect.contains(boundingRect());
}

void KxGsObject::moveObjectBy(const QPointF&)
{
}

bool KxGsObject::isMoving() const
{
    return false;
}

bool KxGsObject::isReshaping() const
{
    return false;
}

void KxGsObject::manipMousePressEvent(QMouseEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsObject::manipMouseMoveEvent(QMouseEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsObject::manipMouseReleaseEvent(QMouseEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsObject::manipMouseDoubleClickEvent(QMouseEvent* anEvent)
{
    manipMousePressEvent(anEvent);
}

void KxGsObject::manipHoverEnterEvent(QHoverEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsObject::manipHoverLeaveEvent(QHoverEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsObject::setDisplayValue(const QString& aValue)
{
    displayValue = aValue;
    update();
}

void KxGsObject::setName(const QString& aName)
{
    name = aName;
    update();
}

void KxGsObject::setCurrent(bool aCurrent)
{
    if (current == aCurrent)
        return;
    current = aCurrent;
    update();
}

KxGsManipulator* KxGsObject::getManipulator() const
{
    return gsManipulator;
}

void KxGsObject::setColor(const QColor& aColor)
{
    currentPen.setColor(aColor);
    normalPen.setColor(aColor);
    update();
    emit signalColorChanged(aColor);
}

QColor KxGsObject::getColor() const
{
    return currentPen.color();
}

void KxGsObject::setPenStyle(Qt::PenStyle aStyle, int aWidth)
{
    // The outline's width is part of the bounding rectangle of most shapes.
    if (aWidth != penWidth)
        prepareGeometryChange();
    penStyle = aStyle;
    penWidth = aWidth;
    currentPen.setStyle(aStyle);
    currentPen.setWidth(aWidth);
    normalPen.setStyle(aStyle);
    normalPen.setWidth(aWidth);
    update();
}

void KxGsObject::setSelected(bool aSelected)
{
    if (selected == aSelected)
        return;
    selected = aSelected;
    update();
}

bool KxGsObject::isSelected() const
{
    return selected;
}

void KxGsObject::setLocked(bool aLocked)
{
    locked = aLocked;
}

bool KxGsObject::isLocked() const
{
    return locked;
}

bool KxGsObject::isCurrent() const
{
    return current;
}

void KxGsObject::setStep(double aStep, const QString& aUnitName)
{
    step = aStep;
    stepUnitName = aUnitName;
    update();
}

double KxGsObject::getStep() const
{
    return step;
}

QString KxGsObject::getStepUnitName() const
{
    return stepUnitName;
}

QString KxGsObject::getName() const
{
    return name;
}

QString KxGsObject::getDisplayValue() const
{
    return displayValue;
}

void KxGsObject::setDisplayedValueName(const QString& aValueName)
{
    displayedValueName = aValueName;
}

QString KxGsObject::getDisplayedValueName() const
{
    return displayedValueName;
}

bool KxGsObject::isScaleAdjustAllowed() const
{
    return theScaleAdjustAllowed;
}

void KxGsObject::setScaleAdjustAllowed(bool anAllowed)
{
    theScaleAdjustAllowed = anAllowed;
}

bool KxGsObject::linesIntersect(QPointF a1, QPointF a2, QPointF b1, QPointF b2, QPointF& anIntersection)
{
    const QPointF r = a2 - a1;
    const QPointF s = b2 - b1;
    const QPointF qp = b1 - a1;
    const double denom = r.x() * s.y() - r.y() * s.x();
    const double scale = std::max({std::abs(r.x()), std::abs(r.y()), std::abs(s.x()), std::abs(s.y()), 1.0});
    const double eps = 1e-9 * scale * scale;
    if (std::abs(denom) > eps) {
        const double t = (qp.x() * s.y() - qp.y() * s.x()) / denom;
        const double u = (qp.x() * r.y() - qp.y() * r.x()) / denom;
        const double tol = 1e-9;
        if (t < -tol || t > 1.0 + tol || u < -tol || u > 1.0 + tol)
            return false;
        anIntersection = a1 + std::clamp(t, 0.0, 1.0) * r;
        return true;
    }
    // Parallel: only collinear segments can share points.
    if (std::abs(qp.x() * r.y() - qp.y() * r.x()) > eps)
        return false;
    const double rr = r.x() * r.x() + r.y() * r.y();
    if (rr == 0.0) {
        // a is a point: it must lie on b.
        const double ss = s.x() * s.x() + s.y() * s.y();
        if (ss == 0.0) {
            if (QLineF(a1, b1).length() > 1e-9)
                return false;
            anIntersection = a1;
            return true;
        }
        // a1 must lie on the line through b, between its ends.
        if (std::abs(qp.x() * s.y() - qp.y() * s.x()) > 1e-9 * std::max(ss, 1.0))
            return false;
        const double u = -(qp.x() * s.x() + qp.y() * s.y()) / ss;
        if (u < -1e-9 || u > 1.0 + 1e-9)
            return false;
        anIntersection = a1;
        return true;
    }
    // Parameters of b's ends along a; the overlap is [max(0, lo), min(1, hi)].
    const double t0 = (qp.x() * r.x() + qp.y() * r.y()) / rr;
    const QPointF qp2 = b2 - a1;
    const double t1 = (qp2.x() * r.x() + qp2.y() * r.y()) / rr;
    const double lo = std::max(0.0, std::min(t0, t1));
    const double hi = std::min(1.0, std::max(t0, t1));
    if (lo > hi + 1e-9)
        return false;
    anIntersection = a1 + lo * r;
    return true;
}

void KxGsObject::discard()
{
    if (discarded)
        return;
    discarded = true;
    if (KxGsEditor* editor = KxGsEditor::existingInstance())
        editor->forgetObject(this);
    if (ownerEditor) {
        ownerEditor->forgetObject(this);
        ownerEditor->releaseGsObject(this);
        ownerEditor = nullptr;
    }
    // Hidden, it is neither painted nor found (lookups skip discarded items);
    // it leaves the scene when deleted. Taking it out now would make the
    // scene's index move it, and each of thousands removed at once (a base
    // with its lines), one by one; items deleted in the scene leave the
    // index together.
    hide();
    deleteLater();
}

bool KxGsObject::isDiscarded() const
{
    return discarded;
}
