#include "OvGsManipRelative.h"

#include "CmdChangeObject.h"
#include "CmdCreateObject.h"
#include "CmdRemoveObject.h"
#include "KxAppSettings.h"
#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxMediaInfo.h"
#include "OvGsDistance.h"
#include "OvGsRelativeDistance.h"
#include "OvGuiMeasurementTool.h"
#include "OvQtCompat.h"

#include <QCoreApplication>
#include <QGraphicsScene>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QtMath>

namespace {

const char* const kKeyDistanceAllowedAsBase = "DistanceAllowedAsBase";
const char* const kVectorKey = "vec";
const char* const kRoleKey = "role";
const char* const kBaseKey = "base";
const char* const kLineKey = "line";
const int kRoleLine = 0;
const int kRoleBase = 1;
const QPointF kClickVector(15.0, -15.0);
const QSize kActiveImageSize(20, 20);

QPixmap activeImage(const QString& aPath)
{
    return QPixmap(aPath).scaled(kActiveImageSize, Qt::IgnoreAspectRatio, Qt::FastTransformation);
}

double lengthOf(const QPointF& aVector)
{
    return qSqrt(aVector.x() * aVector.x() + aVector.y() * aVector.y());
}

QPoint rounded(const QPointF& aPoint)
{
    return QPoint(OvQtCompat::round(aPoint.x()), OvQtCompat::round(aPoint.y()));
}

} // namespace

// While one lives, bases not known already are looked up by one walk over
// the items at most (the first lookup that needs it), however many lines ask.
class OvGsManipRelative::BaseLookup
{
public:
    explicit BaseLookup(OvGsManipRelative* aManipulator)
        : manipulator(aManipulator)
        , outer(aManipulator->baseCache)
    {
        if (!outer)
            manipulator->baseCache = this;
    }
    ~BaseLookup()
    {
        if (!outer)
            manipulator->baseCache = nullptr;
    }
    BaseLookup(const BaseLookup&) = delete;
    BaseLookup& operator=(const BaseLookup&) = delete;

    KxGsObject* find(const QString& aName)
    {
        if (!scanned) {
            manipulator->scanBases(&names);
            scanned = true;
        }
        return names.value(aName);
    }

private:
    OvGsManipRelative* manipulator;
    BaseLookup* outer;
    QHash<QString, KxGsObject*> names;
    bool scanned = false;
};

OvGsManipRelative::OvGsManipRelative(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack,
                                     const Kind& aKind, const char* aLinePattern, int& aCounter,
                                     const QString& anOffImage, const QString& anOnImage)
    : OvGsManipFrame(aToolBase, aPanel, anUndoStack, aKind)
    , creatingBase(false)
    , distanceAllowedAsBase(false)
    , linePattern(aLinePattern)
    , counter(aCounter)
    , activeOff(activeImage(anOffImage))
    , activeOn(activeImage(anOnImage))
    , baseCache(nullptr)
{
}

OvGsManipRelative::~OvGsManipRelative() = default;

void OvGsManipRelative::initManipulatorDone()
{
    // A value stored before start-up is kept, so the setting can be switched
    // on in the settings file; only a missing one is written as off.
    if (!KxAppSettings::contains(QString::fromLatin1(kKeyDistanceAllowedAsBase)))
        KxAppSettings::setValue(QString::fromLatin1(kKeyDistanceAllowedAsBase), distanceAllowedAsBase);
}

OvGsManipFrame::Kind OvGsManipRelative::relativeKind(const char* aContext, int anObjectType, const char* aTypeName,
                                                     const char* aValueName, QMetaType::Type aGeometryType,
                                                     int aVariant)
{
    Kind kind = standardKind(aContext, anObjectType, aTypeName, { aValueName }, "len", aGeometryType, DistanceButton);
    kind.freehandTypes = 1u << aVariant;
    // The distance button's slot is the plain distance's.
    kind.drawButtonSlot = nullptr;
    kind.removalSignal = SIGNAL(signalObjectBeforeRemove(const int, const int));
    kind.removalSlot = SLOT(slotObjectBeforeRemoveInKernel(int, int));
    kind.followsMediaAndTool = false;
    kind.noUnitIsAuto = true;
    return kind;
}

