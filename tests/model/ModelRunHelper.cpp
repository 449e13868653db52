#include "ModelRunHelper.h"

#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "OvGestureReplayer.h"
#include "OvGestureScript.h"
#include "OvGsObject.h"
#include "OvMeasurementExporter.h"
#include "OvViewerMainWindow.h"

#include <QApplication>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <QColorDialog>
#include <QGraphicsPixmapItem>
#include <QGraphicsView>
#include <QLabel>
#include <QMouseEvent>
#include <QPolygonF>
#include <QRegularExpression>
#include <QSpinBox>
#include <QUndoStack>

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace ModelKinds;

namespace {

bool isRelative(int aType)
{
    return aType == kMultiple || aType == kParallel;
}

// Unit names as the panel shows them, with their codes.
const QList<QPair<QString, int>>& unitChoices()
{
    static const QList<QPair<QString, int>> units{
        { QStringLiteral("auto"), 0 }, { QStringLiteral("nm"), 1 }, { QString::fromUtf8("\u03bcm"), 2 },
        { QStringLiteral("mm"), 3 },   { QStringLiteral("cm"), 4 }, { QStringLiteral("mil"), 5 },
        { QStringLiteral("inch"), 6 }, { QStringLiteral("ft"), 7 }, { QStringLiteral("m"), 8 },
    };
    return units;
}

QString pointText(const QPointF& aPoint)
{
    return QStringLiteral("(%1,%2)").arg(aPoint.x(), 0, 'f', 2).arg(aPoint.y(), 0, 'f', 2);
}

double distance(const QPointF& a, const QPointF& b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

double pointToSegment(const QPointF& aPoint, const QPointF& a, const QPointF& b)
{
    const QPointF d = b - a;
    const double q = d.x() * d.x() + d.y() * d.y();
    double t = q > 0 ? ((aPoint.x() - a.x()) * d.x() + (aPoint.y() - a.y()) * d.y()) / q : 0.0;
    t = qBound(0.0, t, 1.0);
    return distance(aPoint, a + t * d);
}

double distanceToLine(const QPointF& aPoint, const QPointF& a, const QPointF& b)
{
    const QPointF d = b - a;
    const double length = std::hypot(d.x(), d.y());
    return length > 0 ? std::abs(d.x() * (aPoint.y() - a.y()) - d.y() * (aPoint.x() - a.x())) / length
                      : distance(aPoint, a);
}

// Micrometres (or square micrometres, or degrees) per unit named.
double unitFactor(QString aUnit)
{
    const bool squared = aUnit.endsWith(QChar(0x00B2));
    if (squared)
        aUnit.chop(1);
    static const QMap<QString, double> factors{
        { QStringLiteral("nm"), 1e-3 },      { QString::fromUtf8("\u03bcm"), 1.0 }, { QStringLiteral("mm"), 1e3 },
        { QStringLiteral("cm"), 1e4 },       { QStringLiteral("m"), 1e6 },          { QStringLiteral("mil"), 25.4 },
        { QStringLiteral("inch"), 25400.0 }, { QStringLiteral("ft"), 304800.0 },
    };
    const double factor = factors.value(aUnit, 1.0);
    return squared ? factor * factor : factor;
}

// The same text, numbers allowed to differ by aTolerance.
bool sameText(const QString& a, const QString& b, double aTolerance)
{
    if (a == b)
        return true;
    static const QRegularExpression number(QStringLiteral("-?\\d+(\\.\\d+)?"));
    QRegularExpressionMatchIterator ia = number.globalMatch(a);
    QRegularExpressionMatchIterator ib = number.globalMatch(b);
    int lastA = 0;
    int lastB = 0;
    while (ia.hasNext() && ib.hasNext()) {
        const QRegularExpressionMatch ma = ia.next();
        const QRegularExpressionMatch mb = ib.next();
        // Values printed with decimals may differ in their last digit: the
        // same value computed in another order rounds either way.
        const int decimals = std::max(ma.capturedLength(1), mb.capturedLength(1)) - 1;
        const double lastDigit = decimals > 0 ? std::pow(10.0, -decimals) * 1.0001 : 0.0;
        if (a.mid(lastA, ma.capturedStart() - lastA) != b.mid(lastB, mb.capturedStart() - lastB)
            || std::abs(ma.captured().toDouble() - mb.captured().toDouble()) > std::max(aTolerance, lastDigit))
            return false;
        lastA = ma.capturedEnd();
        lastB = mb.capturedEnd();
    }
    return !ia.hasNext() && !ib.hasNext() && a.mid(lastA) == b.mid(lastB);
}

bool inPicture(const QPointF& aPoint)
{
    return aPoint.x() >= 20 && aPoint.x() <= 1260 && aPoint.y() >= 20 && aPoint.y() <= 940;
}

QString valueNameOf(const QString& aTool)
{
    if (aTool == QLatin1String("angle"))
        return QStringLiteral("Inner angle");
    if (aTool == QLatin1String("outer-angle"))
        return QStringLiteral("Outer angle");
    if (aTool == QLatin1String("circle"))
        return QStringLiteral("Radius");
    if (aTool == QLatin1String("diameter"))
        return QStringLiteral("Diameter");
    if (aTool == QLatin1String("free-form"))
        return QStringLiteral("Area");
    return QStringLiteral("Length");
}

} // namespace

ModelRunHelper::ModelRunHelper(OvViewerMainWindow* aWindow, const Options& anOptions)
    : window(aWindow)
    , options(anOptions)
{
}

bool ModelRunHelper::fail(const QString& aMessage)
{
    for (const QString& ignored : options.ignore) {
        if (aMessage.contains(ignored)) {
            ++ignoredFailures[ignored];
            return true;
        }
    }
    if (failure.isEmpty())
        failure = aMessage;
    return false;
}

QString ModelRunHelper::ignoredSummary() const
{
    QStringList counts;
    for (auto it = ignoredFailures.cbegin(); it != ignoredFailures.cend(); ++it)
        counts << QStringLiteral("%1 x '%2'").arg(it.value()).arg(it.key());
    return counts.join(QStringLiteral(", "));
}

QString ModelRunHelper::run(const QVector<ModelActionHelper>& anActions, int* aFailedStep)
{
    failure.clear();
    ignoredFailures.clear();
    model = ModelStoreHelper();
    history.clear();
    *aFailedStep = -1;
    if (!start()) {
        *aFailedStep = 0;
        return QStringLiteral("set-up: ") + failure;
    }
    for (int i = 0; i < anActions.size(); ++i) {
        const bool ok = execute(anActions.at(i));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (!ok || !failure.isEmpty()) {
            *aFailedStep = i;
            return QStringLiteral("step %1 (%2): %3").arg(i).arg(anActions.at(i).describe(), failure);
        }
        if (options.fullCheckEvery > 0 && (i + 1) % options.fullCheckEvery == 0 && !fullCheck()) {
            *aFailedStep = i;
            return QStringLiteral("full check after step %1 (%2): %3").arg(i).arg(anActions.at(i).describe(), failure);
        }
    }
    if (!fullCheck()) {
        *aFailedStep = anActions.size() - 1;
        return QStringLiteral("final full check: ") + failure;
    }
    return QString();
}

bool ModelRunHelper::start()
{
    QString error;
    const bool opened = options.series ? window->openImages(options.seriesFiles, &error)
                                       : window->openImage(OvViewerMainWindow::sampleImagePath(), &error);
    if (!opened)
        return fail(QStringLiteral("cannot open the picture: ") + error);
    window->slotZoomActual();
    window->getEditor()->setCurrentObject(nullptr, false);
    // The same defaults on every run, whatever an earlier run left.
    if (!play(QStringLiteral("tool distance\nunit um\nwidth 2\nfont 16\ncolor #00ff00\nselect none\ntool none\n")))
        return false;
    window->undoStack()->clear();
    if (!storedKeys().isEmpty())
        return fail(QStringLiteral("the store is not empty after opening a picture"));
    history = { snapshot() };
    return checkConsistency(QStringLiteral("start"));
}

bool ModelRunHelper::play(const QString& aScript)
{
    OvGestureScript script;
    if (!script.parse(aScript))
        return fail(QStringLiteral("bad script: ") + script.errorText());
    OvGestureReplayer replayer(window);
    if (!replayer.run(script))
        return fail(QStringLiteral("script refused: ") + replayer.errorText());
    return true;
}

void ModelRunHelper::mouse(int aType, const QPointF& aPoint, bool aControl)
{
    QGraphicsView* view = window->getView();
    KxGsEditor* editor = window->getEditor();
    const QPointF scenePoint = editor->mapToScene(aPoint);
    view->ensureVisible(QRectF(scenePoint, QSizeF(1.0, 1.0)), 40, 40);
    const QPoint local = view->mapFromScene(scenePoint);
    QWidget* viewport = view->viewport();
    const auto type = QEvent::Type(aType);
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    static Qt::MouseButtons held = Qt::NoButton;
    if (type == QEvent::MouseButtonPress)
        held = Qt::LeftButton;
    if (type == QEvent::MouseButtonRelease)
        held = Qt::NoButton;
    QMouseEvent event(type, QPointF(local), QPointF(local), QPointF(viewport->mapToGlobal(local)), button, held,
                      aControl ? Qt::ControlModifier : Qt::NoModifier);
    QApplication::sendEvent(viewport, &event);
}

QPointF ModelRunHelper::pressPoint(const QPointF& aPoint) const
{
    // Where a press aimed at aPoint lands: mouse() scrolls it into view and
    // sends it on a whole pixel of the viewport.
    QGraphicsView* view = window->getView();
    KxGsEditor* editor = window->getEditor();
    const QPointF scenePoint = editor->mapToScene(aPoint);
    view->ensureVisible(QRectF(scenePoint, QSizeF(1.0, 1.0)), 40, 40);
    return editor->mapFromScene(view->mapToScene(view->mapFromScene(scenePoint)));
}

void ModelRunHelper::click(const QPointF& aPoint, bool aControl)
{
    mouse(QEvent::MouseMove, aPoint, aControl);
    mouse(QEvent::MouseButtonPress, aPoint, aControl);
    mouse(QEvent::MouseButtonRelease, aPoint, aControl);
}

void ModelRunHelper::drag(const QPointF& aFrom, const QPointF& aTo)
{
    mouse(QEvent::MouseMove, aFrom);
    mouse(QEvent::MouseButtonPress, aFrom);
    for (int i = 1; i <= 3; ++i)
        mouse(QEvent::MouseMove, aFrom + (aTo - aFrom) * (i / 3.0));
    mouse(QEvent::MouseButtonRelease, aTo);
}

// ---- looking at the window and the store

int ModelRunHelper::panelUnit() const
{
    QString shown = window->findChild<QLabel*>(QStringLiteral("theTLUnit"))->text();
    shown.remove(QChar(0x00B2));
    for (const auto& unit : unitChoices()) {
        if (unit.first == shown)
            return unit.second;
    }
    return shown.startsWith(QLatin1String("deg")) ? 9 : -1;
}

OvGsObject* ModelRunHelper::itemOf(const Key& aKey) const
{
    KxGsManipulator* manipulator = KxKernelData::getInstance()->getManipulator(aKey.first);
    return manipulator ? qobject_cast<OvGsObject*>(manipulator->getGsObject(aKey.second)) : nullptr;
}

ModelRunHelper::Key ModelRunHelper::keyOf(const KxGsObject* anItem) const
{
    if (!anItem || !anItem->getManipulator())
        return Key(0, -1);
    return Key(anItem->getManipulator()->getObjectType(), anItem->getManipulator()->getObjectIdx(anItem));
}

QList<ModelRunHelper::Key> ModelRunHelper::selectedKeys() const
{
    QList<Key> keys;
    for (KxGsObject* item : window->getEditor()->getSelectedObjects()) {
        const Key key = keyOf(item);
        if (key.second >= 0)
            keys << key;
    }
    return keys;
}

QList<ModelRunHelper::Key> ModelRunHelper::storedKeys() const
{
    QList<Key> keys;
    KxKernelData* kernel = KxKernelData::getInstance();
    QList<int> types = kernel->getObjectTypes();
    std::sort(types.begin(), types.end());
    for (int type : types) {
        for (int index : kernel->getObjectsOfType(type).keys())
            keys << Key(type, index);
    }
    return keys;
}

ModelRunHelper::Key ModelRunHelper::targetKey(int aTarget) const
{
    const QList<Key> keys = model.objects.keys();
    return keys.isEmpty() ? Key(0, -1) : keys.at(aTarget % keys.size());
}

bool ModelRunHelper::isFree(const QPointF& aPoint, const KxGsObject* anExcept) const
{
    for (KxGsObject* item : window->getEditor()->getAllChildGsObjects()) {
        if (item == anExcept)
            continue;
        int part = 0;
        // Twice the press tolerance at the current zoom (a fitted picture is
        // shown smaller, and presses reach further in picture pixels): the
        // test stays clear of borderline hits.
        const double zoom = window->getEditor()->getZoom();
        const int tolerance = 2 * std::max(int(KxGsObject::kDefaultSelSize), int(KxGsObject::kDefaultSelSize / zoom));
        if (item->isPointOnObject(item->mapFromParent(aPoint), part, tolerance))
            return false;
    }
    return true;
}

QPointF ModelRunHelper::bodyPoint(const ModelStoreHelper::Object& anObject) const
{
    const QVector<QPointF>& p = anObject.points;
    if (anObject.type == kCircle || anObject.type == kFreeForm) {
        QPointF sum;
        for (const QPointF& point : p)
            sum += point;
        return p.isEmpty() ? QPointF() : sum / p.size();
    }
    return p.size() >= 2 ? (p[0] + p[1]) / 2.0 : QPointF();
}

QMap<ModelRunHelper::Key, KxKernelObjectData::State> ModelRunHelper::storeState() const
{
    QMap<Key, KxKernelObjectData::State> state;
    KxKernelData* kernel = KxKernelData::getInstance();
    for (const Key& key : storedKeys())
        state.insert(key, kernel->getObject(key.first, key.second)->getState());
    return state;
}

QString ModelRunHelper::itemState(const Key& aKey) const
{
    OvGsObject* item = itemOf(aKey);
    if (!item)
        return QStringLiteral("<no item>");
    // The position to whole pixels, as stored: a centre or vertex the shape
    // found between pixels comes back on the stored pixel.
    const QPoint pos = item->pos().toPoint();
    const bool placed = !options.ignore.contains(QLatin1String("labelpos"));
    // The item's own geometry, through the values it gives, in one unit
    // whatever the panel shows; buttons sit where the geometry puts them.
    QStringList values;
    KxGsManipulator* manipulator = item->getManipulator();
    for (const QString& name : manipulator->getAnimatedValueNames()) {
        QString unit;
        const QVariant value = manipulator->getCalculatedValue(name, item, unit);
        values << (value.isValid() ? QString::number(value.toDouble() * unitFactor(unit), 'g', 6) : QStringLiteral("-"));
    }
    return QStringLiteral("pos (%1,%2) values [%3] trash %4 active %5 label '%6' placed %7 anchor %8 font %9 colour %10 "
                          "width %11 visible %12")
        .arg(pos.x()).arg(pos.y())
        .arg(values.join(QLatin1Char(' ')), pointText(item->getTrashPos()), pointText(item->getActivePos()))
        .arg(item->getLabelText(), placed ? pointText(item->getLabelPos()) : QStringLiteral("-"),
             placed ? pointText(item->getLabelAnchor()) : QStringLiteral("-"))
        .arg(item->getLabelFontPixSize())
        .arg(item->getColor().name(QColor::HexArgb))
        .arg(item->penWidth)
        .arg(item->isVisible() && item->isLabelVisible());
}

ModelRunHelper::Snapshot ModelRunHelper::snapshot() const
{
    Snapshot snap;
    snap.store = storeState();
    for (const Key& key : snap.store.keys())
        snap.items.insert(key, itemState(key));
    snap.model = model;
    return snap;
}

QString ModelRunHelper::describeState(const KxKernelObjectData::State& aState) const
{
    auto vectorText = [](const KxParamKeyframeVector& aVector) {
        QStringList params;
        for (int id = 0; id < aVector.size(); ++id)
            params << QStringLiteral("%1=%2").arg(id).arg(ModelStoreHelper::toText(aVector[id].getValue()));
        return params.join(QLatin1Char(' '));
    };
    QString text = QStringLiteral("{%1%2}").arg(aState.animated ? "animated " : "", vectorText(aState.defaults));
    for (auto it = aState.frames.cbegin(); it != aState.frames.cend(); ++it)
        text += QStringLiteral(" frame %1 {%2}").arg(it.key()).arg(vectorText(it.value()));
    return text;
}

QString ModelRunHelper::compareSnapshots(const Snapshot& aWas, const Snapshot& aNow) const
{
    if (aWas.store.keys() != aNow.store.keys()) {
        QStringList was, now;
        for (const Key& key : aWas.store.keys())
            was << QStringLiteral("%1/%2").arg(key.first).arg(key.second);
        for (const Key& key : aNow.store.keys())
            now << QStringLiteral("%1/%2").arg(key.first).arg(key.second);
        return QStringLiteral("stored objects were [%1], now [%2]").arg(was.join(' '), now.join(' '));
    }
    for (auto it = aWas.store.cbegin(); it != aWas.store.cend(); ++it) {
        const KxKernelObjectData::State& now = aNow.store[it.key()];
        if (it.value() != now)
            return QStringLiteral("object %1/%2 stored\n    was %3\n    now %4")
                .arg(it.key().first).arg(it.key().second).arg(describeState(it.value()), describeState(now));
    }
    for (auto it = aWas.items.cbegin(); it != aWas.items.cend(); ++it) {
        // An angle's vertex and a circle's centre lie between pixels while
        // the store keeps whole ones: what hangs on them may move by that much.
        const double tolerance = it.key().first == kAngle || it.key().first == kCircle ? 1.0 : 0.0;
        if (!sameText(it.value(), aNow.items.value(it.key()), tolerance)) {
            // Which of the item's properties changed, for the report.
            static const QRegularExpression field(
                QStringLiteral("(?:^| )(pos|values|trash|active|label|placed|anchor|font|colour|width|visible) "));
            auto fields = [](const QString& aText) {
                QMap<QString, QString> parts;
                QString name;
                int last = 0;
                for (auto match = field.globalMatch(aText); match.hasNext();) {
                    const QRegularExpressionMatch m = match.next();
                    if (!name.isEmpty())
                        parts.insert(name, aText.mid(last, m.capturedStart() - last));
                    name = m.captured(1);
                    last = m.capturedEnd();
                }
                parts.insert(name, aText.mid(last));
                return parts;
            };
            const QMap<QString, QString> was = fields(it.value());
            const QMap<QString, QString> now = fields(aNow.items.value(it.key()));
            QStringList changed;
            for (auto part = was.cbegin(); part != was.cend(); ++part) {
                if (!sameText(part.value(), now.value(part.key()), tolerance))
                    changed << part.key();
            }
            return QStringLiteral("item of %1/%2 differs in %3\n    was %4\n    now %5")
                .arg(it.key().first).arg(it.key().second).arg(changed.join(QLatin1Char(',')), it.value(),
                                                              aNow.items.value(it.key()));
        }
    }
    return QString();
}

bool ModelRunHelper::checkConsistency(const QString& aWhen)
{
    KxKernelData* kernel = KxKernelData::getInstance();
    const QList<Key> stored = storedKeys();
    if (stored != model.objects.keys()) {
        QStringList was, now;
        for (const Key& key : model.objects.keys())
            was << QStringLiteral("%1/%2").arg(key.first).arg(key.second);
        for (const Key& key : stored)
            now << QStringLiteral("%1/%2").arg(key.first).arg(key.second);
        return fail(QStringLiteral("%1: model has [%2], store [%3]").arg(aWhen, was.join(' '), now.join(' ')));
    }
    const qint64 frame = kernel->getCurrentFrame();
    QMap<Key, QMap<QString, OvMeasurementExporter::Row>> rows;
    for (const OvMeasurementExporter::Row& row : OvMeasurementExporter::collect())
        rows[Key(row.type, row.index)].insert(row.valueName, row);
    for (const Key& key : stored) {
        const KxParamKeyframeVector keyframes = kernel->getObject(key.first, key.second)->getKeyframesAt(frame);
        const ModelStoreHelper::Object& object = model.objects[key];
        const QString diff = ModelStoreHelper::compare(object, keyframes);
        const QString where = QStringLiteral("%1: object %2/%3").arg(aWhen).arg(key.first).arg(key.second);
        if (!diff.isEmpty())
            return fail(where + QStringLiteral(" stored differs from the model: ") + diff);
        OvGsObject* item = itemOf(key);
        if (!item)
            return fail(where + QStringLiteral(" has no item"));
        // The store keeps whole pixels; a centre or vertex found by the shape
        // may lie between them.
        const QPointF pos = QPointF(keyframes[3].getValue().toPoint());
        if (std::abs(item->pos().x() - pos.x()) > 0.5 || std::abs(item->pos().y() - pos.y()) > 0.5)
            return fail(where + QStringLiteral(" item at %1, stored %2").arg(pointText(item->pos()), pointText(pos)));
        if (item->getColor() != keyframes[1].getValue().value<QColor>() || item->penWidth != object.width
            || item->getLabelFontPixSize() != object.font)
            return fail(where + QStringLiteral(" item style differs from the store (colour %1 width %2 font %3): ")
                                    .arg(keyframes[1].getValue().value<QColor>().name(QColor::HexArgb))
                                    .arg(object.width).arg(object.font) + itemState(key));
        if (!item->isVisible() || !item->isLabelVisible())
            return fail(where + QStringLiteral(" item or label hidden"));
        // The label reads what the Results table gives for the stored value.
        const OvMeasurementExporter::Row row = rows[key].value(object.valueName);
        const bool base = object.role == ModelStoreHelper::Base;
        QString wanted = base ? QStringLiteral("base") : row.text;
        // A circle's label says which value it shows.
        if (object.type == kCircle && !wanted.isEmpty())
            wanted.prepend(object.valueName == QLatin1String("Radius") ? QLatin1Char('R') : QLatin1Char('D'));
        const QString shown = item->getDisplayValue();
        const bool closeParallel = object.type == kParallel && shown == QLatin1String("base")
                                   && object.points.value(2).x() < 1.5;
        if (shown != wanted && !closeParallel)
            return fail(where + QStringLiteral(" label reads '%1', Results '%2' (%3)").arg(shown, wanted, object.valueName));
        if (item->getDisplayedValueName() != object.valueName && !base)
            return fail(where + QStringLiteral(" item shows value '%1', stored '%2'")
                                    .arg(item->getDisplayedValueName(), object.valueName));
        // The item's own geometry gives the stored value (the item path
        // converts to the panel's unit, so only while that is the stored one).
        if (!base && object.type != kParallel && row.value.isValid() && panelUnit() == object.unit) {
            QString unit;
            const QVariant fromItem = item->getManipulator()->getCalculatedValue(object.valueName, item, unit);
            const double a = fromItem.toDouble();
            const double b = row.value.toDouble();
            // Angles between nearly parallel arms are computed far from the
            // picture, where single precision shows.
            const double tolerance = object.type == kAngle ? 1e-4 : 1e-6;
            if (std::abs(a - b) > tolerance * qMax(1.0, std::abs(b)))
                return fail(where + QStringLiteral(" item value %1, stored value %2").arg(a).arg(b));
        }
    }
    const int items = window->getEditor()->getAllChildGsObjects().size();
    if (items != stored.size())
        return fail(QStringLiteral("%1: %2 items on the editor for %3 stored objects").arg(aWhen).arg(items).arg(stored.size()));
    return true;
}

bool ModelRunHelper::expectSame(const Snapshot& aWas, const QString& aWhen)
{
    const QString diff = compareSnapshots(aWas, snapshot());
    return diff.isEmpty() || fail(aWhen + QStringLiteral(": ") + diff);
}

void ModelRunHelper::forgetDroppedRedo()
{
    // A panel edit with something selected is one undo group, and opening
    // one drops what could be redone, also when the edit changes nothing.
    const int count = window->undoStack()->count();
    if (history.size() > count + 1)
        history.resize(count + 1);
}

bool ModelRunHelper::finishAction(int anIndexBefore, int aSteps, const QString& aWhat)
{
    QUndoStack* stack = window->undoStack();
    if (qEnvironmentVariableIsSet("OV_MODEL_TRACE"))
        std::fprintf(stderr, "%s\n", qPrintable(aWhat));
    if (stack->index() != anIndexBefore + aSteps)
        return fail(QStringLiteral("%1 left %2 undo steps, expected %3").arg(aWhat).arg(stack->index() - anIndexBefore)
                        .arg(aSteps));
    if (!checkConsistency(aWhat))
        return false;
    if (aSteps > 0) {
        history.resize(stack->count() + 1);
        for (int i = anIndexBefore + 1; i < history.size(); ++i)
            history[i].reset();
    }
    if (history.size() <= stack->index())
        history.resize(stack->index() + 1);
    history[stack->index()] = snapshot();
    return true;
}

// ---- actions

bool ModelRunHelper::execute(const ModelActionHelper& anAction)
{
    KxGsEditor* editor = window->getEditor();
    const int before = window->undoStack()->index();
    switch (anAction.kind) {
    case ModelActionHelper::Draw:
        return draw(anAction);
    case ModelActionHelper::SelectNone:
        editor->setCurrentObject(nullptr, false);
        return finishAction(before, 0, QStringLiteral("select none"));
    case ModelActionHelper::SelectAll:
        editor->selectAll();
        return finishAction(before, 0, QStringLiteral("select all"));
    case ModelActionHelper::Select:
    case ModelActionHelper::ClickBody:
    case ModelActionHelper::MoveBody:
    case ModelActionHelper::DragHandle:
    case ModelActionHelper::ToggleActive:
    case ModelActionHelper::Trash:
        return edit(anAction);
    case ModelActionHelper::Style:
        return style(anAction);
    case ModelActionHelper::Delete:
        return remove(selectedKeys());
    case ModelActionHelper::Undo:
    case ModelActionHelper::Redo: {
        int target = -1;
        if (anAction.kind == ModelActionHelper::Undo) {
            for (int i = before - 1; i >= 0 && target < 0; --i)
                target = history.value(i) ? i : -1;
        } else {
            for (int i = before + 1; i < history.size() && target < 0; ++i)
                target = history.value(i) ? i : -1;
        }
        return target < 0 ? finishAction(before, 0, anAction.describe()) : historyMove(target, false);
    }
    case ModelActionHelper::HistoryJump: {
        QList<int> known;
        for (int i = 0; i < history.size(); ++i) {
            if (history.at(i))
                known << i;
        }
        return historyMove(known.at(anAction.value % known.size()), true);
    }
    case ModelActionHelper::Frame:
        return frameRoundTrip(anAction.value % qMax(1, window->frameCount()));
    case ModelActionHelper::Calibrate: {
        static const double choices[] = { 0.5, 0.25, 1.0, 0.8 };
        const double calibration = choices[anAction.value % 4];
        const bool change = std::abs(window->calibration() - calibration) > 1e-12;
        window->requestCalibration(calibration);
        return finishAction(before, change ? 1 : 0, anAction.describe());
    }
    case ModelActionHelper::CameraResolution:
        return options.series ? finishAction(before, 0, anAction.describe()) : cameraRoundTrip();
    case ModelActionHelper::SaveReopen:
        return saveAndReopen();
    case ModelActionHelper::KindCount:
        break;
    }
    return fail(QStringLiteral("unknown action"));
}

bool ModelRunHelper::draw(const ModelActionHelper& anAction)
{
    KxGsEditor* editor = window->getEditor();
    const int before = window->undoStack()->index();
    const QString tool = ModelActionHelper::shapeNames().at(anAction.shape);
    const int type = ModelActionHelper::shapeType(anAction.shape);
    const QVector<QPoint>& p = anAction.points;
    for (const QPoint& point : p) {
        if (!isFree(point))
            return finishAction(before, 0, QStringLiteral("draw skipped (a point is on a measurement)"));
        // Choosing a relative tool shows its bases' active buttons, which a
        // press then reaches: keep clear of them too, shown or not yet.
        for (KxGsObject* other : isRelative(type) ? editor->getAllChildGsObjects() : QList<KxGsObject*>()) {
            const auto* measurement = qobject_cast<const OvGsObject*>(other);
            QGraphicsPixmapItem* button = measurement && other->type() == type ? measurement->getActiveButton() : nullptr;
            if (button && editor->mapRectFromScene(button->sceneBoundingRect()).adjusted(-4, -4, 4, 4).contains(point))
                return finishAction(before, 0, QStringLiteral("draw skipped (a point is on a base's active button)"));
        }
    }
    if (!play(QStringLiteral("tool %1\n").arg(tool)))
        return false;

    ModelStoreHelper::Object object;
    object.type = type;
    object.index = model.nextIndex(type);
    object.valueName = valueNameOf(tool);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* dialog = qobject_cast<QColorDialog*>(widget))
            object.color = dialog->currentColor();
    }
    object.width = window->findChild<QSpinBox*>(QStringLiteral("theSBWidth"))->value();
    object.font = window->findChild<QSpinBox*>(QStringLiteral("theSBFontSize"))->value();
    QString unitName = window->findChild<QLabel*>(QStringLiteral("theTLUnit"))->text();
    unitName.remove(QChar(0x00B2));
    object.unitKnown = false;
    for (const auto& unit : unitChoices()) {
        if (unit.first == unitName) {
            object.unit = unit.second;
            object.unitKnown = true;
        }
    }
    if (unitName.startsWith(QLatin1String("deg"))) {
        object.unit = 9;
        object.unitKnown = true;
    }

    // A relative line is measured against the selected base of its kind.
    const Key current = keyOf(editor->getCurrentObject());
    const bool againstBase = isRelative(type) && current.first == type && model.objects.contains(current)
                             && model.objects[current].role == ModelStoreHelper::Base;

    auto line = [&](const QPoint& aFrom, const QPoint& aTo) {
        if (anAction.byClicks) {
            click(aFrom);
            mouse(QEvent::MouseMove, (aFrom + aTo) / 2);
            mouse(QEvent::MouseMove, aTo);
            click(aTo);
        } else {
            drag(aFrom, aTo);
        }
    };
    if (type == kDistance) {
        line(p[0], p[1]);
        object.points = { p[0], p[1] };
    } else if (type == kAngle) {
        line(p[0], p[1]);
        line(p[2], p[3]);
        object.points = { p[0], p[1], p[2], p[3] };
    } else if (type == kCircle) {
        if (anAction.byClicks) {
            click(p[0]);
            mouse(QEvent::MouseMove, p[1]);
            click(p[1]);
        } else {
            drag(p[0], p[1]);
        }
        mouse(QEvent::MouseMove, (p[1] + p[2]) / 2);
        mouse(QEvent::MouseMove, p[2]);
        click(p[2]);
        object.points = { p[0], p[1], p[2] };
    } else if (type == kFreeForm || type == kFreeLine) {
        if (anAction.byClicks)
            click(p[0]);
        else
            mouse(QEvent::MouseButtonPress, p[0]);
        for (int i = 1; i < p.size(); ++i) {
            mouse(QEvent::MouseMove, (p[i - 1] + p[i]) / 2);
            mouse(QEvent::MouseMove, p[i]);
        }
        if (anAction.byClicks)
            click(p.last());
        else
            mouse(QEvent::MouseButtonRelease, p.last());
    } else if (againstBase) {
        // A parallel line needs only a click where it starts.
        if (type == kParallel && anAction.byClicks)
            click(p[1]);
        else
            drag(p[0], p[1]);
        object.role = ModelStoreHelper::Line;
        object.baseIndex = current.second;
        object.points = { p[1] };
    } else {
        line(p[0], p[1]);
        object.role = ModelStoreHelper::Base;
        object.points = { p[0], p[1] };
    }
    QApplication::processEvents();
    const Key key(type, object.index);

    if (type == kAngle) {
        // The angle keeps its arms from their crossing: each stored node lies
        // on the line through the arm it belongs to.
        const KxKernelObjectData* data = KxKernelData::getInstance()->getObject(type, object.index);
        if (!data)
            return fail(QStringLiteral("the %1 was not stored").arg(tool));
        const QVector<QPointF> nodes = ModelStoreHelper::storedPoints(type, data->getDefaultKeyframes());
        if (nodes.size() != 4)
            return fail(QStringLiteral("the %1 has %2 nodes").arg(tool).arg(nodes.size()));
        for (int i = 0; i < 4; ++i) {
            const QPointF a = p[i < 2 ? 0 : 2];
            const QPointF b = p[i < 2 ? 1 : 3];
            if (distanceToLine(nodes[i], a, b) > 1.0)
                return fail(QStringLiteral("node %1 %2 of the %3 is off its arm").arg(i).arg(pointText(nodes[i]), tool));
        }
        object.points = nodes;
    }
    if (type == kFreeForm || type == kFreeLine) {
        // Nodes follow the pointer; they must lie on the path it took.
        const KxKernelObjectData* data = KxKernelData::getInstance()->getObject(type, object.index);
        if (!data)
            return fail(QStringLiteral("the %1 was not stored").arg(tool));
        object.points = ModelStoreHelper::storedPoints(type, data->getDefaultKeyframes());
        if (object.points.size() < (type == kFreeForm ? 3 : 2))
            return fail(QStringLiteral("the %1 has %2 nodes").arg(tool).arg(object.points.size()));
        for (const QPointF& node : object.points) {
            double nearest = 1e9;
            for (int i = 1; i < p.size(); ++i)
                nearest = qMin(nearest, pointToSegment(node, p[i - 1], p[i]));
            if (nearest > 1.5)
                return fail(QStringLiteral("node %1 of the %2 is off the path drawn").arg(pointText(node), tool));
        }
    }
    model.objects.insert(key, object);
    if (object.role == ModelStoreHelper::Line) {
        model.objects[key].points.resize(1);
        model.placeLines(Key(type, object.baseIndex));
    }
    return finishAction(before, 1, QStringLiteral("draw %1").arg(tool));
}

