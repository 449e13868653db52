#include "KxKernelObjectData.h"

#include <atomic>

namespace {
std::atomic<quint64> theNextSerial{1};
}

bool KxKernelObjectData::State::operator==(const State& anOther) const
{
    return animated == anOther.animated && defaults == anOther.defaults && frames == anOther.frames;
}

KxKernelObjectData::KxKernelObjectData(const KxParamKeyframeVector& aDefaults,
                                       const QVector<ParamDescr::KeyframeType>& aTypes, bool anAnimated)
    : animated(anAnimated)
    , defaults(aDefaults)
    , types(aTypes)
    , serial(theNextSerial++)
{
    defaults.setFrameNumber(-1);
}

KxKernelObjectData::KxKernelObjectData(const KxKernelObjectData& anOther)
    : animated(anOther.animated)
    , defaults(anOther.defaults)
    , frames(anOther.frames)
    , types(anOther.types)
    , serial(theNextSerial++)
{
}

KxKernelObjectData& KxKernelObjectData::operator=(const KxKernelObjectData& anOther)
{
    animated = anOther.animated;
    defaults = anOther.defaults;
    frames = anOther.frames;
    types = anOther.types;
    return *this;
}

ParamDescr::KeyframeType KxKernelObjectData::typeOf(int anId) const
{
    return types.value(anId, ParamDescr::KeyframeAnimated);
}

KxParamKeyframeVector KxKernelObjectData::getKeyframesAt(qint64 aFrame) const
{
    if (!animated)
        return getDefaultKeyframes();
    KxParamKeyframeVector result = defaults;
    result.setFrameNumber(aFrame);
    if (aFrame < 0 || frames.isEmpty())
        return result;
    const auto exact = frames.constFind(aFrame);
    const auto upper = frames.upperBound(aFrame);
    for (int id = 0; id < result.size(); ++id) {
        switch (typeOf(id)) {
        case ParamDescr::KeyframeConstant:
            break;
        case ParamDescr::KeyframeDiscrete:
            if (exact != frames.constEnd() && id < exact->size() && (*exact)[id].hasValue())
                result[id] = (*exact)[id];
            break;
        case ParamDescr::KeyframeAnimated:
            // Walk back from the frame to the last key frame that sets this id.
            for (auto it = upper; it != frames.constBegin();) {
                --it;
                if (id < it->size() && (*it)[id].hasValue()) {
                    result[id] = (*it)[id];
                    break;
                }
            }
            break;
        }
    }
    return result;
}

KxParamKeyframeVector KxKernelObjectData::getDefaultKeyframes() const
{
    return defaults;
}

QVector<ParamDescr::KeyframeType> KxKernelObjectData::getKeyframeTypes() const
{
    return types;
}

int KxKernelObjectData::getParamCount() const
{
    return defaults.size();
}

void KxKernelObjectData::update(KxParamKeyframeVector& aValues)
{
    const int count = qMin(aValues.size(), defaults.size());
    const qint64 frame = aValues.getFrameNumber();
    for (int id = 0; id < count; ++id) {
        const KxParamKeyframe& key = aValues[id];
        if (!key.hasValue())
            continue;
        if (frame < 0 || typeOf(id) == ParamDescr::KeyframeConstant) {
            defaults[id] = key;
            continue;
        }
        auto it = frames.find(frame);
        if (it == frames.end()) {
            KxParamKeyframeVector fresh(defaults.size());
            fresh.setFrameNumber(frame);
            it = frames.insert(frame, fresh);
        }
        (*it)[id] = key;
    }
}

QList<qint64> KxKernelObjectData::getKeyframeNumbers() const
{
    return frames.keys();
}

KxParamKeyframeVector KxKernelObjectData::getKeyframesExactlyAt(qint64 aFrame) const
{
    const auto it = frames.constFind(aFrame);
    if (it != frames.constEnd())
        return *it;
    KxParamKeyframeVector empty(defaults.size());
    empty.setFrameNumber(aFrame);
    return empty;
}

void KxKernelObjectData::clearFrameKeyframes()
{
    frames.clear();
}

KxKernelObjectData::State KxKernelObjectData::getState() const
{
    State state;
    state.defaults = defaults;
    state.frames = frames;
    state.animated = animated;
    return state;
}

void KxKernelObjectData::setState(const State& aState)
{
    defaults = aState.defaults;
    frames = aState.frames;
    animated = aState.animated;
}

quint64 KxKernelObjectData::getSerial() const
{
    return serial;
}
