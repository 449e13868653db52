#pragma once

#include "KxGsManipulator.h"
#include "KxParamKeyframeVector.h"

#include <QColor>
#include <QCursor>
#include <QList>
#include <QMetaType>
#include <QPoint>
#include <QPointF>
#include <QSize>
#include <QStringList>
#include <QVariant>

class KxGsObject;
class KxKernelObjectData;
class KxKernelObjectDataDescr;
class OvGsObject;
class OvGuiMeasurementTool;
class OvToolBase;
class QGraphicsSceneHoverEvent;
class QToolButton;
class QUndoCommand;
class QUndoStack;

// What every measurement manipulator shares: registration of its object type
// with the kernel store, the wiring to kernel, editor, tool entry, panel,
// device set and settings, activation with the local magnifier, the panel's
// style and unit slots, the panel update from the current object, the value
// queries and the type names.
//
// A kind of measurement derives from this class, describes its constants in a
// Kind record and implements its gesture (the mouse handlers), finalisation,
// kernel synchronisation and measurement through the hooks below. Its
// constructor must end with initFrame(): registration and the connections by
// signature text need the kind's own meta-object, which is not in place while
// this base is being constructed.
class OvGsManipFrame : public KxGsManipulator
{
    Q_OBJECT

public:
    enum DrawButton
    {
        DistanceButton,
        FreeFormButton,
        RadiusButton,
        AngleButton
    };

    // freehandTypes value of a kind that owns its draw button whatever the
    // panel's free-hand variant is.
    static const quint32 kAnyFreehandType = 0xffffffffu;
    // Parameter of every kind after the shared ones: where the label sits
    // relative to the item (item coordinates, QPointF "lp"). Unset in files
    // written before it existed: the kind then places the label as for a new
    // item.
    static const int kLabelPosParam = 9;

    // The constants of one kind. Names are untranslated texts marked with
    // QT_TRANSLATE_NOOP(context, ...) and translated in that context.
    struct Kind
    {
        const char* context = "";               // the kind's class name
        int objectType = 0;                     // kernel object type id, also the item's type()
        const char* typeName = "";
        QList<const char*> valueNames;           // in list order; the first one goes on new labels
        const char* geometryKey = "";            // parameter 5
        QMetaType::Type geometryType = QMetaType::UnknownType;
        DrawButton drawButton = DistanceButton;
        quint32 freehandTypes = kAnyFreehandType; // bit n: the button is this kind's while freehandType is n
        const char* drawButtonSlot = nullptr;    // SLOT(...) that receives the button's toggled(bool)
        QList<int> units;                        // units offered on the panel, in slider order
        bool squaredUnits = false;               // the panel shows the units squared (areas)
        const char* removalSignal = nullptr;     // SIGNAL(...) of the kernel notifier, or null for none
        const char* removalSlot = nullptr;       // SLOT(...) it goes to; a kind may declare its own
        bool followsMediaAndTool = true;         // connects new media, app close, guiExpanded, toolActivated
        bool fontChangeEnsuresLabel = true;      // a font size change keeps the label inside the area
        bool magnifierLeadsHover = false;        // a hover move goes to the magnifier first, see hoverMoveEvent
        bool clearsUnitsAfterDiscard = true;     // deactivate() offers no units also after discarding an item
        bool noUnitIsAuto = false;               // a stored "ut" of 1000 (no unit) reads as automatic
    };

    // A measured value in micrometres (square micrometres when squared). A
    // value in a unit of its own (degrees) names it in unit; it is then
    // reported in that unit whatever the panel or the stored "ut" say.
    struct Measure
    {
        bool valid = false;
        double value = 0.0;
        bool squared = false;
        int unit = -1;
    };

    // The record most kinds start from: the given names and geometry, the
    // button toggling slotDrawButtonToggled(), the length units, and removal
    // when the object leaves the store. The texts are marked with
    // QT_TRANSLATE_NOOP(aContext, ...) by the caller.
    static Kind standardKind(const char* aContext, int anObjectType, const char* aTypeName,
                           const QList<const char*>& aValueNames, const char* aGeometryKey,
                           QMetaType::Type aGeometryType, DrawButton aDrawButton);

