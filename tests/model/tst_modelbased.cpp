// Random sessions of what users do, on the real viewer window with the real
// plug-in, checked step by step against a reference model of the store.
// OV_MODEL_SEED replays one seed, OV_MODEL_STEPS sets the steps per seed,
// OV_MODEL_SEEDS the number of seeds, OV_MODEL_CHECK_EVERY how often the
// whole history is walked and the file saved and reopened; OV_MODEL_SERIES
// (0 or 1) chooses the picture series for a replayed seed; OV_MODEL_IGNORE
// (comma-separated parts of failure messages, "labelpos" for label places)
// counts such failures and goes on, to look past a known fault; OV_MODEL_REPLAY
// names a file with a printed step list to run as it is (OV_MODEL_SERIES 1:
// on the series).
#include "KxKernelData.h"
#include "ModelActionHelper.h"
#include "ModelRunHelper.h"
#include "ModelShrinkHelper.h"
#include "OvViewerMainWindow.h"

#include <QGraphicsView>

#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>

#include <memory>

namespace {

int envNumber(const char* aName, int aDefault)
{
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(aName, &ok);
    return ok ? value : aDefault;
}

// What kind of failure a message reports, without the step, the indices
// and the values: the shrinker keeps a shorter list only when it still
// fails the same way.
QString signature(const QString& aFailure)
{
    QString text = aFailure.section(QLatin1Char('\n'), 0, 0);
    static const QRegularExpression prefix(
        QStringLiteral("^(step \\d+ \\(.*?\\)|full check after step \\d+ \\(.*?\\)|final full check): "));
    text.remove(prefix);
    static const QRegularExpression quoted(QStringLiteral("'[^']*'"));
    text.replace(quoted, QStringLiteral("'_'"));
    // Numbers go, except object types ("66658/3" keeps "66658/").
    static const QRegularExpression number(QStringLiteral("-?\\d+(\\.\\d+)?"));
    QString result;
    int last = 0;
    for (auto it = number.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const bool type = match.capturedLength() == 5 && text.mid(match.capturedEnd(), 1) == QLatin1String("/");
        const bool index = match.capturedStart() > 0 && text.at(match.capturedStart() - 1) == QLatin1Char('/');
        result += text.mid(last, match.capturedStart() - last);
        result += type ? match.captured() : index ? QStringLiteral("_") : QStringLiteral("#");
        last = match.capturedEnd();
    }
    return result + text.mid(last);
}

} // namespace

class tst_ModelBased : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;
    std::unique_ptr<QTemporaryDir> memoryDir;
    std::unique_ptr<OvViewerMainWindow> window;
    QStringList seriesFiles;

