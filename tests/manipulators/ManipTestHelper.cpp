#include "ManipTestHelper.h"

#include "KxMediaInfo.h"
#include "OvGuiMainWindowBase.h"

#include <QGraphicsView>

ManipTestHelper::ManipTestHelper()
{
    kernel = KxKernelData::getInstance();
    window = new OvGuiMainWindowBase();
    window->resize(1000, 800);
    QImage picture(640, 480, QImage::Format_RGB32);
    picture.fill(Qt::darkGray);
    window->setImage(picture);
    window->slotZoomActual();
    editor = window->getEditor();
    view = window->getView();
    stack = window->getUndoStack();
    window->show();

    KxMediaInfo media;
    media.setUmPerPixel(0.5);
    media.setFileName(QStringLiteral("picture.png"));
    kernel->loadMedia(media, picture.size());
    stack->clear();

    tool = new OvToolBase(window, QStringLiteral("tool-measure"), QStringLiteral("Measurement"),
                          QStringLiteral("Measurement"), false);
    panel = new OvGuiMeasurementTool();
    tool->setGuiWidget(panel);
    manip = new OvGsManipDistance(tool, panel, stack);
}

ManipTestHelper::~ManipTestHelper()
{
    editor->restoreOverrideManipulator();
    editor->setCurrentObject(nullptr, false);
    stack->clear();
    delete manip;
    for (KxGsObject* obj : editor->getAllChildGsObjects())
        delete obj;
    kernel->removeAllObjects();
    // The tool entry goes before the window: the window's own clean-up of its
    // entries must not run on a window that is half destroyed.
    delete tool;
    delete window;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void ManipTestHelper::play(const QString& aScript)
{
    QWidget* viewport = view->viewport();
    for (const QString& step : aScript.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QStringList xy = step.mid(1).split(QLatin1Char(','));
        const QPoint at = view->mapFromScene(editor->mapToScene(xy.value(0).toDouble(), xy.value(1).toDouble()));
        const char kind = step.at(0).toLatin1();
        if (kind == 'p' || kind == 'P') {
            QTest::mousePress(viewport, kind == 'p' ? Qt::LeftButton : Qt::RightButton, Qt::NoModifier, at);
        } else if (kind == 'r') {
            QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, at);
        } else {
            // QTest's mouseMove on a widget only moves the cursor; a drag needs the button.
            QMouseEvent move(QEvent::MouseMove, at, viewport->mapToGlobal(at), Qt::NoButton,
                             kind == 'm' ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(viewport, &move);
        }
    }
}

OvGsCircle* ManipTestHelper::addCircle(const QPointF& aCentre, double aRadius)
{
    // Two rim points on a diameter make a circle around their midpoint.
    auto* circle = new OvGsCircle(manip, editor, QStringLiteral("circle%1").arg(++circleCount), true);
    circle->setNode(0, aCentre - QPointF(aRadius, 0.0));
    circle->setNode(1, aCentre + QPointF(aRadius, 0.0));
    circle->setNode(2, aCentre + QPointF(aRadius, 0.0));
    return circle;
}

QVariant ManipTestHelper::storedParam(int anIdx, const QString& aName) const
{
    const KxKernelObjectData* data = stored(anIdx);
    return data ? kernel->getDataDescriptor(kDistanceType)->getValue(data->getDefaultKeyframes(), aName)
                : QVariant();
}

QString ManipTestHelper::lineState(int anIdx) const
{
    const auto xy = [](const QPointF& aPoint) { return QStringLiteral("%1,%2").arg(aPoint.x()).arg(aPoint.y()); };
    const OvGsDistance* line = item(anIdx);
    return QStringLiteral("stored %1 by %2; item %3 by %4")
        .arg(stored(anIdx) ? xy(storedPos(anIdx)) : QStringLiteral("-"), xy(storedLen(anIdx)),
             line ? xy(line->pos()) : QStringLiteral("-"), line ? xy(line->vector) : QString());
}

QList<OvGsDistance*> ManipTestHelper::distanceItems() const
{
    QList<OvGsDistance*> items;
    for (KxGsObject* obj : editor->getAllChildGsObjects())
        if (obj->type() == kDistanceType)
            items.append(static_cast<OvGsDistance*>(obj));
    return items;
}
