#pragma once

#include <QList>
#include <QPair>
#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>

class OvViewerMainWindow;

// One viewer window with the real plug-in for a whole test run: the plug-in's
// manipulators live as long as the process, as they do in the viewer.
class AppWindowHelper
{
public:
    AppWindowHelper();
    ~AppWindowHelper();

    // Creates the window (of aSize when valid), loads the plug-in into it and
    // shows it; what the plug-in loader refused, empty when all went well.
    QStringList start(const QSize& aSize = QSize());
    // Removes every stored measurement and closes the window.
    void stop();
    OvViewerMainWindow* window() const { return mWindow.get(); }

    // Opens the bundled sample (0.5 um per pixel) at zoom 1.
    void openSample();
    // Replays gesture script lines; fails the test on a refused line.
    void play(const QString& aScript);

    // Every stored measurement as (type, index), types and indices ascending.
    static QList<QPair<int, int>> storedKeys();

private:
    std::unique_ptr<OvViewerMainWindow> mWindow;
};
