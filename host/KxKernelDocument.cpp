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

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include <algorithm>
#include <cmath>

const char* const KxKernelDocument::kFormat = "ovmeasurements";

namespace {

using JsonDocument = rapidjson::Document;
using JsonValue = rapidjson::Value;

const JsonValue kNoFrames(rapidjson::kArrayType);

QJsonArray pair(double anX, double anY)
{
    return QJsonArray{ anX, anY };
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

// Two numbers [x, y] into anX and anY; false for anything else.
bool readNumberPair(const JsonValue& aValue, double* anX, double* anY)
{
    if (!aValue.IsArray() || aValue.Size() != 2 || !aValue[0].IsNumber() || !aValue[1].IsNumber())
        return false;
    *anX = aValue[0].GetDouble();
    *anY = aValue[1].GetDouble();
    return true;
}

const JsonValue* member(const JsonValue& anObject, const char* aName)
{
    if (!anObject.IsObject())
        return nullptr;
    const auto it = anObject.FindMember(aName);
    return it == anObject.MemberEnd() ? nullptr : &it->value;
}

bool isNumber(const JsonValue* aValue)
{
    return aValue && aValue->IsNumber();
}

QString toString(const JsonValue& aValue)
{
    return QString::fromUtf8(aValue.GetString(), int(aValue.GetStringLength()));
}

// The reverse of encode(); false for anything encode() cannot have written.
bool decode(const JsonValue& aJson, QVariant* aValue)
{
    *aValue = QVariant();
    if (aJson.IsNull())
        return true;
    const JsonValue* typeValue = member(aJson, "t");
    const JsonValue* found = member(aJson, "v");
    if (!typeValue || !typeValue->IsString() || !found)
        return false;
    const QLatin1String type(typeValue->GetString(), int(typeValue->GetStringLength()));
    const JsonValue& value = *found;
    double x = 0.0;
    double y = 0.0;
    if (type == QLatin1String("bool") && value.IsBool()) {
        *aValue = value.GetBool();
    } else if ((type == QLatin1String("int") || type == QLatin1String("uint")) && value.IsNumber()
               && isWhole(value.GetDouble())) {
        *aValue = type == QLatin1String("int") ? QVariant(int(value.GetDouble()))
                                               : QVariant(uint(std::max(0.0, value.GetDouble())));
    } else if (type == QLatin1String("qlonglong") && value.IsNumber()) {
        *aValue = qlonglong(value.GetDouble());
    } else if (type == QLatin1String("double") && value.IsNumber()) {
        *aValue = value.GetDouble();
    } else if (type == QLatin1String("QString") && value.IsString()) {
        *aValue = toString(value);
    } else if (type == QLatin1String("QColor") && value.IsString() && QColor::isValidColor(toString(value))) {
        *aValue = QColor(toString(value));
    } else if (type == QLatin1String("QPoint") && readNumberPair(value, &x, &y)) {
        *aValue = QPoint(OvQtCompat::round(x), OvQtCompat::round(y));
    } else if (type == QLatin1String("QPointF") && readNumberPair(value, &x, &y)) {
        *aValue = QPointF(x, y);
    } else if (type == QLatin1String("QSize") && readNumberPair(value, &x, &y)) {
        *aValue = QSize(OvQtCompat::round(x), OvQtCompat::round(y));
    } else if (type == QLatin1String("QSizeF") && readNumberPair(value, &x, &y)) {
        *aValue = QSizeF(x, y);
    } else if (type == QLatin1String("QPolygonF") && value.IsArray()) {
        QPolygonF polygon;
        polygon.reserve(int(value.Size()));
        for (const JsonValue& point : value.GetArray()) {
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
bool decodeVector(const JsonValue* aJson, int aCount, KxParamKeyframeVector* aVector)
{
    if (!aJson || !aJson->IsArray() || int(aJson->Size()) > aCount || aJson->Empty())
        return false;
    *aVector = KxParamKeyframeVector(aCount);
    int id = 0;
    for (const JsonValue& each : aJson->GetArray()) {
        QVariant value;
        if (!decode(each, &value))
            return false;
        if (value.isValid())
            (*aVector)[id].setValue(value);
        ++id;
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
    // Files hold up to hundreds of thousands of measurements: the reader
    // keeps its values in a few large blocks (Qt's document allocated and
    // freed each value on its own, a third of opening such a file). It
    // parses without recursion, so no nesting depth can exhaust the stack,
    // and it refuses text that is not UTF-8.
    JsonDocument json;
    json.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseFullPrecisionFlag
               | rapidjson::kParseValidateEncodingFlag>(aJson.constData(), size_t(aJson.size()));
    if (json.HasParseError()) {
        // RapidJSON's texts end in a full stop; the offset follows them here.
        QString reason = QString::fromUtf8(rapidjson::GetParseError_En(json.GetParseError()));
        if (reason.endsWith(QLatin1Char('.')))
            reason.chop(1);
        return fail(QStringLiteral("not a measurement file (%1 at byte %2)").arg(reason).arg(json.GetErrorOffset()));
    }
    const JsonValue* format = member(json, "format");
    if (!json.IsObject() || !format || !format->IsString() || toString(*format) != QLatin1String(kFormat))
        return fail(QStringLiteral("not a measurement file"));
    const JsonValue* version = member(json, "version");
    if (!isNumber(version) || !isWhole(version->GetDouble()) || version->GetDouble() < 1)
        return fail(QStringLiteral("the file has no valid version"));
    if (version->GetDouble() > kVersion)
        return fail(QStringLiteral("the file was written by a newer version (format %1; this viewer reads %2)")
                        .arg(int(version->GetDouble())).arg(kVersion));

    KxKernelDocument read;
    const JsonValue* picture = member(json, "picture");
    if (picture && picture->IsString())
        read.picture = toString(*picture);
    const JsonValue* width = member(json, "width");
    const JsonValue* height = member(json, "height");
    const JsonValue* calibration = member(json, "umPerPixel");
    const JsonValue* frameCount = member(json, "frameCount");
    if (!isNumber(width) || !isNumber(height) || !isNumber(calibration) || !isWhole(width->GetDouble())
        || !isWhole(height->GetDouble()) || width->GetDouble() < 0 || height->GetDouble() < 0
        || !std::isfinite(calibration->GetDouble()) || calibration->GetDouble() < 0.0)
        return fail(QStringLiteral("the picture size or calibration is missing or invalid"));
    read.imageSize = QSize(int(width->GetDouble()), int(height->GetDouble()));
    read.umPerPixel = calibration->GetDouble();
    read.frameCount = isNumber(frameCount) && frameCount->GetDouble() >= 1 && std::isfinite(frameCount->GetDouble())
                          ? qint64(frameCount->GetDouble())
                          : 1;

    const JsonValue* jsonObjects = member(json, "objects");
    if (!jsonObjects || !jsonObjects->IsArray())
        return fail(QStringLiteral("the file has no list of measurements"));
    const KxKernelData* kernel = KxKernelData::getInstance();
    // Type and index of every measurement read so far.
    QSet<qint64> seen;
    seen.reserve(int(jsonObjects->Size()));
    read.objects.reserve(int(jsonObjects->Size()));
    int n = 0;
    for (const JsonValue& jsonObject : jsonObjects->GetArray()) {
        ++n;
        const JsonValue* type = member(jsonObject, "type");
        const JsonValue* index = member(jsonObject, "index");
        if (!isNumber(type) || !isNumber(index) || !isWhole(type->GetDouble()) || !isWhole(index->GetDouble())
            || index->GetDouble() < 1)
            return fail(QStringLiteral("measurement %1 has no valid type and index").arg(n));
        Object object;
        object.type = int(type->GetDouble());
        object.index = int(index->GetDouble());
        const KxKernelObjectDataDescr* descr = kernel->getDataDescriptor(object.type);
        if (!descr)
            return fail(QStringLiteral("measurement %1 is of type %2, which no loaded tool knows")
                            .arg(n).arg(object.type));
        const qint64 key = (qint64(object.type) << 32) | quint32(object.index);
        if (seen.contains(key))
            return fail(QStringLiteral("measurement %1 repeats type %2 index %3")
                            .arg(n).arg(object.type).arg(object.index));
        seen.insert(key);
        const int count = descr->getParamCount();
        const JsonValue* animated = member(jsonObject, "animated");
        object.state.animated = animated && animated->IsBool() && animated->GetBool();
        if (!decodeVector(member(jsonObject, "defaults"), count, &object.state.defaults))
            return fail(QStringLiteral("measurement %1 has invalid values").arg(n));
        const JsonValue* frames = member(jsonObject, "frames");
        if (frames && !frames->IsArray())
            return fail(QStringLiteral("measurement %1 has an invalid list of frames").arg(n));
        for (const JsonValue& jsonFrame : frames ? frames->GetArray() : kNoFrames.GetArray()) {
            const JsonValue* frame = member(jsonFrame, "frame");
            KxParamKeyframeVector values;
            if (!isNumber(frame) || frame->GetDouble() < 0 || std::floor(frame->GetDouble()) != frame->GetDouble()
                || !decodeVector(member(jsonFrame, "values"), count, &values))
                return fail(QStringLiteral("measurement %1 has an invalid frame").arg(n));
            values.setFrameNumber(qint64(frame->GetDouble()));
            object.state.frames.insert(qint64(frame->GetDouble()), values);
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
