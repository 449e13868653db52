#pragma once

#include "KxParamKeyframeVector.h"

#include <QColor>
#include <QMap>
#include <QPair>
#include <QPoint>
#include <QPointF>
#include <QString>
#include <QVector>

#include <optional>

// The object type ids of the seven kinds, as the store has them.
namespace ModelKinds {
const int kAngle = 66651;
const int kDistance = 66653;
const int kFreeForm = 66655;
const int kCircle = 66656;
const int kMultiple = 66658;
const int kParallel = 66659;
const int kFreeLine = 66755;
} // namespace ModelKinds

// The reference model: what the store should hold for every measurement,
// parameters 0 to 8, told from what the user did rather than read back.
// Geometry is kept as absolute picture points (a distance's two ends, a
// shape's nodes, a relative line's start and end), so the model does not
// depend on how a kind packs it into its parameter.
class ModelStoreHelper
{
public:
    using Key = QPair<int, int>;
    enum Role { Plain, Base, Line };

    struct Object
    {
        int type = 0;
        int index = 0;
        QColor color;
        QString valueName;
        int width = 0;
        int font = 0;
        int unit = 0;
        bool unitKnown = true;
        QVector<QPointF> points;
        Role role = Plain;
        int baseIndex = 0; // for a Line: its base, of the same type
    };

    QMap<Key, Object> objects;

    int nextIndex(int aType) const;
    // Lines of the base aKey, in index order.
    QList<Key> linesOf(const Key& aKey) const;
    // Places every line of the base aKey again on it.
    void placeLines(const Key& aKey);
    // The end of a line that starts at aStart, against the base aBase.
    static QPointF lineEnd(const Object& aBase, const QPointF& aStart);
    // Distance from aPoint to the infinite line through the base.
    static double distanceToBase(const Object& aBase, const QPointF& aPoint);
    // Scales every stored position (aPositions, as stored before) as a
    // camera-resolution change does.
    void scale(double aFactor, const QMap<Key, QPoint>& aPositions);

    // Empty when aStored (parameters at the current frame) holds what the
    // model says of anObject, else what differs.
    static QString compare(const Object& anObject, const KxParamKeyframeVector& aStored);
    // The model object that aStored describes (geometry read back); roles
    // and base links are taken from aRole and aBase.
    static Object fromStore(int aType, int anIndex, const KxParamKeyframeVector& aStored);
    // Absolute points of a stored object, as the model keeps them (relative
    // kinds: start only).
    static QVector<QPointF> storedPoints(int aType, const KxParamKeyframeVector& aStored);
    static QString toText(const QVariant& aValue);
    // Where the stored position should be: a distance's start, a circle's
    // centre, an angle's vertex, a shape's first node; none when the
    // geometry gives none.
    static std::optional<QPointF> itemOrigin(const Object& anObject);
};