    // aKind is copied. Reads the magnifier settings; the rest of the
    // construction happens in initFrame().
    OvGsManipFrame(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack,
                   const Kind& aKind);
    ~OvGsManipFrame() override;

    int getObjectType() const override;
    // 1693 for null or for an item of this kind, else 0.
    int getGsObjectFlags(KxGsObject* anObj) override;
    QStringList getObjectTypeNames() override;
    // The translated type name, whatever anIdx is.
    QString getObjectTypeName(int anIdx) const override;

    // Invalid unless anObj is of this kind, aName is one of the value names
    // and the kind can measure it (calibrated picture). Unit: the panel's
    // current one when offered by this kind, else automatic.
    QVariant getCalculatedValue(const QString& aName, const KxGsObject* anObj, QString& aUnitName) override;
    // As above from the key frames at the current frame, in the stored unit.
    QVariant getCalculatedValue(const QString& aName, const KxKernelObjectData* aData, QString& aUnitName);
    // The label texts of the two paths above; empty where they are invalid. A
    // kind that keeps the host's own texts overrides these and calls
    // KxGsManipulator's.
    QString getCalculatedValueAsString(const QString& aName, const KxGsObject* anObj) override;
    QString getCalculatedValueAsString(const QString& aName, const KxKernelObjectData* aData) override;
    // One value and one unit name per name, invalid and empty for unknown names.
    QList<QVariant> getCalculatedValues(const QStringList& aNames, const KxKernelObjectData* aData,
                                        QStringList& aUnits) override;

    // Offers the kind's units, checks its draw button silently and shows the
    // local magnifier under the cursor.
    void activate() override;
    // Unchecks the draw button silently, removes the magnifier and discards an
    // unfinished item.
    void deactivate() override;
    // True while the kind has an item under way.
    bool hasGestureInProgress() const override;
    // Discards the item under way (nothing is stored), then resetGestureState().
    bool cancelGesture() override;
    void hoverEnterEvent(QGraphicsSceneHoverEvent* anEvent) override;
    void hoverLeaveEvent(QGraphicsSceneHoverEvent* anEvent) override;
    // hoverMoveInProgress(), then the magnifier follows. With magnifierLeadsHover the
    // magnifier moves first and the item under way follows the point it clamped into the
    // picture, through pointerMovedInProgress().
    void hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent) override;
    // Editing a measurement activates the measurement tool.
    void editGsObject(KxGsObject* anObj, QPoint aPos) override;
    // Every item of this kind whose object is animated (all of them with
    // aForce) takes its key frames at aFrame: applyStoredGeometry() against
    // anOrigin, then the stored value name on its label, kept in the picture.
    void recreateGraphicsObjects(QPoint anOrigin, qint64 aFrame, bool aForce) override;
    // Writes the reshaped or moved item of this kind back as one undoable
    // change of its position and itemGeometry() (at the current frame when
    // animated), then shows the value the store now holds.
    void gsObjectChangedShape(KxGsObject* anObj) override;
    // The position and the label's place (a move near the edge may push the
    // label inside) in one step; nothing when neither changed.
    void gsObjectMoved(KxGsObject* anObj, const QPoint& aStoredPos) override;
    // The label's place in one step; nothing when unchanged.
    void gsObjectLabelMoved(KxGsObject* anObj) override;
    void gsObjectParamApplied(int anIdx, int anId) override;
    QCursor getCursor() const override;

    // The panel shows the object's style and unit: from its kernel data when
    // stored, else colour, width and font size from the item and the panel's
    // unit unchanged (its name shown again).
    void updateGuiFromObject(const OvGsObject* anItem, int anIdx);
    void updateGuiFromObjectData(const KxKernelObjectData* aData);
    // The type name, or empty while "MeasurementLabelsVisible" is below 1.
    QString getModifiedTypeName(int anIdx) const;

    // False when registration failed: the manipulator is then inert.
    bool isRegistered() const;
    const QList<int>& getUnitsToUse() const;
    QSize getMagnifierSize() const;
    double getMagnifierScale() const;
    // Where the magnifier sits relative to the cursor: half its size plus a
    // margin that grows with the enlargement.
    QPoint getMagnifierHotspot() const;
    OvToolBase* getToolBase() const;
    OvGuiMeasurementTool* getPanel() const;
    const Kind& getKind() const;

    // Colour of a stored parameter: the QColor it holds, else its conversion,
    // else an invalid colour.
    static QColor colorFromVariant(const QVariant& aValue);
    // The value of key frame anId, invalid when the vector is too short.
    static QVariant keyframeValue(const KxParamKeyframeVector& aKeyframes, int anId);

