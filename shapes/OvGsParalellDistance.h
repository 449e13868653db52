#pragma once

#include "OvGsRelativeDistance.h"

// A parallel-distance line or base (kernel type 66659); see OvGsRelativeDistance.
class OvGsParalellDistance : public OvGsRelativeDistance
{
    Q_OBJECT

public:
    enum { Type = QGraphicsItem::UserType + 1123 };

    OvGsParalellDistance(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aTypeName,
                         const QString& aLineName);

    int type() const override;
};
