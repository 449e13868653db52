// Scale: the viewer with the real plug-in at N = 1,000, 10,000 and 100,000
// mixed measurements (distances, circles, angles, free forms, free lines) on a
// two-frame series, each step beside the same step on N bare line items with
// a text label (what Qt's graphics view costs at best). Every N runs in a
// process of its own, so peak memory belongs to that N alone.
//
//   bench_scale [N ...]          the table (default 1000 10000 100000)
//
// A gesture step (hover move, drawing one line, dragging one, undoing one,
// a unit change of one) is the median of several repeats; the last line
// compares them against the same steps with 10 stored.

#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "OvGestureReplayer.h"
#include "OvGestureScript.h"
#include "OvGuiMeasurementTool.h"
#include "OvViewerMainWindow.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QGraphicsLineItem>
#include <QGraphicsScene>
#include <QGraphicsSimpleTextItem>
#include <QGraphicsView>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QPaintEvent>
#include <QProcess>
#include <QRegion>
#include <QTemporaryDir>
#include <QTextStream>
#include <QUndoStack>

#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

// The measurements fill the upper 1500 pixels; gestures happen in the free
// part below, so that what they repaint does not depend on N.
const QSize kPicture(3000, 2400);
const QSize kGrid(2000, 1500);
const double kUmPerPixel = 0.5;
const int kRepeats = 7;

// The steps of the table, in order; the bare column does the same to bare items.
const char* const kSteps[] = { "open+show+export", "hover move", "draw one more", "drag one", "undo one step",
                               "unit change of one", "frame change (all animated)", "remove base with N lines" };
const int kStepCount = int(sizeof(kSteps) / sizeof(kSteps[0]));
// The per-gesture steps compared at 10 and 10,000 stored.
const int kGestureSteps[] = { 1, 2, 3, 4, 5 };

double peakKb()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss);
}

double currentKb()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0.0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields.at(1).toDouble() * 4.0 : 0.0;
}

// Processor time of this process: the machine is shared, and time taken by
// others' work would otherwise count as ours.
class CpuTimer
{
public:
    void start() { begin = now(); }
    void restart() { begin = now(); }
    double elapsedMs() const { return (now() - begin) * 1e3; }

private:
    static double now()
    {
        timespec used{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
        return double(used.tv_sec) + used.tv_nsec / 1e9;
    }
    double begin = now();
};

double ms(const CpuTimer& aTimer)
{
    return aTimer.elapsedMs();
}

double median(QList<double> aValues)
{
    if (aValues.isEmpty())
        return 0.0;
    std::sort(aValues.begin(), aValues.end());
    return aValues.at(aValues.size() / 2);
}

double medianOf(int aRepeats, const std::function<void(int)>& aStep)
{
    QList<double> times;
    for (int i = 0; i < aRepeats; ++i) {
        CpuTimer timer;
        timer.start();
        aStep(i);
        times << ms(timer);
    }
    return median(times);
}

// What the view has to paint after a step, painted now.
void paintNow(QGraphicsView* aView)
{
    QCoreApplication::processEvents();
    Q_UNUSED(aView);
}

// Notes the region of each paint of a widget.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget* aWidget) : widget(aWidget) { widget->installEventFilter(this); }
    ~PaintWatch() override { widget->removeEventFilter(this); }
    QRegion painted;

protected:
    bool eventFilter(QObject* anObject, QEvent* anEvent) override
    {
        if (anObject == widget && anEvent->type() == QEvent::Paint)
            painted += static_cast<QPaintEvent*>(anEvent)->region();
        return false;
    }

private:
    QWidget* widget;
};

// The whole view painted once, as when a file is first shown: what the
// event loop paints, and the rest of the view when it painted less.
void paintAll(QGraphicsView* aView)
{
    QWidget* viewport = aView->viewport();
    PaintWatch watch(viewport);
    QCoreApplication::processEvents();
    const QRegion missing = QRegion(viewport->rect()) - watch.painted;
    if (!missing.isEmpty())
        viewport->repaint(missing);
}

