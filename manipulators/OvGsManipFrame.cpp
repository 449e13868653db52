#include "OvGsManipFrame.h"

#include "CmdChangeObject.h"
#include "CmdCreateObject.h"
#include "KxAppSettings.h"
#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxMediaInfo.h"
#include "KxSignalCenter.h"
#include "KxView.h"
#include "OvDeviceSetManager.h"
#include "OvGsObject.h"
#include "OvGuiMeasurementTool.h"
#include "OvQtCompat.h"
#include "OvToolBase.h"

#include <QPointer>
#include <QCoreApplication>
#include <QGraphicsScene>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsView>
#include <QPolygon>
#include <QPolygonF>
#include <QScopeGuard>
#include <QSignalBlocker>
#include <QToolButton>
#include <QUndoCommand>
#include <QUndoStack>

namespace {

const int kGsObjectFlags = 0x69D;
// Parameters 0 to 8 as every kind shares them, then the label position.
const int kParamCount = 9;
const char* const kLabelPosKey = "lp";
const QSize kDefaultMagnifierSize(180, 180);
const double kDefaultMagnifierScale = 2.0;
const char* const kKeyMagnifierSize = "MagnifierSize";
const char* const kKeyMagnifierScale = "MagnifierScale";
const char* const kKeyLabelsVisible = "MeasurementLabelsVisible";
const int kDeviceCameraOrObjective = 0x180;
const int kDeviceCalibrationOrUnits = 0x600;
const int kSourceLiveCamera = 51;
const int kNoUnit = 1000;

// Garbage in the settings falls back to the defaults.
QSize magnifierSizeFrom(const QVariant& aValue)
{
    const QSize size = aValue.toSize();
    return size.isEmpty() ? kDefaultMagnifierSize : size;
}

double magnifierScaleFrom(const QVariant& aValue)
{
    bool ok = false;
    const double scale = aValue.toDouble(&ok);
    return ok && scale > 0.0 ? scale : kDefaultMagnifierScale;
}

} // namespace

OvGsManipFrame::Kind OvGsManipFrame::standardKind(const char* aContext, int anObjectType, const char* aTypeName,
                                                const QList<const char*>& aValueNames, const char* aGeometryKey,
                                                QMetaType::Type aGeometryType, DrawButton aDrawButton)
{
    Kind kind;
    kind.context = aContext;
    kind.objectType = anObjectType;
    kind.typeName = aTypeName;
    kind.valueNames = aValueNames;
    kind.geometryKey = aGeometryKey;
    kind.geometryType = aGeometryType;
    kind.drawButton = aDrawButton;
    kind.drawButtonSlot = SLOT(slotDrawButtonToggled(bool));
    kind.units = { 0, 1, 2, 5, 3, 4, 6, 7, 8 };
    kind.removalSignal = SIGNAL(signalObjectRemoved(const int, const int));
    kind.removalSlot = SLOT(slotObjectRemovedInKernel(const int, const int));
    return kind;
}

OvGsManipFrame::OvGsManipFrame(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack,
                               const Kind& aKind)
    : KxGsManipulator(nullptr, anUndoStack)
    , kind(aKind)
    , cursor(Qt::CrossCursor)
    , toolBase(aToolBase)
    , panel(aPanel)
    , magnifierScale(kDefaultMagnifierScale)
    , registered(false)
{
    Q_ASSERT(toolBase && panel);
    readMagnifierSettings();
}

OvGsManipFrame::~OvGsManipFrame() = default;

void OvGsManipFrame::initFrame()
{
    unitsToUse.clear();
    registered = initManipulator();

    KxAppSettings* settings = KxAppSettings::getInstance();
    connect(settings, &KxAppSettings::signalValueSet, this, [this](const QString& aKey, const QVariant& aValue) {
        if (aKey == QLatin1String(kKeyMagnifierScale))
            magnifierScale = magnifierScaleFrom(aValue);
        else if (aKey == QLatin1String(kKeyMagnifierSize))
            magnifierSize = magnifierSizeFrom(aValue);
    });
    connect(settings, &KxAppSettings::signalProfileChanged, this, [this]() { readMagnifierSettings(); });
}

