#include "GsTestHelper.h"

#include "OvCustomSpinBox.h"
#include "QShadowLabel.h"

#include <QLineEdit>
#include <QVBoxLayout>

class tst_CustomWidgets : public QObject
{
    Q_OBJECT

private slots:
    void labelPropertiesAndShadow()
    {
        // Blue text on white; a red shadow shows, a transparent one does not.
        for (const QColor& shadow : {QColor(255, 0, 0), QColor(255, 0, 0, 0)}) {
            QShadowLabel label(QStringLiteral("MMMM"));
            // Generated form code sets the designable properties by name.
            QVERIFY(label.setProperty("fontFamily", QStringLiteral("Sans")));
            QVERIFY(label.setProperty("fontSize", 28));
            QVERIFY(label.setProperty("fontSize", -4));
            QCOMPARE(label.font().pixelSize(), 28);
            label.setShadowColor(shadow);
            label.setShadowOffset(QPoint(3, 3));
            label.setStyleSheet(QStringLiteral("color: #0000ff; background: #ffffff"));
            label.resize(160, 60);
            const QImage image = label.grab().toImage();
            QVERIFY(countPixelsNear(image, QColor(0, 0, 255), 40) > 20);
            QCOMPARE(countPixelsNear(image, QColor(255, 0, 0), 40) > 20, shadow.alpha() > 0);
        }
    }

    void spinBoxSelectsOnFocusAndLeavesOnEnter()
    {
        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        auto* other = new QLineEdit(&window);
        auto* spin = new OvCustomSpinBox(&window);
        layout->addWidget(other);
        layout->addWidget(spin);
        spin->setRange(1, 20);
        spin->setValue(7);
        spin->setSuffix(QStringLiteral("px"));
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));

        other->setFocus();
        spin->setFocus(Qt::MouseFocusReason);
        QCoreApplication::processEvents();
        QVERIFY(spin->hasFocus());
        QCOMPARE(spin->findChild<QLineEdit*>()->selectedText(), QStringLiteral("7"));
        // Typing replaces the selected value; Enter takes it and leaves the box.
        QTest::keyClicks(spin, QStringLiteral("15"));
        QTest::keyClick(spin, Qt::Key_Return);
        QCOMPARE(spin->value(), 15);
        QVERIFY(!spin->hasFocus());
        spin->setValue(30);
        QCOMPARE(spin->value(), 20);
    }
};

QTEST_MAIN(tst_CustomWidgets)
#include "tst_customwidgets.moc"