protected:
    // Finishes construction: registration and connections (nothing of either
    // when the kernel refuses the type), then the settings handlers. Call once,
    // at the end of the kind's constructor.
    void initFrame();

    // The item of the gesture under way, null when none. The frame discards it
    // (deleted once control returns to the event loop) on deactivation, after
    // forgetInProgressItem(), and forgets it when the editor lets go of it.
    virtual KxGsObject* getInProgressItem() const = 0;
    // Drops the reference to the item under way without deleting it.
    virtual void forgetInProgressItem() = 0;
    // Called by hoverMoveEvent before the magnifier update: the item under way
    // follows the mouse.
    virtual void hoverMoveInProgress(QGraphicsSceneHoverEvent* anEvent);
    // Called by hoverMoveEvent of a kind with magnifierLeadsHover, after the magnifier
    // moved: aPos is the hover position clamped into the picture. Default: nothing.
    virtual void pointerMovedInProgress(const QPointF& aPos);
    // The value name an item of this kind shows and a new object stores (key frame 2),
    // also after a unit change. Default: the first value name.
    virtual QString valueNameOf(const KxGsObject* anItem) const;
    // Called by cancelGesture() after the item under way is gone: a kind that
    // keeps more gesture state (picked nodes, a chosen base) resets it here so
    // that the next press starts afresh. Default: nothing.
    virtual void resetGestureState();

    // Kernel notifications, not called while the block flag is set (the
    // frame's slots filter them); the kind filters types itself.
    virtual void objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData) = 0;
    // Default: the item of this kind under anIdx takes the stored state at the
    // current frame (showStoredState()) and, when current, the panel follows.
    virtual void objectChangedInKernel(int aType, int anIdx, const KxKernelObjectData* aData);
    // Puts the position (key frame 3 less anOrigin) and the geometry of
    // aKeyframes on anItem, an item of this kind: when an item is made from
    // the store, when its object changed and in recreateGraphicsObjects().
    // Default: the position only.
    virtual void applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                                     const QPoint& anOrigin);
    // The geometry parameter gsObjectChangedShape() stores for anItem, an item
    // of this kind, as it stands. Default: invalid.
    virtual QVariant itemGeometry(const KxGsObject* anItem) const;
    // The camera resolution changed. Default: rescaleDefaultKeyframes().
    virtual void currentResChangedByCamera(QSize anOld, QSize aNew);
    // The geometry parameter scaled by aFactor, for rescaleDefaultKeyframes().
    // Default: points rounded, point-F and polygons scaled, others unchanged.
    virtual QVariant scaleGeometry(const QVariant& aGeometry, double aFactor) const;

    // The value aName (one of the kind's value names) of an item of this kind
    // or of stored key frames. Invalid when it cannot be measured.
    virtual Measure measureItem(const QString& aName, const KxGsObject* anItem) const = 0;
    virtual Measure measureKeyframes(const QString& aName, const KxParamKeyframeVector& aKeyframes) const = 0;

    // Called as the last step of a successful registration.
    virtual void initManipulatorDone();
    // Called at registration after the shared parameters (0 to 9) are
    // described: a kind describes the parameters it stores beyond them.
    // Default: none.
    virtual void describeExtraParams(KxKernelObjectDataDescr* aDescr) const;
    // Scales the position, geometry, label place and extra parameters that
    // aKeyframes holds by aFactor (a camera-resolution change).
    void scaleKeyframes(KxParamKeyframeVector& aKeyframes, double aFactor) const;
    // Called by scaleKeyframes() for each stored vector (defaults and every
    // frame's) after position, geometry and label place were scaled: a kind
    // scales its own parameters here. Default: nothing.
    virtual void scaleExtraParams(KxParamKeyframeVector& aKeyframes, double aFactor) const;
    // The unit activate() puts on the panel after offering the kind's units.
    // Default: automatic.
    virtual int activationUnit() const;

    // Checking the draw button makes this the editor's override manipulator,
    // unchecking restores the default; ignored while the button is not this
    // kind's. For kinds that connect the button to a slot of their own.
    void drawButtonToggled(bool aChecked);
    QToolButton* getDrawButton() const;
    // The draw button is this kind's under the panel's current free-hand variant.
    bool ownsDrawButton() const;
    // The item under way, or an item of the kind's type made by this manipulator.
    // Another kind's item under way may share the type (a free form is open, of the
    // free-line type, until it is finished); its own manipulator answers for it.
    bool isOwnItem(const KxGsObject* anObj) const;
    // Leaves the editor without a current object while this tool stays the
    // active one: the panel unchecks every draw button when nothing is
    // current, which would otherwise end the tool.
    void clearCurrentObjectKeepingTool();

    KxKernelObjectDataDescr* getDescriptor() const;
    // The current view's origin: stored positions are item positions plus it.
    QPoint getViewOrigin() const;
    // Pixels per calibrated unit of the current picture (0 when uncalibrated)
    // and the calibration's unit text.
    double getCalibrationStep(QString& aText) const;
    // One more than the largest index in the graphics-object map (1 when empty).
    int getNextObjectIndex() const;
    // getModifiedTypeName(anIdx) followed by the index.
    QString getItemName(int anIdx) const;
    // Defaults of a new object drawn as anItem: visible, its colour, its
    // valueNameOf(), its position plus the view origin, not hidden, aGeometry,
    // its width and font size, the panel's current unit.
    KxParamKeyframeVector createObjectKeyframes(const OvGsObject* anItem, const QVariant& aGeometry) const;
    // Gives anItem, a new item of this kind for the stored object anIdx, the
    // state of aKeyframes (its defaults): its name, colour, visibility,
    // applyStoredGeometry(), a solid pen of the stored width, the calibration
    // step, the stored font size and the editor's zoom. The kind then places
    // the label and puts anItem in the graphics-object map.
    void dressStoredItem(OvGsObject* anItem, int anIdx, const KxParamKeyframeVector& aKeyframes);
    // Gives anItem, the item of a gesture just started, the panel's style: the
    // type name, a visible label, the colour, a pen of aStyle in the panel's
    // width, its font size, the calibration step and the editor's zoom.
    void dressNewItem(OvGsObject* anItem, Qt::PenStyle aStyle = Qt::DashLine);
    // anItem, an item of this kind, takes aKeyframes (one frame's state):
    // applyStoredGeometry() against the view origin, visibility, colour and
    // the stored value name on its label, kept inside the picture. Width and
    // font size follow only style steps (gsObjectParamApplied()).
    void showStoredState(OvGsObject* anItem, const KxParamKeyframeVector& aKeyframes);
    // anItem takes the stored pen width and label font size of aKeyframes
    // (its pen style stays).
    void applyStoredStyle(OvGsObject* anItem, const KxParamKeyframeVector& aKeyframes);
    // The item of object anIdx takes its stored width, font size and label
    // place (after a style step was done, undone or redone).
    void showStoredStyle(int anIdx);
    // Puts anItem, a finished item of this kind, in the graphics-object map
    // under getNextObjectIndex(), names it after that index and lets its trash
    // button show. Returns the index.
    int adoptFinishedItem(OvGsObject* anItem);
    // Pushes a command of this manipulator with the block flag set, so that
    // the notifications it causes are not handled again.
    void pushOwnCommand(QUndoCommand* aCommand);
    // Writes the values of aValues that hold one (others stay as stored) for
    // anObj, a stored item of this kind, as one undo step (at the current
    // frame when animated); with anOwn through pushOwnCommand(). Nothing, and
    // false, when every value equals the stored one: a step always changes
    // something. Pushes made by others while it runs join the same step.
    bool writeChange(KxGsObject* anObj, KxParamKeyframeVector aValues, bool anOwn);
    // Whether writing aValues would change what is stored for anObj (false
    // when it is not stored).
    bool changesStore(const KxGsObject* anObj, const KxParamKeyframeVector& aValues) const;
    // anItem, a stored item of this kind, takes its stored state at the
    // current frame (showStoredState()): after the kind's own writes, whose
    // notifications are blocked, so that the item shows exactly what is stored.
    void showStoredObject(OvGsObject* anItem);
    // Puts the stored label place of aKeyframes, when there is one, on anItem.
    static void applyStoredLabel(OvGsObject* anItem, const KxParamKeyframeVector& aKeyframes);
    // The value name stored for anObj (key frame 2), else valueNameOf().
    QString storedValueName(const KxGsObject* anObj);
    // Stores anItem, already in the graphics-object map under anIndex, as a new
    // object (createObjectKeyframes() with aGeometry) through one undoable
    // command; its label then shows the stored value under valueNameOf(anItem),
    // which later label refreshes keep. Animated on video media.
    void storeNewObject(OvGsObject* anItem, int anIndex, const QVariant& aGeometry);
    // A length in pixels in micrometres by the current calibration; invalid
    // when uncalibrated.
    Measure lengthFromPixels(double aPixels) const;
    // Scales the stored default position and geometry of every object of this
    // kind by the width ratio, without an undo step, then rebuilds all items.
    // Ignored for equal sizes and for an old width of 0.
    void rescaleDefaultKeyframes(QSize anOld, QSize aNew);
    // Shows the magnifier at aPos (editor item coordinates), creating it when
    // none exists.
    void showMagnifierAt(const QPointF& aPos);
    // Returns aPos clamped into the picture, as the magnifier shows it.
    QPointF moveMagnifier(const QPointF& aPos, const QPointF& aScenePos);

    const Kind kind;