bool OvGsManipFrame::initManipulator()
{
    KxKernelData* store = KxKernelData::getInstance();
    if (!store->registerObjectType(this, getObjectType()))
        return false;

    for (const char* name : kind.valueNames)
        valueNames.append(translated(name));

    auto* descr = new KxKernelObjectDataDescr(getObjectType(), kParamCount);
    descr->addDefaultParamsDescr();
    descr->addParamDescr(5, QString::fromLatin1(kind.geometryKey), kind.geometryType, ParamDescr::KeyframeAnimated);
    descr->addParamDescr(6, QStringLiteral("w"), QMetaType::Int, ParamDescr::KeyframeConstant);
    descr->addParamDescr(7, QStringLiteral("fs"), QMetaType::Int, ParamDescr::KeyframeConstant);
    descr->addParamDescr(8, QStringLiteral("ut"), QMetaType::Int, ParamDescr::KeyframeConstant);
    descr->addParamDescr(kLabelPosParam, QString::fromLatin1(kLabelPosKey), QMetaType::QPointF,
                         ParamDescr::KeyframeConstant);
    describeExtraParams(descr);
    if (!store->registerDataDescriptor(descr, getObjectType())) {
        delete descr;
        return false;
    }

    QObject* notifier = kernelNotifier;
    connect(notifier, SIGNAL(signalObjectShowValue(const int, const int, const QString&)),
            this, SLOT(slotObjectShowValueInKernel(const int, const int, const QString&)));
    if (kind.removalSignal && kind.removalSlot)
        connect(notifier, kind.removalSignal, this, kind.removalSlot);
    connect(notifier, SIGNAL(signalObjectCreated(const int, const int, const KxKernelObjectData*)),
            this, SLOT(slotObjectCreatedInKernel(int, int, const KxKernelObjectData*)));
    connect(notifier, SIGNAL(signalObjectChanged(const int, const int, const KxKernelObjectData*)),
            this, SLOT(slotObjectChangedInKernel(int, int, const KxKernelObjectData*)));
    connect(notifier, SIGNAL(signalCurrentResChangedByCamera(QSize, QSize)),
            this, SLOT(slotCurrentResChangedByCameraInKernel(QSize, QSize)));
    connect(editor, SIGNAL(signalCurrentObjectChanged(const KxGsObject*)),
            this, SLOT(slotCurrentObjectChangedInEditor(const KxGsObject*)));
    if (kind.followsMediaAndTool) {
        connect(notifier, SIGNAL(signalNewMediaReady(const KxMediaInfo&, bool&)),
                this, SLOT(slotNewMediaReadyInKernel(const KxMediaInfo&, bool&)));
        connect(notifier, SIGNAL(signalAppAboutToClose()), this, SLOT(slotAppAboutToClose()));
        connect(toolBase, SIGNAL(guiExpanded(bool)), this, SLOT(slotGuiExpanded(bool)));
        connect(toolBase, SIGNAL(toolActivated(bool)), this, SLOT(slotToolActivated(bool)));
    }
    connect(panel, SIGNAL(signalColorChanged(const QColor&)), this, SLOT(slotColorSelected(const QColor&)));
    connect(getDrawButton(), SIGNAL(toggled(bool)), this,
            kind.drawButtonSlot ? kind.drawButtonSlot : SLOT(slotDrawButtonToggled(bool)));
    connect(toolBase, SIGNAL(resetButtonClicked()), panel, SLOT(slotResetSettings()));
    connect(panel, SIGNAL(signalWidthChanged(int)), this, SLOT(slotWidthChanged(int)));
    connect(panel, SIGNAL(signalFontValueChanged(int)), this, SLOT(slotFontValueChanged(int)));
    connect(panel, SIGNAL(signalUnitTypeChanged(int)), this, SLOT(slotUnitChanged(int)));
    connect(OvDeviceSetManager::instance(), SIGNAL(signalDeviceSetModified(int)),
            this, SLOT(slotDeviceSetModified(int)));
    connect(KxAppSettings::getInstance(), &KxAppSettings::signalValuesModified,
            this, &OvGsManipFrame::slotSettingsModified);

    unitsToUse = kind.units;
    initManipulatorDone();
    return true;
}

void OvGsManipFrame::initManipulatorDone()
{
}

void OvGsManipFrame::describeExtraParams(KxKernelObjectDataDescr*) const
{
}

void OvGsManipFrame::scaleExtraParams(KxParamKeyframeVector&, double) const
{
}

int OvGsManipFrame::activationUnit() const
{
    return OvGuiMeasurementTool::UnitAuto;
}

void OvGsManipFrame::readMagnifierSettings()
{
    magnifierSize = magnifierSizeFrom(KxAppSettings::value(QString::fromLatin1(kKeyMagnifierSize),
                                                           kDefaultMagnifierSize));
    magnifierScale = magnifierScaleFrom(KxAppSettings::value(QString::fromLatin1(kKeyMagnifierScale),
                                                             kDefaultMagnifierScale));
}

QString OvGsManipFrame::translated(const char* aText) const
{
    return QCoreApplication::translate(kind.context, aText);
}

int OvGsManipFrame::getObjectType() const
{
    return kind.objectType;
}

int OvGsManipFrame::getGsObjectFlags(KxGsObject* anObj)
{
    return !anObj || anObj->type() == kind.objectType ? kGsObjectFlags : 0;
}

QStringList OvGsManipFrame::getObjectTypeNames()
{
    return QStringList(getObjectTypeName(0));
}

QString OvGsManipFrame::getObjectTypeName(int) const
{
    return translated(kind.typeName);
}

QString OvGsManipFrame::getModifiedTypeName(int anIdx) const
{
    // Numbers compare with 1; texts such as "true"/"false" count as booleans.
    const QVariant value = KxAppSettings::value(QString::fromLatin1(kKeyLabelsVisible), QVariant(1));
    bool isNumber = false;
    int visible = value.toInt(&isNumber);
    if (!isNumber)
        visible = value.toBool() ? 1 : 0;
    return visible < 1 ? QString() : getObjectTypeName(anIdx);
}

QString OvGsManipFrame::getItemName(int anIdx) const
{
    return getModifiedTypeName(anIdx) + QString::number(anIdx);
}

bool OvGsManipFrame::isValueName(const QString& aName) const
{
    return valueNames.contains(aName, Qt::CaseSensitive);
}

int OvGsManipFrame::itemUnit() const
{
    const int unit = panel->getCurrentUnit();
    return unitsToUse.contains(unit) ? unit : OvGuiMeasurementTool::UnitAuto;
}

OvGsManipFrame::Measure OvGsManipFrame::measureData(const QString& aName, const KxKernelObjectData* aData,
                                                    int& aUnit) const
{
    if (!aData || !isValueName(aName))
        return Measure();
    const KxParamKeyframeVector keyframes = aData->getKeyframesAt(kernelData->getCurrentFrame());
    aUnit = getDescriptor()->getValue(keyframes, QStringLiteral("ut")).toInt();
    if (kind.noUnitIsAuto && aUnit == kNoUnit)
        aUnit = OvGuiMeasurementTool::UnitAuto;
    return measureKeyframes(aName, keyframes);
}

QVariant OvGsManipFrame::getCalculatedValue(const QString& aName, const KxGsObject* anObj, QString& aUnitName)
{
    aUnitName.clear();
    if (!anObj || anObj->type() != kind.objectType || !isValueName(aName))
        return QVariant();
    const Measure measure = measureItem(aName, anObj);
    if (!measure.valid)
        return QVariant();
    auto unit = static_cast<OvGuiMeasurementTool::UnitType>(measure.unit >= 0 ? measure.unit : itemUnit());
    return panel->convertFromUm(measure.value, measure.squared, unit, aUnitName, unitsToUse);
}

