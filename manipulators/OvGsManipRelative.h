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
// Bases and their lines are linked by names only, held in the items: the
// store keeps a base as a zero-length object at its start point. Moving or
// reshaping a base writes it back (OvCmdChangeBase, which also carries the
// base's vector for undo and redo) and then every measured line, each with its
// own change command holding the line as placed on its base again, so stored
// values and labels agree. Removing a base (or a plain distance serving as
// base) removes every line that names it, each with its own removal command
// pushed before the base's own. No commands are pushed while the store
// replays history or clears itself: the history already holds what follows.
//
// Camera resolution: stored positions and geometry scale by the width ratio
// (as every kind); what only the items hold (a base's direction and length, a
// parallel line's direction and length) is scaled on the items, so no line
// collapses to zero length and the values scale with the ratio.
class OvGsManipRelative : public OvGsManipFrame
{
    Q_OBJECT

public:
    // The connected type while plain distances may not serve as base: no item
    // has it.
    static const int kNoConnectedType = 7906255;
    static const int kDistanceType = 66653;

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
    // Writes a dragged line back; for a base, then every measured line.
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
    // Gives an item the geometry of a stored "len" (its position already set).
    virtual void applyLineGeometry(OvGsRelativeDistance* aLine, const QVariant& aGeometry) = 0;
    // Whether the store holds aLine's vector; others are scaled on the item
    // after a camera resolution change.
    virtual bool storesVector(const OvGsRelativeDistance* aLine) const = 0;
    // Sets the label of an item of this kind. anIdx is its stored index, or -1
    // to show what its geometry measures now.
    virtual void showLineValue(OvGsRelativeDistance* aLine, int anIdx, const QString& aValueName) = 0;
    // Called when an item of this kind is about to leave because its object
    // leaves the store (still stored). Default: nothing.
    virtual void lineLeaving(OvGsRelativeDistance* aLine, const KxKernelObjectData* aData);
    // Called for an item rebuilt from the store, before its geometry is
    // applied. Default: nothing.
    virtual void lineRestored(OvGsRelativeDistance* aLine, const KxKernelObjectData* aData);

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
    // The start in whole pixels, then applyLineGeometry().
    void applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                             const QPoint& anOrigin) override;
    void rescaleItems(double aFactor) override;
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
    // Places aLine on its base, then pushes its change with the block flag.
    void writeLine(int anIdx, OvGsRelativeDistance* aLine);
    void writeMeasuredLines();
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
    const QHash<QString, KxGsObject*>* baseCache;
    mutable QHash<QString, QPointer<OvGsRelativeDistance>> knownBases;
    // Each base's vector as last written, the "before" of its next change.
    QHash<const OvGsRelativeDistance*, QPointF> writtenBaseVectors;
};
