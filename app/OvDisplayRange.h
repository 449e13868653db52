#pragma once

#include <QImage>
#include <QVector>

// The range of stored values that the screen spreads over black to white:
// values at or below the minimum show black, at or above the maximum white.
// It changes only what is shown; the stored picture and every measurement
// stay as they are. Works on the pictures OvImageSequence gives
// (Format_Grayscale8/16, Format_RGB32, Format_ARGB32, Format_RGBA64).
class OvDisplayRange
{
public:
    OvDisplayRange() = default;
    // aMaximum is kept above aMinimum.
    OvDisplayRange(int aMinimum, int aMaximum);

    int minimum() const { return low; }
    int maximum() const { return high; }
    bool operator==(const OvDisplayRange& anOther) const { return low == anOther.low && high == anOther.high; }
    bool operator!=(const OvDisplayRange& anOther) const { return !(*this == anOther); }

    // The largest value a sample can hold: 65535 for 16-bit pictures, else 255.
    static int maximumValueOf(const QImage& aPicture);
    // How many samples hold each value from 0 to maximumValueOf() (every
    // colour channel of an RGB picture counts; alpha does not).
    static QVector<quint32> valueCounts(const QImage& aPicture);
    // The whole range of the sample type (0-255 or 0-65535).
    static OvDisplayRange full(const QImage& aPicture);
    // The range that leaves kSaturated of the samples at each end black or
    // white; the full range when the picture holds a single value.
    static OvDisplayRange automatic(const QImage& aPicture);
    static OvDisplayRange automatic(const QVector<quint32>& aCounts);

    // The picture as shown: Format_Grayscale8 for greyscale, Format_RGB32 or
    // Format_ARGB32 for colour. An 8-bit picture at its full range comes back
    // as it is.
    QImage apply(const QImage& aPicture) const;

    // Fraction of the samples saturated at each end by automatic().
    static constexpr double kSaturated = 0.001;

private:
    int low = 0;
    int high = 255;
};