bool play(OvViewerMainWindow* aWindow, const QString& aScript)
{
    OvGestureScript script;
    if (!script.parse(aScript)) {
        QTextStream(stderr) << "bench_scale: " << script.errorText() << '\n';
        return false;
    }
    OvGestureReplayer replayer(aWindow);
    if (!replayer.run(script)) {
        QTextStream(stderr) << "bench_scale: " << replayer.errorText() << '\n';
        return false;
    }
    return true;
}

QString at(const char* aCommand, double anX, double anY)
{
    return QStringLiteral("%1 %2 %3\n").arg(QLatin1String(aCommand)).arg(qRound(anX)).arg(qRound(anY));
}

// One of each kind near the picture's corner, drawn as a user draws them.
QString templateScript()
{
    QString script = QStringLiteral("tool distance\npress 20 300\nmove 40 310\nrelease 60 320\n"
                                    "tool circle\nclick 350 280\nmove 370 290\nclick 380 300\nmove 360 315\n"
                                    "click 350 320\n"
                                    "tool angle\npress 550 340\nmove 580 340\nrelease 610 340\n"
                                    "press 550 340\nmove 570 320\nrelease 590 300\n"
                                    "tool free-form\npress 820 300\n");
    for (int i = 1; i <= 16; ++i) {
        const double a = i * 2.0 * M_PI / 16.0;
        script += at("move", 800 + 20 * std::cos(a), 300 + 20 * std::sin(a));
    }
    script += QStringLiteral("release 820 300\ntool free-line\nclick 1000 300\n");
    for (int i = 1; i <= 5; ++i)
        script += at("move", 1000 + 10 * i, 300 + 6 * (i % 2));
    script += QStringLiteral("click 1060 306\n");
    return script;
}

OvViewerMainWindow* makeWindow(const QString& aDir)
{
    auto* window = new OvViewerMainWindow;
    window->setScripted(true);
    window->resize(1400, 900);
    window->loadPlugins();
    QString error;
    if (!window->openImages({ aDir + QStringLiteral("/f0.png"), aDir + QStringLiteral("/f1.png") }, &error))
        QTextStream(stderr) << "bench_scale: " << error << '\n';
    window->setCalibration(kUmPerPixel);
    window->show();
    QCoreApplication::processEvents();
    return window;
}

// Child: draws one of each kind and saves them as the file's template.
int runTemplate(const QString& aDir)
{
    OvViewerMainWindow* window = makeWindow(aDir);
    window->slotZoomActual();
    QCoreApplication::processEvents();
    if (!play(window, templateScript()))
        return 1;
    QString error;
    if (!window->saveMeasurements(aDir + QStringLiteral("/template.json"), &error)) {
        QTextStream(stderr) << "bench_scale: " << error << '\n';
        return 1;
    }
    // A multiple-distance base with one line on it, for the base file.
    KxKernelData::getInstance()->removeAllObjects();
    window->undoStack()->clear();
    if (!play(window, QStringLiteral("tool multiple\npress 100 700\nmove 500 700\nrelease 1900 700\n"
                                     "press 400 1000\nrelease 400 1000\n")))
        return 1;
    if (!window->saveMeasurements(aDir + QStringLiteral("/base-template.json"), &error)) {
        QTextStream(stderr) << "bench_scale: " << error << '\n';
        return 1;
    }
    KxKernelData::getInstance()->removeAllObjects();
    delete window;
    return 0;
}

// A saved measurement file's root object; empty when it cannot be read.
QJsonObject readJson(const QString& aPath)
{
    QFile in(aPath);
    return in.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(in.readAll()).object() : QJsonObject();
}

bool writeJson(const QString& aPath, const QJsonObject& aRoot)
{
    QFile out(aPath);
    return out.open(QIODevice::WriteOnly) && out.write(QJsonDocument(aRoot).toJson(QJsonDocument::Compact)) > 0;
}

