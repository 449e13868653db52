#include "KxParamKeyframe.h"

KxParamKeyframe::KxParamKeyframe(const QVariant& aValue)
    : value(aValue)
{
}

QVariant KxParamKeyframe::getValue() const
{
    return value;
}

void KxParamKeyframe::setValue(const QVariant& aValue)
{
    value = aValue;
}

bool KxParamKeyframe::hasValue() const
{
    return value.isValid();
}

void KxParamKeyframe::clear()
{
    value = QVariant();
}

bool KxParamKeyframe::operator==(const KxParamKeyframe& anOther) const
{
    // Compare types too: QVariant would call 1 and true equal.
    return value.userType() == anOther.value.userType() && value == anOther.value;
}
