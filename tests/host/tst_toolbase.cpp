#include "OvGuiMainWindowBase.h"
#include "OvToolBase.h"

#include <QDockWidget>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// Counts the enabled-state changes that reach a panel.
class EnabledWatcher : public QObject
{
public:
    int changes = 0;
    bool eventFilter(QObject*, QEvent* anEvent) override
    {
        if (anEvent->type() == QEvent::EnabledChange)
            ++changes;
        return false;
    }
};

int colouredPixels(const QPixmap& aPixmap, const QColor& aColor)
{
    const QImage image = aPixmap.toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() > 200 && qAbs(pixel.red() - aColor.red()) < 12 &&
                qAbs(pixel.green() - aColor.green()) < 12 && qAbs(pixel.blue() - aColor.blue()) < 12)
                ++count;
        }
    }
    return count;
}

} // namespace

class tst_ToolBase : public QObject
{
    Q_OBJECT

private slots:
    void activationSignals_data();
    void activationSignals();
    void blockedSignalsStillChangeState();
    void headerClicks();
    void receiverMayRefuseActivation();
    void enableReachesPanel_data();
    void enableReachesPanel();
    void resetButton();
    void iconsFromArtwork_data();
    void iconsFromArtwork();
    void entersMainWindowDock();
};

void tst_ToolBase::activationSignals_data()
{
    QTest::addColumn<QList<bool>>("calls");
    QTest::addColumn<QList<bool>>("emitted");
    QTest::addColumn<bool>("active");

    QTest::newRow("on") << QList<bool>{true} << QList<bool>{true} << true;
    QTest::newRow("on twice") << QList<bool>{true, true} << QList<bool>{true} << true;
    QTest::newRow("off while off") << QList<bool>{false} << QList<bool>{} << false;
    QTest::newRow("on off on") << QList<bool>{true, false, true} << QList<bool>{true, false, true} << true;
}

void tst_ToolBase::activationSignals()
{
    QFETCH(QList<bool>, calls);
    QFETCH(QList<bool>, emitted);
    QFETCH(bool, active);

    OvToolBase tool(nullptr, QStringLiteral("tool-measure"), QStringLiteral("Measurement"),
                    QStringLiteral("Measurement"), false);
    QSignalSpy spy(&tool, &OvToolBase::toolActivated);
    for (bool call : calls)
        tool.slotActivate(call);
    QList<bool> seen;
    for (const QList<QVariant>& args : spy)
        seen << args.at(0).toBool();
    QCOMPARE(seen, emitted);
    QCOMPARE(tool.isActive(), active);
    QCOMPARE(tool.getActivateButton()->isChecked(), active);
    // Activation shows the settings; deactivation leaves them as they are.
    QCOMPARE(tool.isExpanded(), emitted.contains(true));
}

void tst_ToolBase::blockedSignalsStillChangeState()
{
    OvToolBase tool(nullptr, QStringLiteral("tool-measure"), QStringLiteral("M"), QStringLiteral("M"), false);
    QSignalSpy activated(&tool, &OvToolBase::toolActivated);
    QSignalSpy expanded(&tool, &OvToolBase::guiExpanded);
    tool.blockSignals(true);
    tool.slotActivate(true);
    tool.slotExpandGui(false);
    tool.blockSignals(false);
    QVERIFY(tool.isActive());
    QVERIFY(!tool.isExpanded());
    QCOMPARE(activated.count(), 0);
    QCOMPARE(expanded.count(), 0);
    tool.slotActivate(false);
    QCOMPARE(activated.count(), 1);
}

void tst_ToolBase::headerClicks()
{
    OvToolBase tool(nullptr, QStringLiteral("tool-measure"), QStringLiteral("Measurement"),
                    QStringLiteral("Measurement"), false);
    auto* panel = new QWidget;
    panel->setMinimumSize(50, 80);
    tool.setGuiWidget(panel);
    tool.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tool));
    QSignalSpy activated(&tool, &OvToolBase::toolActivated);
    QSignalSpy expanded(&tool, &OvToolBase::guiExpanded);

    QTest::mouseClick(tool.getActivateButton(), Qt::LeftButton);
    QVERIFY(tool.isActive());
    QVERIFY(tool.isExpanded());
    QVERIFY(panel->isVisible());
    QCOMPARE(activated.count(), 1);
    QCOMPARE(expanded.count(), 1);

    QTest::mouseClick(tool.getTitleLabel(), Qt::LeftButton);
    QVERIFY(!tool.isActive());
    QCOMPARE(activated.last().at(0).toBool(), false);

    QTest::mouseClick(tool.getExpandButton(), Qt::LeftButton);
    QVERIFY(!tool.isExpanded());
    QVERIFY(!panel->isVisible());
    QCOMPARE(expanded.last().at(0).toBool(), false);
    QTest::mouseClick(tool.getExpandButton(), Qt::LeftButton);
    QVERIFY(tool.isExpanded());
    QVERIFY(!tool.isActive());

    // A disabled entry ignores clicks.
    tool.setEnabled(false, false);
    QTest::mouseClick(tool.getTitleLabel(), Qt::LeftButton);
    QTest::mouseClick(tool.getActivateButton(), Qt::LeftButton);
    QVERIFY(!tool.isActive());
}