// The base of the base template with N copies of its line, spread along the
// base (the copies keep the line's length and label place beside it).
bool writeBaseFile(const QString& aTemplate, const QString& aTarget, int aCount)
{
    QJsonObject root = readJson(aTemplate);
    const QJsonArray drawn = root.value(QStringLiteral("objects")).toArray();
    if (drawn.size() != 2)
        return false;
    const auto shifted = [](QJsonObject aValue, int aDx) {
        QJsonArray xy = aValue.value(QStringLiteral("v")).toArray();
        xy.replace(0, xy.at(0).toDouble() + aDx);
        aValue.insert(QStringLiteral("v"), xy);
        return aValue;
    };
    QJsonArray objects{ drawn.at(0) };
    const QJsonObject line = drawn.at(1).toObject();
    const QJsonArray defaults = line.value(QStringLiteral("defaults")).toArray();
    const double x0 = defaults.at(3).toObject().value(QStringLiteral("v")).toArray().at(0).toDouble();
    for (int i = 0; i < aCount; ++i) {
        const int dx = qRound(150 + i * 1700.0 / aCount - x0);
        QJsonArray values = defaults;
        values.replace(3, shifted(values.at(3).toObject(), dx));
        if (values.size() > 9 && values.at(9).isObject())
            values.replace(9, shifted(values.at(9).toObject(), dx));
        QJsonObject copy = line;
        copy.insert(QStringLiteral("index"), i + 2);
        copy.insert(QStringLiteral("defaults"), values);
        copy.insert(QStringLiteral("animated"), false);
        copy.remove(QStringLiteral("frames"));
        objects.append(copy);
    }
    root.insert(QStringLiteral("objects"), objects);
    return writeJson(aTarget, root);
}

// N measurements cycling through the template's kinds on a grid over the
// picture; each has its own position on frame 1 as well.
bool writeFile(const QString& aTemplate, const QString& aTarget, int aCount)
{
    QJsonObject root = readJson(aTemplate);
    const QJsonArray kinds = root.value(QStringLiteral("objects")).toArray();
    if (kinds.isEmpty())
        return false;
    const int columns = qMax(1, int(std::ceil(std::sqrt(aCount * double(kGrid.width()) / kGrid.height()))));
    const int rows = (aCount + columns - 1) / columns;
    const double cellX = double(kGrid.width() - 300) / columns;
    const double cellY = double(kGrid.height() - 150) / qMax(1, rows);
    QMap<int, int> nextIndex;
    QJsonArray objects;
    for (int i = 0; i < aCount; ++i) {
        QJsonObject object = kinds.at(i % kinds.size()).toObject();
        const int type = object.value(QStringLiteral("type")).toInt();
        object.insert(QStringLiteral("index"), ++nextIndex[type]);
        object.insert(QStringLiteral("animated"), true);
        QJsonArray defaults = object.value(QStringLiteral("defaults")).toArray();
        QJsonObject pos = defaults.at(3).toObject();
        const QJsonArray xy = pos.value(QStringLiteral("v")).toArray();
        // The template lies at x below 1100 and y from 250; every kind keeps its place in the cell.
        const int x = qRound(20 + std::fmod(xy.at(0).toDouble(), 100.0) + (i % columns) * cellX);
        const int y = qRound(xy.at(1).toDouble() - 250.0 + (i / columns) * cellY);
        pos.insert(QStringLiteral("v"), QJsonArray{ x, y });
        defaults.replace(3, pos);
        object.insert(QStringLiteral("defaults"), defaults);
        QJsonArray frameValues;
        for (int p = 0; p < defaults.size(); ++p)
            frameValues.append(QJsonValue::Null);
        QJsonObject framePos = pos;
        framePos.insert(QStringLiteral("v"), QJsonArray{ x + 3, y + 2 });
        frameValues.replace(3, framePos);
        object.insert(QStringLiteral("frames"),
                      QJsonArray{ QJsonObject{ { QStringLiteral("frame"), 1 }, { QStringLiteral("values"), frameValues } } });
        objects.append(object);
    }
    root.insert(QStringLiteral("objects"), objects);
    root.insert(QStringLiteral("frameCount"), 2);
    return writeJson(aTarget, root);
}

void report(QTextStream& anOut, const QString& aKey, double aValue)
{
    anOut << aKey << ' ' << QString::number(aValue, 'f', 4) << '\n';
    anOut.flush();
}

