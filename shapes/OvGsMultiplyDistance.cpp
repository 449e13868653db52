#include "OvGsMultiplyDistance.h"

OvGsMultiplyDistance::OvGsMultiplyDistance(KxGsManipulator* aManipulator, QGraphicsItem* aParent,
                                           const QString& aTypeName, const QString& aLineName)
    : OvGsRelativeDistance(aManipulator, aParent, aTypeName, aLineName)
{
}

int OvGsMultiplyDistance::type() const
{
    return Type;
}
