#include "KxParamKeyframeVector.h"

#include <algorithm>

KxParamKeyframeVector::KxParamKeyframeVector(int aCount)
    : keyframes(std::max(aCount, 0))
{
}

int KxParamKeyframeVector::size() const
{
    return keyframes.size();
}

KxParamKeyframe& KxParamKeyframeVector::operator[](int anId)
{
    return keyframes[anId];
}

const KxParamKeyframe& KxParamKeyframeVector::operator[](int anId) const
{
    return keyframes[anId];
}

void KxParamKeyframeVector::setFrameNumber(qint64 aFrame)
{
    frameNumber = aFrame < 0 ? -1 : aFrame;
}

qint64 KxParamKeyframeVector::getFrameNumber() const
{
    return frameNumber;
}

bool KxParamKeyframeVector::hasFrameNumber() const
{
    return frameNumber >= 0;
}

int KxParamKeyframeVector::countValues() const
{
    return int(std::count_if(keyframes.cbegin(), keyframes.cend(),
                             [](const KxParamKeyframe& aKey) { return aKey.hasValue(); }));
}

bool KxParamKeyframeVector::operator==(const KxParamKeyframeVector& anOther) const
{
    return frameNumber == anOther.frameNumber && keyframes == anOther.keyframes;
}
