#pragma once

#include "OvGsManipFrame.h"

#include <QHash>
#include <QPixmap>
#include <QPointF>
#include <QPointer>
#include <QString>

class OvGsRelativeDistance;
class QGraphicsSceneMouseEvent;

// What the multiple- and parallel-distance manipulators share: lines drawn
// against a base line. With no base selected (the editor's current object is
// neither a base of this kind nor, when "DistanceAllowedAsBase" is on, a plain
// distance) a new line becomes a base: label "base", active button pressed,
// current object after its release. With a base selected each new line is
// placed by findEndPoint() from the point where the mouse is let go and names
// its base in baseName. Pressing a base's active button selects or releases
// it.
//
// Bases and their lines are linked by line names. Everything an item shows is
// stored: after the shared parameters (0 to 9, "len" of a base stays (0, 0))
// each object keeps its own vector (kVectorParam), its role (kRoleParam), its
// base's line name (kBaseNameParam) and its own line name (kLineNameParam),
// and an item rebuilt from the store (undo, redo, history jumps, frames,
// opened files) takes them as they are, without looking at its base. Moving
// or reshaping a base writes it and every line placed on it again as one undo
// step, each object with its own change command; a gesture that changes
// nothing writes nothing. Removing a base (or a plain distance serving as
// base) removes every line that names it in the same step, each with its own
// removal command pushed before the base's own. No commands are pushed while
// the store replays history or clears itself: the history already holds what
// follows.
//
// Camera resolution: stored positions, geometry and vectors scale by the
// width ratio, so no line collapses to zero length and the values scale with
// the ratio.
class OvGsManipRelative : public OvGsManipFrame
{
    Q_OBJECT

public:
    // The connected type while plain distances may not serve as base: no item
    // has it.
    static const int kNoConnectedType = 7906255;
    static const int kDistanceType = 66653;
    // Stored after the shared parameters: the line's own vector (QPointF
    // "vec", animated like the geometry), its role (int "role": 1 base, 0
    // measured line), its base's line name (QString "base", empty for a base)
    // and its own line name (QString "line"). Objects stored without them
    // (older files) fall back on: a zero "len" is a base, no base name, a
    // fresh line name, the vector from "len" (see applyLineGeometry()).
    static const int kVectorParam = 10;
    static const int kRoleParam = 11;
    static const int kBaseNameParam = 12;
    static const int kLineNameParam = 13;

    ~OvGsManipRelative() override;

    // The frame's, then the active buttons of every base of this kind show.
    void activate() override;
    // The frame's, then every active button hides.
    void deactivate() override;
    // Left button only. With a line under way the press finishes it; else a
    // press on an active button toggles that base; otherwise it begins a line.
    void mousePressEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent) override;
    // Finishes the line after a drag of at least 1 unit; a shorter click
    // leaves it under way until the next press.
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent) override;
    // Over an active button the magnifier hides.
    void hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent) override;
    // The frame's, with one scan of the editor for bases: measured lines are
    // not placed on their bases again here.
    void recreateGraphicsObjects(QPoint anOrigin, qint64 aFrame, bool aForce) override;
    // Writes a dragged line back; a base together with the lines placed on
    // it again, in one step. Nothing when the gesture changed nothing.
    void gsObjectChangedShape(KxGsObject* anObj) override;
    // Items of this kind get the kind's label (showLineValue()); the whole
    // scene repaints with aRepaint.
    void updateDisplayValue(KxGsObject* anObj, const QString& aValueName, bool aStored, bool aRepaint) override;

    // kDistanceType while "DistanceAllowedAsBase" is on, else kNoConnectedType.
    virtual int getConnectedObjectType() const;
    // The line name of the selected base (current object) and, as a side
    // effect, its ends; empty when no base is selected.
    QString findSelectedDistance();
    // Where a line from aPoint ends against the base taken last.
    virtual QPointF findEndPoint(const QPointF& aPoint) const = 0;
    // Whether aPoint (editor-item coordinates) is on the active button of an
    // item of this kind; with aPress that base toggles and becomes the current
    // object when pressed, or leaves none when released.
    bool onActiveButton(const QPointF& aPoint, bool aPress);
    void makeAllActive();
    void makeAllNotActive();
    // Places a measured line on its base again (bases and lines without a
    // base found stay).
    void refreshObject(KxGsObject* anObj);
    // Stores the line under way under the next free index.
    void finalizeDistance();

    bool isDistanceAllowedAsBase() const;
    OvGsRelativeDistance* getInProgressLine() const;
    bool isCreatingBase() const;
    QPointF getBaseStart() const;
    QPointF getBaseEnd() const;
    // The base named aName: the first plain distance of the connected type or
    // base of this kind on the editor with that line name; null when none.
    KxGsObject* findBase(const QString& aName) const;
    // Every base by name (the first item of a name in the editor's order); the
    // bases of this kind join knownBases.
    void scanBases(QHash<QString, KxGsObject*>* aNames) const;