QVariant OvGsManipFrame::getCalculatedValue(const QString& aName, const KxKernelObjectData* aData,
                                            QString& aUnitName)
{
    aUnitName.clear();
    int storedUnit = 0;
    const Measure measure = measureData(aName, aData, storedUnit);
    if (!measure.valid)
        return QVariant();
    auto unit = static_cast<OvGuiMeasurementTool::UnitType>(measure.unit >= 0 ? measure.unit : storedUnit);
    return panel->convertFromUm(measure.value, measure.squared, unit, aUnitName, unitsToUse);
}

QString OvGsManipFrame::getCalculatedValueAsString(const QString& aName, const KxGsObject* anObj)
{
    if (!anObj || anObj->type() != kind.objectType || !isValueName(aName))
        return QString();
    const Measure measure = measureItem(aName, anObj);
    if (!measure.valid)
        return QString();
    const int unit = measure.unit >= 0 ? measure.unit : itemUnit();
    return panel->convertFromUmAndFormat(measure.value, measure.squared,
                                         static_cast<OvGuiMeasurementTool::UnitType>(unit), unitsToUse);
}

QString OvGsManipFrame::getCalculatedValueAsString(const QString& aName, const KxKernelObjectData* aData)
{
    int storedUnit = 0;
    const Measure measure = measureData(aName, aData, storedUnit);
    if (!measure.valid)
        return QString();
    const int unit = measure.unit >= 0 ? measure.unit : storedUnit;
    return panel->convertFromUmAndFormat(measure.value, measure.squared,
                                         static_cast<OvGuiMeasurementTool::UnitType>(unit), unitsToUse);
}

QList<QVariant> OvGsManipFrame::getCalculatedValues(const QStringList& aNames, const KxKernelObjectData* aData,
                                                    QStringList& aUnits)
{
    aUnits.clear();
    QList<QVariant> values;
    for (const QString& name : aNames) {
        QString unitName;
        values.append(getCalculatedValue(name, aData, unitName));
        aUnits.append(unitName);
    }
    return values;
}

QPoint OvGsManipFrame::getMagnifierHotspot() const
{
    const int margin = qRound(10.0 * magnifierScale);
    return QPoint(magnifierSize.width() / 2 + margin, magnifierSize.height() / 2 + margin);
}

void OvGsManipFrame::showMagnifierAt(const QPointF& aPos)
{
    if (isLocalMagnifier())
        showLocalMagnifier(true);
    else
        createLocalMagnifier(aPos, magnifierSize, magnifierScale, true, true, getMagnifierHotspot());
}

QPointF OvGsManipFrame::moveMagnifier(const QPointF& aPos, const QPointF& aScenePos)
{
    QPointF pos = aPos;
    updateLocalMagnifier(pos, aScenePos, QSize(-1, -1));
    return pos;
}

void OvGsManipFrame::activate()
{
    QList<int> units = unitsToUse;
    panel->setUnitsToUse(units, kind.squaredUnits);
    panel->setCurrentUnit(activationUnit());
    editor->setCursor(cursor);
    if (ownsDrawButton()) {
        QToolButton* button = getDrawButton();
        const QSignalBlocker blocker(button);
        button->setChecked(true);
    }
    if (!isLocalMagnifier()) {
        QPointF pos;
        // A tool is mostly chosen on the panel: the lens waits until the
        // pointer comes over the picture (hoverEnterEvent shows it).
        bool overView = false;
        QGraphicsScene* scene = editor->scene();
        if (scene && !scene->views().isEmpty()) {
            QGraphicsView* view = scene->views().first();
            const QPoint cursor = view->viewport()->mapFromGlobal(QCursor::pos());
            pos = editor->mapFromScene(view->mapToScene(cursor));
            overView = view->viewport()->rect().contains(cursor) && editor->getEditorArea().contains(pos);
        }
        createLocalMagnifier(pos, magnifierSize, magnifierScale, true, true, getMagnifierHotspot());
        showLocalMagnifier(overView);
    }
}

void OvGsManipFrame::deactivate()
{
    if (ownsDrawButton()) {
        QToolButton* button = getDrawButton();
        const QSignalBlocker blocker(button);
        button->setChecked(false);
    }
    if (isLocalMagnifier())
        removeLocalMagnifier();
    if (discardInProgressItem() && !kind.clearsUnitsAfterDiscard)
        return;
    if (!editor->getCurrentObject()) {
        QList<int> none;
        panel->setUnitsToUse(none, false);
    }
}

bool OvGsManipFrame::discardInProgressItem()
{
    KxGsObject* item = getInProgressItem();
    if (!item)
        return false;
    if (editor && editor->getCurrentObject() == item)
        editor->setCurrentObject(nullptr, false);
    forgetInProgressItem();
    item->discard();
    return true;
}

bool OvGsManipFrame::hasGestureInProgress() const
{
    return getInProgressItem() != nullptr;
}

bool OvGsManipFrame::cancelGesture()
{
    const bool cancelled = discardInProgressItem();
    resetGestureState();
    return cancelled;
}

void OvGsManipFrame::resetGestureState()
{
}

void OvGsManipFrame::hoverEnterEvent(QGraphicsSceneHoverEvent* anEvent)
{
    showMagnifierAt(anEvent->pos());
    KxGsObject* item = getInProgressItem();
    if (item && editor->getCurrentObject() != item && !editor->isGsObjectFound(item))
        forgetInProgressItem();
    anEvent->accept();
}

void OvGsManipFrame::hoverLeaveEvent(QGraphicsSceneHoverEvent* anEvent)
{
    showLocalMagnifier(false);
    anEvent->accept();
}

