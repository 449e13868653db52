#include "KxKernelDocument.h"

#include "KxKernelData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxMediaInfo.h"
#include "OvQtCompat.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QPoint>
#include <QPointF>
#include <QPolygonF>
#include <QSizeF>

#include <algorithm>
#include <cmath>

const char* const KxKernelDocument::kFormat = "ovmeasurements";

namespace {

QJsonArray pair(double anX, double anY)
{
    return QJsonArray{ anX, anY };
}

// Two numbers [x, y] into anX and anY; false for anything else.
bool readNumberPair(const QJsonValue& aValue, double* anX, double* anY)
{
    if (!aValue.isArray())
        return false;
    const QJsonArray array = aValue.toArray();
    if (array.size() != 2)
        return false;
    const QJsonValue x = array.at(0);
    const QJsonValue y = array.at(1);
    if (!x.isDouble() || !y.isDouble())
        return false;
    *anX = x.toDouble();
    *anY = y.toDouble();
    return true;
}

// Only the types the measurements store are written; anything else is an
// error rather than a silent loss on the way back.
QJsonValue encode(const QVariant& aValue, bool* anOk)
{
    *anOk = true;
    if (!aValue.isValid())
        return QJsonValue();
    QJsonObject object;
    object.insert(QStringLiteral("t"), QString::fromLatin1(aValue.typeName()));
    switch (aValue.userType()) {
    case QMetaType::Bool:
        object.insert(QStringLiteral("v"), aValue.toBool());
        break;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Double:
        object.insert(QStringLiteral("v"), aValue.toDouble());
        break;
    case QMetaType::QString:
        object.insert(QStringLiteral("v"), aValue.toString());
        break;
    case QMetaType::QColor:
        object.insert(QStringLiteral("v"), aValue.value<QColor>().name(QColor::HexArgb));
        break;
    case QMetaType::QPoint:
        object.insert(QStringLiteral("v"), pair(aValue.toPoint().x(), aValue.toPoint().y()));
        break;
    case QMetaType::QPointF:
        object.insert(QStringLiteral("v"), pair(aValue.toPointF().x(), aValue.toPointF().y()));
        break;
    case QMetaType::QSize:
        object.insert(QStringLiteral("v"), pair(aValue.toSize().width(), aValue.toSize().height()));
        break;
    case QMetaType::QSizeF:
        object.insert(QStringLiteral("v"), pair(aValue.toSizeF().width(), aValue.toSizeF().height()));
        break;
    case QMetaType::QPolygonF: {
        QJsonArray points;
        for (const QPointF& point : aValue.value<QPolygonF>())
            points.append(pair(point.x(), point.y()));
        object.insert(QStringLiteral("v"), points);
        break;
    }
    default:
        *anOk = false;
        return QJsonValue();
    }
    return object;
}

bool isWhole(double aValue)
{
    return std::isfinite(aValue) && std::floor(aValue) == aValue && std::fabs(aValue) < 2147483648.0;
}

// The reverse of encode(); false for anything encode() cannot have written.
bool decode(const QJsonValue& aJson, QVariant* aValue)
{
    *aValue = QVariant();
    if (aJson.isNull())
        return true;
    if (!aJson.isObject())
        return false;
    const QJsonObject object = aJson.toObject();
    const QString type = object.value(QLatin1String("t")).toString();
    const QJsonValue value = object.value(QLatin1String("v"));
    double x = 0.0;
    double y = 0.0;
    if (type == QLatin1String("bool") && value.isBool()) {
        *aValue = value.toBool();
    } else if ((type == QLatin1String("int") || type == QLatin1String("uint")) && value.isDouble()
               && isWhole(value.toDouble())) {
        *aValue = type == QLatin1String("int") ? QVariant(int(value.toDouble()))
                                               : QVariant(uint(std::max(0.0, value.toDouble())));
    } else if (type == QLatin1String("qlonglong") && value.isDouble()) {
        *aValue = qlonglong(value.toDouble());
    } else if (type == QLatin1String("double") && value.isDouble()) {
        *aValue = value.toDouble();
    } else if (type == QLatin1String("QString") && value.isString()) {
        *aValue = value.toString();
    } else if (type == QLatin1String("QColor") && value.isString() && QColor::isValidColor(value.toString())) {
        *aValue = QColor(value.toString());
    } else if (type == QLatin1String("QPoint") && readNumberPair(value, &x, &y)) {
        *aValue = QPoint(OvQtCompat::round(x), OvQtCompat::round(y));
    } else if (type == QLatin1String("QPointF") && readNumberPair(value, &x, &y)) {
        *aValue = QPointF(x, y);
    } else if (type == QLatin1String("QSize") && readNumberPair(value, &x, &y)) {
        *aValue = QSize(OvQtCompat::round(x), OvQtCompat::round(y));
    } else if (type == QLatin1String("QSizeF") && readNumberPair(value, &x, &y)) {
        *aValue = QSizeF(x, y);
    } else if (type == QLatin1String("QPolygonF") && value.isArray()) {
        const QJsonArray points = value.toArray();
        QPolygonF polygon;
        polygon.reserve(points.size());
        for (const QJsonValue& point : points) {
            if (!readNumberPair(point, &x, &y))
                return false;
            polygon.append(QPointF(x, y));
        }
        *aValue = polygon;
    } else {
        return false;
    }
    return true;
}

QJsonArray encodeVector(const KxParamKeyframeVector& aVector, bool* anOk)
{
    QJsonArray values;
    for (int id = 0; id < aVector.size() && *anOk; ++id)
        values.append(encode(aVector[id].getValue(), anOk));
    return values;
}

// A vector shorter than the type's parameter count comes from a file written
// before the type gained parameters: the missing ones stay unset, and the kind
// falls back on what it did before it stored them. A longer one is refused.
bool decodeVector(const QJsonValue& aJson, int aCount, KxParamKeyframeVector* aVector)
{
    const QJsonArray values = aJson.toArray();
    if (!aJson.isArray() || values.size() > aCount || values.isEmpty())
        return false;
    *aVector = KxParamKeyframeVector(aCount);
    for (int id = 0; id < values.size(); ++id) {
        QVariant value;
        if (!decode(values.at(id), &value))
            return false;
        if (value.isValid())
            (*aVector)[id].setValue(value);
    }
    return true;
}

} // namespace