bool ModelRunHelper::edit(const ModelActionHelper& anAction)
{
    KxGsEditor* editor = window->getEditor();
    const int before = window->undoStack()->index();
    const Key key = targetKey(anAction.target);
    OvGsObject* item = key.second >= 0 ? itemOf(key) : nullptr;
    const QString what = anAction.describe();
    if (!item)
        return finishAction(before, 0, what + QStringLiteral(" skipped (nothing stored)"));
    ModelStoreHelper::Object& object = model.objects[key];
    const bool relative = isRelative(key.first);
    if (!play(QStringLiteral("tool none\n")))
        return false;

    if (anAction.kind == ModelActionHelper::ToggleActive) {
        QGraphicsPixmapItem* button = item->getActiveButton();
        if (object.role != ModelStoreHelper::Base || !button || !button->isVisible())
            return finishAction(before, 0, what + QStringLiteral(" skipped (no active button)"));
        const QPointF at = editor->mapFromScene(button->sceneBoundingRect().center());
        if (!isFree(at, item))
            return finishAction(before, 0, what + QStringLiteral(" skipped (covered)"));
        click(at);
        return finishAction(before, 0, what);
    }
    if (anAction.kind == ModelActionHelper::Trash) {
        editor->setCurrentObject(item, false);
        QGraphicsPixmapItem* button = item->getTrashButton();
        if (!button || !button->isVisible())
            return fail(what + QStringLiteral(": the current measurement shows no trash button"));
        const QPointF at = editor->mapFromScene(button->sceneBoundingRect().center());
        if (!isFree(at, item) || !inPicture(at))
            return finishAction(before, 0, what + QStringLiteral(" skipped (covered or off the picture)"));
        click(at);
        QApplication::processEvents();
        // remove() counts on the stack index before the press.
        QList<Key> gone{ key };
        if (object.role == ModelStoreHelper::Base)
            gone += model.linesOf(key);
        for (const Key& removed : gone)
            model.objects.remove(removed);
        return finishAction(before, 1, what);
    }

    const QPointF body = pressPoint(bodyPoint(object));
    if (anAction.kind == ModelActionHelper::Select || anAction.kind == ModelActionHelper::ClickBody) {
        int part = -1;
        if (!isFree(body, item) || !item->isPointOnObject(item->mapFromParent(body), part, 2) || part != 0)
            return finishAction(before, 0, what + QStringLiteral(" skipped (body not reachable)"));
        click(body, anAction.kind == ModelActionHelper::Select && anAction.add);
        return finishAction(before, 0, what);
    }

    // Moves and reshapes.
    if (object.role == ModelStoreHelper::Line)
        return finishAction(before, 0, what + QStringLiteral(" skipped (a measured line follows its base)"));
    QPointF from = body;
    int handle = -1;
    if (anAction.kind == ModelActionHelper::DragHandle) {
        if (key.first == kFreeForm || key.first == kFreeLine)
            return finishAction(before, 0, what + QStringLiteral(" skipped (free forms are not reshaped)"));
        handle = anAction.handle % object.points.size();
        // An angle's inner nodes are where its arms meet the vertex region:
        // dragging one turns the arm, so only the outer ones are dragged.
        if (key.first == kAngle)
            handle |= 1;
        from = pressPoint(object.points[handle]);
        editor->setCurrentObject(item, false);
    }
    QVector<QPointF> moved = object.points;
    for (int i = 0; i < moved.size(); ++i) {
        if (handle < 0 || i == handle)
            moved[i] += anAction.delta;
    }
    bool sane = isFree(from, item) && isFree(from + anAction.delta, item);
    for (int i = 0; i < moved.size() && sane; ++i) {
        sane = inPicture(moved[i]);
        for (int j = 0; j < i && sane; ++j)
            sane = distance(moved[i], moved[j]) >= 40;
        // A body press must not land on a handle.
        if (handle < 0)
            sane = sane && distance(from, object.points[i]) >= 24;
    }
    if (key.first == kAngle && handle >= 0 && sane && moved.size() == 4) {
        // The arms are kept running outward from where they cross, inside the
        // picture: a drag that takes the vertex out of the picture or pulls a
        // node past it makes the angle re-place its nodes. Such drags are not
        // what this step checks.
        QPointF vertex;
        const QLineF first(moved[0], moved[1]);
        const QLineF second(moved[2], moved[3]);
        sane = first.intersects(second, &vertex) != QLineF::NoIntersection && inPicture(vertex)
               && distance(moved[handle], vertex) > distance(moved[handle ^ 1], vertex) + 10.0;
    }
    if (key.first == kCircle && sane) {
        const QPointF a = moved[1] - moved[0];
        const QPointF b = moved[2] - moved[0];
        sane = std::abs(a.x() * b.y() - a.y() * b.x()) > 2000;
    }
    int part = -1;
    if (sane)
        sane = item->isPointOnObject(item->mapFromParent(from), part, 2) && part == 0;
    if (!sane)
        return finishAction(before, 0, what + QStringLiteral(" skipped (not a clean press)"));
    drag(from, from + anAction.delta);
    QApplication::processEvents();
    if (key.first == kFreeForm || key.first == kFreeLine)
        return finishAction(before, 0, what);
    object.points = moved;
    if (key.first == kAngle && handle >= 0) {
        // Arms are kept from their crossing: the dragged node lands where
        // the mouse was let go, the others follow from it.
        const KxKernelObjectData* data = KxKernelData::getInstance()->getObject(key.first, key.second);
        const QVector<QPointF> nodes = data ? ModelStoreHelper::storedPoints(key.first, data->getKeyframesAt(
                                                  KxKernelData::getInstance()->getCurrentFrame()))
                                            : QVector<QPointF>();
        bool found = false;
        for (const QPointF& node : nodes)
            found = found || distance(node, moved[handle]) <= 2.5;
        if (nodes.size() != 4 || !found) {
            QStringList list;
            for (const QPointF& node : nodes)
                list << pointText(node);
            return fail(what + QStringLiteral(": no node of the angle where the drag from %1 ended %2, nodes %3")
                                   .arg(pointText(from), pointText(moved[handle]), list.join(' ')));
        }
        object.points = nodes;
    }
    // One gesture, one undo step, also when it carries lines along.
    if (relative)
        model.placeLines(key);
    return finishAction(before, 1, what);
}

