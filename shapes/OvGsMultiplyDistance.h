#pragma once

#include "OvGsRelativeDistance.h"

// A multiple-distance line or base (kernel type 66658); see OvGsRelativeDistance.
class OvGsMultiplyDistance : public OvGsRelativeDistance
{
    Q_OBJECT

public:
    enum { Type = QGraphicsItem::UserType + 1122 };

    OvGsMultiplyDistance(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aTypeName,
                         const QString& aLineName);

    int type() const override;
};
