#include "PanelTestHelper.h"

#include "KxAppSettings.h"
#include "KxKernelObjectData.h"
#include "OvGuiMeasurementTool.h"

#include <QIcon>
#include <QImage>
#include <QPixmap>

TestGsObject::TestGsObject(int aType, QGraphicsItem* aParent)
    : KxGsObject(nullptr, aParent)
    , objectType(aType)
{
}

int TestGsObject::type() const
{
    return objectType;
}

QRectF TestGsObject::boundingRect() const
{
    return QRectF(0, 0, 10, 10);
}

void TestGsObject::paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*)
{
}

SettingsSandbox::SettingsSandbox()
{
    KxAppSettings::setFileName(path());
}

SettingsSandbox::~SettingsSandbox()
{
    KxAppSettings::setFileName(QString());
}

QString SettingsSandbox::path() const
{
    return dir.filePath(QStringLiteral("settings.ini"));
}

QVariant SettingsSandbox::measurement(const QString& aKey)
{
    KxAppSettings::beginGroup(OvGuiMeasurementTool::kKeyMeasurementSection);
    const QVariant value = KxAppSettings::value(aKey);
    KxAppSettings::endGroup();
    return value;
}

void SettingsSandbox::setMeasurement(const QString& aKey, const QVariant& aValue)
{
    KxAppSettings::beginGroup(OvGuiMeasurementTool::kKeyMeasurementSection);
    KxAppSettings::setValue(aKey, aValue);
    KxAppSettings::endGroup();
}

bool SettingsSandbox::hasMeasurement(const QString& aKey)
{
    KxAppSettings::beginGroup(OvGuiMeasurementTool::kKeyMeasurementSection);
    const bool found = KxAppSettings::contains(aKey);
    KxAppSettings::endGroup();
    return found;
}

PanelSignalLog::PanelSignalLog(OvGuiMeasurementTool* aPanel)
{
    connect(aPanel, &OvGuiMeasurementTool::signalColorChanged, this,
            [this](const QColor& aColor) { entries << QStringLiteral("color=") + aColor.name(); });
    connect(aPanel, &OvGuiMeasurementTool::signalFontValueChanged, this,
            [this](int aSize) { entries << QStringLiteral("font=%1").arg(aSize); });
    connect(aPanel, &OvGuiMeasurementTool::signalWidthChanged, this,
            [this](int aWidth) { entries << QStringLiteral("width=%1").arg(aWidth); });
    connect(aPanel, &OvGuiMeasurementTool::signalUnitTypeChanged, this,
            [this](int aUnit) { entries << QStringLiteral("unit=%1").arg(aUnit); });
}

KxKernelObjectData* makeColoredObject(const QColor& aDefault, qint64 aFrame, const QColor& aFrameColor)
{
    KxParamKeyframeVector defaults(9);
    defaults[1].setValue(aDefault);
    const QVector<ParamDescr::KeyframeType> types(9, ParamDescr::KeyframeAnimated);
    KxKernelObjectData* data = new KxKernelObjectData(defaults, types, aFrameColor.isValid());
    if (aFrameColor.isValid()) {
        KxParamKeyframeVector frame(9);
        frame.setFrameNumber(aFrame);
        frame[1].setValue(aFrameColor);
        data->update(frame);
    }
    return data;
}

QImage iconImage(const QIcon& anIcon, int aSide, QIcon::Mode aMode, QIcon::State aState)
{
    return anIcon.pixmap(aSide, aSide, aMode, aState).toImage().convertToFormat(QImage::Format_ARGB32);
}

QImage resourceImage(const QString& aFile, int aSide)
{
    const QPixmap pixmap(QStringLiteral(":/tessilarresources/") + aFile);
    if (pixmap.isNull())
        return QImage();
    return pixmap.scaled(aSide, aSide, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32);
}
