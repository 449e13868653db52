// The viewer in German: the window, the panel, the undo history and the
// results table read German once the translation is installed, and the
// language is found for the codes people give.
#include "AppWindowHelper.h"
#include "OvLanguage.h"
#include "OvResultsDock.h"
#include "OvResultsModel.h"
#include "OvViewerMainWindow.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QUndoStack>
#include <QtTest>

namespace {

// Every action of the window's menus (and their submenus), by its text.
QAction* menuAction(QWidget* aWindow, const QString& aText)
{
    const QList<QAction*> actions = aWindow->findChildren<QAction*>();
    for (QAction* action : actions) {
        if (action->text() == aText)
            return action;
    }
    return nullptr;
}

QStringList undoTexts(const QUndoStack* aStack)
{
    QStringList texts;
    for (int i = 0; i < aStack->count(); ++i)
        texts << aStack->text(i);
    return texts;
}

} // namespace

class tst_Language : public QObject
{
    Q_OBJECT

    AppWindowHelper app;
    OvViewerMainWindow* window = nullptr;

private slots:
    void initTestCase()
    {
        QCOMPARE(OvLanguage::install(QStringLiteral("de")), QStringLiteral("de"));
        QCOMPARE(app.start(), QStringList());
        window = app.window();
        app.openSample();
    }

    void cleanupTestCase() { app.stop(); }

    void menus()
    {
        QStringList titles;
        for (QAction* action : window->menuBar()->actions())
            titles << action->text();
        QCOMPARE(titles.mid(0, 3), (QStringList{ "&Datei", "&Bearbeiten", "&Ansicht" }));
        for (const char* text : { "Ö&ffnen...", "Messungen &speichern...", "&Rückgängig", "&Alles auswählen",
                                  "Mit Li&nie kalibrieren...", "&Einpassen" })
            QVERIFY2(menuAction(window, QString::fromUtf8(text)), text);
    }

    void panelAndTool()
    {
        // The tool entry's title and the panel's labels, found by object name.
        auto* title = window->findChild<QLabel*>(QStringLiteral("titleLabel"));
        QVERIFY(title);
        QCOMPARE(title->text(), QStringLiteral("Messung"));
        QStringList labels;
        for (const char* name : { "label3_2", "label3", "label" }) {
            auto* label = window->findChild<QWidget*>(QString::fromLatin1(name));
            QVERIFY2(label, name);
            labels << label->property("text").toString();
        }
        QCOMPARE(labels, (QStringList{ QStringLiteral("Schriftgröße"), QStringLiteral("Linienbreite"),
                                       QStringLiteral("Farbe") }));
    }

    // Drawing names the step after the kind, a style change of several
    // measurements after the change.
    void undoTextsAndResults()
    {
        app.play(QStringLiteral("tool distance\n"
                                "press 100 100\nmove 200 100\nrelease 200 100\n"
                                "press 100 300\nmove 100 400\nrelease 100 400\n"));
        QAction* selectAll = menuAction(window, QStringLiteral("&Alles auswählen"));
        QVERIFY(selectAll);
        selectAll->trigger();
        app.play(QStringLiteral("color #00ff00\n"));
        const QStringList texts = undoTexts(window->undoStack());
        QVERIFY2(texts.contains(QStringLiteral("Abstand 1 hinzufügen")), qPrintable(texts.join(" | ")));
        QCOMPARE(texts.last(), QStringLiteral("Farbe der Objekte ändern"));

        OvResultsModel* model = window->resultsDock()->model();
        QStringList headers;
        for (int column = 0; column < OvResultsModel::ColumnCount; ++column)
            headers << model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        QCOMPARE(headers, (QStringList{ "Typ", "Nr.", "Messgröße", "Wert", "Einheit", "Beschriftung", "Bild" }));
        QVERIFY(model->rowCount() >= 2);
        QCOMPARE(model->index(0, OvResultsModel::TypeColumn).data().toString(), QStringLiteral("Abstand"));
        QCOMPARE(model->index(0, OvResultsModel::ValueNameColumn).data().toString(), QStringLiteral("Länge"));
    }

    // Runs last: it changes the installed language.
    void languageCodes_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("found");
        QTest::newRow("German") << "de" << "de";
        QTest::newRow("a German region falls back to German") << "de_AT" << "de";
        QTest::newRow("English is the source") << "en" << "en";
        QTest::newRow("a language without translation") << "fr" << "";
        QTest::newRow("not a language") << "xx" << "";
    }

    void languageCodes()
    {
        QFETCH(QString, code);
        QFETCH(QString, found);
        QCOMPARE(OvLanguage::install(code), found);
        QCOMPARE(QCoreApplication::translate("OvResultsModel", "Value"),
                 found == QLatin1String("de") ? QStringLiteral("Wert") : QStringLiteral("Value"));
        QVERIFY(OvLanguage::available().contains(QStringLiteral("de")));
    }

    // The viewer itself: an unknown language is named and the run goes on.
    void unknownLanguageOnTheCommandLine()
    {
        QProcess viewer;
        viewer.start(QStringLiteral(OV_BINARY_DIR "/bin/ovviewer"),
                     { QStringLiteral("--language"), QStringLiteral("xx"), QStringLiteral("--quit") });
        QVERIFY(viewer.waitForFinished(60000));
        QCOMPARE(viewer.exitCode(), 0);
        QVERIFY2(viewer.readAllStandardError().contains("no translation for 'xx'"), "no message");
    }
};

QTEST_MAIN(tst_Language)
#include "tst_language.moc"