bool ModelRunHelper::style(const ModelActionHelper& anAction)
{
    const int before = window->undoStack()->index();
    static const char* const colours[] = { "#ff0000", "#00ff00", "#0000ff", "#ffff00", "#ff00ff", "#ffffff" };
    QString command;
    int newValue = 0;
    QColor newColour;
    int current = 0;
    switch (anAction.style) {
    case ModelActionHelper::StyleUnit: {
        const auto& unit = unitChoices().at(anAction.value % unitChoices().size());
        newValue = unit.second;
        command = QStringLiteral("unit %1").arg(unit.first);
        QString shown = window->findChild<QLabel*>(QStringLiteral("theTLUnit"))->text();
        shown.remove(QChar(0x00B2));
        current = shown == unit.first ? newValue : -1;
        break;
    }
    case ModelActionHelper::StyleWidth:
        newValue = 1 + anAction.value % 6;
        command = QStringLiteral("width %1").arg(newValue);
        current = window->findChild<QSpinBox*>(QStringLiteral("theSBWidth"))->value();
        break;
    case ModelActionHelper::StyleFont:
        newValue = 10 + 2 * (anAction.value % 8);
        command = QStringLiteral("font %1").arg(newValue);
        current = window->findChild<QSpinBox*>(QStringLiteral("theSBFontSize"))->value();
        break;
    default: {
        newColour = QColor(QString::fromLatin1(colours[anAction.value % 6]));
        command = QStringLiteral("color %1").arg(newColour.name());
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* dialog = qobject_cast<QColorDialog*>(widget))
                current = dialog->currentColor() == newColour ? 0 : -1;
        }
        newValue = 0;
        break;
    }
    }
    const QList<Key> selected = selectedKeys();
    // The panel says nothing when the value does not change.
    if (current == newValue)
        return finishAction(before, 0, anAction.describe() + QStringLiteral(" (no change)"));
    if (anAction.style == ModelActionHelper::StyleUnit) {
        // Not every tool offers every unit: then nothing happens.
        OvGestureScript script;
        script.parse(command);
        OvGestureReplayer replayer(window);
        const bool offered = replayer.run(script);
        forgetDroppedRedo();
        if (!offered)
            return finishAction(before, 0, anAction.describe() + QStringLiteral(" (unit not offered)"));
    } else if (!play(command)) {
        return false;
    }
    forgetDroppedRedo();
    bool changed = false;
    bool unsure = false;
    for (const Key& key : selected) {
        ModelStoreHelper::Object& object = model.objects[key];
        switch (anAction.style) {
        case ModelActionHelper::StyleUnit:
            if (key.first == kAngle) {
                unsure = true;
                object.unitKnown = false;
            } else {
                changed = changed || object.unit != newValue || !object.unitKnown;
                object.unit = newValue;
                object.unitKnown = true;
            }
            break;
        case ModelActionHelper::StyleWidth:
            changed = changed || object.width != newValue;
            object.width = newValue;
            break;
        case ModelActionHelper::StyleFont:
            changed = changed || object.font != newValue;
            object.font = newValue;
            break;
        default:
            changed = changed || object.color != newColour;
            object.color = newColour;
            break;
        }
    }
    int steps = changed ? 1 : 0;
    if (unsure && !changed)
        steps = window->undoStack()->index() - before;
    if (unsure) {
        // The angle keeps its value name; its unit is read back.
        for (const Key& key : selected) {
            if (key.first == kAngle) {
                const KxKernelObjectData* data = KxKernelData::getInstance()->getObject(key.first, key.second);
                model.objects[key].unit = data ? data->getDefaultKeyframes()[8].getValue().toInt() : 0;
                model.objects[key].unitKnown = true;
            }
        }
    }
    return finishAction(before, steps, anAction.describe());
}

