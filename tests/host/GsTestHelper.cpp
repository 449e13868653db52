#include "GsTestHelper.h"

#include "CmdCreateObject.h"
#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxSignalCenter.h"
#include "KxView.h"

#include <QApplication>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QTest>

namespace {

QString pointText(const QPointF& aPoint)
{
    return QStringLiteral("%1,%2").arg(qRound(aPoint.x())).arg(qRound(aPoint.y()));
}

void logEvent(QStringList& aLog, const char* aWhat, QEvent* anEvent, const QPointF& aPos)
{
    aLog << QString::fromLatin1(aWhat) + QLatin1Char(' ') + pointText(aPos);
    anEvent->accept();
}

// A box's values; none for an invalid size (no box).
QVariant boxValue(const QString& aName, const QSizeF& aSize, QString& aUnit)
{
    aUnit.clear();
    if (!aSize.isValid())
        return QVariant();
    if (aName == QLatin1String("Area")) {
        aUnit = QStringLiteral("px2");
        return aSize.width() * aSize.height();
    }
    if (aName == QLatin1String("Width")) {
        aUnit = QStringLiteral("px");
        return aSize.width();
    }
    return QVariant();
}

} // namespace

TestGsItem::TestGsItem(KxGsManipulator* aManipulator, QGraphicsItem* aParent, int aType, const QSizeF& aSize)
    : OvGsObject(aManipulator, aParent, QStringLiteral("Box"))
    , itemType(aType)
    , size(aSize)
{
}

void TestGsItem::paint(QPainter* aPainter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (hidden)
        return;
    aPainter->setPen(isCurrent() || isSelected() ? currentPen : normalPen);
    aPainter->drawRect(QRectF(QPointF(0, 0), size));
}

void TestGsItem::adjustScale(double aZoom)
{
    OvGsObject::adjustScale(aZoom);
    lastZoom = aZoom;
    calls << QStringLiteral("adjustScale");
}

bool TestGsItem::isPointOnObject(const QPointF& aPoint, int& aPart, int aTolerance) const
{
    if (OvGsObject::isPointOnObject(aPoint, aPart, aTolerance))
        return true;
    aPart = 0;
    const double half = aTolerance / 2;
    return QRectF(QPointF(0, 0), size).adjusted(-half, -half, half, half).contains(aPoint);
}

void TestGsItem::manipMousePressEvent(QMouseEvent* anEvent)
{
    calls << QStringLiteral("press ") + pointText(anEvent->localPos());
    moving = reshaping = false;
    anEvent->ignore();
    if (hidden || isLocked() || !isVisible())
        return;
    OvGsObject::manipMousePressEvent(anEvent);
    if (anEvent->isAccepted())
        return;
    const QPointF local = anEvent->localPos();
    int part = 0;
    if (QLineF(local, QPointF(size.width(), size.height())).length() <= 4.0) {
        reshaping = true;
    } else if (isPointOnObject(local, part, 0)) {
        moving = true;
    } else {
        return;
    }
    pressLocal = local;
    anEvent->accept();
}

void TestGsItem::manipMouseMoveEvent(QMouseEvent* anEvent)
{
    calls << QStringLiteral("move ") + pointText(anEvent->localPos());
    OvGsObject::manipMouseMoveEvent(anEvent);
    if (anEvent->isAccepted())
        return;
    if (moving)
        setPos(pos() + (anEvent->localPos() - pressLocal));
    else if (reshaping)
        setSize(QSizeF(anEvent->localPos().x(), anEvent->localPos().y()));
    anEvent->accept();
}

void TestGsItem::manipMouseReleaseEvent(QMouseEvent* anEvent)
{
    calls << QStringLiteral("release ") + pointText(anEvent->localPos());
    anEvent->ignore();
    OvGsObject::manipMouseReleaseEvent(anEvent);
    if (anEvent->isAccepted()) {
        moving = reshaping = false;
        return;
    }
    if (!moving && !reshaping)
        return;
    if (reshaping && getManipulator())
        getManipulator()->gsObjectChangedShape(this);
    moving = reshaping = false;
    anEvent->accept();
}

void TestGsItem::setSize(const QSizeF& aSize)
{
    prepareGeometryChange();
    size = aSize;
    update();
}

