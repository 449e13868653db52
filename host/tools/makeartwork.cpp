// Writes the host's icons (SVG, four colour variants each), the style-sheet
// images at every interface scale and the measurement button images into the
// folder given as the first argument, plus the resource file listing them.

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTextStream>

#include <cmath>
#include <functional>

namespace {

struct Icon
{
    const char* name;
    const char* body; // SVG elements; "%1" is replaced by the stroke colour
};

// 24 x 24 line drawings with round strokes.
const Icon kIcons[] = {
    {"tool-measure",
     "<path d='M3 15 L15 3 L21 9 L9 21 Z'/><path d='M6 12 L8.5 14.5 M9 9 L10.5 10.5 M12 6 L14.5 8.5'/>"},
    {"measure", "<path d='M5 19 L19 5'/><path d='M3 17 L7 21 M17 3 L21 7'/>"},
    {"freeform_line", "<path d='M3 17 C6 6 10 6 12 12 S18 19 21 7'/>"},
    {"multiple_distance_line",
     "<path d='M3 20 H21'/><path d='M7 20 V9 M12 20 V4 M17 20 V12'/>"
     "<circle cx='7' cy='9' r='1' fill='%1'/><circle cx='12' cy='4' r='1' fill='%1'/>"
     "<circle cx='17' cy='12' r='1' fill='%1'/>"},
    {"paralell_distance_line",
     "<path d='M3 20 H21 M3 6 H21'/><path d='M12 8 V18'/><path d='M10 10 L12 8 L14 10 M10 16 L12 18 L14 16'/>"},
    {"circle_distance_line",
     "<circle cx='6' cy='17' r='3.5'/><circle cx='18' cy='7' r='3.5'/><path d='M6 17 L18 7'/>"},
    {"freeform", "<path d='M5 9 C5 3 14 2 17 6 S22 15 16 19 S6 21 4 15 Z'/>"},
    {"radius", "<circle cx='12' cy='12' r='9'/><path d='M12 12 L19.4 7.2'/><circle cx='12' cy='12' r='1' fill='%1'/>"},
    {"diameter", "<circle cx='12' cy='12' r='9'/><path d='M5.64 18.36 L18.36 5.64'/>"},
    {"angle", "<path d='M6 17 H21 M6 17 L14.87 4.91'/><path d='M13 17 A7 7 0 0 0 10.14 11.36'/>"},
    {"out-angle", "<path d='M6 17 H21 M6 17 L14.87 4.91'/><path d='M8.36 13.78 A4 4 0 1 0 10 17'/>"},
};

struct Variant
{
    const char* suffix;
    const char* color;
};

const Variant kVariants[] = {
    {"normal", "#C8C8C8"},
    {"hover", "#FFFFFF"},
    {"active", "#41A7F3"},
    {"deactive", "#5A5A5A"},
};

const QColor kLight(200, 200, 200);
const QColor kBlue(0x41, 0xA7, 0xF3);
const QColor kDark(49, 49, 49);

QString writeSvg(const QDir& aDir, const Icon& anIcon, const Variant& aVariant)
{
    const QString file = QStringLiteral("%1-%2.svg").arg(QLatin1String(anIcon.name), QLatin1String(aVariant.suffix));
    QFile out(aDir.filePath(file));
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return QString();
    QTextStream stream(&out);
    stream << "<svg xmlns='http://www.w3.org/2000/svg' width='24' height='24' viewBox='0 0 24 24' fill='none' "
              "stroke='" << aVariant.color
           << "' stroke-width='1.5' stroke-linecap='round' stroke-linejoin='round'>";
    const QString body = QString::fromLatin1(anIcon.body).replace(QLatin1String("%1"), QLatin1String(aVariant.color));
    // The white hover strokes also sit on light menus: a soft dark halo keeps them visible there.
    if (QLatin1String(aVariant.suffix) == QLatin1String("hover"))
        stream << "<g stroke='#303030' stroke-width='3.2' stroke-opacity='0.6'>" << body << "</g>";
    stream << body << "</svg>\n";
    return file;
}

using Painter = std::function<void(QPainter&, double)>;

QString writePng(const QDir& aDir, const QString& aFile, QSizeF aBaseSize, double aScale, const Painter& aPaint)
{
    const QSize size(qRound(aBaseSize.width() * aScale), qRound(aBaseSize.height() * aScale));
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(aScale, aScale);
    aPaint(painter, aScale);
    painter.end();
    image.save(aDir.filePath(aFile), "PNG", 9);
    return aFile;
}

QPainterPath triangle(double aWidth, double aHeight, bool aDown)
{
    QPainterPath path;
    if (aDown) {
        path.moveTo(0, 0);
        path.lineTo(aWidth, 0);
        path.lineTo(aWidth / 2, aHeight);
    } else {
        path.moveTo(0, aHeight);
        path.lineTo(aWidth, aHeight);
        path.lineTo(aWidth / 2, 0);
    }
    path.closeSubpath();
    return path;
}

void checkMark(QPainter& aPainter, QRectF aBox, const QColor& aColor, double aWidth)
{
    aPainter.setPen(QPen(aColor, aWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    aPainter.setBrush(Qt::NoBrush);
    QPainterPath path;
    path.moveTo(aBox.left() + aBox.width() * 0.18, aBox.top() + aBox.height() * 0.52);
    path.lineTo(aBox.left() + aBox.width() * 0.42, aBox.top() + aBox.height() * 0.76);
    path.lineTo(aBox.left() + aBox.width() * 0.84, aBox.top() + aBox.height() * 0.26);
    aPainter.drawPath(path);
}

// The active button: a round badge, grey when not pressed, blue when pressed;
// aGlyph draws the kind of measurement inside it.
void activeBadge(QPainter& aPainter, bool anOn, const std::function<void(QPainter&)>& aGlyph)
{
    aPainter.setPen(QPen(anOn ? QColor(255, 255, 255) : QColor(30, 30, 30), 1.2));
    aPainter.setBrush(anOn ? kBlue : QColor(150, 150, 150, 230));
    aPainter.drawEllipse(QRectF(1, 1, 18, 18));
    aPainter.setPen(QPen(anOn ? QColor(255, 255, 255) : QColor(40, 40, 40), 1.6, Qt::SolidLine, Qt::RoundCap));
    aPainter.setBrush(Qt::NoBrush);
    aGlyph(aPainter);
}

} // namespace

int main(int argc, char* argv[])
{
    QGuiApplication app(argc, argv);
    if (argc < 2) {
        QTextStream(stderr) << "usage: makeartwork <resource folder>\n";
        return 1;
    }
    QDir dir(QString::fromLocal8Bit(argv[1]));
    if (!dir.exists() && !QDir().mkpath(dir.path())) {
        QTextStream(stderr) << "cannot create " << dir.path() << "\n";
        return 1;
    }
    QStringList files;
    for (const Icon& icon : kIcons) {
        for (const Variant& variant : kVariants)
            files << writeSvg(dir, icon, variant);
    }

    const QList<QPair<QString, double>> scales = {{"", 1.0},        {"-125", 1.25}, {"-150", 1.5}, {"-175", 1.75},
                                                  {"-200", 2.0},    {"-250", 2.5},  {"-300", 3.0}};
    for (const auto& scale : scales) {
        const QString s = scale.first;
        const double f = scale.second;
        files << writePng(dir, "progresbar" + s + ".png", QSizeF(136, 6), f, [](QPainter& p, double) {
            p.setPen(QPen(QColor(40, 40, 40), 1));
            p.setBrush(QColor(70, 70, 70));
            p.drawRoundedRect(QRectF(0.5, 1.5, 135, 3), 1.5, 1.5);
        });
        files << writePng(dir, "slider" + s + ".png", QSizeF(12, 12), f, [](QPainter& p, double) {
            p.setPen(QPen(QColor(40, 40, 40), 1));
            p.setBrush(QColor(215, 215, 215));
            p.drawEllipse(QRectF(0.5, 0.5, 11, 11));
        });
        for (const auto& drop : {qMakePair(QString("drop-down-normal"), kLight),
                                 qMakePair(QString("drop-down-hover"), QColor(Qt::white)),
                                 qMakePair(QString("drop-down"), kLight)}) {
            const QColor color = drop.second;
            files << writePng(dir, drop.first + s + ".png", QSizeF(8, 8), f, [color](QPainter& p, double) {
                p.setPen(Qt::NoPen);
                p.setBrush(color);
                p.translate(0.5, 2);
                p.drawPath(triangle(7, 4, true));
            });
        }
        for (const auto& drop : {qMakePair(QString("drop-up-normal"), kLight),
                                 qMakePair(QString("drop-up-hover"), QColor(Qt::white))}) {
            const QColor color = drop.second;
            files << writePng(dir, drop.first + s + ".png", QSizeF(8, 8), f, [color](QPainter& p, double) {
                p.setPen(Qt::NoPen);
                p.setBrush(color);
                p.translate(0.5, 2);
                p.drawPath(triangle(7, 4, false));
            });
        }
        files << writePng(dir, "radio-on" + s + ".png", QSizeF(13, 13), f, [](QPainter& p, double) {
            p.setPen(QPen(kDark, 1));
            p.setBrush(QColor(240, 240, 240));
            p.drawEllipse(QRectF(0.5, 0.5, 12, 12));
            p.setPen(Qt::NoPen);
            p.setBrush(kBlue);
            p.drawEllipse(QRectF(3.5, 3.5, 6, 6));
        });
        files << writePng(dir, "radio-off" + s + ".png", QSizeF(13, 13), f, [](QPainter& p, double) {
            p.setPen(QPen(kDark, 1));
            p.setBrush(QColor(240, 240, 240));
            p.drawEllipse(QRectF(0.5, 0.5, 12, 12));
        });
        files << writePng(dir, "check-normal" + s + ".png", QSizeF(12, 12), f,
                          [](QPainter& p, double) { checkMark(p, QRectF(0, 0, 12, 12), kDark, 1.8); });
    }
    for (const auto& scale : {qMakePair(QString("-150"), 1.5), qMakePair(QString("-200"), 2.0),
                              qMakePair(QString("-250"), 2.5), qMakePair(QString("-300"), 3.0)}) {
        files << writePng(dir, "checkboxstandard-off" + scale.first + ".png", QSizeF(22, 22), scale.second,
                          [](QPainter& p, double) {
                              p.setPen(QPen(kDark, 1));
                              p.setBrush(QColor(236, 236, 236));
                              p.drawRoundedRect(QRectF(2.5, 2.5, 17, 17), 2.5, 2.5);
                          });
        files << writePng(dir, "checkboxstandard-on" + scale.first + ".png", QSizeF(22, 22), scale.second,
                          [](QPainter& p, double) {
                              p.setPen(QPen(QColor(26, 131, 212), 1));
                              p.setBrush(kBlue);
                              p.drawRoundedRect(QRectF(2.5, 2.5, 17, 17), 2.5, 2.5);
                              checkMark(p, QRectF(4, 4, 14, 14), Qt::white, 2.0);
                          });
    }

    const auto dot = [](QPainter& p) {
        p.setBrush(p.pen().color());
        p.drawEllipse(QPointF(10, 10), 2.5, 2.5);
    };
    const auto multi = [](QPainter& p) {
        p.drawLine(QLineF(5, 14, 15, 14));
        p.drawLine(QLineF(7, 14, 7, 7));
        p.drawLine(QLineF(12, 14, 12, 5));
    };
    const auto parallel = [](QPainter& p) {
        p.drawLine(QLineF(5, 13, 15, 13));
        p.drawLine(QLineF(5, 7, 15, 7));
    };
    for (bool on : {false, true}) {
        const QString state = on ? "on" : "off";
        files << writePng(dir, "active-" + state + ".png", QSizeF(20, 20), 1.0,
                          [on, dot](QPainter& p, double) { activeBadge(p, on, dot); });
        files << writePng(dir, "active-multi-" + state + ".png", QSizeF(20, 20), 1.0,
                          [on, multi](QPainter& p, double) { activeBadge(p, on, multi); });
        files << writePng(dir, "active-parallel-" + state + ".png", QSizeF(20, 20), 1.0,
                          [on, parallel](QPainter& p, double) { activeBadge(p, on, parallel); });
    }
    files << writePng(dir, "trash.png", QSizeF(20, 20), 1.0, [](QPainter& p, double) {
        // A dark badge keeps the white bin visible on light and dark pictures.
        p.setPen(QPen(QColor(255, 255, 255, 200), 1));
        p.setBrush(QColor(40, 40, 40, 220));
        p.drawRoundedRect(QRectF(0.5, 0.5, 19, 19), 4, 4);
        p.setPen(QPen(Qt::white, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::NoBrush);
        p.drawLine(QLineF(5, 6, 15, 6));
        p.drawLine(QLineF(8.5, 4.5, 11.5, 4.5));
        QPainterPath bin;
        bin.moveTo(6.5, 6);
        bin.lineTo(7.3, 15.5);
        bin.lineTo(12.7, 15.5);
        bin.lineTo(13.5, 6);
        p.drawPath(bin);
        p.drawLine(QLineF(9, 8.5, 9, 13.5));
        p.drawLine(QLineF(11, 8.5, 11, 13.5));
    });

    QFile qrc(dir.filePath("tessilarresources.qrc"));
    if (!qrc.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return 1;
    QTextStream stream(&qrc);
    stream << "<!DOCTYPE RCC>\n<RCC version=\"1.0\">\n<qresource prefix=\"/tessilarresources\">\n";
    for (const QString& file : files) {
        if (!file.isEmpty())
            stream << "    <file>" << file << "</file>\n";
    }
    stream << "</qresource>\n</RCC>\n";
    return 0;
}