// The viewer's last step: removing a base with N lines, opened from a file.
int runBaseRemoval(OvViewerMainWindow* aWindow, const QString& aDir, int aCount)
{
    QTextStream out(stdout);
    OvViewerMainWindow* window = aWindow;
    QGraphicsView* view = window->getView();
    QUndoStack* stack = window->undoStack();
    QString error;
    CpuTimer timer;
    // A base with N multiple-distance lines, from a file.
    KxKernelData::getInstance()->removeAllObjects();
    stack->clear();
    window->showFrame(0);
    window->slotZoomActual();
    paintNow(view);
    if (!window->loadMeasurements(aDir + QStringLiteral("/base%1.json").arg(aCount), &error)) {
        QTextStream(stderr) << "bench_scale: " << error << '\n';
        return 1;
    }
    paintNow(view);
    KxGsManipulator* manip = KxKernelData::getInstance()->getManipulator(66658);
    KxGsObject* base = manip ? manip->getGsObject(1) : nullptr;
    if (!base)
        return 1;
    timer.restart();
    manip->removeGsObject(base);
    paintNow(view);
    report(out, QStringLiteral("step7"), ms(timer));
    report(out, QStringLiteral("basesteps"), stack->count());
    KxKernelData::getInstance()->removeAllObjects();
    stack->clear();
    return 0;
}

// Child: the viewer's steps with N stored.
int runViewer(const QString& aDir, int aCount)
{
    QTextStream out(stdout);
    OvViewerMainWindow* window = makeWindow(aDir);
    QGraphicsView* view = window->getView();
    QUndoStack* stack = window->undoStack();
    if (qEnvironmentVariableIsSet("BENCH_SCALE_NOINDEX"))
        view->scene()->setItemIndexMethod(QGraphicsScene::NoIndex);
    paintNow(view);
    const double before = currentKb();

    CpuTimer timer;
    timer.start();
    QString error;
    if (qEnvironmentVariableIsSet("BENCH_SCALE_BASE_ONLY"))
        return runBaseRemoval(window, aDir, aCount);
    if (!window->loadMeasurements(aDir + QStringLiteral("/n%1.json").arg(aCount), &error)) {
        QTextStream(stderr) << "bench_scale: " << error << '\n';
        return 1;
    }
    paintAll(view);
    if (!window->exportValues(aDir + QStringLiteral("/n%1.csv").arg(aCount), &error)) {
        QTextStream(stderr) << "bench_scale: " << error << '\n';
        return 1;
    }
    report(out, QStringLiteral("step0"), ms(timer));
    report(out, QStringLiteral("peakmb"), peakKb() / 1024.0);
    report(out, QStringLiteral("perobjectkb"), (currentKb() - before) / aCount);
    if (qEnvironmentVariableIsSet("BENCH_SCALE_OPEN_ONLY"))
        return 0;

    // Gestures at one screen pixel per picture pixel, in the free corner below the grid.
    window->slotZoomActual();
    paintNow(view);
    if (!play(window, QStringLiteral("tool distance\n")))
        return 1;
    const double y0 = kPicture.height() - 400;
    report(out, QStringLiteral("step1"), medianOf(kRepeats * 3, [&](int i) {
        play(window, at("move", 900 + i, y0 + (i % 3)));
        paintNow(view);
    }));
    report(out, QStringLiteral("step2"), medianOf(kRepeats, [&](int i) {
        play(window, at("press", 900 + 40 * i, y0) + at("move", 920 + 40 * i, y0 + 10) + at("move", 930 + 40 * i, y0 + 20)
                         + at("release", 930 + 40 * i, y0 + 20));
        paintNow(view);
    }));
    // The last line drawn, by its middle.
    const double lastX = 900 + 40 * (kRepeats - 1) + 15;
    report(out, QStringLiteral("step3"), medianOf(kRepeats, [&](int i) {
        // Down by 4 pixels and back up again.
        const double from = y0 + 10 + (i % 2 ? 4 : 0);
        const double to = y0 + 10 + (i % 2 ? 0 : 4);
        play(window, at("press", lastX, from) + at("move", lastX, y0 + 12) + at("release", lastX, to));
        paintNow(view);
    }));
    report(out, QStringLiteral("step4"), medianOf(kRepeats, [&](int) {
        stack->undo();
        paintNow(view);
    }));
    // The last line, selected, changes its unit.
    play(window, at("click", lastX, y0 + 10));
    report(out, QStringLiteral("step5"), medianOf(kRepeats, [&](int i) {
        play(window, QStringLiteral("unit %1\n").arg(i % 2 ? QStringLiteral("um") : QStringLiteral("mm")));
        paintNow(view);
    }));
    if (qEnvironmentVariableIsSet("BENCH_SCALE_GESTURES_ONLY"))
        return 0;
    play(window, QStringLiteral("select none\n"));
    window->slotZoomFit();
    paintNow(view);
    timer.restart();
    window->showFrame(1);
    paintNow(view);
    report(out, QStringLiteral("step6"), ms(timer));

    return runBaseRemoval(window, aDir, aCount);
}