TestManipulator::TestManipulator(int aType, QUndoStack* anUndoStack)
    : KxGsManipulator(nullptr, anUndoStack)
    , objectType(aType)
{
    valueNames << QStringLiteral("Area") << QStringLiteral("Width");
    if (!kernelData->registerObjectType(this, aType))
        return;
    auto* descr = new KxKernelObjectDataDescr(aType, 7);
    descr->addDefaultParamsDescr();
    descr->addParamDescr(5, QStringLiteral("size"), QMetaType::QSizeF, ParamDescr::KeyframeAnimated);
    descr->addParamDescr(6, QStringLiteral("w"), QMetaType::Int, ParamDescr::KeyframeConstant);
    if (!kernelData->registerDataDescriptor(descr, aType)) {
        delete descr;
        return;
    }
    // Connected by signature, as the plug-in's manipulators do.
    connect(kernelNotifier, SIGNAL(signalObjectCreated(const int, const int, const KxKernelObjectData*)), this,
            SLOT(slotObjectCreatedInKernel(const int, const int, const KxKernelObjectData*)));
    connect(kernelNotifier, SIGNAL(signalObjectChanged(const int, const int, const KxKernelObjectData*)), this,
            SLOT(slotObjectChangedInKernel(const int, const int, const KxKernelObjectData*)));
    connect(kernelNotifier, SIGNAL(signalObjectBeforeRemove(const int, const int)), this,
            SLOT(slotObjectBeforeRemoveInKernel(const int, const int)));
    connect(kernelNotifier, SIGNAL(signalObjectShowValue(const int, const int, const QString&)), this,
            SLOT(slotObjectShowValueInKernel(const int, const int, const QString&)));
}

QVariant TestManipulator::getCalculatedValue(const QString& aName, const KxGsObject* anObj, QString& aUnitName)
{
    const auto* box = dynamic_cast<const TestGsItem*>(anObj);
    return boxValue(aName, box ? box->getSize() : QSizeF(), aUnitName);
}

QList<QVariant> TestManipulator::getCalculatedValues(const QStringList& aNames, const KxKernelObjectData* aData,
                                                     QStringList& aUnits)
{
    aUnits.clear();
    QList<QVariant> values;
    const QSizeF size = aData ? aData->getDefaultKeyframes()[5].getValue().toSizeF() : QSizeF();
    for (const QString& name : aNames) {
        QString unit;
        values << boxValue(name, size, unit);
        aUnits << unit;
    }
    return values;
}

void TestManipulator::activate()
{
    KxGsManipulator::activate();
    log << QStringLiteral("activate");
}

void TestManipulator::mousePressEvent(QGraphicsSceneMouseEvent* anEvent)
{
    logEvent(log, "press", anEvent, anEvent->pos());
}

void TestManipulator::mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent)
{
    logEvent(log, "release", anEvent, anEvent->pos());
}

void TestManipulator::mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent)
{
    logEvent(log, "move", anEvent, anEvent->pos());
}

void TestManipulator::hoverEnterEvent(QGraphicsSceneHoverEvent* anEvent)
{
    logEvent(log, "hoverEnter", anEvent, anEvent->pos());
}

void TestManipulator::hoverLeaveEvent(QGraphicsSceneHoverEvent* anEvent)
{
    log << QStringLiteral("hoverLeave");
    anEvent->accept();
}

void TestManipulator::hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent)
{
    logEvent(log, "hoverMove", anEvent, anEvent->pos());
}

void TestManipulator::gsObjectChangedShape(KxGsObject* anObj)
{
    log << QStringLiteral("changedShape");
    if (auto* box = dynamic_cast<TestGsItem*>(anObj))
        setGsObjectParamValue(box, QStringLiteral("size"), QVariant(box->getSize()));
}

