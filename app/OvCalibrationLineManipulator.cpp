#include "OvCalibrationLineManipulator.h"

#include "KxGsEditor.h"

#include <QGraphicsLineItem>
#include <QGraphicsScene>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QKeyEvent>
#include <QPen>

#include <cmath>

OvCalibrationLineManipulator::OvCalibrationLineManipulator(QObject* aParent)
    : KxGsManipulator(aParent, nullptr)
{
}

OvCalibrationLineManipulator::~OvCalibrationLineManipulator()
{
    dropLine();
}

void OvCalibrationLineManipulator::activate()
{
    KxGsManipulator::activate();
    if (editor)
        editor->setCursor(Qt::CrossCursor);
}

void OvCalibrationLineManipulator::deactivate()
{
    dropLine();
    KxGsManipulator::deactivate();
}

void OvCalibrationLineManipulator::dropLine()
{
    delete line;
    line = nullptr;
}

void OvCalibrationLineManipulator::follow(const QPointF& aPos)
{
    if (line)
        line->setLine(QLineF(start, aPos));
}

void OvCalibrationLineManipulator::mousePressEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->accept();
    if (anEvent->button() != Qt::LeftButton || !editor)
        return;
    if (line) {
        // The second click of click, move, click.
        follow(anEvent->pos());
        const double length = line->line().length();
        if (length >= kMinLength)
            finish(length);
        return;
    }
    start = anEvent->pos();
    // Scene coordinates are the editor's: a scene item of its own is drawn
    // above the measurements, which are scene items too.
    line = new QGraphicsLineItem(QLineF(start, start));
    if (editor->scene())
        editor->scene()->addItem(line);
    QPen pen(QColor(255, 200, 0), 0.0, Qt::DashLine);
    pen.setCosmetic(true);
    pen.setWidth(2);
    line->setPen(pen);
    line->setZValue(1000.0);
}

void OvCalibrationLineManipulator::mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->accept();
    follow(anEvent->pos());
}

void OvCalibrationLineManipulator::hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent)
{
    anEvent->accept();
    follow(anEvent->pos());
}

void OvCalibrationLineManipulator::mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->accept();
    if (!line || anEvent->button() != Qt::LeftButton)
        return;
    follow(anEvent->pos());
    const double length = line->line().length();
    // A short release is a click: the line then follows the mouse to the next click.
    if (length >= kMinLength)
        finish(length);
}

void OvCalibrationLineManipulator::keyPressEvent(QKeyEvent* anEvent)
{
    if (anEvent->key() != Qt::Key_Escape) {
        anEvent->ignore();
        return;
    }
    anEvent->accept();
    cancel();
}

void OvCalibrationLineManipulator::cancel()
{
    finish(0.0);
}

void OvCalibrationLineManipulator::finish(double aPixels)
{
    // The line stays in sight while its receiver asks for the true length.
    if (aPixels > 0.0)
        Q_EMIT signalLineDrawn(aPixels);
    else
        Q_EMIT signalCancelled();
    dropLine();
    if (editor && editor->getOverrideManipulator() == this)
        editor->restoreOverrideManipulator();
}