private slots:
    void slotCurrentObjectChangedInEditor(const KxGsObject* anObj);
    void slotObjectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData);
    void slotObjectChangedInKernel(int aType, int anIdx, const KxKernelObjectData* aData);
    void slotCurrentResChangedByCameraInKernel(QSize anOld, QSize aNew);
    void slotFrameReadyStopInKernel(qint64 aFrame);
    void slotSettingsModified(const QStringList& aKeys, const QList<QVariant>& aVals);
    void slotColorSelected(const QColor& aColor);
    void slotWidthChanged(int aWidth);
    void slotDrawButtonToggled(bool aChecked);
    void slotFontValueChanged(int aSize);
    void slotUnitChanged(int aUnit);
    void slotDeviceSetModified(int aFlags);

private:
    bool initManipulator();
    void readMagnifierSettings();
    // Discards the item under way; false when there is none.
    bool discardInProgressItem();
    QString translated(const char* aText) const;
    bool isValueName(const QString& aName) const;
    int itemUnit() const;
    Measure measureData(const QString& aName, const KxKernelObjectData* aData, int& aUnit) const;
    // Begins a macro when more than one object is selected; returns the
    // selection copy the style slots work on.
    QList<KxGsObject*> beginStyleChange(const QString& aMacroText);
    void endStyleChange(const QList<KxGsObject*>& aSelection);
    // Writes one style parameter together with the label's place.
    void writeStyleWithLabel(KxGsObject* anObj, const QString& aName, const QVariant& aValue);
    // Stored values compare exactly; points and polygons by their coordinates.
    static bool sameValue(const QVariant& aValue, const QVariant& aStored);

    QCursor cursor;
    OvToolBase* toolBase;
    OvGuiMeasurementTool* panel;
    QSize magnifierSize;
    double magnifierScale;
    QList<int> unitsToUse;
    bool registered;
};