void OvGsManipRelative::initRelative()
{
    distanceAllowedAsBase = KxAppSettings::value(QString::fromLatin1(kKeyDistanceAllowedAsBase), QVariant()).toBool();
    connect(KxAppSettings::getInstance(), &KxAppSettings::signalValueSet, this,
            [this](const QString& aKey, const QVariant& aValue) {
                if (aKey == QLatin1String(kKeyDistanceAllowedAsBase))
                    distanceAllowedAsBase = aValue.toBool();
            });
}

bool OvGsManipRelative::isDistanceAllowedAsBase() const
{
    return distanceAllowedAsBase;
}

int OvGsManipRelative::getConnectedObjectType() const
{
    return distanceAllowedAsBase ? kDistanceType : kNoConnectedType;
}

bool OvGsManipRelative::isOwnLine(const KxGsObject* anObj) const
{
    return anObj && anObj->type() == kind.objectType;
}

OvGsRelativeDistance* OvGsManipRelative::getInProgressLine() const
{
    return inProgress;
}

bool OvGsManipRelative::isCreatingBase() const
{
    return creatingBase;
}

QPointF OvGsManipRelative::getBaseStart() const
{
    return baseStart;
}

QPointF OvGsManipRelative::getBaseEnd() const
{
    return baseEnd;
}

KxGsObject* OvGsManipRelative::getInProgressItem() const
{
    return inProgress;
}

void OvGsManipRelative::forgetInProgressItem()
{
    inProgress = nullptr;
}

QPixmap& OvGsManipRelative::offPixmap()
{
    return activeOff;
}

QPixmap& OvGsManipRelative::onPixmap()
{
    return activeOn;
}

QString OvGsManipRelative::baseText() const
{
    return QCoreApplication::translate(kind.context, "base");
}

bool OvGsManipRelative::takeBase(const KxGsObject* aBase)
{
    if (!aBase)
        return false;
    const OvGsDistance* line = nullptr;
    if (aBase->type() == getConnectedObjectType())
        line = static_cast<const OvGsDistance*>(aBase);
    else if (isOwnLine(aBase) && static_cast<const OvGsRelativeDistance*>(aBase)->isBase)
        line = static_cast<const OvGsRelativeDistance*>(aBase);
    if (!line)
        return false;
    baseStart = line->pos();
    baseEnd = line->pos() + line->vector;
    return true;
}

QString OvGsManipRelative::findSelectedDistance()
{
    const KxGsObject* current = editor->getCurrentObject();
    if (!takeBase(current))
        return QString();
    return static_cast<const OvGsDistance*>(current)->lineName;
}

KxGsObject* OvGsManipRelative::findBase(const QString& aName) const
{
    if (aName.isEmpty())
        return nullptr;
    // Bases of this kind seen before answer at once while they still are what
    // they were; anything else costs one scan, which remembers every base.
    const QPointer<OvGsRelativeDistance> known = knownBases.value(aName);
    if (known && known->isBase && known->lineName == aName && known->getEditor() == editor.data()
        && !known->isDiscarded())
        return known.data();
    if (baseCache)
        return baseCache->find(aName);
    QHash<QString, KxGsObject*> names;
    scanBases(&names);
    return names.value(aName);
}

void OvGsManipRelative::scanBases(QHash<QString, KxGsObject*>* aNames) const
{
    // The first item of a name wins, in the editor's order.
    const int connected = getConnectedObjectType();
    for (KxGsObject* obj : editor->getAllChildGsObjects()) {
        QString name;
        if (obj->type() == connected) {
            name = static_cast<OvGsDistance*>(obj)->lineName;
        } else if (isOwnLine(obj) && static_cast<OvGsRelativeDistance*>(obj)->isBase) {
            auto* line = static_cast<OvGsRelativeDistance*>(obj);
            knownBases.insert(line->lineName, line);
            name = line->lineName;
        }
        if (!name.isEmpty() && !aNames->contains(name))
            aNames->insert(name, obj);
    }
}

