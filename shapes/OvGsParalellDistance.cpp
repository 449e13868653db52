#include "OvGsParalellDistance.h"

OvGsParalellDistance::OvGsParalellDistance(KxGsManipulator* aManipulator, QGraphicsItem* aParent,
                                           const QString& aTypeName, const QString& aLineName)
    : OvGsRelativeDistance(aManipulator, aParent, aTypeName, aLineName)
{
}

int OvGsParalellDistance::type() const
{
    return Type;
}
