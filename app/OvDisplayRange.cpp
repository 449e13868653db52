#include "OvDisplayRange.h"

#include <QtGlobal>

namespace {

bool isSixteenBit(const QImage& aPicture)
{
    return aPicture.format() == QImage::Format_Grayscale16 || aPicture.format() == QImage::Format_RGBA64
        || aPicture.format() == QImage::Format_RGBX64 || aPicture.format() == QImage::Format_RGBA64_Premultiplied;
}

bool isGrey(const QImage& aPicture)
{
    return aPicture.format() == QImage::Format_Grayscale8 || aPicture.format() == QImage::Format_Grayscale16;
}

} // namespace

OvDisplayRange::OvDisplayRange(int aMinimum, int aMaximum)
    : low(qMax(0, aMinimum))
    , high(qMax(low + 1, aMaximum))
{
}

int OvDisplayRange::maximumValueOf(const QImage& aPicture)
{
    return isSixteenBit(aPicture) ? 65535 : 255;
}

OvDisplayRange OvDisplayRange::full(const QImage& aPicture)
{
    return OvDisplayRange(0, maximumValueOf(aPicture));
}

QVector<quint32> OvDisplayRange::valueCounts(const QImage& aPicture)
{
    QVector<quint32> counts(maximumValueOf(aPicture) + 1, 0);
    if (aPicture.isNull())
        return counts;
    quint32* count = counts.data();
    const int width = aPicture.width();
    for (int y = 0; y < aPicture.height(); ++y) {
        switch (aPicture.format()) {
        case QImage::Format_Grayscale8: {
            const uchar* line = aPicture.constScanLine(y);
            for (int x = 0; x < width; ++x)
                ++count[line[x]];
            break;
        }
        case QImage::Format_Grayscale16: {
            const auto* line = reinterpret_cast<const quint16*>(aPicture.constScanLine(y));
            for (int x = 0; x < width; ++x)
                ++count[line[x]];
            break;
        }
        case QImage::Format_RGBA64:
        case QImage::Format_RGBX64:
        case QImage::Format_RGBA64_Premultiplied: {
            const auto* line = reinterpret_cast<const quint16*>(aPicture.constScanLine(y));
            for (int x = 0; x < width; ++x) {
                for (int c = 0; c < 3; ++c)
                    ++count[line[x * 4 + c]];
            }
            break;
        }
        default: {
            const QImage rgb = aPicture.format() == QImage::Format_RGB32 || aPicture.format() == QImage::Format_ARGB32
                                   ? aPicture
                                   : aPicture.convertToFormat(QImage::Format_ARGB32);
            const auto* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
            for (int x = 0; x < width; ++x) {
                ++count[qRed(line[x])];
                ++count[qGreen(line[x])];
                ++count[qBlue(line[x])];
            }
            break;
        }
        }
    }
    return counts;
}

OvDisplayRange OvDisplayRange::automatic(const QImage& aPicture)
{
    return automatic(valueCounts(aPicture));
}

OvDisplayRange OvDisplayRange::automatic(const QVector<quint32>& aCounts)
{
    const int top = aCounts.size() - 1;
    quint64 total = 0;
    for (quint32 count : aCounts)
        total += count;
    const double limit = double(total) * kSaturated;
    int minimum = 0;
    quint64 below = 0;
    while (minimum < top && double(below + aCounts.at(minimum)) <= limit)
        below += aCounts.at(minimum++);
    int maximum = top;
    quint64 above = 0;
    while (maximum > 0 && double(above + aCounts.at(maximum)) <= limit)
        above += aCounts.at(maximum--);
    if (maximum <= minimum)
        return OvDisplayRange(0, qMax(1, top));
    return OvDisplayRange(minimum, maximum);
}

QImage OvDisplayRange::apply(const QImage& aPicture) const
{
    if (aPicture.isNull())
        return aPicture;
    const int top = maximumValueOf(aPicture);
    if (!isSixteenBit(aPicture) && low == 0 && high == 255)
        return aPicture;
    QVector<uchar> table(top + 1);
    const double span = double(high - low);
    for (int value = 0; value <= top; ++value) {
        const double shown = (double(value) - low) * 255.0 / span;
        table[value] = uchar(qBound(0, qRound(shown), 255));
    }
    const uchar* lut = table.constData();
    const int width = aPicture.width();
    if (isGrey(aPicture)) {
        QImage shown(aPicture.size(), QImage::Format_Grayscale8);
        for (int y = 0; y < aPicture.height(); ++y) {
            uchar* target = shown.scanLine(y);
            if (aPicture.format() == QImage::Format_Grayscale8) {
                const uchar* line = aPicture.constScanLine(y);
                for (int x = 0; x < width; ++x)
                    target[x] = lut[line[x]];
            } else {
                const auto* line = reinterpret_cast<const quint16*>(aPicture.constScanLine(y));
                for (int x = 0; x < width; ++x)
                    target[x] = lut[line[x]];
            }
        }
        return shown;
    }
    const bool alpha = aPicture.hasAlphaChannel();
    QImage shown(aPicture.size(), alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (isSixteenBit(aPicture)) {
        const QImage source = aPicture.format() == QImage::Format_RGBA64_Premultiplied
                                  ? aPicture.convertToFormat(QImage::Format_RGBA64)
                                  : aPicture;
        for (int y = 0; y < source.height(); ++y) {
            const auto* line = reinterpret_cast<const quint16*>(source.constScanLine(y));
            auto* target = reinterpret_cast<QRgb*>(shown.scanLine(y));
            for (int x = 0; x < width; ++x) {
                const quint16* pixel = line + x * 4;
                target[x] = qRgba(lut[pixel[0]], lut[pixel[1]], lut[pixel[2]], alpha ? pixel[3] >> 8 : 255);
            }
        }
        return shown;
    }
    const QImage source = aPicture.convertToFormat(alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    for (int y = 0; y < source.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(source.constScanLine(y));
        auto* target = reinterpret_cast<QRgb*>(shown.scanLine(y));
        for (int x = 0; x < width; ++x)
            target[x] = qRgba(lut[qRed(line[x])], lut[qGreen(line[x])], lut[qBlue(line[x])], qAlpha(line[x]));
    }
    return shown;
}
