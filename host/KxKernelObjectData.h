#pragma once

#include "KxHostGlobal.h"
#include "KxParamKeyframeVector.h"
#include "ParamDescr.h"

#include <QList>
#include <QMap>
#include <QVector>

// One stored measurement: default key frames plus key frames per video frame.
// Values at a frame are resolved per parameter by its key-frame type (see
// ParamDescr::KeyframeType); a non-animated object always shows its defaults.
class KX_HOST_EXPORT KxKernelObjectData
{
public:
    // Everything that makes up the object's data, for exact snapshots.
    struct State
    {
        KxParamKeyframeVector defaults;
        QMap<qint64, KxParamKeyframeVector> frames;
        bool animated = false;

        bool operator==(const State& anOther) const;
        bool operator!=(const State& anOther) const { return !(*this == anOther); }
    };

    // aDefaults gives the parameter count and the default values (its frame
    // number is ignored); aTypes the key-frame type per id (ids beyond it are
    // animated).
    KxKernelObjectData(const KxParamKeyframeVector& aDefaults,
                       const QVector<ParamDescr::KeyframeType>& aTypes, bool anAnimated = false);
    // A copy is a separate object with a serial of its own.
    KxKernelObjectData(const KxKernelObjectData& anOther);
    KxKernelObjectData& operator=(const KxKernelObjectData& anOther);

    // Animated: the frame's values over the defaults, frame number aFrame.
    // Not animated: the defaults, without a frame number, so that writing the
    // vector back changes the defaults.
    KxParamKeyframeVector getKeyframesAt(qint64 aFrame) const;
    // A copy of the defaults, without a frame number.
    KxParamKeyframeVector getDefaultKeyframes() const;
    QVector<ParamDescr::KeyframeType> getKeyframeTypes() const;
    int getParamCount() const;

    // Writes only the key frames of aValues that hold a value: at the
    // vector's frame when it has one (constant parameters still go to the
    // defaults), else into the defaults. Ids beyond the object's count are
    // ignored. aValues is not changed.
    void update(KxParamKeyframeVector& aValues);

    // The frames that have key frames of their own, ascending.
    QList<qint64> getKeyframeNumbers() const;
    // The key frames stored exactly at aFrame (empty ones when none).
    KxParamKeyframeVector getKeyframesExactlyAt(qint64 aFrame) const;
    // Drops every per-frame key frame (the defaults stay).
    void clearFrameKeyframes();

    State getState() const;
    // Restores a snapshot exactly, including the animated flag.
    void setState(const State& aState);

    // A number unique to this object for the life of the process; lets
    // commands tell their object from a later one at the same index.
    quint64 getSerial() const;

    // Whether per-frame key frames are used; read and written directly.
    bool animated;

private:
    ParamDescr::KeyframeType typeOf(int anId) const;

    KxParamKeyframeVector defaults;
    QMap<qint64, KxParamKeyframeVector> frames;
    QVector<ParamDescr::KeyframeType> types;
    quint64 serial;
};
