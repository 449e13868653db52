#pragma once

#include <QVector>
#include <QWidget>

// A picture's histogram between two values, with the display range drawn
// over it as the line from black (at the minimum) to white (at the maximum).
// Heights are logarithmic, so a small bright object still shows beside a
// large dark field.
class OvHistogramWidget : public QWidget
{
    Q_OBJECT

public:
    explicit OvHistogramWidget(QWidget* aParent = nullptr);

    // aCounts holds the count of each value from 0; the widget shows the
    // values aFirst to aLast.
    void setCounts(const QVector<quint32>& aCounts, int aFirst, int aLast);
    void setDisplayRange(int aMinimum, int aMaximum);
    // The values shown, summed into one bar per pixel column (tests).
    QVector<quint64> bars(int aColumns) const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* anEvent) override;

private:
    QVector<quint32> counts;
    int first = 0;
    int last = 255;
    int minimum = 0;
    int maximum = 255;
};
