#include "GsTestHelper.h"

#include "OvToolBase.h"

#include <QAction>
#include <QLabel>
#include <QSignalSpy>
#include <QToolButton>

namespace {

// A tool entry with the measurement artwork.
class Entry : public OvToolBase
{
public:
    explicit Entry(bool aHideReset = false)
        : OvToolBase(nullptr, QStringLiteral("tool-measure"), QStringLiteral("M"), QStringLiteral("M"), aHideReset)
    {
    }
};

} // namespace

class tst_ToolBase : public QObject
{
    Q_OBJECT

private slots:
    void activation_data()
    {
        QTest::addColumn<QList<bool>>("calls");
        QTest::addColumn<bool>("blocked");
        QTest::addColumn<bool>("refuse");
        QTest::addColumn<QList<bool>>("emitted");
        QTest::addColumn<bool>("active");

        using L = QList<bool>;
        QTest::newRow("on twice") << L{true, true} << false << false << L{true} << true;
        QTest::newRow("off while off") << L{false} << false << false << L{} << false;
        QTest::newRow("on off on") << L{true, false, true} << false << false << L{true, false, true} << true;
        QTest::newRow("signals blocked: state changes all the same") << L{true} << true << false << L{} << true;
        // As the plug-in does without calibration: switch off and fold away.
        QTest::newRow("receiver refuses") << L{true} << false << true << L{true, false} << false;
    }

    void activation()
    {
        QFETCH(QList<bool>, calls);
        QFETCH(bool, blocked);
        QFETCH(bool, refuse);
        QFETCH(QList<bool>, emitted);
        QFETCH(bool, active);

        Entry tool;
        QSignalSpy spy(&tool, &OvToolBase::toolActivated);
        QSignalSpy expanded(&tool, &OvToolBase::guiExpanded);
        connect(&tool, &OvToolBase::toolActivated, &tool, [&tool, refuse](bool anOn) {
            if (refuse && anOn) {
                tool.slotActivate(false);
                tool.slotExpandGui(false);
            }
        });
        tool.blockSignals(blocked);
        for (bool call : calls)
            tool.slotActivate(call);
        tool.blockSignals(false);
        QList<bool> seen;
        for (const QList<QVariant>& args : spy)
            seen << args.at(0).toBool();
        QCOMPARE(seen, emitted);
        QVERIFY(tool.isActive() == active && tool.getActivateButton()->isChecked() == active);
        // Activation shows the settings unless refused; deactivation leaves them as they are.
        QCOMPARE(tool.isExpanded(), calls.contains(true) && !refuse);
        QCOMPARE(expanded.count(), tool.isExpanded() && !blocked ? 1 : 0);
    }