bool ModelRunHelper::remove(const QList<Key>& aSelected)
{
    const int before = window->undoStack()->index();
    window->getEditor()->deleteSelected();
    QApplication::processEvents();
    QList<Key> gone = aSelected;
    for (const Key& key : aSelected) {
        if (model.objects.value(key).role == ModelStoreHelper::Base)
            gone += model.linesOf(key);
    }
    for (const Key& key : gone)
        model.objects.remove(key);
    // One step for all, lines of removed bases included.
    const int steps = aSelected.isEmpty() ? 0 : 1;
    return finishAction(before, steps, QStringLiteral("delete selected"));
}

bool ModelRunHelper::historyMove(int aTarget, bool aJump)
{
    QUndoStack* stack = window->undoStack();
    if (aJump) {
        stack->setIndex(aTarget);
    } else {
        while (stack->index() > aTarget && stack->canUndo())
            stack->undo();
        while (stack->index() < aTarget && stack->canRedo())
            stack->redo();
    }
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const QString what = QStringLiteral("%1 to history index %2").arg(aJump ? "jump" : "undo/redo").arg(aTarget);
    if (stack->index() != aTarget)
        return fail(what + QStringLiteral(": the stack is at %1").arg(stack->index()));
    const Snapshot& was = *history[aTarget];
    model = was.model;
    return checkConsistency(what) && expectSame(was, what);
}

