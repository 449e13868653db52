#include "AppWindowHelper.h"

#include "KxKernelData.h"
#include "OvGestureReplayer.h"
#include "OvGestureScript.h"
#include "OvViewerMainWindow.h"

#include <QtTest>

#include <algorithm>

AppWindowHelper::AppWindowHelper() = default;

AppWindowHelper::~AppWindowHelper()
{
    stop();
}

QStringList AppWindowHelper::start(const QSize& aSize)
{
    mWindow.reset(new OvViewerMainWindow);
    if (aSize.isValid())
        mWindow->resize(aSize);
    const QStringList problems = mWindow->loadPlugins();
    mWindow->show();
    return problems;
}

void AppWindowHelper::stop()
{
    if (!mWindow)
        return;
    KxKernelData::getInstance()->removeAllObjects();
    mWindow.reset();
}

void AppWindowHelper::openSample()
{
    QString error;
    QVERIFY2(mWindow->openImage(OvViewerMainWindow::sampleImagePath(), &error), qPrintable(error));
    mWindow->slotZoomActual();
}

void AppWindowHelper::play(const QString& aScript)
{
    OvGestureScript script;
    QVERIFY2(script.parse(aScript), qPrintable(script.errorText()));
    OvGestureReplayer replayer(mWindow.get());
    QVERIFY2(replayer.run(script), qPrintable(replayer.errorText()));
}

QList<QPair<int, int>> AppWindowHelper::storedKeys()
{
    QList<QPair<int, int>> keys;
    KxKernelData* kernel = KxKernelData::getInstance();
    QList<int> types = kernel->getObjectTypes();
    std::sort(types.begin(), types.end());
    for (int type : types) {
        const QList<int> indices = kernel->getObjectsOfType(type).keys();
        for (int index : indices)
            keys << qMakePair(type, index);
    }
    return keys;
}