void OvGsManipFrame::hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent)
{
    // The pointer is over the picture: the lens shows, also when the tool was
    // chosen while the pointer was elsewhere.
    showLocalMagnifier(true);
    if (kind.magnifierLeadsHover) {
        pointerMovedInProgress(moveMagnifier(anEvent->pos(), anEvent->scenePos()));
    } else {
        hoverMoveInProgress(anEvent);
        moveMagnifier(anEvent->pos(), anEvent->scenePos());
    }
    anEvent->accept();
}

void OvGsManipFrame::hoverMoveInProgress(QGraphicsSceneHoverEvent*)
{
}

void OvGsManipFrame::pointerMovedInProgress(const QPointF&)
{
}

QString OvGsManipFrame::valueNameOf(const KxGsObject*) const
{
    return valueNames.value(0);
}

void OvGsManipFrame::editGsObject(KxGsObject*, QPoint)
{
    toolBase->slotActivate(true);
}

QCursor OvGsManipFrame::getCursor() const
{
    return cursor;
}

QToolButton* OvGsManipFrame::getDrawButton() const
{
    switch (kind.drawButton) {
    case FreeFormButton:
        return panel->theFreeFormButton;
    case RadiusButton:
        return panel->theRadiusButton;
    case AngleButton:
        return panel->theAngleButton;
    case DistanceButton:
        break;
    }
    return panel->theDistanceButton;
}

bool OvGsManipFrame::ownsDrawButton() const
{
    if (kind.freehandTypes == kAnyFreehandType)
        return true;
    const int variant = panel->freehandType;
    return variant >= 0 && variant < 32 && (kind.freehandTypes & (1u << variant)) != 0;
}

bool OvGsManipFrame::isOwnItem(const KxGsObject* anObj) const
{
    if (!anObj)
        return false;
    if (anObj == getInProgressItem())
        return true;
    return anObj->type() == kind.objectType && anObj->getManipulator() == this;
}

void OvGsManipFrame::clearCurrentObjectKeepingTool()
{
    QToolButton* button = getDrawButton();
    const QSignalBlocker blocker(button);
    const bool wasChecked = button->isChecked();
    editor->setCurrentObject(nullptr, false);
    button->setChecked(wasChecked);
}

void OvGsManipFrame::drawButtonToggled(bool aChecked)
{
    if (!ownsDrawButton())
        return;
    if (aChecked)
        editor->setOverrideManipulator(this);
    else
        editor->restoreOverrideManipulator();
}

void OvGsManipFrame::slotDrawButtonToggled(bool aChecked)
{
    drawButtonToggled(aChecked);
}

QList<KxGsObject*> OvGsManipFrame::beginStyleChange(const QString& aMacroText)
{
    const QList<KxGsObject*> selection = editor->getSelectedObjects();
    if (selection.size() > 1)
        undoStack->beginMacro(aMacroText);
    return selection;
}

void OvGsManipFrame::endStyleChange(const QList<KxGsObject*>& aSelection)
{
    if (aSelection.size() > 1)
        undoStack->endMacro();
}

void OvGsManipFrame::slotColorSelected(const QColor& aColor)
{
    const QList<KxGsObject*> selection = beginStyleChange(tr("Objects color change"));
    for (KxGsObject* obj : selection) {
        if (obj->type() == kind.objectType)
            setGsObjectParamValue(obj, 1u, QVariant(aColor));
    }
    endStyleChange(selection);
}

void OvGsManipFrame::slotWidthChanged(int aWidth)
{
    const QList<KxGsObject*> selection = beginStyleChange(tr("Objects width change"));
    for (KxGsObject* obj : selection) {
        if (obj->type() != kind.objectType)
            continue;
        obj->setPenStyle(Qt::SolidLine, aWidth);
        setGsObjectParamValue(obj, QStringLiteral("w"), QVariant(aWidth));
    }
    endStyleChange(selection);
}

void OvGsManipFrame::slotFontValueChanged(int aSize)
{
    const QList<KxGsObject*> selection = beginStyleChange(tr("Objects font size change"));
    for (KxGsObject* obj : selection) {
        if (obj->type() != kind.objectType)
            continue;
        auto* item = qobject_cast<OvGsObject*>(obj);
        if (item)
            item->setLabelFontPixSize(aSize);
        if (item && kind.fontChangeEnsuresLabel)
            item->ensureLabelVisible();
        writeStyleWithLabel(obj, QStringLiteral("fs"), QVariant(aSize));
    }
    endStyleChange(selection);
}

void OvGsManipFrame::slotUnitChanged(int aUnit)
{
    const QList<KxGsObject*> selection = beginStyleChange(tr("Objects unit type change"));
    for (KxGsObject* obj : selection) {
        if (obj->type() != kind.objectType)
            continue;
        // The stored value name, not the item's own idea of it: an outer angle
        // rebuilt from the store draws its inner one.
        const QString valueName = storedValueName(obj);
        // The label takes the new unit's text and so its place before both
        // are written in one step (the panel already shows the new unit).
        if (auto* item = qobject_cast<OvGsObject*>(obj)) {
            updateDisplayValue(obj, valueName, false, false);
            item->ensureLabelVisible();
        }
        writeStyleWithLabel(obj, QStringLiteral("ut"), QVariant(aUnit));
        updateDisplayValue(obj, valueName, true, true);
    }
    endStyleChange(selection);
}

QString OvGsManipFrame::storedValueName(const KxGsObject* anObj)
{
    const QString stored = getGsObjectParamValue(anObj, 2u).toString();
    return stored.isEmpty() ? valueNameOf(anObj) : stored;
}

