#include "KxCVSequence.h"

#include <QLineF>

#include <algorithm>
#include <cmath>

KxCVSequence::KxCVSequence(int aCount, int aDepth)
    : points(std::max(aCount, 0))
    , bitDepth(aDepth)
{
}

void KxCVSequence::putPoint(int anIndex, int x, int y)
{
    if (anIndex >= 0 && anIndex < points.size())
        points[anIndex] = QPoint(x, y);
}

QPoint KxCVSequence::getPoint(int anIndex) const
{
    return points.value(anIndex);
}

int KxCVSequence::count() const
{
    return points.size();
}

int KxCVSequence::depth() const
{
    return bitDepth;
}

double KxCVSequence::calculateArea() const
{
    const int n = points.size();
    if (n < 3)
        return 0.0;
    // In doubles: int products overflow for large coordinates.
    double twice = 0.0;
    for (int i = 0; i < n; ++i) {
        const QPoint& a = points.at(i);
        const QPoint& b = points.at((i + 1) % n);
        twice += double(a.x()) * b.y() - double(b.x()) * a.y();
    }
    return std::fabs(twice) / 2.0;
}

double KxCVSequence::calculatePerimeter(bool aClosed) const
{
    const int n = points.size();
    double length = 0.0;
    for (int i = 1; i < n; ++i)
        length += QLineF(points.at(i - 1), points.at(i)).length();
    if (aClosed && n > 1)
        length += QLineF(points.at(n - 1), points.at(0)).length();
    return length;
}