void OvGsManipRelative::placeOnBase(OvGsRelativeDistance* aLine)
{
    const QPointF start = aLine->pos();
    const QPointF end = findEndPoint(start);
    aLine->setPos(start);
    aLine->setVector(end - start);
    showLineValue(aLine, -1, valueNames.value(0));
    aLine->update();
    aLine->ensureLabelVisible();
}

void OvGsManipRelative::refreshObject(KxGsObject* anObj)
{
    if (!isOwnLine(anObj))
        return;
    auto* line = static_cast<OvGsRelativeDistance*>(anObj);
    if (line->baseName.isEmpty())
        return;
    if (takeBase(findBase(line->baseName)))
        placeOnBase(line);
}

void OvGsManipRelative::markBase(OvGsRelativeDistance* aLine)
{
    aLine->setUseActiveButton(true);
    aLine->allowActiveVisible(true, activeOff, activeOn);
    aLine->makeAllActiveGray();
    aLine->setActivePressed(true);
}

bool OvGsManipRelative::onActiveButton(const QPointF& aPoint, bool aPress)
{
    // Only items showing their button can be hit; where buttons overlap, the
    // first in the editor's order of items wins.
    QList<KxGsObject*> hits;
    for (OvGsObject* obj : OvGsObject::objectsShowingActiveButton()) {
        if (obj->getEditor() != editor || obj->isDiscarded() || !isOwnLine(obj))
            continue;
        auto* line = static_cast<OvGsRelativeDistance*>(obj);
        if (line->isPointOnActiveButton(line->mapFromParent(aPoint)))
            hits.append(line);
    }
    if (hits.size() > 1) {
        QList<KxGsObject*> ordered;
        for (KxGsObject* obj : editor->getAllChildGsObjects()) {
            if (hits.contains(obj))
                ordered.append(obj);
        }
        hits = ordered;
    }
    for (KxGsObject* obj : qAsConst(hits)) {
        auto* line = static_cast<OvGsRelativeDistance*>(obj);
        if (aPress) {
            const bool pressed = !line->getActivePressed();
            line->makeAllActiveGray();
            line->setActivePressed(pressed);
            if (pressed)
                editor->setCurrentObject(line, false);
            else
                clearCurrentObjectKeepingTool();
        }
        return true;
    }
    return false;
}

void OvGsManipRelative::makeAllActive()
{
    clearCurrentObjectKeepingTool();
    for (KxGsObject* obj : editor->getAllChildGsObjects()) {
        if (!isOwnLine(obj))
            continue;
        auto* line = static_cast<OvGsRelativeDistance*>(obj);
        if (line->getUseActiveButton()) {
            line->allowActiveVisible(true);
            if (line->getActivePressed())
                editor->setCurrentObject(line, false);
        } else {
            line->allowActiveVisible(false);
        }
    }
}

void OvGsManipRelative::makeAllNotActive()
{
    for (KxGsObject* obj : editor->getAllChildGsObjects()) {
        if (isOwnLine(obj))
            static_cast<OvGsRelativeDistance*>(obj)->allowActiveVisible(false);
    }
}

void OvGsManipRelative::activate()
{
    OvGsManipFrame::activate();
    makeAllActive();
}

void OvGsManipRelative::deactivate()
{
    OvGsManipFrame::deactivate();
    makeAllNotActive();
}

OvGsRelativeDistance* OvGsManipRelative::createInProgressLine(const QString& aBaseName)
{
    OvGsRelativeDistance* item = newLine(getObjectTypeName(0), QString::fromLatin1(linePattern).arg(counter++));
    item->manipulator = this;
    item->isBase = creatingBase;
    item->baseName = aBaseName;
    dressNewItem(item, Qt::SolidLine);
    item->setPos(startPoint);
    item->setVector(endPoint - startPoint);
    item->setLabelPos(QPointF(10.0, -10.0));
    item->ensureLabelVisible();
    item->allowTrashVisible(false);
    item->setUseActiveButton(creatingBase);
    item->allowActiveVisible(creatingBase, activeOff, activeOn);
    if (creatingBase) {
        item->makeAllActiveGray();
        item->setActivePressed(true);
    }
    return item;
}