void OvGsManipFrame::writeStyleWithLabel(KxGsObject* anObj, const QString& aName, const QVariant& aValue)
{
    const KxKernelObjectDataDescr* descr = getDescriptor();
    KxParamKeyframeVector values = descr->createKeyframeVector();
    descr->setValue(values, aName, aValue);
    if (auto* item = qobject_cast<OvGsObject*>(anObj))
        values[kLabelPosParam].setValue(item->getLabelPos());
    writeChange(anObj, values, false);
}

bool OvGsManipFrame::writeChange(KxGsObject* anObj, KxParamKeyframeVector aValues, bool anOwn)
{
    const int index = getObjectIdx(anObj);
    const KxKernelObjectData* data = index >= 0 ? kernelData->getObject(kind.objectType, index) : nullptr;
    if (!data || !changesStore(anObj, aValues))
        return false;
    if (data->animated)
        aValues.setFrameNumber(kernelData->getCurrentFrame());
    auto* command = new CmdChangeObject(kind.objectType, index, aValues, false);
    const KxKernelObjectDataDescr* descr = getDescriptor();
    if (descr->getValue(aValues, QStringLiteral("w")).isValid()
        || descr->getValue(aValues, QStringLiteral("fs")).isValid()) {
        const QPointer<OvGsManipFrame> self(this);
        command->setAfterApplied([self, index]() {
            if (self)
                self->showStoredStyle(index);
        });
    }
    // Whatever the change makes others write (lines measured against a base)
    // joins the same step.
    undoStack->beginMacro(command->text());
    if (anOwn) {
        pushOwnCommand(command);
    } else {
        undoStack->push(command);
    }
    undoStack->endMacro();
    return true;
}

bool OvGsManipFrame::changesStore(const KxGsObject* anObj, const KxParamKeyframeVector& aValues) const
{
    const int index = getObjectIdx(anObj);
    const KxKernelObjectData* data = index >= 0 ? kernelData->getObject(kind.objectType, index) : nullptr;
    if (!data)
        return false;
    const KxParamKeyframeVector stored = data->getKeyframesAt(kernelData->getCurrentFrame());
    for (int id = 0; id < aValues.size(); ++id) {
        const QVariant value = aValues[id].getValue();
        if (value.isValid() && !sameValue(value, keyframeValue(stored, id)))
            return true;
    }
    return false;
}

bool OvGsManipFrame::sameValue(const QVariant& aValue, const QVariant& aStored)
{
    if (!aStored.isValid())
        return false;
    if (aValue.userType() == QMetaType::QPolygonF || aStored.userType() == QMetaType::QPolygonF)
        return aValue.value<QPolygonF>() == aStored.value<QPolygonF>();
    if (aValue.userType() == QMetaType::QPointF || aStored.userType() == QMetaType::QPointF)
        return aValue.toPointF() == aStored.toPointF();
    return aValue == aStored;
}

void OvGsManipFrame::applyStoredLabel(OvGsObject* anItem, const KxParamKeyframeVector& aKeyframes)
{
    const QVariant labelPos = keyframeValue(aKeyframes, kLabelPosParam);
    if (labelPos.isValid())
        anItem->setLabelPos(labelPos.toPointF());
}

void OvGsManipFrame::gsObjectMoved(KxGsObject* anObj, const QPoint& aStoredPos)
{
    if (!anObj || anObj->type() != kind.objectType)
        return;
    KxParamKeyframeVector values = getDescriptor()->createKeyframeVector();
    values[3].setValue(aStoredPos);
    // A move near the picture's edge may have pushed the label back inside.
    if (auto* item = qobject_cast<OvGsObject*>(anObj))
        values[kLabelPosParam].setValue(item->getLabelPos());
    writeChange(anObj, values, false);
}

void OvGsManipFrame::gsObjectLabelMoved(KxGsObject* anObj)
{
    auto* item = qobject_cast<OvGsObject*>(anObj);
    if (!item || anObj->type() != kind.objectType)
        return;
    KxParamKeyframeVector values = getDescriptor()->createKeyframeVector();
    values[kLabelPosParam].setValue(item->getLabelPos());
    writeChange(anObj, values, false);
}

void OvGsManipFrame::slotCurrentObjectChangedInEditor(const KxGsObject* anObj)
{
    if (anObj && isOwnItem(anObj)) {
        QList<int> units = unitsToUse;
        panel->setUnitsToUse(units, kind.squaredUnits);
        updateGuiFromObject(qobject_cast<const OvGsObject*>(anObj), getObjectIdx(anObj));
    } else if (!anObj && getInProgressItem()) {
        forgetInProgressItem();
    }
}

void OvGsManipFrame::updateGuiFromObject(const OvGsObject* anItem, int anIdx)
{
    if (const KxKernelObjectData* data = kernelData->getObject(kind.objectType, anIdx)) {
        updateGuiFromObjectData(data);
        return;
    }
    if (!anItem)
        return;
    panel->setColor(anItem->getColor());
    panel->setLineWidth(anItem->penWidth);
    panel->setFontSize(anItem->getLabelFontPixSize());
    // The unit stays; offering the units cleared its name, which comes back.
    panel->setCurrentUnit(panel->getCurrentUnit());
}

void OvGsManipFrame::updateGuiFromObjectData(const KxKernelObjectData* aData)
{
    if (!aData)
        return;
    const KxParamKeyframeVector keyframes = aData->getKeyframesAt(kernelData->getCurrentFrame());
    const KxKernelObjectDataDescr* descr = getDescriptor();
    panel->setColor(colorFromVariant(keyframeValue(keyframes, 1)));
    panel->setLineWidth(descr->getValue(keyframes, QStringLiteral("w")).toInt());
    panel->setFontSize(descr->getValue(keyframes, QStringLiteral("fs")).toInt());
    panel->setCurrentUnit(descr->getValue(keyframes, QStringLiteral("ut")).toInt());
}

