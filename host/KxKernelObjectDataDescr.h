#pragma once

#include "KxHostGlobal.h"
#include "KxParamKeyframeVector.h"
#include "ParamDescr.h"

#include <QString>
#include <QVariant>
#include <QVector>

// The parameter description of one kernel object type: which parameter id
// has which name, value type and key-frame type. Registered once per type
// with KxKernelData, which then owns it.
class KX_HOST_EXPORT KxKernelObjectDataDescr
{
public:
    // aCount parameter slots, all unnamed until described.
    KxKernelObjectDataDescr(int aType, int aCount);

    // Ids 0..4: "visible" Bool, "color" QColor, "valueName" QString,
    // "pos" QPoint, "alwaysHidden" Bool; visible and pos are animated, the
    // others constant. Grows the descriptor to at least 5 slots.
    void addDefaultParamsDescr();
    // Describes parameter anId (the descriptor grows when anId is beyond its
    // count). A name already used by another id is refused (false).
    bool addParamDescr(unsigned int anId, const QString& aName, QMetaType::Type aType,
                       ParamDescr::KeyframeType aKeyframeType);

    // One empty key frame per id, no frame number.
    KxParamKeyframeVector createKeyframeVector() const;
    QVector<ParamDescr::KeyframeType> getKeyframeTypes() const;

    // The value of the named parameter in aVector; invalid when the name is
    // unknown or the vector is too short.
    QVariant getValue(const KxParamKeyframeVector& aVector, const QString& aName) const;
    // Writes the named parameter into aVector; false (and nothing written)
    // when the name is unknown or the vector is too short.
    bool setValue(KxParamKeyframeVector& aVector, const QString& aName, const QVariant& aValue) const;

    // -1 for an unknown name (names are case-sensitive).
    int getParamId(const QString& aName) const;
    int getObjectType() const;
    int getParamCount() const;
    // Out of range gives an empty description.
    const ParamDescr& getParamDescr(int anId) const;

private:
    int objectType;
    QVector<ParamDescr> params;
};
