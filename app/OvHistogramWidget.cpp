#include "OvHistogramWidget.h"

#include <QPainter>

#include <cmath>

OvHistogramWidget::OvHistogramWidget(QWidget* aParent)
    : QWidget(aParent)
{
    setObjectName(QStringLiteral("histogram"));
    setMinimumSize(256, 120);
}

QSize OvHistogramWidget::sizeHint() const
{
    return QSize(320, 140);
}

void OvHistogramWidget::setCounts(const QVector<quint32>& aCounts, int aFirst, int aLast)
{
    counts = aCounts;
    first = qMax(0, aFirst);
    last = qMax(first + 1, aLast);
    update();
}

void OvHistogramWidget::setDisplayRange(int aMinimum, int aMaximum)
{
    minimum = aMinimum;
    maximum = aMaximum;
    update();
}

QVector<quint64> OvHistogramWidget::bars(int aColumns) const
{
    QVector<quint64> result(qMax(1, aColumns), 0);
    const double span = double(last - first + 1);
    for (int value = first; value <= last && value < counts.size(); ++value) {
        const int column = qMin(result.size() - 1, int((value - first) * result.size() / span));
        result[column] += counts.at(value);
    }
    return result;
}

void OvHistogramWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRectF area = QRectF(rect()).adjusted(1, 1, -1, -1);
    painter.fillRect(rect(), palette().base());
    const QVector<quint64> columns = bars(int(area.width()));
    quint64 highest = 1;
    for (quint64 count : columns)
        highest = qMax(highest, count);
    const double scale = std::log1p(double(highest));
    painter.setPen(palette().color(QPalette::Text));
    for (int x = 0; x < columns.size(); ++x) {
        if (columns.at(x) == 0)
            continue;
        const double height = area.height() * std::log1p(double(columns.at(x))) / scale;
        painter.drawLine(QPointF(area.left() + x, area.bottom()), QPointF(area.left() + x, area.bottom() - height));
    }
    // The display range: black at the minimum rising to white at the maximum.
    const auto xOf = [&](int aValue) { return area.left() + (aValue - first) * area.width() / double(last - first); };
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(220, 40, 40), 1.5));
    painter.drawPolyline(QPolygonF({ QPointF(area.left(), area.bottom()), QPointF(xOf(minimum), area.bottom()),
                                     QPointF(xOf(maximum), area.top()), QPointF(area.right(), area.top()) }));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(area);
}