TestGsItem* TestManipulator::addStored(const QPointF& aPos, const QSizeF& aSize)
{
    const KxKernelObjectDataDescr* descr = kernelData->getDataDescriptor(objectType);
    if (!descr)
        return nullptr;
    KxParamKeyframeVector values = descr->createKeyframeVector();
    const KxView* view = kernelData->getCurrentView();
    const QPoint origin = view ? view->getOrigin() : QPoint();
    values[0].setValue(true);
    values[1].setValue(QColor(Qt::green));
    values[2].setValue(QStringLiteral("Area"));
    values[3].setValue(QPoint(qRound(aPos.x()), qRound(aPos.y())) + origin);
    values[4].setValue(false);
    values[5].setValue(aSize);
    values[6].setValue(2);
    const int idx = kernelData->nextFreeIndex(objectType);
    auto* data = new KxKernelObjectData(values, descr->getKeyframeTypes(), false);
    undoStack->push(new CmdCreateObject(objectType, idx, data));
    return item(idx);
}

TestGsItem* TestManipulator::addUnstored(const QPointF& aPos, const QSizeF& aSize)
{
    auto* box = new TestGsItem(this, editor, objectType, aSize);
    box->setPos(aPos);
    return box;
}

void TestManipulator::slotObjectCreatedInKernel(const int aType, const int anIdx, const KxKernelObjectData* aData)
{
    if (blockKernelNotification || aType != objectType || !aData || gsObjectMap.contains(anIdx))
        return;
    auto* box = new TestGsItem(this, editor, objectType, QSizeF());
    box->setName(QStringLiteral("Box %1").arg(anIdx));
    gsObjectMap.insert(anIdx, box);
    applyKeyframes(box, aData);
    if (editor)
        box->adjustScale(editor->getZoom());
    log << QStringLiteral("created %1").arg(anIdx);
}

void TestManipulator::slotObjectChangedInKernel(const int aType, const int anIdx, const KxKernelObjectData* aData)
{
    if (blockKernelNotification || aType != objectType || !aData)
        return;
    if (TestGsItem* box = item(anIdx))
        applyKeyframes(box, aData);
    log << QStringLiteral("changed %1").arg(anIdx);
}

void TestManipulator::applyKeyframes(TestGsItem* anItem, const KxKernelObjectData* aData)
{
    const KxParamKeyframeVector values = aData->getKeyframesAt(kernelData->getCurrentFrame());
    const KxView* view = kernelData->getCurrentView();
    const QPoint origin = view ? view->getOrigin() : QPoint();
    anItem->setPos(values[3].getValue().toPoint() - origin);
    anItem->setVisible(values[0].getValue().toBool());
    anItem->setColor(values[1].getValue().value<QColor>());
    anItem->setSize(values[5].getValue().toSizeF());
    // Beside the top-right corner, clear of the box.
    anItem->setTrashPos(QPointF(anItem->getSize().width() + 6.0, -26.0));
    anItem->setPenStyle(Qt::SolidLine, values[6].getValue().toInt());
}

GsFixture::GsFixture()
    : view(new QGraphicsView(&scene))
    , editor(KxGsEditor::getInstance())
{
    if (editor->scene())
        editor->scene()->removeItem(editor);
    scene.addItem(editor);
    editor->setImage(makeImage());
    editor->setZoom(1.0);
    view->setFrameShape(QFrame::NoFrame);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    view->setSceneRect(QRectF(0, 0, 400, 300));
    view->setMouseTracking(true);
    view->resize(400, 300);
    view->show();
    view->activateWindow();
    if (!QTest::qWaitForWindowExposed(view))
        qWarning("view not exposed");
    QObject::connect(editor, &KxGsEditor::signalCurrentObjectChanged, view,
                     [this](const KxGsObject* anObj) { currentChanges << anObj; });
}

GsFixture::~GsFixture()
{
    stack.clear();
    KxKernelData::getInstance()->removeAllObjects();
    for (const QPointer<KxGsManipulator>& manipulator : manipulators)
        delete manipulator.data();
    KxKernelData::getInstance()->setCurrentFrame(0);
    delete view;
    delete editor;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QImage GsFixture::makeImage(int aWidth, int aHeight)
{
    QImage image(aWidth, aHeight, QImage::Format_RGB32);
    for (int y = 0; y < aHeight; ++y) {
        for (int x = 0; x < aWidth; ++x)
            image.setPixel(x, y, qRgb(x % 256, y % 256, 77));
    }
    return image;
}

void GsFixture::mouseMove(QWidget* aWidget, const QPoint& aPos, Qt::MouseButtons aButtons,
                          Qt::KeyboardModifiers aModifiers)
{
    QMouseEvent event(QEvent::MouseMove, aPos, aWidget->mapToGlobal(aPos), Qt::NoButton, aButtons, aModifiers);
    QApplication::sendEvent(aWidget, &event);
}

void GsFixture::drag(const QPoint& aFrom, const QPoint& aTo)
{
    QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::NoModifier, aFrom);
    mouseMove(view->viewport(), (aFrom + aTo) / 2, Qt::LeftButton);
    mouseMove(view->viewport(), aTo, Qt::LeftButton);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::NoModifier, aTo);
}

