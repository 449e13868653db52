#pragma once

#include "KxHostGlobal.h"
#include "KxGsEditor.h"
#include "KxGsObjectMap.h"
#include "KxMediaInfo.h"

#include <QCursor>
#include <QIcon>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPoint>
#include <QPointF>
#include <QPointer>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVariant>

class KxCVSequence;
class KxGsObject;
class KxKernelData;
class KxKernelObjectData;
class KxLocalMagnifier;
class KxSignalCenter;
class QAction;
class QDomElement;
class QGestureEvent;
class QGraphicsSceneContextMenuEvent;
class QGraphicsSceneDragDropEvent;
class QGraphicsSceneHoverEvent;
class QGraphicsSceneMouseEvent;
class QGraphicsSceneWheelEvent;
class QKeyEvent;
class QProgressDialog;
class QUndoStack;

// Base of the tools that turn gestures on the editor into kernel objects of
// one object type. While a manipulator is the editor's override manipulator
// it receives the editor's scene events (positions in editor-item
// coordinates). It keeps one graphics item per stored object of its type in
// gsObjectMap (kernel index -> item); an item that is not in the map is not
// stored yet and belongs to the gesture under way.
class KX_HOST_EXPORT KxGsManipulator : public QObject
{
    Q_OBJECT

public:
    KxGsManipulator(QObject* aParent, QUndoStack* anUndoStack);
    ~KxGsManipulator() override;

    // The kernel object type this manipulator registers and creates.
    virtual int getObjectType() const = 0;
    // Host capability bits for anObj (0 by default).
    virtual int getGsObjectFlags(KxGsObject* anObj);
    virtual QList<QAction*> getCustomActions();
    // The value names the items of this type can show (valueNames).
    virtual QStringList getAnimatedValueNames();
    virtual QStringList getObjectTypeNames();
    virtual QString getObjectTypeName(int anIdx) const;
    // Icons from the host artwork ":/tessilarresources/<name>-*.svg"; null
    // icon when no such artwork exists.
    virtual QIcon getIconSet(const QString& aName);
    virtual QIcon getAutoCreationIconSet(const QString& aName);
    // The named value of the item's current geometry; invalid when unknown.
    // aUnitName receives the unit's display name.
    virtual QVariant getCalculatedValue(const QString& aName, const KxGsObject* anObj, QString& aUnitName);
    // getCalculatedValue as text with its unit; empty when invalid.
    virtual QString getCalculatedValueAsString(const QString& aName, const KxGsObject* anObj);
    // The first value of getCalculatedValues() printed with QString::number
    // and its unit; empty when invalid.
    virtual QString getCalculatedValueAsString(const QString& aName, const KxKernelObjectData* aData);
    // One value per name (invalid when unknown) and one unit name per name.
    virtual QList<QVariant> getCalculatedValues(const QStringList& aNames, const KxKernelObjectData* aData,
                                                QStringList& aUnits);
    virtual QVariant getAnimation(const QString& aName, int anIdx, QString& aUnitName);
    virtual bool allObjectsNeedRecalc();
    // The value name last stored for the item by updateDisplayValue(), else
    // the first of valueNames.
    virtual QString getValueNameToDisplay(const KxGsObject* anObj);
    // The kernel index of a stored item, -1 when the item is not stored.
    virtual int getObjectIdx(const KxGsObject* anObj) const;
    virtual KxGsObject* getGsObject(int anIdx);
    // Called by the editor when the manipulator becomes / stops being the
    // override manipulator. The base sets / leaves the editor's cursor.
    virtual void activate();
    virtual void deactivate();
    // A measurement of this manipulator is unfinished (its item exists but is
    // not stored yet). Base: false.
    virtual bool hasGestureInProgress() const;
    // Escape: drops the unfinished measurement and the gesture's state;
    // nothing is stored. True when something was cancelled. Base: false.
    virtual bool cancelGesture();
    // Scene events of the editor while this is the override manipulator. The
    // base ignores them; a double click counts as a press.
    virtual void mousePressEvent(QGraphicsSceneMouseEvent* anEvent);
    virtual void mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent);
    virtual void mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent);
    virtual void contextMenuEvent(QGraphicsSceneContextMenuEvent* anEvent);
    virtual void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* anEvent);
    virtual void wheelEvent(QGraphicsSceneWheelEvent* anEvent);
    virtual void keyPressEvent(QKeyEvent* anEvent);
    virtual void keyReleaseEvent(QKeyEvent* anEvent);
    virtual void dragEnterEvent(QGraphicsSceneDragDropEvent* anEvent);
    virtual void dragMoveEvent(QGraphicsSceneDragDropEvent* anEvent);
    virtual void dragLeaveEvent(QGraphicsSceneDragDropEvent* anEvent);
    virtual void dropEvent(QGraphicsSceneDragDropEvent* anEvent);
    virtual void hoverEnterEvent(QGraphicsSceneHoverEvent* anEvent);
    virtual void hoverLeaveEvent(QGraphicsSceneHoverEvent* anEvent);
    virtual void hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent);
    virtual void gestureEvent(QGestureEvent* anEvent);
    // Re-applies the key frames of aFrame to the items (all of them when
    // aForce); anOrigin is subtracted from stored positions. Base: nothing.
    virtual void recreateGraphicsObjects(QPoint anOrigin, qint64 aFrame, bool aForce);
    // An item reports a finished reshape; derived classes write it back.
    virtual void gsObjectChangedShape(KxGsObject* anObj);
    // The editor reports a finished move of a stored item to aStoredPos (its
    // position plus the view origin). Base: writes parameter 3 in one step.
    virtual void gsObjectMoved(KxGsObject* anObj, const QPoint& aStoredPos);
    // The user let go of the item's label after dragging it. Base: nothing.
    virtual void gsObjectLabelMoved(KxGsObject* anObj);
    // A write of parameter anId of object anIdx made by setGsObjectParamValue()
    // was done, undone or redone (after the kernel's change notification).
    // Base: nothing.
    virtual void gsObjectParamApplied(int anIdx, int anId);
    // Sets the item's display value. With aStored and the item's object in
    // the kernel store, the value comes from the stored data (its own unit);
    // otherwise from the item's geometry. With aStored the name also becomes
    // the one getValueNameToDisplay() returns; with aRepaint the item is
    // updated.
    virtual void updateDisplayValue(KxGsObject* anObj, const QString& aValueName, bool aStored, bool aRepaint);
    // The user removes an item: a stored one through an undoable
    // CmdRemoveObject (the item goes when the kernel reports the removal), an
    // unstored one at once (not current any more, deleted later). Whatever
    // other removals the notification causes (lines measured against a base)
    // land in the same undo step.
    virtual void contextRemoveGsObject(KxGsObject* anObj);
    virtual void removeGsObject(KxGsObject* anObj);
    // Writes one parameter of the item's kernel object as an undoable
    // CmdChangeObject (at the current frame when the object is animated).
    // False when the item is not stored or the parameter is unknown.
    virtual bool setGsObjectParamValue(KxGsObject* anObj, const QString& aName, const QVariant& aValue);
    virtual bool setGsObjectParamValue(KxGsObject* anObj, unsigned int anId, const QVariant& aValue);
    // The parameter of the item's kernel object at the current frame; invalid
    // when not stored or unknown.
    virtual QVariant getGsObjectParamValue(const KxGsObject* anObj, const QString& aName);
    virtual QVariant getGsObjectParamValue(const KxGsObject* anObj, unsigned int anId);
    // Sets the kernel object's animated flag (the other flags are unused);
    // on media with more than one frame objects are always animated.
    virtual void changeAnimationGsObject(KxGsObject* anObj, bool anAnimate, bool aKeepKeyframes, bool aRecreate);
    // Base: makes the item the editor's current object.
    virtual void editGsObject(KxGsObject* anObj, QPoint aPos);
    // The hooks below serve contour tracking, key-frame clipboard and project
    // files, which this host does not offer; the base does nothing.
    virtual void actionOnGsObject(KxGsObject* anObj, QPoint aPos, int anAction);
    virtual void createKeyframesFromContour(KxGsObject* anObj, const KxCVSequence& aContour, qint64 aFrame);
    // -1: no object created.
    virtual int createObjectFromContour(const KxCVSequence& aContour, QString aValueName);
    virtual void modifyObjectFromContour(const KxCVSequence& aContour, int anIdx);
    virtual void copyAnimKeyframes(const KxGsObject* anObj, const QPoint& aPos);
    virtual void pasteAnimKeyframes(const KxGsObject* anObj, const QPoint& aPos);
    virtual void constructDataObject(const QDomElement& anElement, QProgressDialog* aProgress);
    virtual QCursor getCursor() const;
    // Asked by the editor, while this is its override manipulator, before a
    // press goes to the stored measurement under the mouse: true makes the
    // press this manipulator's. aPos in editor-item coordinates. Base: false.
    virtual bool claimsPress(const QPointF& aPos);

    QUndoStack* getUndoStack() const;

    // The one local magnifier shared by all manipulators.
    static bool isLocalMagnifier();
    static void showLocalMagnifier(bool aShow);
    // Moves the magnifier: aPos (editor-item coordinates) is the picture point
    // shown at its centre, clamped into the picture and written back; the lens
    // follows the cursor at aScenePos. QSize(-1, -1) keeps the lens size.
    static void updateLocalMagnifier(QPointF& aPos, QPointF aScenePos, QSize aSize);
    // The magnifier as it stands, null when none exists (for inspection).
    static KxLocalMagnifier* localMagnifier();

    static bool theCurrentViewAnimated;