void tst_ToolBase::receiverMayRefuseActivation()
{
    OvToolBase tool(nullptr, QStringLiteral("tool-measure"), QStringLiteral("M"), QStringLiteral("M"), false);
    QSignalSpy expanded(&tool, &OvToolBase::guiExpanded);
    // As the plug-in does without calibration: switch off and fold away.
    connect(&tool, &OvToolBase::toolActivated, &tool, [&tool](bool anOn) {
        if (anOn) {
            tool.slotActivate(false);
            tool.slotExpandGui(false);
        }
    });
    tool.slotActivate(true);
    QVERIFY(!tool.isActive());
    QVERIFY(!tool.isExpanded());
    QVERIFY(!tool.getActivateButton()->isChecked());
    QCOMPARE(expanded.count(), 0);
}

void tst_ToolBase::enableReachesPanel_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("byMedia");
    QTest::addColumn<bool>("tip");

    QTest::newRow("disabled by media") << false << true << true;
    QTest::newRow("disabled otherwise") << false << false << false;
    QTest::newRow("enabled, media flag ignored") << true << true << false;
}

void tst_ToolBase::enableReachesPanel()
{
    QFETCH(bool, enabled);
    QFETCH(bool, byMedia);
    QFETCH(bool, tip);

    OvToolBase tool(nullptr, QStringLiteral("tool-measure"), QStringLiteral("M"), QStringLiteral("M"), false);
    auto* panel = new QWidget;
    tool.setGuiWidget(panel);
    EnabledWatcher watcher;
    panel->installEventFilter(&watcher);

    tool.setEnabled(false, false);
    tool.setEnabled(true, false);
    QCOMPARE(watcher.changes, 2);
    watcher.changes = 0;

    tool.setEnabled(enabled, byMedia);
    QCOMPARE(tool.isEnabled(), enabled);
    QCOMPARE(panel->isEnabled(), enabled);
    QCOMPARE(watcher.changes, enabled ? 0 : 1);
    QCOMPARE(tool.isDisabledByMedia(), tip);
    QCOMPARE(tool.toolTip(), tip ? QStringLiteral("Not available for this picture") : QString());
    tool.setEnabled(true, false);
    QVERIFY(tool.toolTip().isEmpty());
    QVERIFY(panel->isEnabled());
}

void tst_ToolBase::resetButton()
{
    OvToolBase hiding(nullptr, QStringLiteral("tool-measure"), QStringLiteral("M"), QStringLiteral("M"), true);
    OvToolBase tool(nullptr, QStringLiteral("tool-measure"), QStringLiteral("M"), QStringLiteral("M"), false);
    hiding.show();
    tool.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tool));
    QVERIFY(!hiding.getResetButton()->isVisible());
    QVERIFY(tool.getResetButton()->isVisible());
    QSignalSpy reset(&tool, &OvToolBase::resetButtonClicked);
    QTest::mouseClick(tool.getResetButton(), Qt::LeftButton);
    QCOMPARE(reset.count(), 1);
    QVERIFY(!tool.isActive());
}

void tst_ToolBase::iconsFromArtwork_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"tool-measure", "measure", "freeform_line", "multiple_distance_line",
                             "paralell_distance_line", "circle_distance_line", "freeform", "radius", "diameter",
                             "angle", "out-angle"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_ToolBase::iconsFromArtwork()
{
    QFETCH(QString, name);

    const QIcon icon = OvToolBase::createIcon(name, 24);
    QVERIFY(!icon.isNull());
    // Each state is drawn in its own colour.
    struct Expect
    {
        QIcon::Mode mode;
        QIcon::State state;
        QColor color;
    };
    for (const Expect& expect : {Expect{QIcon::Normal, QIcon::Off, QColor(0xC8, 0xC8, 0xC8)},
                                 Expect{QIcon::Active, QIcon::Off, QColor(Qt::white)},
                                 Expect{QIcon::Normal, QIcon::On, QColor(0x41, 0xA7, 0xF3)},
                                 Expect{QIcon::Disabled, QIcon::Off, QColor(0x5A, 0x5A, 0x5A)}}) {
        const QPixmap pixmap = icon.pixmap(QSize(24, 24), expect.mode, expect.state);
        QCOMPARE(pixmap.size(), QSize(24, 24));
        QVERIFY2(colouredPixels(pixmap, expect.color) > 10, qPrintable(expect.color.name()));
    }
    QVERIFY(OvToolBase::createIcon(QStringLiteral("no-such-icon"), 24).isNull());
}

void tst_ToolBase::entersMainWindowDock()
{
    OvGuiMainWindowBase window;
    auto* first = new OvToolBase(&window, QStringLiteral("tool-measure"), QStringLiteral("First"),
                                 QStringLiteral("first"), false);
    auto* second = new OvToolBase(&window, QStringLiteral("measure"), QStringLiteral("Second"),
                                  QStringLiteral("second"), true);
    QCOMPARE(window.getToolEntries(), QList<OvToolBase*>({first, second}));
    QVERIFY(window.getToolDock()->isAncestorOf(first));
    QVERIFY(window.getToolDock()->isAncestorOf(second));
    QCOMPARE(first->getName(), QStringLiteral("first"));
    QCOMPARE(second->getTitle(), QStringLiteral("Second"));
    QCOMPARE(second->getIconName(), QStringLiteral("measure"));
    window.addToolEntry(first);
    QCOMPARE(window.getToolEntries().size(), 2);
    delete first;
    QCOMPARE(window.getToolEntries(), QList<OvToolBase*>({second}));
}

QTEST_MAIN(tst_ToolBase)
#include "tst_toolbase.moc"
