#include "KxKernelObjectDataDescr.h"

#include <algorithm>

KxKernelObjectDataDescr::KxKernelObjectDataDescr(int aType, int aCount)
    : objectType(aType)
    , params(std::max(aCount, 0))
{
}

void KxKernelObjectDataDescr::addDefaultParamsDescr()
{
    addParamDescr(0, QStringLiteral("visible"), QMetaType::Bool, ParamDescr::KeyframeAnimated);
    addParamDescr(1, QStringLiteral("color"), QMetaType::QColor, ParamDescr::KeyframeConstant);
    addParamDescr(2, QStringLiteral("valueName"), QMetaType::QString, ParamDescr::KeyframeConstant);
    addParamDescr(3, QStringLiteral("pos"), QMetaType::QPoint, ParamDescr::KeyframeAnimated);
    addParamDescr(4, QStringLiteral("alwaysHidden"), QMetaType::Bool, ParamDescr::KeyframeConstant);
}

bool KxKernelObjectDataDescr::addParamDescr(unsigned int anId, const QString& aName, QMetaType::Type aType,
                                            ParamDescr::KeyframeType aKeyframeType)
{
    // Ids index key-frame vectors; keep them to a sane range.
    if (anId > 4096)
        return false;
    const int id = int(anId);
    const int existing = getParamId(aName);
    if (existing >= 0 && existing != id)
        return false;
    if (id >= params.size())
        params.resize(id + 1);
    params[id].name = aName;
    params[id].type = aType;
    params[id].keyframeType = aKeyframeType;
    return true;
}

KxParamKeyframeVector KxKernelObjectDataDescr::createKeyframeVector() const
{
    return KxParamKeyframeVector(params.size());
}

QVector<ParamDescr::KeyframeType> KxKernelObjectDataDescr::getKeyframeTypes() const
{
    QVector<ParamDescr::KeyframeType> result;
    result.reserve(params.size());
    for (const ParamDescr& param : params)
        result.append(param.keyframeType);
    return result;
}

QVariant KxKernelObjectDataDescr::getValue(const KxParamKeyframeVector& aVector, const QString& aName) const
{
    const int id = getParamId(aName);
    if (id < 0 || id >= aVector.size())
        return QVariant();
    return aVector[id].getValue();
}

bool KxKernelObjectDataDescr::setValue(KxParamKeyframeVector& aVector, const QString& aName,
                                       const QVariant& aValue) const
{
    const int id = getParamId(aName);
    if (id < 0 || id >= aVector.size())
        return false;
    aVector[id].setValue(aValue);
    return true;
}

int KxKernelObjectDataDescr::getParamId(const QString& aName) const
{
    if (aName.isEmpty())
        return -1;
    for (int i = 0; i < params.size(); ++i) {
        if (params.at(i).name == aName)
            return i;
    }
    return -1;
}

int KxKernelObjectDataDescr::getObjectType() const
{
    return objectType;
}

int KxKernelObjectDataDescr::getParamCount() const
{
    return params.size();
}

const ParamDescr& KxKernelObjectDataDescr::getParamDescr(int anId) const
{
    static const ParamDescr theEmpty;
    if (anId < 0 || anId >= params.size())
        return theEmpty;
    return params.at(anId);
}