public slots:
    void slotObjectShowValueInKernel(const int aType, const int anIdx, const QString& aValueName);
    void slotObjectRemovedInKernel(const int aType, const int anIdx);
    void slotObjectBeforeRemoveInKernel(const int aType, const int anIdx);
    // Drops items whose kernel object is gone (new media replaces them all).
    void slotNewMediaReadyInKernel(const KxMediaInfo& anInfo, bool& aFlag);
    void slotAppAboutToClose();
    void slotGuiExpanded(bool anExpanded);
    // false: when this is the editor's override manipulator, the editor goes
    // back to its default (no manipulator).
    void slotToolActivated(bool anActivated);

protected:
    // Creates and shows the magnifier (replacing any existing one): a lens of
    // aSize screen pixels showing the picture around aPos (editor-item
    // coordinates) enlarged aScale times, round or square, with or without a
    // cross-hair, its centre aHotspot screen pixels right of and below the
    // cursor.
    void createLocalMagnifier(QPointF aPos, QSize aSize, double aScale, bool aRound, bool aCrossHair,
                              QPoint aHotspot);
    void removeLocalMagnifier();

    // Takes a mapped item out of the map and the editor's selection and
    // deletes it safely (it may be inside its own event handler).
    void dropGsObject(int anIdx);

    // Guarded: null once the editor is gone.
    QPointer<KxGsEditor> editor;
    QUndoStack* undoStack;
    KxSignalCenter* kernelNotifier;
    KxKernelData* kernelData;
    QStringList valueNames;
    KxGsObjectMap gsObjectMap;
    bool blockKernelNotification;

private slots:
    void slotFrameReadyInKernel(qint64 aFrame);
};
