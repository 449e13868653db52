#pragma once

#include "KxGsObject.h"

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

class KxKernelObjectData;
class OvGuiMeasurementTool;

// A measurement item of any type id, enough for the editor's current object and selection.
class TestGsObject : public KxGsObject
{
    Q_OBJECT
public:
    explicit TestGsObject(int aType, QGraphicsItem* aParent = nullptr);
    int type() const override;
    QRectF boundingRect() const override;
    void paint(QPainter* aPainter, const QStyleOptionGraphicsItem* anOption, QWidget* aWidget) override;

private:
    int objectType;
};

// Points the settings store at a fresh file for the life of the object.
class SettingsSandbox
{
public:
    SettingsSandbox();
    ~SettingsSandbox();
    QString path() const;
    // Keys read and written inside the "Measurement" group.
    static QVariant measurement(const QString& aKey);
    static void setMeasurement(const QString& aKey, const QVariant& aValue);
    static bool hasMeasurement(const QString& aKey);

private:
    QTemporaryDir dir;
};

// Records the panel's four signals in the order they come, as "name=value".
class PanelSignalLog : public QObject
{
    Q_OBJECT
public:
    explicit PanelSignalLog(OvGuiMeasurementTool* aPanel);
    QStringList entries;
};

// A kernel object with parameters 0..8 whose colour is aDefault, and, when aFrameColor is
// valid, animated with colour aFrameColor from frame aFrame on.
KxKernelObjectData* makeColoredObject(const QColor& aDefault, qint64 aFrame = -1, const QColor& aFrameColor = QColor());

// The picture the icon shows in a mode/state, as an image, and the resource it should come from.
QImage iconImage(const QIcon& anIcon, int aSide, QIcon::Mode aMode = QIcon::Normal, QIcon::State aState = QIcon::Off);
QImage resourceImage(const QString& aFile, int aSide);
