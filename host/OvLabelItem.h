#pragma once

#include <QColor>
#include <QFont>
#include <QGraphicsItem>
#include <QPen>
#include <QStaticText>

// A measurement's label: its text on a dark box, with a frame while the
// measurement is selected. Thousands are made and shown at once, so the text
// is measured only when its size is asked for after a change (a label made
// from a file gets its name, then its value, then its size is asked once)
// and laid out for painting only when first painted.
class OvLabelItem : public QGraphicsItem
{
public:
    explicit OvLabelItem(QGraphicsItem* aParent = nullptr);

    // Takes the text, font size and text colour; the box's size follows the
    // next time it is asked for.
    void setLabel(const QString& aText, int aPixelSize, const QColor& aColor);
    QString text() const;
    void setFrame(const QPen& aPen);

    // The box, from (0, 0), without the frame.
    QRectF rect() const;
    // rect()'s height: the font's line height, known without measuring the
    // text.
    double boxHeight() const;
    QRectF boundingRect() const override;
    void paint(QPainter* aPainter, const QStyleOptionGraphicsItem* anOption, QWidget* aWidget) override;

private:
    void measure() const;
    // The font's ascent plus descent: the text's height on one line.
    double lineHeight() const;

    QString labelText;
    QFont font;
    QColor color;
    QPen frame = QPen(Qt::NoPen);
    mutable QSizeF textSize;
    mutable bool measured = false;
    // Prepared at the first paint after a change.
    mutable QStaticText layout;
    mutable bool laidOut = false;
};
