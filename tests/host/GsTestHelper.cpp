#include "GsTestHelper.h"

#include "CmdCreateObject.h"
#include "KxKernelObjectDataDescr.h"
#include "KxSignalCenter.h"
#include "KxView.h"
#include "OvQtCompat.h"

#include <QApplication>
#include <QPainter>

#include <memory>

namespace {

QString eventText(const char* aWhat, const QPointF& aPos)
{
    return QStringLiteral("%1 %2,%3").arg(QLatin1String(aWhat)).arg(qRound(aPos.x())).arg(qRound(aPos.y()));
}

// A mouse move carrying the buttons held (QTest's own does not).
void mouseMove(QWidget* aWidget, const QPoint& aPos, Qt::MouseButtons aButtons)
{
    QMouseEvent event(QEvent::MouseMove, aPos, aWidget->mapToGlobal(aPos), Qt::NoButton, aButtons, Qt::NoModifier);
    QApplication::sendEvent(aWidget, &event);
}

QPoint viewOrigin()
{
    const KxView* view = KxKernelData::getInstance()->getCurrentView();
    return view ? view->getOrigin() : QPoint();
}

} // namespace

KxKernelObjectDataDescr* newBoxDescriptor(int aType)
{
    auto* descr = new KxKernelObjectDataDescr(aType, 7);
    descr->addDefaultParamsDescr();
    descr->addParamDescr(5, QStringLiteral("size"), QMetaType::QSizeF, ParamDescr::KeyframeAnimated);
    descr->addParamDescr(6, QStringLiteral("w"), QMetaType::Int, ParamDescr::KeyframeConstant);
    return descr;
}

KxKernelObjectData* newBoxData(int aType, bool anAnimated, const QPoint& aPos, const QSizeF& aSize)
{
    std::unique_ptr<KxKernelObjectDataDescr> descr(newBoxDescriptor(aType));
    KxParamKeyframeVector values = descr->createKeyframeVector();
    const QList<QVariant> defaults{true, QColor(Qt::green), QStringLiteral("Area"), aPos, false, aSize, 2};
    for (int id = 0; id < defaults.size(); ++id)
        values[id].setValue(defaults[id]);
    return new KxKernelObjectData(values, descr->getKeyframeTypes(), anAnimated);
}

KxParamKeyframeVector keyframes(qint64 aFrame, const QList<QPair<int, QVariant>>& aValues, int aCount)
{
    KxParamKeyframeVector vector(aCount);
    vector.setFrameNumber(aFrame);
    for (const auto& value : aValues)
        vector[value.first].setValue(value.second);
    return vector;
}

QVariant storedBoxValue(int anId, qint64 aFrame, int anIdx)
{
    return storedBox(anIdx) ? storedBox(anIdx)->getKeyframesAt(aFrame)[anId].getValue() : QVariant();
}

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
    calls << eventText("press", OvQtCompat::localPos(anEvent));
    moving = false;
    // The base takes presses on the label and buttons (the trash may delete this item).
    OvGsObject::manipMousePressEvent(anEvent);
    if (anEvent->isAccepted() || hidden || isLocked() || !isVisible())
        return;
    int part = 0;
    moving = isPointOnObject(OvQtCompat::localPos(anEvent), part, 0);
    pressLocal = OvQtCompat::localPos(anEvent);
    anEvent->setAccepted(moving);
}

void TestGsItem::manipMouseMoveEvent(QMouseEvent* anEvent)
{
    calls << eventText("move", OvQtCompat::localPos(anEvent));
    OvGsObject::manipMouseMoveEvent(anEvent);
    if (!anEvent->isAccepted() && moving)
        setPos(pos() + (OvQtCompat::localPos(anEvent) - pressLocal));
    anEvent->accept();
}

void TestGsItem::manipMouseReleaseEvent(QMouseEvent* anEvent)
{
    calls << eventText("release", OvQtCompat::localPos(anEvent));
    OvGsObject::manipMouseReleaseEvent(anEvent);
    anEvent->setAccepted(anEvent->isAccepted() || moving);
    moving = false;
}

TestManipulator::TestManipulator(int aType, QUndoStack* anUndoStack)
    : KxGsManipulator(nullptr, anUndoStack)
    , objectType(aType)
{
    valueNames << QStringLiteral("Area") << QStringLiteral("Width");
    std::unique_ptr<KxKernelObjectDataDescr> descr(newBoxDescriptor(aType));
    if (!kernelData->registerObjectType(this, aType) || !kernelData->registerDataDescriptor(descr.get(), aType))
        return;
    descr.release();
    // Connected by signature, as the plug-in's manipulators do.
    connect(kernelNotifier, SIGNAL(signalObjectCreated(const int, const int, const KxKernelObjectData*)), this,
            SLOT(slotObjectCreatedInKernel(const int, const int, const KxKernelObjectData*)));
    connect(kernelNotifier, SIGNAL(signalObjectChanged(const int, const int, const KxKernelObjectData*)), this,
            SLOT(slotObjectChangedInKernel(const int, const int, const KxKernelObjectData*)));
    connect(kernelNotifier, SIGNAL(signalObjectBeforeRemove(const int, const int)), this,
            SLOT(slotObjectBeforeRemoveInKernel(const int, const int)));
}