// Child: the same steps on N bare line items with a text label each.
int runBare(int aCount)
{
    QTextStream out(stdout);
    QGraphicsScene scene(0, 0, kPicture.width(), kPicture.height());
    QGraphicsView view(&scene);
    view.resize(1400, 900);
    view.show();
    paintNow(&view);
    const double before = currentKb();
    QList<QGraphicsLineItem*> items;
    const auto add = [&](double anX, double anY, int anIndex) {
        auto* line = new QGraphicsLineItem(anX, anY, anX + 40, anY + 20);
        auto* label = new QGraphicsSimpleTextItem(QStringLiteral("Distance %1: 22.36 µm").arg(anIndex), line);
        label->setPos(anX, anY - 20);
        scene.addItem(line);
        items << line;
    };
    const int columns = qMax(1, int(std::ceil(std::sqrt(aCount * double(kGrid.width()) / kGrid.height()))));
    const double cell = double(kGrid.width() - 300) / columns;
    CpuTimer timer;
    timer.start();
    for (int i = 0; i < aCount; ++i)
        add(20 + (i % columns) * cell, 20 + (i / columns) * cell, i + 1);
    view.fitInView(scene.sceneRect(), Qt::KeepAspectRatio);
    paintAll(&view);
    report(out, QStringLiteral("step0"), ms(timer));
    report(out, QStringLiteral("peakmb"), peakKb() / 1024.0);
    report(out, QStringLiteral("perobjectkb"), (currentKb() - before) / aCount);
    view.resetTransform();
    paintNow(&view);
    report(out, QStringLiteral("step1"), medianOf(kRepeats * 3, [&](int i) {
        const QList<QGraphicsItem*> under = scene.items(QPointF(900 + i, kPicture.height() - 400));
        Q_UNUSED(under);
        paintNow(&view);
    }));
    report(out, QStringLiteral("step2"), medianOf(kRepeats, [&](int i) {
        add(900 + 40 * i, kPicture.height() - 400, aCount + i);
        paintNow(&view);
    }));
    report(out, QStringLiteral("step3"), medianOf(kRepeats, [&](int i) {
        items.last()->setPos(0, i % 2 ? 4 : 0);
        paintNow(&view);
    }));
    report(out, QStringLiteral("step4"), medianOf(kRepeats, [&](int i) {
        items.last()->setPos(0, i % 2 ? 0 : 4);
        paintNow(&view);
    }));
    report(out, QStringLiteral("step5"), medianOf(kRepeats, [&](int i) {
        static_cast<QGraphicsSimpleTextItem*>(items.last()->childItems().first())
            ->setText(i % 2 ? QStringLiteral("Distance: 22.36 µm") : QStringLiteral("Distance: 0.02236 mm"));
        paintNow(&view);
    }));
    view.fitInView(scene.sceneRect(), Qt::KeepAspectRatio);
    paintNow(&view);
    timer.restart();
    for (int i = 0; i < items.size(); ++i) {
        items.at(i)->setPos(3, 2);
        static_cast<QGraphicsSimpleTextItem*>(items.at(i)->childItems().first())
            ->setText(QStringLiteral("Distance %1: 22.37 µm").arg(i + 1));
    }
    paintNow(&view);
    report(out, QStringLiteral("step6"), ms(timer));
    timer.restart();
    qDeleteAll(items);
    items.clear();
    paintNow(&view);
    report(out, QStringLiteral("step7"), ms(timer));
    return 0;
}