    void headerClicks()
    {
        Entry hiding(true);
        Entry tool;
        auto* panel = new QWidget;
        panel->setMinimumSize(50, 80);
        tool.setGuiWidget(panel);
        hiding.show();
        tool.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tool));
        QSignalSpy activated(&tool, &OvToolBase::toolActivated);
        QSignalSpy expanded(&tool, &OvToolBase::guiExpanded);
        QSignalSpy reset(&tool, &OvToolBase::resetButtonClicked);

        QTest::mouseClick(tool.getActivateButton(), Qt::LeftButton);
        QVERIFY(tool.isActive() && tool.isExpanded() && panel->isVisible());
        QTest::mouseClick(tool.getTitleLabel(), Qt::LeftButton);
        QVERIFY(!tool.isActive());
        QTest::mouseClick(tool.getExpandButton(), Qt::LeftButton);
        QVERIFY(!tool.isExpanded() && !panel->isVisible());
        QTest::mouseClick(tool.getExpandButton(), Qt::LeftButton);
        QVERIFY(tool.isExpanded() && !tool.isActive());
        QCOMPARE(activated, QList<QList<QVariant>>({{true}, {false}}));
        QCOMPARE(expanded, QList<QList<QVariant>>({{true}, {false}, {true}}));
        // The reset button only signals (and one entry may hide it).
        QVERIFY(!hiding.getResetButton()->isVisible() && tool.getResetButton()->isVisible());
        QTest::mouseClick(tool.getResetButton(), Qt::LeftButton);
        QVERIFY(reset.count() == 1 && !tool.isActive());

        // A disabled entry ignores clicks.
        tool.setEnabled(false, false);
        QTest::mouseClick(tool.getTitleLabel(), Qt::LeftButton);
        QTest::mouseClick(tool.getActivateButton(), Qt::LeftButton);
        QVERIFY(!tool.isActive());
    }

    void enableReachesPanel_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("byMedia");

        QTest::newRow("disabled by media") << false << true;
        QTest::newRow("disabled otherwise") << false << false;
        QTest::newRow("enabled, media flag ignored") << true << true;
    }

    void enableReachesPanel()
    {
        QFETCH(bool, enabled);
        QFETCH(bool, byMedia);

        Entry tool;
        auto* panel = new QWidget;
        tool.setGuiWidget(panel);
        tool.setEnabled(enabled, byMedia);
        const bool tip = !enabled && byMedia;
        QVERIFY(tool.isEnabled() == enabled && panel->isEnabled() == enabled && tool.isDisabledByMedia() == tip);
        QCOMPARE(tool.toolTip(), tip ? QStringLiteral("Not available for this picture") : QString());
        tool.setEnabled(true, false);
        QVERIFY(tool.toolTip().isEmpty() && panel->isEnabled());
    }

    void noticeStaysUsableWhileTheEntryIsDisabled()
    {
        Entry tool;
        tool.show();
        QAction first(QStringLiteral("First..."), nullptr);
        QAction second(QStringLiteral("Second"), nullptr);
        QSignalSpy triggered(&first, &QAction::triggered);
        tool.setEnabled(false, true);
        tool.setNotice(QStringLiteral("Needs something"), { &first, &second });
        QWidget* notice = tool.getNoticeWidget();
        QVERIFY(notice->isVisible() && notice->isEnabled() && !tool.isEnabled());
        QList<QToolButton*> buttons = notice->findChildren<QToolButton*>();
        QCOMPARE(buttons.size(), 2);
        QTest::mouseClick(buttons.at(0), Qt::LeftButton);
        QCOMPARE(triggered.count(), 1);
        // A new notice replaces the buttons; an empty one hides it.
        tool.setNotice(QStringLiteral("Other"), { &second });
        QCOMPARE(notice->findChildren<QToolButton*>().size(), 1);
        tool.setNotice(QString(), {});
        QVERIFY(notice->isHidden());
        QCOMPARE(tool.getNotice(), QString());
    }

    void iconsFromArtwork()
    {
        // Each state of each tool's artwork is drawn in its own colour (thin lines
        // inside a halo leave only a few such pixels).
        const QList<std::tuple<QIcon::Mode, QIcon::State, QColor>> states{
            {QIcon::Normal, QIcon::Off, QColor(0xC8, 0xC8, 0xC8)},
            {QIcon::Active, QIcon::Off, QColor(Qt::white)},
            {QIcon::Normal, QIcon::On, QColor(0x41, 0xA7, 0xF3)},
            {QIcon::Disabled, QIcon::Off, QColor(0x5A, 0x5A, 0x5A)}};
        for (const char* name : {"tool-measure", "measure", "freeform_line", "multiple_distance_line",
                                 "paralell_distance_line", "circle_distance_line", "freeform", "radius", "diameter",
                                 "angle", "out-angle"}) {
            const QIcon icon = OvToolBase::createIcon(QString::fromLatin1(name), 24);
            for (const auto& [mode, state, color] : states) {
                const QImage image = icon.pixmap(QSize(24, 24), mode, state).toImage();
                QVERIFY2(image.size() == QSize(24, 24) && countPixelsNear(image, color, 12, 201) > 5,
                         qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(name), color.name())));
            }
        }
        QVERIFY(OvToolBase::createIcon(QStringLiteral("no-such-icon"), 24).isNull());
    }
};

QTEST_MAIN(tst_ToolBase)
#include "tst_toolbase.moc"
