#pragma once

#include "KxHostGlobal.h"

#include <QPoint>
#include <QVector>

// A fixed-length sequence of integer points (a contour).
class KX_HOST_EXPORT KxCVSequence
{
public:
    // aCount points at (0, 0) (a negative count gives none); aDepth is the
    // bit depth per coordinate, kept for the caller.
    KxCVSequence(int aCount, int aDepth);

    // Out of range is ignored.
    void putPoint(int anIndex, int x, int y);
    // (0, 0) out of range.
    QPoint getPoint(int anIndex) const;
    int count() const;
    int depth() const;

    // The enclosed area (shoelace formula, absolute: the winding does not
    // matter); 0 for fewer than 3 points.
    double calculateArea() const;
    // The length along the points; aClosed adds the segment back to the first
    // (so two points closed give twice their distance).
    double calculatePerimeter(bool aClosed) const;

private:
    QVector<QPoint> points;
    int bitDepth;
};