QMap<QString, double> runChild(const QStringList& anArguments, int aTimeoutMs)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), anArguments);
    QMap<QString, double> figures;
    if (!child.waitForFinished(aTimeoutMs)) {
        child.kill();
        child.waitForFinished();
    }
    const QList<QByteArray> lines = child.readAllStandardOutput().split('\n');
    for (const QByteArray& line : lines) {
        const QList<QByteArray> parts = line.split(' ');
        if (parts.size() == 2)
            figures.insert(QString::fromLatin1(parts.at(0)), parts.at(1).toDouble());
    }
    return figures;
}

// Each figure as the median of aRounds runs of the child: the gesture steps
// of the small stores take a millisecond or two, and on a shared machine one
// run of a child can be slow throughout.
QMap<QString, double> runChildRounds(const QStringList& anArguments, int aTimeoutMs, int aRounds)
{
    QMap<QString, QList<double>> runs;
    for (int round = 0; round < aRounds; ++round) {
        const QMap<QString, double> figures = runChild(anArguments, aTimeoutMs);
        for (auto it = figures.cbegin(); it != figures.cend(); ++it)
            runs[it.key()] << it.value();
    }
    QMap<QString, double> medians;
    for (auto it = runs.cbegin(); it != runs.cend(); ++it)
        medians.insert(it.key(), median(it.value()));
    return medians;
}

QString cell(const QMap<QString, double>& aFigures, const QString& aKey)
{
    return aFigures.contains(aKey) ? QString::number(aFigures.value(aKey), 'f', 2) : QStringLiteral("-");
}