void OvGsManipRelative::mousePressEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->ignore();
    if (anEvent->button() != Qt::LeftButton)
        return;
    // With a line under way the press finishes it first: toggling a base then
    // would leave that line neither stored nor discarded.
    if (!inProgress && onActiveButton(anEvent->pos(), true))
        return;
    if (inProgress) {
        if (isLocalMagnifier())
            removeLocalMagnifier();
        finalizeDistance();
        inProgress = nullptr;
        return;
    }

    creatingBase = false;
    startPoint = anEvent->pos();
    const QString baseName = findSelectedDistance();
    if (baseName.isEmpty()) {
        creatingBase = true;
        endPoint = startPoint + kClickVector;
    } else {
        endPoint = findEndPoint(startPoint);
    }
    inProgress = createInProgressLine(baseName);
    updateDisplayValue(inProgress, valueNames.value(0), false, true);
    if (!isLocalMagnifier())
        showMagnifierAt(anEvent->pos());
    anEvent->accept();
}

void OvGsManipRelative::followMouse(const QPointF& aPos)
{
    if (creatingBase) {
        endPoint = aPos;
    } else {
        startPoint = aPos;
        endPoint = findEndPoint(startPoint);
    }
    inProgress->setPos(startPoint);
    inProgress->setVector(endPoint - startPoint);
    updateDisplayValue(inProgress, valueNames.value(0), false, true);
    inProgress->ensureLabelVisible();
}

void OvGsManipRelative::mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->accept();
    if (!editor->getEditorArea().contains(anEvent->pos()))
        return;
    moveMagnifier(anEvent->pos(), anEvent->scenePos());
    if (inProgress) {
        followMouse(anEvent->pos());
        if (creatingBase)
            markBase(inProgress);
    }
    moveMagnifier(anEvent->pos(), anEvent->scenePos());
}

void OvGsManipRelative::mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->accept();
    if (!inProgress)
        return;
    if (creatingBase) {
        endPoint = anEvent->pos();
        editor->setCurrentObject(inProgress, false);
        markBase(inProgress);
    } else {
        startPoint = anEvent->pos();
        endPoint = findEndPoint(startPoint);
    }
    const QPointF span = endPoint - startPoint;
    if (float(lengthOf(span)) >= 1.0f) {
        inProgress->setPos(startPoint);
        inProgress->setVector(span);
        updateDisplayValue(inProgress, valueNames.value(0), false, true);
        inProgress->ensureLabelVisible();
        finalizeDistance();
        inProgress = nullptr;
    } else {
        endPoint = startPoint + kClickVector;
    }
}

void OvGsManipRelative::hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent)
{
    // A line under way follows the pointer over any active button, its own
    // included (a press there finishes the line, as anywhere else).
    if (!inProgress && onActiveButton(anEvent->pos(), false)) {
        showLocalMagnifier(false);
        anEvent->accept();
        return;
    }
    showLocalMagnifier(true);
    OvGsManipFrame::hoverMoveEvent(anEvent);
}

void OvGsManipRelative::hoverMoveInProgress(QGraphicsSceneHoverEvent* anEvent)
{
    // A measured line under way waits for the next press or drag.
    if (!inProgress || !creatingBase)
        return;
    endPoint = anEvent->pos();
    inProgress->setPos(startPoint);
    inProgress->setVector(endPoint - startPoint);
    updateDisplayValue(inProgress, valueNames.value(0), false, true);
    inProgress->ensureLabelVisible();
}