void OvGsManipFrame::slotSettingsModified(const QStringList& aKeys, const QList<QVariant>&)
{
    if (!aKeys.contains(QLatin1String(kKeyLabelsVisible)))
        return;
    const QMap<int, KxGsObject*> objects = gsObjectMap;
    for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
        it.value()->setName(getItemName(it.key()));
        updateDisplayValue(it.value(), getValueNameToDisplay(it.value()), true, true);
    }
}

void OvGsManipFrame::slotDeviceSetModified(int aFlags)
{
    if (aFlags & kDeviceCameraOrObjective) {
        if (OvDeviceSetManager::instance()->getActiveCamera())
            toolBase->setEnabled(true, false);
        else if (kernelData->getMediaInfo().getParameter(KxMediaInfo::MetaImageSource).toInt() == kSourceLiveCamera)
            toolBase->setEnabled(false, true);
        return;
    }
    if (aFlags & kDeviceCalibrationOrUnits) {
        const QMap<int, KxGsObject*> objects = gsObjectMap;
        for (KxGsObject* obj : objects) {
            updateDisplayValue(obj, getValueNameToDisplay(obj), true, true);
            // A longer text must still fit inside the picture.
            static_cast<OvGsObject*>(obj)->ensureLabelVisible();
        }
    }
}

void OvGsManipFrame::slotFrameReadyStopInKernel(qint64 aFrame)
{
    if (!blockKernelNotification)
        recreateGraphicsObjects(getViewOrigin(), aFrame, theCurrentViewAnimated);
}

void OvGsManipFrame::slotObjectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData)
{
    if (blockKernelNotification)
        return;
    OvGsObject::holdLabels();
    const auto release = qScopeGuard([] { OvGsObject::releaseLabels(); });
    objectCreatedInKernel(aType, anIdx, aData);
    // Kinds build a new item from the defaults; on a series the current
    // frame's key frames win, and the label goes where it was last seen (an
    // object stored without a place keeps the one the kind gave it).
    auto* item = aType == kind.objectType && aData ? qobject_cast<OvGsObject*>(gsObjectMap.value(anIdx)) : nullptr;
    if (item)
        showStoredState(item, aData->getKeyframesAt(kernelData->getCurrentFrame()));
}

void OvGsManipFrame::slotObjectChangedInKernel(int aType, int anIdx, const KxKernelObjectData* aData)
{
    if (!blockKernelNotification)
        objectChangedInKernel(aType, anIdx, aData);
}

void OvGsManipFrame::slotCurrentResChangedByCameraInKernel(QSize anOld, QSize aNew)
{
    currentResChangedByCamera(anOld, aNew);
}

void OvGsManipFrame::currentResChangedByCamera(QSize anOld, QSize aNew)
{
    rescaleDefaultKeyframes(anOld, aNew);
}

void OvGsManipFrame::rescaleDefaultKeyframes(QSize anOld, QSize aNew)
{
    // An old width of 0 gives no ratio: the change is ignored.
    if (anOld == aNew || anOld.width() <= 0)
        return;
    const double factor = double(aNew.width()) / anOld.width();
    const QMap<int, KxKernelObjectData*> objects = kernelData->getObjectsOfType(kind.objectType);
    for (KxKernelObjectData* data : objects) {
        KxParamKeyframeVector keyframes = data->getDefaultKeyframes();
        if (keyframes.size() < kParamCount)
            continue;
        scaleKeyframes(keyframes, factor);
        data->update(keyframes);
        // Key frames of single frames of a series scale with the defaults.
        const QList<qint64> frames = data->getKeyframeNumbers();
        for (qint64 frame : frames) {
            KxParamKeyframeVector own = data->getKeyframesExactlyAt(frame);
            if (own.size() < kParamCount)
                continue;
            scaleKeyframes(own, factor);
            own.setFrameNumber(frame);
            data->update(own);
        }
    }
    recreateGraphicsObjects(getViewOrigin(), kernelData->getCurrentFrame(), true);
}

void OvGsManipFrame::scaleKeyframes(KxParamKeyframeVector& aKeyframes, double aFactor) const
{
    // Only values the vector holds are scaled (a frame's vector may hold a few).
    if (aKeyframes[3].hasValue()) {
        const QPoint pos = aKeyframes[3].getValue().toPoint();
        aKeyframes[3].setValue(QPoint(OvQtCompat::round(pos.x() * aFactor), OvQtCompat::round(pos.y() * aFactor)));
    }
    const KxKernelObjectDataDescr* descr = getDescriptor();
    const QString geometryKey = QString::fromLatin1(kind.geometryKey);
    const QVariant geometry = descr->getValue(aKeyframes, geometryKey);
    if (geometry.isValid())
        descr->setValue(aKeyframes, geometryKey, scaleGeometry(geometry, aFactor));
    // The label keeps its place relative to the scaled shape.
    const QVariant labelPos = keyframeValue(aKeyframes, kLabelPosParam);
    if (labelPos.isValid())
        aKeyframes[kLabelPosParam].setValue(labelPos.toPointF() * aFactor);
    scaleExtraParams(aKeyframes, aFactor);
}

QVariant OvGsManipFrame::scaleGeometry(const QVariant& aGeometry, double aFactor) const
{
    switch (aGeometry.userType()) {
    case QMetaType::QPoint: {
        const QPoint point = aGeometry.toPoint();
        return QPoint(OvQtCompat::round(point.x() * aFactor), OvQtCompat::round(point.y() * aFactor));
    }
    case QMetaType::QPointF:
        return aGeometry.toPointF() * aFactor;
    case QMetaType::QPolygonF: {
        QPolygonF polygon = aGeometry.value<QPolygonF>();
        for (QPointF& point : polygon)
            point *= aFactor;
        return polygon;
    }
    case QMetaType::QPolygon: {
        QPolygon polygon = aGeometry.value<QPolygon>();
        for (QPoint& point : polygon)
            point = QPoint(OvQtCompat::round(point.x() * aFactor), OvQtCompat::round(point.y() * aFactor));
        return polygon;
    }
    default:
        return aGeometry;
    }
}