int runTable(const QList<int>& aCounts)
{
    QTextStream out(stdout);
    // BENCH_SCALE_DIR keeps the pictures and files there, for profiling one child
    // ("bench_scale --viewer DIR N" under perf or callgrind).
    QTemporaryDir temporary;
    const QString keep = qEnvironmentVariable("BENCH_SCALE_DIR");
    if (!keep.isEmpty())
        QDir().mkpath(keep);
    struct { QString p; QString path() const { return p; } } dir{ keep.isEmpty() ? temporary.path() : keep };
    QImage frame(kPicture, QImage::Format_RGB32);
    frame.fill(QColor(120, 120, 120));
    frame.save(dir.path() + QStringLiteral("/f0.png"));
    frame.fill(QColor(125, 125, 125));
    frame.save(dir.path() + QStringLiteral("/f1.png"));
    if (runChild({ QStringLiteral("--template"), dir.path() }, 120000).isEmpty()
        && !QFile::exists(dir.path() + QStringLiteral("/template.json"))) {
        out << "bench_scale: no template measurements\n";
        return 1;
    }
    QList<int> counts = aCounts;
    if (!counts.contains(10))
        counts.prepend(10); // the small store the gesture steps are compared against
    QMap<int, QMap<QString, double>> viewer;
    QMap<int, QMap<QString, double>> bare;
    for (int count : counts) {
        writeFile(dir.path() + QStringLiteral("/template.json"), dir.path() + QStringLiteral("/n%1.json").arg(count),
                  count);
        writeBaseFile(dir.path() + QStringLiteral("/base-template.json"),
                      dir.path() + QStringLiteral("/base%1.json").arg(count), count);
        // Three rounds up to 10,000 (seconds each), one of 100,000 (a minute).
        const int rounds = count <= 10000 ? 3 : 1;
        viewer.insert(count, runChildRounds({ QStringLiteral("--viewer"), dir.path(), QString::number(count) }, 280000,
                                            rounds));
        bare.insert(count, runChildRounds({ QStringLiteral("--bare"), QString::number(count) }, 120000, rounds));
    }

    out << "Measurements in the viewer beside N bare line items with a label (same run); processor ms, and us per object\n";
    out << QString::asprintf("%-30s", "step");
    for (int count : aCounts)
        out << QString::asprintf(" | N=%-7d %9s %9s %6s %8s", count, "viewer", "bare", "ratio", "us/obj");
    out << '\n';
    for (int step = 0; step < kStepCount; ++step) {
        const QString key = QStringLiteral("step%1").arg(step);
        out << QString::asprintf("%-30s", kSteps[step]);
        for (int count : aCounts) {
            // A step that was not run (BENCH_SCALE_GESTURES_ONLY) has no ratio either.
            const bool ran = viewer.value(count).contains(key);
            const double ours = viewer.value(count).value(key);
            const double limit = bare.value(count).value(key);
            const QString ratio = ran && limit > 0 ? QString::number(ours / limit, 'f', 2) : QStringLiteral("-");
            const QString perObject = ran ? QString::number(ours * 1000.0 / count, 'f', 3) : QStringLiteral("-");
            out << QString::asprintf(" | %9s %9s %9s %6s %8s", "", qPrintable(cell(viewer.value(count), key)),
                                     qPrintable(cell(bare.value(count), key)), qPrintable(ratio), qPrintable(perObject));
        }
        out << '\n';
    }
    out << QString::asprintf("%-30s", "peak memory (MB)");
    for (int count : aCounts)
        out << QString::asprintf(" | %9s %9s %9s %6s %8s", "", qPrintable(cell(viewer.value(count), QStringLiteral("peakmb"))),
                                 qPrintable(cell(bare.value(count), QStringLiteral("peakmb"))), "", "");
    out << '\n' << QString::asprintf("%-30s", "memory per object (KB)");
    for (int count : aCounts)
        out << QString::asprintf(" | %9s %9s %9s %6s %8s", "", qPrintable(cell(viewer.value(count), QStringLiteral("perobjectkb"))),
                                 qPrintable(cell(bare.value(count), QStringLiteral("perobjectkb"))), "", "");
    out << '\n';
    if (aCounts.size() > 1) {
        const int small = aCounts.first();
        const int large = aCounts.last();
        out << QString::asprintf("cost per object at %d over %d:", large, small);
        for (int step : { 0, 6, 7 }) {
            const QString key = QStringLiteral("step%1").arg(step);
            const double a = viewer.value(small).value(key) / small;
            const double b = viewer.value(large).value(key) / large;
            out << QString::asprintf("  %s %.2f", kSteps[step], a > 0 ? b / a : 0.0);
        }
        out << '\n';
    }
    if (viewer.contains(10000)) {
        out << "one gesture step with 10000 stored over 10 stored:";
        for (int step : kGestureSteps) {
            const QString key = QStringLiteral("step%1").arg(step);
            const double a = viewer.value(10).value(key);
            out << QString::asprintf("  %s %.2f", kSteps[step], a > 0 ? viewer.value(10000).value(key) / a : 0.0);
        }
        out << '\n';
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments().mid(1);
    if (args.value(0) == QLatin1String("--template"))
        return runTemplate(args.value(1));
    if (args.value(0) == QLatin1String("--viewer"))
        return runViewer(args.value(1), args.value(2).toInt());
    if (args.value(0) == QLatin1String("--write")) {
        const QString dir = args.value(1);
        const int count = args.value(2).toInt();
        return writeFile(dir + QStringLiteral("/template.json"), dir + QStringLiteral("/n%1.json").arg(count), count)
                    && writeBaseFile(dir + QStringLiteral("/base-template.json"),
                                     dir + QStringLiteral("/base%1.json").arg(count), count)
            ? 0 : 1;
    }
    if (args.value(0) == QLatin1String("--bare"))
        return runBare(args.value(0 + 1).toInt());
    QList<int> counts;
    for (const QString& arg : args) {
        if (arg.toInt() > 0)
            counts << arg.toInt();
    }
    if (counts.isEmpty())
        counts = { 1000, 10000, 100000 };
    return runTable(counts);
}