void OvGsManipRelative::finalizeDistance()
{
    OvGsRelativeDistance* item = inProgress;
    if (!item)
        return;
    // Stored positions are whole pixels: the line starts on one, and a
    // measured line is placed on its base from there.
    const QPointF start = rounded(item->pos());
    const QPointF end = creatingBase ? item->pos() + item->vector : findEndPoint(start);
    item->setPos(start);
    item->setVector(end - start);
    const int index = adoptFinishedItem(item);
    item->allowActiveVisible(creatingBase, activeOff, activeOn);
    if (creatingBase) {
        item->makeAllActiveGray();
        item->setActivePressed(true);
    }
    // The label shows the stored text and takes its final place before that
    // place is stored.
    showLineValue(item, -1, valueNames.value(0));
    item->ensureLabelVisible();
    KxParamKeyframeVector keyframes = createObjectKeyframes(item, storedGeometry(item));
    putLineFacts(keyframes, item);
    auto* data = new KxKernelObjectData(keyframes, getDescriptor()->getKeyframeTypes(), false);
    pushOwnCommand(new CmdCreateObject(kind.objectType, index, data));
    showStoredObject(item);
    changeAnimationGsObject(item, kernelData->getMediaInfo().isVideoFile(), false, false);
}

KxParamKeyframeVector OvGsManipRelative::lineKeyframes(OvGsRelativeDistance* aLine)
{
    refreshObject(aLine);
    const KxKernelObjectDataDescr* descr = getDescriptor();
    KxParamKeyframeVector keyframes = descr->createKeyframeVector();
    keyframes[3].setValue(rounded(aLine->pos()) + getViewOrigin());
    descr->setValue(keyframes, QString::fromLatin1(kind.geometryKey), storedGeometry(aLine));
    keyframes[kLabelPosParam].setValue(aLine->getLabelPos());
    putLineFacts(keyframes, aLine);
    return keyframes;
}

bool OvGsManipRelative::writeLine(OvGsRelativeDistance* aLine, const KxParamKeyframeVector& aKeyframes)
{
    if (!writeChange(aLine, aKeyframes, true))
        return false;
    // The change notification was blocked: the item takes what was stored.
    showStoredObject(aLine);
    return true;
}

void OvGsManipRelative::putLineFacts(KxParamKeyframeVector& aKeyframes, const OvGsRelativeDistance* aLine) const
{
    const KxKernelObjectDataDescr* descr = getDescriptor();
    descr->setValue(aKeyframes, QString::fromLatin1(kVectorKey), aLine->vector);
    descr->setValue(aKeyframes, QString::fromLatin1(kRoleKey), aLine->isBase ? kRoleBase : kRoleLine);
    descr->setValue(aKeyframes, QString::fromLatin1(kBaseKey), aLine->baseName);
    descr->setValue(aKeyframes, QString::fromLatin1(kLineKey), aLine->lineName);
}

void OvGsManipRelative::writeLinesOf(const QString& aBaseName)
{
    if (aBaseName.isEmpty() || !kernelData->commandsAllowed())
        return;
    const QMap<int, KxGsObject*> objects = gsObjectMap;
    for (KxGsObject* obj : objects) {
        auto* line = static_cast<OvGsRelativeDistance*>(obj);
        if (!line->isBase && line->baseName == aBaseName)
            writeLine(line, lineKeyframes(line));
    }
}

void OvGsManipRelative::gsObjectChangedShape(KxGsObject* anObj)
{
    if (!isOwnLine(anObj) || getObjectIdx(anObj) < 0)
        return;
    auto* line = static_cast<OvGsRelativeDistance*>(anObj);
    const BaseLookup lookup(this);
    const KxParamKeyframeVector keyframes = lineKeyframes(line);
    // A click that moved nothing writes nothing, neither for the base nor
    // for its lines.
    if (!changesStore(line, keyframes))
        return;
    if (!line->isBase) {
        writeLine(line, keyframes);
        return;
    }
    // The base and the lines placed on it again are one step.
    undoStack->beginMacro(tr("Move %1").arg(kernelData->getObjectDescription(kind.objectType, getObjectIdx(line))));
    writeLine(line, keyframes);
    writeLinesOf(line->lineName);
    undoStack->endMacro();
}

