#pragma once

#include "KxHostGlobal.h"
#include "KxParamKeyframe.h"

#include <QVector>

// The key frames of one object, indexed by parameter id, optionally tied to a
// video frame. Implicitly shared: copies are cheap and detach on the first
// write through the non-const operator[].
class KX_HOST_EXPORT KxParamKeyframeVector
{
public:
    KxParamKeyframeVector() = default;
    // aCount empty key frames (a negative count gives an empty vector), no frame.
    explicit KxParamKeyframeVector(int aCount);

    int size() const;
    // Ids outside 0..size()-1 are a programming error (asserted in debug builds).
    KxParamKeyframe& operator[](int anId);
    const KxParamKeyframe& operator[](int anId) const;

    // The video frame the values belong to; -1 (the default) means none, and
    // an update with such a vector writes the defaults.
    void setFrameNumber(qint64 aFrame);
    qint64 getFrameNumber() const;
    bool hasFrameNumber() const;

    // Number of key frames that hold a value.
    int countValues() const;

    bool operator==(const KxParamKeyframeVector& anOther) const;
    bool operator!=(const KxParamKeyframeVector& anOther) const { return !(*this == anOther); }

private:
    QVector<KxParamKeyframe> keyframes;
    qint64 frameNumber = -1;
};