void GsFixture::click(const QPointF& anEditorPos, Qt::KeyboardModifiers aModifiers)
{
    QTest::mouseClick(view->viewport(), Qt::LeftButton, aModifiers, toViewport(anEditorPos));
}

QPoint GsFixture::toViewport(const QPointF& anEditorPos) const
{
    return view->mapFromScene(editor->mapToScene(anEditorPos));
}

TestManipulator* GsFixture::addManipulator(int aType)
{
    auto* manipulator = new TestManipulator(aType, &stack);
    manipulators << manipulator;
    return manipulator;
}

KernelRecorder::KernelRecorder()
{
    KxSignalCenter* hub = KxSignalCenter::getInstance();
    KxKernelData* store = KxKernelData::getInstance();
    auto note = [this](const char* aWhat, int aType, int anIdx) {
        log << QStringLiteral("%1 %2:%3").arg(QLatin1String(aWhat)).arg(aType).arg(anIdx);
    };
    connections << QObject::connect(hub, &KxSignalCenter::signalObjectCreated, hub,
                                    [=](int aType, int anIdx, const KxKernelObjectData* aData) {
                                        note("created", aType, anIdx);
                                        stored << (store->getObject(aType, anIdx) == aData);
                                    });
    connections << QObject::connect(hub, &KxSignalCenter::signalObjectChanged, hub,
                                    [=](int aType, int anIdx, const KxKernelObjectData* aData) {
                                        note("changed", aType, anIdx);
                                        stored << (store->getObject(aType, anIdx) == aData);
                                    });
    connections << QObject::connect(hub, &KxSignalCenter::signalObjectBeforeRemove, hub, [=](int aType, int anIdx) {
        note("before", aType, anIdx);
        stored << (store->getObject(aType, anIdx) != nullptr);
    });
    connections << QObject::connect(hub, &KxSignalCenter::signalObjectRemoved, hub, [=](int aType, int anIdx) {
        note("removed", aType, anIdx);
        stored << (store->getObject(aType, anIdx) == nullptr);
    });
    connections << QObject::connect(hub, &KxSignalCenter::signalNewMediaReady, hub,
                                    [this](const KxMediaInfo& anInfo, bool&) {
                                        log << QStringLiteral("newMedia ") + anInfo.getFileName();
                                    });
    connections << QObject::connect(hub, &KxSignalCenter::signalMediaLoaded, hub,
                                    [this]() { log << QStringLiteral("loaded"); });
    connections << QObject::connect(hub, &KxSignalCenter::signalFrameReady, hub,
                                    [this](qint64 aFrame) { log << QStringLiteral("frame %1").arg(aFrame); });
}

KernelRecorder::~KernelRecorder()
{
    for (const auto& connection : qAsConst(connections))
        QObject::disconnect(connection);
}

QStringList KernelRecorder::take()
{
    const QStringList result = log;
    log.clear();
    return result;
}

int countPixelsNear(const QImage& anImage, const QColor& aColor, int aTolerance, int aMinAlpha)
{
    int count = 0;
    for (int y = 0; y < anImage.height(); ++y) {
        for (int x = 0; x < anImage.width(); ++x) {
            const QColor pixel = anImage.pixelColor(x, y);
            if (pixel.alpha() >= aMinAlpha && qAbs(pixel.red() - aColor.red()) < aTolerance &&
                qAbs(pixel.green() - aColor.green()) < aTolerance && qAbs(pixel.blue() - aColor.blue()) < aTolerance)
                ++count;
        }
    }
    return count;
}