bool ModelRunHelper::frameRoundTrip(int aFrame)
{
    const int before = window->undoStack()->index();
    const qint64 original = KxKernelData::getInstance()->getCurrentFrame();
    if (aFrame == original)
        return finishAction(before, 0, QStringLiteral("frame unchanged"));
    const Snapshot was = snapshot();
    if (!window->showFrame(aFrame))
        return fail(QStringLiteral("cannot show frame %1").arg(aFrame));
    if (!checkConsistency(QStringLiteral("at frame %1").arg(aFrame)))
        return false;
    window->showFrame(int(original));
    return expectSame(was, QStringLiteral("frame %1 and back").arg(aFrame))
           && finishAction(before, 0, QStringLiteral("frame and back"));
}

bool ModelRunHelper::cameraRoundTrip()
{
    KxKernelData* kernel = KxKernelData::getInstance();
    const QSize size = kernel->getCurrentImageSize();
    const Snapshot was = snapshot();
    auto positions = [kernel, this] {
        QMap<Key, QPoint> stored;
        for (const Key& key : storedKeys())
            stored.insert(key, kernel->getObject(key.first, key.second)->getDefaultKeyframes()[3].getValue().toPoint());
        return stored;
    };
    QMap<Key, QPoint> before = positions();
    QMap<Key, QPointF> anchors;
    for (const Key& key : storedKeys()) {
        if (OvGsObject* item = itemOf(key))
            anchors.insert(key, item->getLabelAnchor());
    }
    kernel->changeCameraResolution(size / 2);
    QApplication::processEvents();
    model.scale(0.5, before);
    if (!checkConsistency(QStringLiteral("camera at half resolution")))
        return false;
    // Every shape shrinks about its position: so does the point its label
    // belongs to (an angle's arc keeps its size on screen).
    for (const Key& key : storedKeys()) {
        if (key.first == kAngle)
            continue;
        const QPointF anchor = anchors.value(key) * 0.5;
        OvGsObject* item = itemOf(key);
        if (item && (key.first == kFreeForm || key.first == kFreeLine)) {
            // A free form's label belongs to the node nearest its bounding
            // box's corner; rounding the halved nodes may make another one the
            // nearest. It must be one of the nodes it has now.
            const KxKernelObjectData* data = kernel->getObject(key.first, key.second);
            const QVector<QPointF> nodes = data ? ModelStoreHelper::storedPoints(key.first, data->getDefaultKeyframes())
                                                : QVector<QPointF>();
            const QPointF at = item->mapToParent(item->getLabelAnchor());
            const bool onNode = std::any_of(nodes.cbegin(), nodes.cend(),
                                            [&](const QPointF& aNode) { return distance(aNode, at) <= 1.5; });
            if (!onNode)
                return fail(QStringLiteral("camera at half resolution: object %1/%2 label belongs to %3, no node is there")
                                .arg(key.first).arg(key.second).arg(pointText(item->getLabelAnchor())));
            continue;
        }
        if (item && distance(item->getLabelAnchor(), anchor) > 1.5)
            return fail(QStringLiteral("camera at half resolution: object %1/%2 label belongs to %3, its shape's point is now %4")
                            .arg(key.first).arg(key.second).arg(pointText(item->getLabelAnchor()), pointText(anchor)));
    }
    before = positions();
    kernel->changeCameraResolution(size);
    QApplication::processEvents();
    model.scale(2.0, before);
    if (!checkConsistency(QStringLiteral("camera back at full resolution")))
        return false;
    // The history holds geometry of the old resolution: it starts afresh.
    if (window->undoStack()->count() != 0)
        return fail(QStringLiteral("a camera-resolution change kept %1 undo steps").arg(window->undoStack()->count()));
    // With even coordinates everything but parallel distances (whole
    // pixels) comes back; what comes back must look as before.
    if (storeState() == was.store && !expectSame(was, QStringLiteral("camera resolution halved and restored")))
        return false;
    history = { snapshot() };
    return true;
}