KxKernelDocument KxKernelDocument::fromStore()
{
    KxKernelData* kernel = KxKernelData::getInstance();
    KxKernelDocument document;
    const KxMediaInfo& media = kernel->getMediaInfo();
    document.picture = media.getFileName();
    // No picture yet is written as 0 x 0.
    document.imageSize = kernel->getCurrentImageSize().expandedTo(QSize(0, 0));
    document.umPerPixel = media.isCalibrated() ? media.getUmPerPixelX() : 0.0;
    document.frameCount = std::max<qint64>(1, media.getFrameCount());
    QList<int> types = kernel->getObjectTypes();
    std::sort(types.begin(), types.end());
    for (int type : types) {
        const QMap<int, KxKernelObjectData*> ofType = kernel->getObjectsOfType(type);
        for (auto it = ofType.cbegin(); it != ofType.cend(); ++it)
            document.objects.append(Object{ type, it.key(), it.value()->getState() });
    }
    return document;
}

QByteArray KxKernelDocument::toJson() const
{
    QJsonArray jsonObjects;
    bool ok = true;
    for (const Object& object : objects) {
        QJsonArray frames;
        for (auto it = object.state.frames.cbegin(); it != object.state.frames.cend(); ++it) {
            frames.append(QJsonObject{ { QStringLiteral("frame"), double(it.key()) },
                                       { QStringLiteral("values"), encodeVector(it.value(), &ok) } });
        }
        jsonObjects.append(QJsonObject{ { QStringLiteral("type"), object.type },
                                        { QStringLiteral("index"), object.index },
                                        { QStringLiteral("animated"), object.state.animated },
                                        { QStringLiteral("defaults"), encodeVector(object.state.defaults, &ok) },
                                        { QStringLiteral("frames"), frames } });
        // A value of a type we cannot write back is dropped from the file
        // (as null) rather than written in a form nobody can read.
        ok = true;
    }
    const QJsonObject root{ { QStringLiteral("format"), QString::fromLatin1(kFormat) },
                            { QStringLiteral("version"), kVersion },
                            { QStringLiteral("picture"), picture },
                            { QStringLiteral("width"), imageSize.width() },
                            { QStringLiteral("height"), imageSize.height() },
                            { QStringLiteral("umPerPixel"), umPerPixel },
                            { QStringLiteral("frameCount"), double(frameCount) },
                            { QStringLiteral("objects"), jsonObjects } };
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

bool KxKernelDocument::fromJson(const QByteArray& aJson, QString* anError)
{
    const auto fail = [anError](const QString& aMessage) {
        if (anError)
            *anError = aMessage;
        return false;
    };
    QJsonParseError parseError;
    const QJsonDocument json = QJsonDocument::fromJson(aJson, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return fail(QStringLiteral("not a measurement file (%1 at byte %2)")
                        .arg(parseError.errorString()).arg(parseError.offset));
    const QJsonObject root = json.object();
    if (!json.isObject() || root.value(QStringLiteral("format")).toString() != QLatin1String(kFormat))
        return fail(QStringLiteral("not a measurement file"));
    const QJsonValue version = root.value(QStringLiteral("version"));
    if (!version.isDouble() || !isWhole(version.toDouble()) || version.toDouble() < 1)
        return fail(QStringLiteral("the file has no valid version"));
    if (version.toDouble() > kVersion)
        return fail(QStringLiteral("the file was written by a newer version (format %1; this viewer reads %2)")
                        .arg(version.toInt()).arg(kVersion));

    KxKernelDocument read;
    read.picture = root.value(QStringLiteral("picture")).toString();
    const QJsonValue width = root.value(QStringLiteral("width"));
    const QJsonValue height = root.value(QStringLiteral("height"));
    const QJsonValue calibration = root.value(QStringLiteral("umPerPixel"));
    const QJsonValue frameCount = root.value(QStringLiteral("frameCount"));
    if (!width.isDouble() || !height.isDouble() || !calibration.isDouble() || !isWhole(width.toDouble())
        || !isWhole(height.toDouble()) || width.toDouble() < 0 || height.toDouble() < 0
        || !std::isfinite(calibration.toDouble()) || calibration.toDouble() < 0.0)
        return fail(QStringLiteral("the picture size or calibration is missing or invalid"));
    read.imageSize = QSize(width.toInt(), height.toInt());
    read.umPerPixel = calibration.toDouble();
    read.frameCount = frameCount.isDouble() && frameCount.toDouble() >= 1 ? qint64(frameCount.toDouble()) : 1;

    if (!root.value(QStringLiteral("objects")).isArray())
        return fail(QStringLiteral("the file has no list of measurements"));
    const KxKernelData* kernel = KxKernelData::getInstance();
    const QJsonArray jsonObjects = root.value(QStringLiteral("objects")).toArray();
    // Type and index of every measurement read so far.
    QSet<qint64> seen;
    seen.reserve(jsonObjects.size());
    read.objects.reserve(jsonObjects.size());
    for (int n = 0; n < jsonObjects.size(); ++n) {
        const QJsonObject jsonObject = jsonObjects.at(n).toObject();
        const QJsonValue type = jsonObject.value(QStringLiteral("type"));
        const QJsonValue index = jsonObject.value(QStringLiteral("index"));
        if (!type.isDouble() || !index.isDouble() || !isWhole(type.toDouble()) || !isWhole(index.toDouble())
            || index.toDouble() < 1)
            return fail(QStringLiteral("measurement %1 has no valid type and index").arg(n + 1));
        Object object;
        object.type = type.toInt();
        object.index = index.toInt();
        const KxKernelObjectDataDescr* descr = kernel->getDataDescriptor(object.type);
        if (!descr)
            return fail(QStringLiteral("measurement %1 is of type %2, which no loaded tool knows")
                            .arg(n + 1).arg(object.type));
        const qint64 key = (qint64(object.type) << 32) | quint32(object.index);
        if (seen.contains(key))
            return fail(QStringLiteral("measurement %1 repeats type %2 index %3")
                            .arg(n + 1).arg(object.type).arg(object.index));
        seen.insert(key);
        const int count = descr->getParamCount();
        object.state.animated = jsonObject.value(QStringLiteral("animated")).toBool();
        if (!decodeVector(jsonObject.value(QStringLiteral("defaults")), count, &object.state.defaults))
            return fail(QStringLiteral("measurement %1 has invalid values").arg(n + 1));
        const QJsonValue frames = jsonObject.value(QStringLiteral("frames"));
        if (!frames.isUndefined() && !frames.isArray())
            return fail(QStringLiteral("measurement %1 has an invalid list of frames").arg(n + 1));
        for (const QJsonValue& jsonFrame : frames.toArray()) {
            const QJsonValue frame = jsonFrame.toObject().value(QStringLiteral("frame"));
            KxParamKeyframeVector values;
            if (!frame.isDouble() || frame.toDouble() < 0 || std::floor(frame.toDouble()) != frame.toDouble()
                || !decodeVector(jsonFrame.toObject().value(QStringLiteral("values")), count, &values))
                return fail(QStringLiteral("measurement %1 has an invalid frame").arg(n + 1));
            values.setFrameNumber(qint64(frame.toDouble()));
            object.state.frames.insert(qint64(frame.toDouble()), values);
        }
        read.objects.append(object);
    }
    *this = read;
    return true;
}

void KxKernelDocument::applyToStore() const
{
    KxKernelData* kernel = KxKernelData::getInstance();
    kernel->removeAllObjects();
    for (const Object& object : objects) {
        const KxKernelObjectDataDescr* descr = kernel->getDataDescriptor(object.type);
        if (!descr)
            continue;
        auto* data = new KxKernelObjectData(object.state.defaults, descr->getKeyframeTypes(), object.state.animated);
        data->setState(object.state);
        if (!kernel->insertObject(object.type, object.index, data))
            delete data;
    }
}