void OvGsManipRelative::updateDisplayValue(KxGsObject* anObj, const QString& aValueName, bool aStored, bool aRepaint)
{
    if (!anObj)
        return;
    if (isOwnLine(anObj)) {
        auto* line = static_cast<OvGsRelativeDistance*>(anObj);
        showLineValue(line, aStored ? getObjectIdx(anObj) : -1, aValueName);
        if (aStored)
            line->setDisplayedValueName(aValueName);
        if (aRepaint)
            line->update();
    } else {
        KxGsManipulator::updateDisplayValue(anObj, aValueName, aStored, aRepaint);
    }
    if (aRepaint && editor && editor->scene())
        editor->scene()->update(QRectF());
}

void OvGsManipRelative::objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData)
{
    if (aType != kind.objectType || !aData || gsObjectMap.contains(anIdx))
        return;
    OvGsRelativeDistance* item = newLine(QString(), QString());
    item->manipulator = this;
    dressStoredItem(item, anIdx, aData->getKeyframesAt(kernelData->getCurrentFrame()));
    if (item->isBase) {
        item->setUseActiveButton(true);
        const KxGsEditor* current = KxGsEditor::existingInstance();
        const bool toolActive = current && current->getOverrideManipulator() == this;
        item->allowActiveVisible(toolActive, activeOff, activeOn);
    }
    gsObjectMap.insert(anIdx, item);
    showLineValue(item, anIdx, valueNames.value(0));
}

void OvGsManipRelative::applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                                            const QPoint& anOrigin)
{
    auto* line = static_cast<OvGsRelativeDistance*>(anItem);
    const KxKernelObjectDataDescr* descr = getDescriptor();
    const QVariant geometry = descr->getValue(aKeyframes, QString::fromLatin1(kind.geometryKey));
    const QVariant role = descr->getValue(aKeyframes, QString::fromLatin1(kRoleKey));
    const QVariant lineName = descr->getValue(aKeyframes, QString::fromLatin1(kLineKey));
    const QVariant vector = descr->getValue(aKeyframes, QString::fromLatin1(kVectorKey));
    // Objects from files written before these facts were stored: a zero
    // "len" marks a base, the line gets a fresh name and no base.
    line->isBase = role.isValid() ? role.toInt() == kRoleBase : geometry.toPointF().isNull();
    line->baseName = line->isBase ? QString() : descr->getValue(aKeyframes, QString::fromLatin1(kBaseKey)).toString();
    if (!lineName.toString().isEmpty()) {
        line->lineName = lineName.toString();
        reserveLineName(line->lineName);
    } else if (line->lineName.isEmpty()) {
        line->lineName = QString::fromLatin1(linePattern).arg(counter++);
    }
    line->setPos(keyframeValue(aKeyframes, 3).toPoint() - anOrigin);
    if (!vector.toPointF().isNull())
        line->setVector(vector.toPointF());
    else
        applyLineGeometry(line, geometry);
}

void OvGsManipRelative::reserveLineName(const QString& aName)
{
    // Names drawn later in this session must not repeat a stored one.
    const QString prefix = QString::fromLatin1(linePattern).arg(QString());
    if (!aName.startsWith(prefix))
        return;
    bool ok = false;
    const int number = aName.mid(prefix.size()).toInt(&ok);
    if (ok && number >= counter)
        counter = number + 1;
}

void OvGsManipRelative::objectChangedInKernel(int aType, int anIdx, const KxKernelObjectData* aData)
{
    // Undo, redo and history jumps bring back the stored state whole; the
    // lines on a base have steps of their own, in the same macro.
    if (aType == kind.objectType && aData) {
        if (KxGsObject* obj = gsObjectMap.value(anIdx)) {
            showStoredState(static_cast<OvGsRelativeDistance*>(obj),
                            aData->getKeyframesAt(kernelData->getCurrentFrame()));
            if (editor->getCurrentObject() == obj)
                updateGuiFromObjectData(aData);
        }
    }
    // A plain distance serving as base was moved or reshaped by the user:
    // its lines follow, in the step that changes it.
    KxGsObject* current = editor->getCurrentObject();
    if (aType == getConnectedObjectType() && current && current->type() == aType && kernelData->commandsAllowed()) {
        const BaseLookup lookup(this);
        writeLinesOf(static_cast<OvGsDistance*>(current)->lineName);
    }
}