protected:
    // aLinePattern ("Multiply_Line_%1") and aCounter number the line names.
    OvGsManipRelative(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack,
                      const Kind& aKind, const char* aLinePattern, int& aCounter, const QString& anOffImage,
                      const QString& anOnImage);
    // Reads "DistanceAllowedAsBase" and follows its changes; call right after
    // initFrame().
    void initRelative();
    // The record of a kind of this family: one value name, geometry "len" of
    // aGeometryType, the distance button under free-hand variant aVariant, the
    // length units, removal before the object leaves the store, no media or
    // tool following, and no unit read as automatic. The texts are marked
    // with QT_TRANSLATE_NOOP(aContext, ...) by the caller.
    static Kind relativeKind(const char* aContext, int anObjectType, const char* aTypeName, const char* aValueName,
                             QMetaType::Type aGeometryType, int aVariant);

    // A new item of this kind.
    virtual OvGsRelativeDistance* newLine(const QString& aTypeName, const QString& aLineName) = 0;
    // The "len" stored for aLine as it stands.
    virtual QVariant storedGeometry(const OvGsRelativeDistance* aLine) const = 0;
    // Gives an item stored without its own vector (older files) a vector
    // from its stored "len" (its position and role already set).
    virtual void applyLineGeometry(OvGsRelativeDistance* aLine, const QVariant& aGeometry) = 0;
    // Sets the label of an item of this kind. anIdx is its stored index, or -1
    // to show what its geometry measures now.
    virtual void showLineValue(OvGsRelativeDistance* aLine, int anIdx, const QString& aValueName) = 0;

    // Takes the ends of aBase (a plain distance or a base of this kind) as the
    // base for findEndPoint(); false (nothing taken) for anything else.
    bool takeBase(const KxGsObject* aBase);
    // aLine from its start to findEndPoint(start), label updated.
    void placeOnBase(OvGsRelativeDistance* aLine);
    // Active button images of this kind.
    QPixmap& offPixmap();
    QPixmap& onPixmap();
    QString baseText() const;

    KxGsObject* getInProgressItem() const override;
    void forgetInProgressItem() override;
    void hoverMoveInProgress(QGraphicsSceneHoverEvent* anEvent) override;
    void objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData) override;
    void objectChangedInKernel(int aType, int anIdx, const KxKernelObjectData* aData) override;
    // Start, vector, role and names as stored (fallbacks for older files:
    // see kVectorParam).
    void applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                             const QPoint& anOrigin) override;
    void describeExtraParams(KxKernelObjectDataDescr* aDescr) const override;
    void scaleExtraParams(KxParamKeyframeVector& aKeyframes, double aFactor) const override;
    Measure measureItem(const QString& aName, const KxGsObject* anItem) const override;
    Measure measureKeyframes(const QString& aName, const KxParamKeyframeVector& aKeyframes) const override;
    void initManipulatorDone() override;

    QPointF baseStart;
    QPointF baseEnd;

private slots:
    // Removes the lines that name the departing object (its own item goes too).
    void slotObjectBeforeRemoveInKernel(int aType, int anIdx);

private:
    // While it lives, findBase() answers from one scan of the editor instead
    // of scanning for every line: the items do not change during a batch.
    class BaseLookup;

    OvGsRelativeDistance* createInProgressLine(const QString& aBaseName);
    void followMouse(const QPointF& aPos);
    void markBase(OvGsRelativeDistance* aLine);
    // What is written for aLine after placing it on its base again.
    KxParamKeyframeVector lineKeyframes(OvGsRelativeDistance* aLine);
    // Writes aKeyframes for aLine with the block flag; false when nothing
    // changed (nothing pushed).
    bool writeLine(OvGsRelativeDistance* aLine, const KxParamKeyframeVector& aKeyframes);
    // The vector, role and names of aLine into aKeyframes.
    void putLineFacts(KxParamKeyframeVector& aKeyframes, const OvGsRelativeDistance* aLine) const;
    // Places every measured line naming aBaseName on it again and writes
    // those that changed; nothing while history replays.
    void writeLinesOf(const QString& aBaseName);
    // A stored line name numbered by this kind's pattern keeps the counter
    // beyond its number.
    void reserveLineName(const QString& aName);
    bool isOwnLine(const KxGsObject* anObj) const;

    QPointer<OvGsRelativeDistance> inProgress;
    bool creatingBase;
    bool distanceAllowedAsBase;
    QPointF startPoint;
    QPointF endPoint;
    const char* linePattern;
    int& counter;
    QPixmap activeOff;
    QPixmap activeOn;
    BaseLookup* baseCache;
    mutable QHash<QString, QPointer<OvGsRelativeDistance>> knownBases;
};