KxKernelObjectDataDescr* OvGsManipFrame::getDescriptor() const
{
    return kernelData->getDataDescriptor(kind.objectType);
}

QPoint OvGsManipFrame::getViewOrigin() const
{
    const KxView* view = kernelData->getCurrentView();
    return view ? view->getOrigin() : QPoint();
}

double OvGsManipFrame::getCalibrationStep(QString& aText) const
{
    QString source;
    const KxCalibData calibration = kernelData->getCurrentCalibData(source);
    aText = calibration.text;
    return calibration.value > 0.001 ? kernelData->getCurrentImageSize().width() / calibration.value : 0.0;
}

int OvGsManipFrame::getNextObjectIndex() const
{
    return gsObjectMap.isEmpty() ? 1 : gsObjectMap.lastKey() + 1;
}

KxParamKeyframeVector OvGsManipFrame::createObjectKeyframes(const OvGsObject* anItem, const QVariant& aGeometry) const
{
    const KxKernelObjectDataDescr* descr = getDescriptor();
    KxParamKeyframeVector keyframes = descr->createKeyframeVector();
    const QPointF pos = anItem->pos();
    keyframes[0].setValue(true);
    keyframes[1].setValue(anItem->getColor());
    keyframes[2].setValue(valueNameOf(anItem));
    keyframes[3].setValue(QPoint(OvQtCompat::round(pos.x()), OvQtCompat::round(pos.y())) + getViewOrigin());
    keyframes[4].setValue(false);
    descr->setValue(keyframes, QString::fromLatin1(kind.geometryKey), aGeometry);
    keyframes[kLabelPosParam].setValue(anItem->getLabelPos());
    descr->setValue(keyframes, QStringLiteral("w"), anItem->penWidth);
    descr->setValue(keyframes, QStringLiteral("fs"), anItem->getLabelFontPixSize());
    descr->setValue(keyframes, QStringLiteral("ut"), panel->getCurrentUnit());
    return keyframes;
}

int OvGsManipFrame::adoptFinishedItem(OvGsObject* anItem)
{
    const int index = getNextObjectIndex();
    gsObjectMap.insert(index, anItem);
    anItem->setName(getItemName(index));
    anItem->allowTrashVisible(true);
    return index;
}

void OvGsManipFrame::pushOwnCommand(QUndoCommand* aCommand)
{
    const bool wasBlocked = blockKernelNotification;
    blockKernelNotification = true;
    undoStack->push(aCommand);
    blockKernelNotification = wasBlocked;
}

void OvGsManipFrame::storeNewObject(OvGsObject* anItem, int anIndex, const QVariant& aGeometry)
{
    const KxKernelObjectDataDescr* descr = getDescriptor();
    // The label shows the stored text and takes its final place before that
    // place is stored.
    updateDisplayValue(anItem, valueNameOf(anItem), false, false);
    anItem->ensureLabelVisible();
    auto* data = new KxKernelObjectData(createObjectKeyframes(anItem, aGeometry), descr->getKeyframeTypes(), false);
    pushOwnCommand(new CmdCreateObject(kind.objectType, anIndex, data));
    showStoredObject(anItem);
    changeAnimationGsObject(anItem, kernelData->getMediaInfo().isVideoFile(), false, false);
}

void OvGsManipFrame::showStoredObject(OvGsObject* anItem)
{
    const int index = getObjectIdx(anItem);
    const KxKernelObjectData* data = index >= 0 ? kernelData->getObject(kind.objectType, index) : nullptr;
    if (data)
        showStoredState(anItem, data->getKeyframesAt(kernelData->getCurrentFrame()));
}

void OvGsManipFrame::dressStoredItem(OvGsObject* anItem, int anIdx, const KxParamKeyframeVector& aKeyframes)
{
    const KxKernelObjectDataDescr* descr = getDescriptor();
    QString stepText;
    const double step = getCalibrationStep(stepText);
    anItem->setName(getItemName(anIdx));
    anItem->setColor(colorFromVariant(keyframeValue(aKeyframes, 1)));
    anItem->setVisible(keyframeValue(aKeyframes, 0).toBool());
    anItem->setAlwaysHidden(keyframeValue(aKeyframes, 4).toBool());
    applyStoredGeometry(anItem, aKeyframes, getViewOrigin());
    anItem->setPenStyle(Qt::SolidLine, descr->getValue(aKeyframes, QStringLiteral("w")).toInt());
    anItem->setStep(step, stepText);
    anItem->setLabelFontPixSize(descr->getValue(aKeyframes, QStringLiteral("fs")).toInt());
    anItem->adjustScale(editor->getZoom());
}

void OvGsManipFrame::dressNewItem(OvGsObject* anItem, Qt::PenStyle aStyle)
{
    QString stepText;
    const double step = getCalibrationStep(stepText);
    anItem->setName(getObjectTypeName(0));
    anItem->setLabelVisible(true);
    anItem->setColor(panel->getColor());
    anItem->setPenStyle(aStyle, panel->getLineWidth());
    anItem->setLabelFontPixSize(panel->getFontSize());
    anItem->setStep(step, stepText);
    anItem->adjustScale(editor->getZoom());
}

void OvGsManipFrame::showStoredState(OvGsObject* anItem, const KxParamKeyframeVector& aKeyframes)
{
    applyStoredGeometry(anItem, aKeyframes, getViewOrigin());
    applyStoredLabel(anItem, aKeyframes);
    anItem->setVisible(keyframeValue(aKeyframes, 0).toBool());
    anItem->setAlwaysHidden(keyframeValue(aKeyframes, 4).toBool());
    anItem->setColor(colorFromVariant(keyframeValue(aKeyframes, 1)));
    updateDisplayValue(anItem, keyframeValue(aKeyframes, 2).toString(), true, true);
    anItem->ensureLabelVisible();
}