void OvGsManipRelative::recreateGraphicsObjects(QPoint anOrigin, qint64 aFrame, bool aForce)
{
    const BaseLookup lookup(this);
    OvGsManipFrame::recreateGraphicsObjects(anOrigin, aFrame, aForce);
}

void OvGsManipRelative::describeExtraParams(KxKernelObjectDataDescr* aDescr) const
{
    aDescr->addParamDescr(kVectorParam, QString::fromLatin1(kVectorKey), QMetaType::QPointF,
                          ParamDescr::KeyframeAnimated);
    aDescr->addParamDescr(kRoleParam, QString::fromLatin1(kRoleKey), QMetaType::Int, ParamDescr::KeyframeConstant);
    aDescr->addParamDescr(kBaseNameParam, QString::fromLatin1(kBaseKey), QMetaType::QString,
                          ParamDescr::KeyframeConstant);
    aDescr->addParamDescr(kLineNameParam, QString::fromLatin1(kLineKey), QMetaType::QString,
                          ParamDescr::KeyframeConstant);
}

void OvGsManipRelative::scaleExtraParams(KxParamKeyframeVector& aKeyframes, double aFactor) const
{
    const QVariant vector = keyframeValue(aKeyframes, kVectorParam);
    if (vector.isValid())
        aKeyframes[kVectorParam].setValue(vector.toPointF() * aFactor);
}

void OvGsManipRelative::slotObjectBeforeRemoveInKernel(int aType, int anIdx)
{
    QString removed;
    bool mayBeNamed = false;
    if (aType == kind.objectType) {
        if (KxGsObject* obj = gsObjectMap.value(anIdx)) {
            auto* line = static_cast<OvGsRelativeDistance*>(obj);
            removed = line->lineName;
            // Only bases are named by other lines.
            mayBeNamed = line->isBase;
        }
    } else if (aType == getConnectedObjectType()) {
        KxGsManipulator* owner = kernelData->getManipulator(aType);
        KxGsObject* obj = owner ? owner->getGsObject(anIdx) : nullptr;
        if (obj && obj->type() == aType) {
            removed = static_cast<OvGsDistance*>(obj)->lineName;
            mayBeNamed = removed.contains(QLatin1String("Distance_Line_"));
        }
    } else {
        return;
    }

    if (!removed.isEmpty()) {
        if (isOwnLine(editor->getCurrentObject()) && gsObjectMap.key(editor->getCurrentObject(), -1) >= 0)
            editor->setCurrentObject(nullptr, false);
        if (mayBeNamed && kernelData->commandsAllowed()) {
            // Removing a measured line never makes another line name the
            // removed object, so one pass in index order finds what a walk
            // restarting after every removal would, in the same order.
            QList<int> dependants;
            for (auto it = gsObjectMap.cbegin(); it != gsObjectMap.cend(); ++it) {
                if (static_cast<OvGsRelativeDistance*>(it.value())->baseName == removed)
                    dependants.append(it.key());
            }
            for (int idx : dependants) {
                if (!gsObjectMap.contains(idx))
                    continue;
                pushOwnCommand(new CmdRemoveObject(kind.objectType, idx));
                dropGsObject(idx);
            }
        }
    }

    // The departing object's own item goes with it, whoever removes it.
    if (aType == kind.objectType) {
        if (gsObjectMap.contains(anIdx))
            dropGsObject(anIdx);
    }
}

OvGsManipFrame::Measure OvGsManipRelative::measureItem(const QString&, const KxGsObject* anItem) const
{
    return lengthFromPixels(lengthOf(static_cast<const OvGsRelativeDistance*>(anItem)->vector));
}

OvGsManipFrame::Measure OvGsManipRelative::measureKeyframes(const QString&,
                                                            const KxParamKeyframeVector& aKeyframes) const
{
    const QVariant geometry = getDescriptor()->getValue(aKeyframes, QString::fromLatin1(kind.geometryKey));
    return lengthFromPixels(lengthOf(geometry.toPointF()));
}
