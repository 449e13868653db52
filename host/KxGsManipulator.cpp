#include "KxGsManipulator.h"

#include "CmdChangeObject.h"
#include "CmdRemoveObject.h"
#include "KxGsObject.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxLocalMagnifier.h"
#include "KxSignalCenter.h"
#include "OvGsObject.h"
#include "OvToolBase.h"

#include <QFile>
#include <QGraphicsScene>
#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneDragDropEvent>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsSceneWheelEvent>
#include <QKeyEvent>
#include <QMetaObject>
#include <QUndoStack>

#include <algorithm>
#include <memory>

bool KxGsManipulator::theCurrentViewAnimated = false;

namespace {

QPointer<KxLocalMagnifier>& theMagnifier()
{
    static QPointer<KxLocalMagnifier> theLens;
    return theLens;
}

QString formatValue(const QVariant& aValue, const QString& aUnitName)
{
    if (!aValue.isValid())
        return QString();
    bool isNumber = false;
    const double number = aValue.toDouble(&isNumber);
    const QString text = isNumber ? QString::number(number) : aValue.toString();
    return aUnitName.isEmpty() ? text : text + QLatin1Char(' ') + aUnitName;
}

} // namespace

KxGsManipulator::KxGsManipulator(QObject* aParent, QUndoStack* anUndoStack)
    : QObject(aParent)
    , editor(KxGsEditor::getInstance())
    , undoStack(anUndoStack)
    , kernelNotifier(KxSignalCenter::getInstance())
    , kernelData(KxKernelData::getInstance())
    , blockKernelNotification(false)
{
    connect(kernelNotifier, &KxSignalCenter::signalFrameReady, this, &KxGsManipulator::slotFrameReadyInKernel);
}

KxGsManipulator::~KxGsManipulator()
{
    KxGsEditor* current = KxGsEditor::existingInstance();
    if (!current)
        return;
    if (current->getOverrideManipulator() == this)
        current->restoreOverrideManipulator();
    // Items must not outlive the manipulator they point to.
    for (KxGsObject* obj : current->getAllChildGsObjects()) {
        if (obj->getManipulator() == this)
            obj->discard();
    }
    for (KxGsObject* obj : gsObjectMap) {
        if (obj)
            obj->discard();
    }
}

int KxGsManipulator::getGsObjectFlags(KxGsObject*)
{
    return 0;
}

QList<QAction*> KxGsManipulator::getCustomActions()
{
    return QList<QAction*>();
}

QStringList KxGsManipulator::getAnimatedValueNames()
{
    return valueNames;
}

QStringList KxGsManipulator::getObjectTypeNames()
{
    return QStringList(getObjectTypeName(getObjectType()));
}

QString KxGsManipulator::getObjectTypeName(int) const
{
    return tr("Object");
}

QIcon KxGsManipulator::getIconSet(const QString& aName)
{
    if (!QFile::exists(QStringLiteral(":/tessilarresources/%1-normal.svg").arg(aName)))
        return QIcon();
    return OvToolBase::createIcon(aName, 24);
}

QIcon KxGsManipulator::getAutoCreationIconSet(const QString& aName)
{
    return getIconSet(aName);
}

QVariant KxGsManipulator::getCalculatedValue(const QString&, const KxGsObject*, QString& aUnitName)
{
    aUnitName.clear();
    return QVariant();
}

QString KxGsManipulator::getCalculatedValueAsString(const QString& aName, const KxGsObject* anObj)
{
    QString unit;
    const QVariant value = getCalculatedValue(aName, anObj, unit);
    return formatValue(value, unit);
}

QString KxGsManipulator::getCalculatedValueAsString(const QString& aName, const KxKernelObjectData* aData)
{
    QStringList units;
    const QList<QVariant> values = getCalculatedValues(QStringList(aName), aData, units);
    if (values.isEmpty())
        return QString();
    return formatValue(values.first(), units.value(0));
}

QList<QVariant> KxGsManipulator::getCalculatedValues(const QStringList& aNames, const KxKernelObjectData*,
                                                     QStringList& aUnits)
{
    aUnits.clear();
    QList<QVariant> values;
    for (int i = 0; i < aNames.size(); ++i) {
        values.append(QVariant());
        aUnits.append(QString());
    }
    return values;
}

QVariant KxGsManipulator::getAnimation(const QString&, int, QString& aUnitName)
{
    aUnitName.clear();
    return QVariant();
}

