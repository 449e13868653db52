// Draws the viewer's bundled sample: a synthetic bright-field micrograph of
// round cells and a few fibres, with its calibration stored in the PNG's
// "UmPerPixel" text chunk. Run once; the result is committed as
// app/resources/sample-micrograph.png.
//   g++ -std=c++17 -fPIC makesample.cpp $(pkg-config --cflags --libs Qt5Gui) -o makesample
//   QT_QPA_PLATFORM=offscreen ./makesample ../resources/sample-micrograph.png
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QRandomGenerator>
#include <cmath>

int main(int argc, char* argv[])
{
    QGuiApplication app(argc, argv);
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("sample-micrograph.png");
    const int w = 1280, h = 960;
    QImage image(w, h, QImage::Format_RGB32);
    QRandomGenerator rng(20261122);

    // Uneven illumination, brighter in the middle as under a real condenser.
    for (int y = 0; y < h; ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < w; ++x) {
            const double dx = (x - w / 2.0) / w, dy = (y - h / 2.0) / h;
            const double v = 228.0 - 60.0 * (dx * dx + dy * dy) + ((x * 7 + y * 13) % 5) * 0.4;
            line[x] = qRgb(int(v * 0.93), int(v * 0.95), int(v));
        }
    }
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);

    // Fibres.
    for (int i = 0; i < 5; ++i) {
        QPainterPath path(QPointF(rng.bounded(w), rng.bounded(h)));
        for (int k = 0; k < 3; ++k)
            path.cubicTo(rng.bounded(w), rng.bounded(h), rng.bounded(w), rng.bounded(h), rng.bounded(w), rng.bounded(h));
        p.setPen(QPen(QColor(150, 120, 160, 90), 3 + rng.bounded(4)));
        p.drawPath(path);
    }
    // Cells: membrane ring, cytoplasm, nucleus.
    for (int i = 0; i < 38; ++i) {
        const QPointF c(40 + rng.bounded(w - 80), 40 + rng.bounded(h - 80));
        const double r = 18 + rng.bounded(34);
        QRadialGradient g(c, r);
        g.setColorAt(0.0, QColor(205, 170, 215));
        g.setColorAt(0.8, QColor(185, 145, 200));
        g.setColorAt(1.0, QColor(110, 70, 130));
        p.setPen(QPen(QColor(90, 55, 110), 1.5));
        p.setBrush(g);
        const double squash = 0.75 + rng.bounded(25) / 100.0;
        p.save();
        p.translate(c);
        p.rotate(rng.bounded(180));
        p.drawEllipse(QPointF(0, 0), r, r * squash);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(85, 45, 120, 200));
        p.drawEllipse(QPointF(r * 0.15, -r * 0.1), r * 0.35, r * 0.3);
        p.restore();
    }
    // Scale bar: 100 µm at 0.5 µm per pixel is 200 pixels.
    p.setPen(Qt::NoPen);
    p.setBrush(Qt::black);
    p.drawRect(QRectF(w - 240, h - 50, 200, 8));
    p.setPen(Qt::black);
    QFont f = p.font();
    f.setPixelSize(18);
    p.setFont(f);
    p.drawText(QRectF(w - 240, h - 80, 200, 24), Qt::AlignCenter, QStringLiteral("100 \u00B5m"));
    p.end();

    image.setText(QStringLiteral("UmPerPixel"), QStringLiteral("0.5"));
    image.setText(QStringLiteral("Description"), QStringLiteral("Synthetic micrograph, 0.5 um per pixel"));
    return image.save(out, "PNG", 9) ? 0 : 1;
}