bool ModelRunHelper::saveAndReopen()
{
    const Snapshot was = snapshot();
    QString error;
    if (!window->saveMeasurements(options.scratchFile, &error))
        return fail(QStringLiteral("save: ") + error);
    if (!window->loadMeasurements(options.scratchFile, &error))
        return fail(QStringLiteral("reopen: ") + error);
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (!checkConsistency(QStringLiteral("reopened")) || !expectSame(was, QStringLiteral("saved and reopened")))
        return false;
    if (window->undoStack()->count() != 0)
        return fail(QStringLiteral("the history does not start afresh after opening measurements"));
    history = { snapshot() };
    return true;
}

bool ModelRunHelper::fullCheck()
{
    QUndoStack* stack = window->undoStack();
    const int top = stack->index();
    const Snapshot was = snapshot();
    while (stack->canUndo()) {
        stack->undo();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        const int index = stack->index();
        if (index < history.size() && history[index]) {
            model = history[index]->model;
            if (!checkConsistency(QStringLiteral("undo all, at %1").arg(index))
                || !expectSame(*history[index], QStringLiteral("undo all, at %1").arg(index)))
                return false;
        }
    }
    stack->setIndex(stack->count());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (history.size() > stack->count() && history[stack->count()]) {
        model = history[stack->count()]->model;
        if (!checkConsistency(QStringLiteral("redo all")) || !expectSame(*history[stack->count()], QStringLiteral("redo all")))
            return false;
    }
    stack->setIndex(top);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    model = was.model;
    if (!checkConsistency(QStringLiteral("back after undo all, redo all"))
        || !expectSame(was, QStringLiteral("back after undo all, redo all")))
        return false;
    return saveAndReopen();
}