private slots:
    void initTestCase()
    {
        QVERIFY(dir.isValid());
        // Every panel change writes the settings file and every full check
        // saves the measurements, each synced to disk: in memory when the
        // machine offers it, the session waits for the disk no more.
        if (QFileInfo(QStringLiteral("/dev/shm")).isWritable()) {
            memoryDir.reset(new QTemporaryDir(QStringLiteral("/dev/shm/ovmodel-XXXXXX")));
            if (memoryDir->isValid())
                qputenv("OV_SETTINGS_FILE", QFile::encodeName(memoryDir->filePath(QStringLiteral("settings.ini"))));
        }
        window.reset(new OvViewerMainWindow);
        QVERIFY(window->loadPlugins().isEmpty());
        // Large enough to show the whole picture at zoom 1: a view that
        // scrolls during a drag replays the last mouse event on its own.
        window->resize(2200, 1600);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        // Nothing is looked at: painting the window would take most of the time.
        window->setUpdatesEnabled(false);
        // Three frames of the sample's size and calibration.
        for (int frame = 0; frame < 3; ++frame) {
            QImage image(1280, 960, QImage::Format_RGB32);
            image.fill(QColor(40 + 60 * frame, 80, 120));
            image.setText(QStringLiteral("UmPerPixel"), QStringLiteral("0.5"));
            const QString file = dir.filePath(QStringLiteral("frame%1.png").arg(frame));
            QVERIFY(image.save(file));
            seriesFiles << file;
        }
    }

    void cleanupTestCase()
    {
        KxKernelData::getInstance()->removeAllObjects();
        window.reset();
    }

    void randomSession_data()
    {
        QTest::addColumn<quint64>("seed");
        QTest::addColumn<bool>("series");
        if (qEnvironmentVariableIsSet("OV_MODEL_REPLAY")) {
            const bool series = envNumber("OV_MODEL_SERIES", 0) != 0;
            QTest::addRow("replay on the %s", series ? "series" : "sample") << quint64(0) << series;
            return;
        }
        if (qEnvironmentVariableIsSet("OV_MODEL_SEED")) {
            const quint64 seed = qgetenv("OV_MODEL_SEED").toULongLong();
            const bool series = envNumber("OV_MODEL_SERIES", int(seed % 2 == 0)) != 0;
            QTest::addRow("seed %llu", seed) << seed << series;
            return;
        }
        // Odd seeds measure on the sample, even ones on a picture series.
        const int seeds = envNumber("OV_MODEL_SEEDS", 5);
        for (int seed = 1; seed <= seeds; ++seed)
            QTest::addRow("seed %d", seed) << quint64(seed) << (seed % 2 == 0);
    }

    void randomSession()
    {
        QFETCH(quint64, seed);
        QFETCH(bool, series);
        const int steps = envNumber("OV_MODEL_STEPS", 2000);
        ModelRunHelper::Options options;
        options.series = series;
        options.fullCheckEvery = envNumber("OV_MODEL_CHECK_EVERY", 50);
        options.seriesFiles = seriesFiles;
        options.scratchFile = (memoryDir && memoryDir->isValid() ? memoryDir->path() : dir.path())
                              + QStringLiteral("/model.measurements.json");
        options.ignore = QString::fromLocal8Bit(qgetenv("OV_MODEL_IGNORE")).split(QLatin1Char(','), Qt::SkipEmptyParts);
        ModelRunHelper runner(window.get(), options);
        QVector<ModelActionHelper> actions = ModelActionHelper::randomSequence(seed, steps, series);
        if (qEnvironmentVariableIsSet("OV_MODEL_LIST")) {
            // The seed's steps, one a line, as OV_MODEL_REPLAY reads them.
            for (const ModelActionHelper& action : qAsConst(actions))
                std::printf("%s\n", qPrintable(action.describe()));
            return;
        }
        const QString replayFile = qEnvironmentVariable("OV_MODEL_REPLAY");
        if (!replayFile.isEmpty()) {
            // A step list as a failure printed it, one step a line.
            QFile file(replayFile);
            QVERIFY2(file.open(QIODevice::ReadOnly | QIODevice::Text), qPrintable(replayFile));
            actions.clear();
            for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
                ModelActionHelper action;
                QVERIFY2(ModelActionHelper::parse(line, &action), qPrintable(QStringLiteral("not a step: ") + line));
                actions << action;
            }
            int step = -1;
            const QString failure = runner.run(actions, &step);
            QVERIFY2(failure.isEmpty(), qPrintable(failure));
            return;
        }
        int failedStep = -1;
        const QString failure = runner.run(actions, &failedStep);
        if (!runner.ignoredSummary().isEmpty())
            qInfo("ignored: %s", qPrintable(runner.ignoredSummary()));
        if (failure.isEmpty())
            return;

        // Said at once: shrinking may take long, and a run cut short by a time
        // limit must still tell how to replay it.
        qWarning("seed %llu failed at step %d, replay with OV_MODEL_SEED=%llu OV_MODEL_STEPS=%d: %s",
                 static_cast<unsigned long long>(seed), failedStep, static_cast<unsigned long long>(seed),
                 failedStep + 1, qPrintable(failure));
        // The shortest list of steps that still fails, for the report.
        const QVector<ModelActionHelper> prefix = actions.mid(0, failedStep + 1);
        const QString wanted = signature(failure);
        const QVector<ModelActionHelper> shortest = ModelShrinkHelper::shrink(
            prefix,
            [&](const QVector<ModelActionHelper>& aCandidate) {
                int step = -1;
                const QString message = runner.run(aCandidate, &step);
                return !message.isEmpty() && signature(message) == wanted;
            },
            envNumber("OV_MODEL_SHRINK_RUNS", 300));
        int step = -1;
        const QString shortFailure = runner.run(shortest, &step);
        QStringList lines;
        lines << QStringLiteral("seed %1 (%2) failed: %3").arg(seed).arg(series ? "series" : "sample", failure);
        lines << QStringLiteral("replay: OV_MODEL_SEED=%1 OV_MODEL_STEPS=%2").arg(seed).arg(failedStep + 1);
        lines << QStringLiteral("shortest failing list (%1 of %2 steps):").arg(shortest.size()).arg(prefix.size());
        for (const ModelActionHelper& action : shortest)
            lines << QStringLiteral("  ") + action.describe();
        lines << QStringLiteral("which fails with: ") + shortFailure;
        lines << QStringLiteral("failure kind: ") + wanted;
        QFAIL(qPrintable(lines.join(QLatin1Char('\n'))));
    }
};

QTEST_MAIN(tst_ModelBased)
#include "tst_modelbased.moc"
