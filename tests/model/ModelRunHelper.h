#pragma once

#include "KxKernelObjectData.h"
#include "ModelActionHelper.h"
#include "ModelStoreHelper.h"

#include <QMap>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

class KxGsObject;
class OvGsObject;
class OvViewerMainWindow;

// Runs action sequences on the real viewer window with the real plug-in and
// checks, after every step, the store against the reference model and every
// item against its stored object. Every history index reached at the end of
// a user action keeps a snapshot (model, store, items); undo, redo and
// history jumps must bring exactly that back. Every few steps and at the end
// the whole history is walked down and up again and the measurements are
// saved and reopened.
class ModelRunHelper
{
public:
    struct Options
    {
        bool series = false;   // a picture series of three frames instead of the sample
        int fullCheckEvery = 50;
        QStringList seriesFiles;
        QString scratchFile;   // where measurements are saved and reopened
        // While exploring past a known fault: failures whose message holds
        // one of these are counted and the run goes on; "labelpos" also
        // leaves label places out of the round-trip comparisons.
        QStringList ignore;
    };

    ModelRunHelper(OvViewerMainWindow* aWindow, const Options& anOptions);

    // Empty when every step passed; else what failed, and aFailedStep is the
    // (0-based) step that failed (the action count for the final checks).
    QString run(const QVector<ModelActionHelper>& anActions, int* aFailedStep);
    // How many failures of the last run were ignored, by ignore entry.
    QString ignoredSummary() const;

private:
    using Key = ModelStoreHelper::Key;
    struct Snapshot
    {
        QMap<Key, KxKernelObjectData::State> store;
        QMap<Key, QString> items;
        ModelStoreHelper model;
    };

    bool start();
    bool execute(const ModelActionHelper& anAction);
    bool fail(const QString& aMessage);

    // User gestures.
    bool play(const QString& aScript);
    void mouse(int aType, const QPointF& aPoint, bool aControl = false);
    QPointF pressPoint(const QPointF& aPoint) const;
    void click(const QPointF& aPoint, bool aControl = false);
    void drag(const QPointF& aFrom, const QPointF& aTo);

    bool draw(const ModelActionHelper& anAction);
    bool edit(const ModelActionHelper& anAction);
    bool style(const ModelActionHelper& anAction);
    bool remove(const QList<Key>& aSelected);
    bool historyMove(int aTarget, bool aJump);
    bool frameRoundTrip(int aFrame);
    bool cameraRoundTrip();
    bool saveAndReopen();
    bool fullCheck();

    // The item of a stored object, null when there is none.
    OvGsObject* itemOf(const Key& aKey) const;
    Key keyOf(const KxGsObject* anItem) const;
    QList<Key> selectedKeys() const;
    // The unit the panel shows, -1 when unknown.
    int panelUnit() const;
    QList<Key> storedKeys() const;
    Key targetKey(int aTarget) const;
    // No stored item answers a press at aPoint (picture pixels).
    bool isFree(const QPointF& aPoint, const KxGsObject* anExcept = nullptr) const;
    QPointF bodyPoint(const ModelStoreHelper::Object& anObject) const;

    QMap<Key, KxKernelObjectData::State> storeState() const;
    QString itemState(const Key& aKey) const;
    Snapshot snapshot() const;
    QString compareSnapshots(const Snapshot& aWas, const Snapshot& aNow) const;
    QString describeState(const KxKernelObjectData::State& aState) const;

    // The store equals the model; every item agrees with its stored object.
    bool checkConsistency(const QString& aWhen);
    // Records the state at the stack's index after an action of aSteps steps.
    void forgetDroppedRedo();
    bool finishAction(int anIndexBefore, int aSteps, const QString& aWhat);
    bool expectSame(const Snapshot& aWas, const QString& aWhen);

    OvViewerMainWindow* window;
    Options options;
    ModelStoreHelper model;
    QVector<std::optional<Snapshot>> history;
    QString failure;
    QMap<QString, int> ignoredFailures;
};