QVariant TestManipulator::getCalculatedValue(const QString& aName, const KxGsObject* anObj, QString& aUnitName)
{
    const auto* box = dynamic_cast<const TestGsItem*>(anObj);
    const bool area = aName == QLatin1String("Area");
    aUnitName = !box ? QString() : area ? QStringLiteral("px2") : aName == QLatin1String("Width") ? "px" : "";
    if (aUnitName.isEmpty())
        return QVariant();
    return box->getSize().width() * (area ? box->getSize().height() : 1.0);
}

void TestManipulator::note(const char* aWhat, const QPointF& aPos, QEvent* anEvent)
{
    log << eventText(aWhat, aPos);
    anEvent->accept();
}

TestGsItem* TestManipulator::addStored(const QPointF& aPos, const QSizeF& aSize)
{
    const int idx = kernelData->nextFreeIndex(objectType);
    undoStack->push(new CmdCreateObject(objectType, idx, newBoxData(objectType, false, aPos.toPoint() + viewOrigin(),
                                                                    aSize)));
    return item(idx);
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
}

void TestManipulator::slotObjectChangedInKernel(const int aType, const int anIdx, const KxKernelObjectData* aData)
{
    if (!blockKernelNotification && aType == objectType && aData && item(anIdx))
        applyKeyframes(item(anIdx), aData);
}

void TestManipulator::applyKeyframes(TestGsItem* anItem, const KxKernelObjectData* aData)
{
    const KxParamKeyframeVector values = aData->getKeyframesAt(kernelData->getCurrentFrame());
    anItem->setPos(values[3].getValue().toPoint() - viewOrigin());
    anItem->setVisible(values[0].getValue().toBool());
    anItem->setColor(values[1].getValue().value<QColor>());
    anItem->setSize(values[5].getValue().toSizeF());
    // Beside the top-right corner, clear of the box.
    anItem->setTrashPos(QPointF(anItem->getSize().width() + 6.0, -26.0));
    anItem->setPenStyle(Qt::SolidLine, values[6].getValue().toInt());
}

KernelRecorder::KernelRecorder()
{
    KxSignalCenter* hub = KxSignalCenter::getInstance();
    KxKernelData* store = KxKernelData::getInstance();
    auto note = [this](const char* aWhat, int aType, int anIdx, bool aStored) {
        log << QStringLiteral("%1 %2:%3").arg(QLatin1String(aWhat)).arg(aType).arg(anIdx);
        stored << aStored;
    };
    QObject::connect(hub, &KxSignalCenter::signalObjectCreated, &context,
                     [=](int aType, int anIdx, const KxKernelObjectData* aData) {
                         note("created", aType, anIdx, store->getObject(aType, anIdx) == aData);
                     });
    QObject::connect(hub, &KxSignalCenter::signalObjectChanged, &context,
                     [=](int aType, int anIdx, const KxKernelObjectData* aData) {
                         note("changed", aType, anIdx, store->getObject(aType, anIdx) == aData);
                     });
    QObject::connect(hub, &KxSignalCenter::signalObjectBeforeRemove, &context, [=](int aType, int anIdx) {
        note("before", aType, anIdx, store->getObject(aType, anIdx) != nullptr);
    });
    QObject::connect(hub, &KxSignalCenter::signalObjectRemoved, &context, [=](int aType, int anIdx) {
        note("removed", aType, anIdx, store->getObject(aType, anIdx) == nullptr);
    });
    QObject::connect(hub, &KxSignalCenter::signalNewMediaReady, &context,
                     [this](const KxMediaInfo& anInfo, bool&) { log << "newMedia " + anInfo.getFileName(); });
    QObject::connect(hub, &KxSignalCenter::signalMediaLoaded, &context, [this]() { log << "loaded"; });
    QObject::connect(hub, &KxSignalCenter::signalFrameReady, &context,
                     [this](qint64 aFrame) { log << QStringLiteral("frame %1").arg(aFrame); });
}

GsFixture::GsFixture()
    : view(new QGraphicsView(&scene))
    , editor(KxGsEditor::getInstance())
{
    scene.addItem(editor);
    editor->setImage(makeImage());
    editor->setZoom(1.0);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setSceneRect(QRectF(0, 0, 400, 300));
    view->resize(400, 300);
    view->show();
    view->activateWindow();
    if (!QTest::qWaitForWindowExposed(view))
        qWarning("view not exposed");
    QObject::connect(editor, &KxGsEditor::signalCurrentObjectChanged, view,
                     [this](const KxGsObject* anObj) { currentChanges << anObj; });
    manip = addManipulator(kBoxType);
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

void GsFixture::drag(const QPoint& aFrom, const QPoint& aTo, const std::function<void()>& anAfterPress)
{
    QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::NoModifier, aFrom);
    if (anAfterPress)
        anAfterPress();
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

int countPixelsNear(const QImage& anImage, const QColor& aColor, int aTolerance, int aMinAlpha)
{
    int count = 0;
    for (int y = 0; y < anImage.height(); ++y) {
        for (int x = 0; x < anImage.width(); ++x) {
            const QColor pixel = anImage.pixelColor(x, y);
            count += pixel.alpha() >= aMinAlpha && qAbs(pixel.red() - aColor.red()) < aTolerance &&
                     qAbs(pixel.green() - aColor.green()) < aTolerance &&
                     qAbs(pixel.blue() - aColor.blue()) < aTolerance;
        }
    }
    return count;
}