void OvGsManipFrame::gsObjectParamApplied(int anIdx, int anId)
{
    const KxKernelObjectDataDescr* descr = getDescriptor();
    if (anId == descr->getParamId(QStringLiteral("w")) || anId == descr->getParamId(QStringLiteral("fs")))
        showStoredStyle(anIdx);
}

void OvGsManipFrame::showStoredStyle(int anIdx)
{
    // A kernel change in general leaves width and font size alone; doing,
    // undoing or redoing a style step must still show the stored style.
    auto* item = qobject_cast<OvGsObject*>(gsObjectMap.value(anIdx));
    const KxKernelObjectData* data = kernelData->getObject(kind.objectType, anIdx);
    if (!item || !data || blockKernelNotification)
        return;
    applyStoredStyle(item, data->getKeyframesAt(kernelData->getCurrentFrame()));
    applyStoredLabel(item, data->getKeyframesAt(kernelData->getCurrentFrame()));
    item->ensureLabelVisible();
}

void OvGsManipFrame::applyStoredStyle(OvGsObject* anItem, const KxParamKeyframeVector& aKeyframes)
{
    const KxKernelObjectDataDescr* descr = getDescriptor();
    const QVariant width = descr->getValue(aKeyframes, QStringLiteral("w"));
    if (width.isValid())
        anItem->setPenStyle(anItem->penStyle, width.toInt());
    const QVariant fontSize = descr->getValue(aKeyframes, QStringLiteral("fs"));
    if (fontSize.isValid())
        anItem->setLabelFontPixSize(fontSize.toInt());
}

void OvGsManipFrame::objectChangedInKernel(int aType, int anIdx, const KxKernelObjectData* aData)
{
    if (aType != kind.objectType || !aData)
        return;
    KxGsObject* obj = gsObjectMap.value(anIdx);
    if (!obj)
        return;
    showStoredState(static_cast<OvGsObject*>(obj), aData->getKeyframesAt(kernelData->getCurrentFrame()));
    if (editor->getCurrentObject() == obj)
        updateGuiFromObjectData(aData);
}

void OvGsManipFrame::applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                                         const QPoint& anOrigin)
{
    anItem->setPos(keyframeValue(aKeyframes, 3).toPointF() - anOrigin);
}

QVariant OvGsManipFrame::itemGeometry(const KxGsObject*) const
{
    return QVariant();
}

void OvGsManipFrame::recreateGraphicsObjects(QPoint anOrigin, qint64 aFrame, bool aForce)
{
    const QMap<int, KxKernelObjectData*> objects = kernelData->getObjectsOfType(kind.objectType);
    for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
        if (!it.value()->animated && !aForce)
            continue;
        KxGsObject* obj = gsObjectMap.value(it.key());
        if (!obj)
            continue;
        const KxParamKeyframeVector keyframes = it.value()->getKeyframesAt(aFrame);
        applyStoredGeometry(obj, keyframes, anOrigin);
        applyStoredLabel(static_cast<OvGsObject*>(obj), keyframes);
        updateDisplayValue(obj, keyframeValue(keyframes, 2).toString(), true, true);
        static_cast<OvGsObject*>(obj)->ensureLabelVisible();
    }
    editor->update();
}

void OvGsManipFrame::gsObjectChangedShape(KxGsObject* anObj)
{
    if (!anObj || anObj->type() != kind.objectType)
        return;
    const int index = gsObjectMap.key(anObj, -1);
    if (index < 0)
        return;
    const KxKernelObjectDataDescr* descr = getDescriptor();
    KxParamKeyframeVector keyframes = descr->createKeyframeVector();
    const QPointF pos = anObj->pos();
    keyframes[3].setValue(QPoint(OvQtCompat::round(pos.x()), OvQtCompat::round(pos.y())) + getViewOrigin());
    descr->setValue(keyframes, QString::fromLatin1(kind.geometryKey), itemGeometry(anObj));
    if (auto* item = qobject_cast<OvGsObject*>(anObj))
        keyframes[kLabelPosParam].setValue(item->getLabelPos());
    // A click that moved nothing writes nothing.
    if (!writeChange(anObj, keyframes, true))
        return;
    // The change notification was blocked: the item takes what was stored
    // (whole pixels), its label the stored value.
    if (auto* item = qobject_cast<OvGsObject*>(anObj))
        showStoredObject(item);
}

OvGsManipFrame::Measure OvGsManipFrame::lengthFromPixels(double aPixels) const
{
    Measure measure;
    measure.value = kernelData->getMediaInfo().calculateUmForPixels(aPixels, 0.0);
    measure.valid = measure.value > 0.0;
    return measure;
}

QVariant OvGsManipFrame::keyframeValue(const KxParamKeyframeVector& aKeyframes, int anId)
{
    return anId >= 0 && anId < aKeyframes.size() ? aKeyframes[anId].getValue() : QVariant();
}

QColor OvGsManipFrame::colorFromVariant(const QVariant& aValue)
{
    if (aValue.userType() == QMetaType::QColor)
        return aValue.value<QColor>();
    if (aValue.canConvert<QColor>())
        return aValue.value<QColor>();
    return QColor();
}

bool OvGsManipFrame::isRegistered() const
{
    return registered;
}

const QList<int>& OvGsManipFrame::getUnitsToUse() const
{
    return unitsToUse;
}

QSize OvGsManipFrame::getMagnifierSize() const
{
    return magnifierSize;
}

double OvGsManipFrame::getMagnifierScale() const
{
    return magnifierScale;
}

OvToolBase* OvGsManipFrame::getToolBase() const
{
    return toolBase;
}

OvGuiMeasurementTool* OvGsManipFrame::getPanel() const
{
    return panel;
}

const OvGsManipFrame::Kind& OvGsManipFrame::getKind() const
{
    return kind;
}
