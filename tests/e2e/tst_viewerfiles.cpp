// A saved measurements file given to the viewer (as a file manager does with
// the desktop entry) opens with the picture of the same name beside it.
#include "ViewerRunHelper.h"

#include <QFile>
#include <QtTest>

class tst_ViewerFiles : public QObject
{
    Q_OBJECT

    ViewerRunHelper viewer;

private slots:
    void measurementsFileOpensWithItsPicture()
    {
        QVERIFY(viewer.isValid());
        const QString picture = viewer.filePath(QStringLiteral("cells.png"));
        QVERIFY(QFile::copy(QStringLiteral(OV_SOURCE_DIR "/app/resources/sample-micrograph.png"), picture));
        const QString saved = viewer.filePath(QStringLiteral("cells.measurements.json"));
        const ViewerRunHelper::Run drawn = viewer.run(QStringLiteral("tool distance\nclick 100 100\nmove 200 100\n"
                                                                     "click 300 100\n"),
                                                      { picture, QStringLiteral("--calibration"), QStringLiteral("0.5"),
                                                        QStringLiteral("--save"), saved });
        QCOMPARE(drawn.exitCode, 0);
        QCOMPARE(drawn.rows.size(), 1);

        const ViewerRunHelper::Run reopened = viewer.run(QString(), { saved });
        QCOMPARE(reopened.exitCode, 0);
        QCOMPARE(reopened.rows, drawn.rows);
    }

    void measurementsFileWithoutPictureIsRefused()
    {
        const QString lonely = viewer.filePath(QStringLiteral("lonely.measurements.json"));
        QVERIFY(QFile::copy(viewer.filePath(QStringLiteral("cells.measurements.json")), lonely));
        const ViewerRunHelper::Run run = viewer.run(QString(), { lonely });
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.errors.contains(QStringLiteral("no picture of the same name beside")), qPrintable(run.errors));
    }
};

QTEST_MAIN(tst_ViewerFiles)
#include "tst_viewerfiles.moc"
