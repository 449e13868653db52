#pragma once

#include "KxGsManipulator.h"

#include <QPointF>

class QGraphicsLineItem;

// A line dragged over a scale bar or a stage micrometer to calibrate from.
// It is the viewer's own gesture, not a measurement: it works on an
// uncalibrated picture, stores nothing and leaves no undo step. Press, drag
// and release (or click, move, click) draw the line; a line of at least 2
// pixels ends the gesture with signalLineDrawn, Escape cancels it.
class OvCalibrationLineManipulator : public KxGsManipulator
{
    Q_OBJECT

public:
    explicit OvCalibrationLineManipulator(QObject* aParent = nullptr);
    ~OvCalibrationLineManipulator() override;

    // No kernel type: 0 is never registered.
    int getObjectType() const override { return 0; }

    void activate() override;
    void deactivate() override;
    void mousePressEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent) override;
    void keyPressEvent(QKeyEvent* anEvent) override;

    bool isDrawing() const { return line != nullptr; }
    // Escape: drops the line, emits signalCancelled and gives the editor
    // back, whether or not a line is being drawn; no dialog follows.
    void cancel();

    // Lines shorter than this (in pixels) are taken for a click.
    static constexpr double kMinLength = 2.0;

Q_SIGNALS:
    // The line's length in picture pixels.
    void signalLineDrawn(double aPixels);
    void signalCancelled();

private:
    void follow(const QPointF& aPos);
    // Ends the gesture: emits aPixels when above 0 (the line still shown),
    // then drops the line and gives the editor back.
    void finish(double aPixels);
    void dropLine();

    QGraphicsLineItem* line = nullptr;
    QPointF start;
};