bool KxGsManipulator::allObjectsNeedRecalc()
{
    return false;
}

QString KxGsManipulator::getValueNameToDisplay(const KxGsObject* anObj)
{
    if (anObj && !anObj->getDisplayedValueName().isEmpty())
        return anObj->getDisplayedValueName();
    return valueNames.value(0);
}

int KxGsManipulator::getObjectIdx(const KxGsObject* anObj) const
{
    return anObj ? gsObjectMap.key(anObj, -1) : -1;
}

KxGsObject* KxGsManipulator::getGsObject(int anIdx)
{
    return gsObjectMap.value(anIdx, nullptr);
}

bool KxGsManipulator::hasGestureInProgress() const
{
    return false;
}

bool KxGsManipulator::cancelGesture()
{
    return false;
}

void KxGsManipulator::activate()
{
    if (editor)
        editor->setCursor(getCursor());
}

void KxGsManipulator::deactivate()
{
}

void KxGsManipulator::mousePressEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::contextMenuEvent(QGraphicsSceneContextMenuEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* anEvent)
{
    // The second click of a quick pair is a press like any other.
    mousePressEvent(anEvent);
}

void KxGsManipulator::wheelEvent(QGraphicsSceneWheelEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::keyPressEvent(QKeyEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::keyReleaseEvent(QKeyEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::dragEnterEvent(QGraphicsSceneDragDropEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::dragMoveEvent(QGraphicsSceneDragDropEvent* anEvent)
{
    anEvent->accept();
}

void KxGsManipulator::dragLeaveEvent(QGraphicsSceneDragDropEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::dropEvent(QGraphicsSceneDragDropEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::hoverEnterEvent(QGraphicsSceneHoverEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::hoverLeaveEvent(QGraphicsSceneHoverEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent)
{
    anEvent->ignore();
}

void KxGsManipulator::gestureEvent(QGestureEvent*)
{
}

void KxGsManipulator::recreateGraphicsObjects(QPoint, qint64, bool)
{
}

void KxGsManipulator::gsObjectChangedShape(KxGsObject*)
{
}

void KxGsManipulator::gsObjectMoved(KxGsObject* anObj, const QPoint& aStoredPos)
{
    setGsObjectParamValue(anObj, 3u, QVariant(aStoredPos));
}

void KxGsManipulator::gsObjectLabelMoved(KxGsObject*)
{
}

void KxGsManipulator::gsObjectParamApplied(int, int)
{
}

void KxGsManipulator::updateDisplayValue(KxGsObject* anObj, const QString& aValueName, bool aStored, bool aRepaint)
{
    if (!anObj)
        return;
    // A stored measurement shows its stored value (in its own unit); an item
    // still being drawn shows what its geometry measures now.
    const int idx = aStored ? getObjectIdx(anObj) : -1;
    const KxKernelObjectData* data = idx >= 0 ? kernelData->getObject(getObjectType(), idx) : nullptr;
    anObj->setDisplayValue(data ? getCalculatedValueAsString(aValueName, data)
                                : getCalculatedValueAsString(aValueName, anObj));
    if (aStored)
        anObj->setDisplayedValueName(aValueName);
    if (aRepaint)
        anObj->update();
}

void KxGsManipulator::contextRemoveGsObject(KxGsObject* anObj)
{
    removeGsObject(anObj);
}

void KxGsManipulator::removeGsObject(KxGsObject* anObj)
{
    if (!anObj || anObj->isDiscarded())
        return;
    const int idx = getObjectIdx(anObj);
    if (idx >= 0 && kernelData->getObject(getObjectType(), idx)) {
        if (undoStack) {
            auto* command = new CmdRemoveObject(getObjectType(), idx);
            undoStack->beginMacro(command->text());
            undoStack->push(command);
            undoStack->endMacro();
        } else {
            CmdRemoveObject command(getObjectType(), idx);
            command.redo();
        }
        // Normally the removal notification has dropped the item already.
        if (gsObjectMap.value(idx) == anObj)
            dropGsObject(idx);
        return;
    }
    if (idx >= 0)
        gsObjectMap.remove(idx);
    if (editor && editor->getCurrentObject() == anObj)
        editor->setCurrentObject(nullptr, false);
    anObj->discard();
}

bool KxGsManipulator::setGsObjectParamValue(KxGsObject* anObj, const QString& aName, const QVariant& aValue)
{
    const KxKernelObjectDataDescr* descr = kernelData->getDataDescriptor(getObjectType());
    if (!descr)
        return false;
    const int id = descr->getParamId(aName);
    if (id < 0)
        return false;
    return setGsObjectParamValue(anObj, static_cast<unsigned int>(id), aValue);
}

bool KxGsManipulator::setGsObjectParamValue(KxGsObject* anObj, unsigned int anId, const QVariant& aValue)
{
    const int idx = getObjectIdx(anObj);
    if (idx < 0)
        return false;
    const KxKernelObjectData* data = kernelData->getObject(getObjectType(), idx);
    const KxKernelObjectDataDescr* descr = kernelData->getDataDescriptor(getObjectType());
    if (!data || !descr || anId >= static_cast<unsigned int>(descr->getParamCount()))
        return false;
    // Writing what is stored already is no change, and no undo step.
    const KxParamKeyframeVector stored = data->getKeyframesAt(kernelData->getCurrentFrame());
    if (static_cast<int>(anId) < stored.size() && stored[static_cast<int>(anId)].hasValue()
        && stored[static_cast<int>(anId)].getValue() == aValue)
        return true;
    KxParamKeyframeVector values = descr->createKeyframeVector();
    values[static_cast<int>(anId)].setValue(aValue);
    if (data->animated)
        values.setFrameNumber(kernelData->getCurrentFrame());
    auto* command = new CmdChangeObject(getObjectType(), idx, values, false);
    // Undo and redo of this very write reach the manipulator, which may show
    // parameters that a kernel change in general does not touch.
    const QPointer<KxGsManipulator> self(this);
    command->setAfterApplied([self, idx, anId]() {
        if (self)
            self->gsObjectParamApplied(idx, static_cast<int>(anId));
    });
    if (undoStack) {
        undoStack->push(command);
    } else {
        command->redo();
        delete command;
    }
    return true;
}

QVariant KxGsManipulator::getGsObjectParamValue(const KxGsObject* anObj, const QString& aName)
{
    const KxKernelObjectDataDescr* descr = kernelData->getDataDescriptor(getObjectType());
    if (!descr)
        return QVariant();
    const int id = descr->getParamId(aName);
    if (id < 0)
        return QVariant();
    return getGsObjectParamValue(anObj, static_cast<unsigned int>(id));
}

QVariant KxGsManipulator::getGsObjectParamValue(const KxGsObject* anObj, unsigned int anId)
{
    const int idx = getObjectIdx(anObj);
    const KxKernelObjectData* data = idx >= 0 ? kernelData->getObject(getObjectType(), idx) : nullptr;
    if (!data)
        return QVariant();
    const KxParamKeyframeVector values = data->getKeyframesAt(kernelData->getCurrentFrame());
    if (anId >= static_cast<unsigned int>(values.size()))
        return QVariant();
    return values[static_cast<int>(anId)].getValue();
}

void KxGsManipulator::changeAnimationGsObject(KxGsObject* anObj, bool anAnimate, bool, bool)
{
    // Media with frames of its own (a picture series) animates every object,
    // whatever the caller asks: a change made on one frame must not move the
    // measurement on the others.
    const bool animate = anAnimate || kernelData->getMediaInfo().getFrameCount() > 1;
    const int idx = getObjectIdx(anObj);
    KxKernelObjectData* data = idx >= 0 ? kernelData->getObject(getObjectType(), idx) : nullptr;
    if (!data || data->animated == animate)
        return;
    data->animated = animate;
    kernelData->notifyObjectChanged(getObjectType(), idx);
}

void KxGsManipulator::editGsObject(KxGsObject* anObj, QPoint)
{
    if (editor && anObj)
        editor->setCurrentObject(anObj, false);
}

void KxGsManipulator::actionOnGsObject(KxGsObject*, QPoint, int)
{
}

void KxGsManipulator::createKeyframesFromContour(KxGsObject*, const KxCVSequence&, qint64)
{
}

int KxGsManipulator::createObjectFromContour(const KxCVSequence&, QString)
{
    return -1;
}

void KxGsManipulator::modifyObjectFromContour(const KxCVSequence&, int)
{
}

void KxGsManipulator::copyAnimKeyframes(const KxGsObject*, const QPoint&)
{
}

void KxGsManipulator::pasteAnimKeyframes(const KxGsObject*, const QPoint&)
{
}

void KxGsManipulator::constructDataObject(const QDomElement&, QProgressDialog*)
{
}

bool KxGsManipulator::claimsPress(const QPointF&)
{
    return false;
}

QCursor KxGsManipulator::getCursor() const
{
    return QCursor(Qt::ArrowCursor);
}

QUndoStack* KxGsManipulator::getUndoStack() const
{
    return undoStack;
}

bool KxGsManipulator::isLocalMagnifier()
{
    return !theMagnifier().isNull();
}

void KxGsManipulator::showLocalMagnifier(bool aShow)
{
    if (theMagnifier())
        theMagnifier()->setVisible(aShow);
}

void KxGsManipulator::updateLocalMagnifier(QPointF& aPos, QPointF aScenePos, QSize aSize)
{
    KxLocalMagnifier* lens = theMagnifier().data();
    if (!lens)
        return;
    if (aSize.width() >= 0 && aSize.height() >= 0)
        lens->setLensSize(aSize);
    if (const KxGsEditor* lensEditor = lens->getEditor()) {
        const QRectF area = lensEditor->getEditorArea();
        if (!area.isEmpty()) {
            aPos.setX(std::clamp(aPos.x(), area.left(), area.right()));
            aPos.setY(std::clamp(aPos.y(), area.top(), area.bottom()));
        }
    }
    lens->moveTo(aPos, aScenePos);
}

KxLocalMagnifier* KxGsManipulator::localMagnifier()
{
    return theMagnifier().data();
}

void KxGsManipulator::createLocalMagnifier(QPointF aPos, QSize aSize, double aScale, bool aRound, bool aCrossHair,
                                           QPoint aHotspot)
{
    removeLocalMagnifier();
    if (!editor)
        return;
    auto* lens = new KxLocalMagnifier(editor, aSize, aScale, aRound, aCrossHair, aHotspot);
    if (editor->scene())
        editor->scene()->addItem(lens);
    theMagnifier() = lens;
    updateLocalMagnifier(aPos, editor->mapToScene(aPos), QSize(-1, -1));
    lens->show();
}

void KxGsManipulator::removeLocalMagnifier()
{
    delete theMagnifier().data();
    theMagnifier() = nullptr;
}

void KxGsManipulator::dropGsObject(int anIdx)
{
    KxGsObject* obj = gsObjectMap.take(anIdx);
    if (!obj)
        return;
    if (editor && editor->getCurrentObject() == obj)
        editor->setCurrentObject(nullptr, false);
    obj->discard();
}

void KxGsManipulator::slotObjectShowValueInKernel(const int aType, const int anIdx, const QString& aValueName)
{
    if (aType != getObjectType())
        return;
    KxGsObject* obj = gsObjectMap.value(anIdx, nullptr);
    if (!obj)
        return;
    updateDisplayValue(obj, aValueName.isEmpty() ? getValueNameToDisplay(obj) : aValueName, true, true);
    // The value may have made the label wider than the room left for it.
    if (auto* measurement = dynamic_cast<OvGsObject*>(obj))
        measurement->ensureLabelVisible();
}

void KxGsManipulator::slotObjectRemovedInKernel(const int aType, const int anIdx)
{
    if (aType == getObjectType())
        dropGsObject(anIdx);
}

void KxGsManipulator::slotObjectBeforeRemoveInKernel(const int aType, const int anIdx)
{
    if (aType == getObjectType())
        dropGsObject(anIdx);
}

void KxGsManipulator::slotNewMediaReadyInKernel(const KxMediaInfo&, bool&)
{
    const QList<int> indices = gsObjectMap.keys();
    for (int idx : indices) {
        if (!kernelData->getObject(getObjectType(), idx))
            dropGsObject(idx);
    }
}

void KxGsManipulator::slotAppAboutToClose()
{
    removeLocalMagnifier();
}

void KxGsManipulator::slotGuiExpanded(bool)
{
    // Folding the panel away leaves the tool as it is.
}

void KxGsManipulator::slotToolActivated(bool anActivated)
{
    if (!anActivated && editor && editor->getOverrideManipulator() == this)
        editor->restoreOverrideManipulator();
}

void KxGsManipulator::slotFrameReadyInKernel(qint64 aFrame)
{
    static const char* const kSlot = "slotFrameReadyStopInKernel(qint64)";
    if (metaObject()->indexOfMethod(kSlot) < 0)
        return;
    QMetaObject::invokeMethod(this, "slotFrameReadyStopInKernel", Qt::DirectConnection, Q_ARG(qint64, aFrame));
}
