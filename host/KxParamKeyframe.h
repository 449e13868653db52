#pragma once

#include "KxHostGlobal.h"

#include <QVariant>

// One parameter value in a key-frame vector. An empty key frame (no value)
// means "not set here": it is skipped by updates and falls back on reads.
class KX_HOST_EXPORT KxParamKeyframe
{
public:
    KxParamKeyframe() = default;
    explicit KxParamKeyframe(const QVariant& aValue);

    QVariant getValue() const;
    void setValue(const QVariant& aValue);
    // True when a valid value has been set.
    bool hasValue() const;
    // Back to "not set".
    void clear();

    bool operator==(const KxParamKeyframe& anOther) const;
    bool operator!=(const KxParamKeyframe& anOther) const { return !(*this == anOther); }

private:
    QVariant value;
};
