#include "MySlider.h"
#include "PanelTestHelper.h"

#include <QStyleOptionSlider>
#include <QWheelEvent>
#include <QtTest>

namespace {

// The panel's slider at the panel's size, range 1..20, that can tell where its handle is.
class Slider : public MySlider
{
public:
    Slider(Qt::Orientation anOrientation, int aValue) : MySlider(anOrientation)
    {
        setRange(1, 20);
        setPageStep(1);
        setValue(aValue);
        setFixedSize(anOrientation == Qt::Horizontal ? QSize(136, 15) : QSize(15, 136));
        show();
    }
    QRect handle()
    {
        QStyleOptionSlider option;
        initStyleOption(&option);
        return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    }
};

} // namespace

class tst_MySlider : public QObject
{
    Q_OBJECT
private slots:
    void jumpToClick_data()
    {
        addColumns<int, bool, int, int, QPoint, int>(
            { "orientation", "inverted", "start", "button", "click", "expected" });

        const int h = int(Qt::Horizontal);
        const int left = int(Qt::LeftButton);
        // 1 + round(19 * x / 136).
        QTest::newRow("x 68: 9.5 rounds away from zero") << h << false << 1 << left << QPoint(68, 7) << 11;
        QTest::newRow("x 40, back from the right") << h << false << 20 << left << QPoint(40, 7) << 7;
        QTest::newRow("vertical, from the bottom") << int(Qt::Vertical) << false << 1 << left << QPoint(7, 34) << 15;
        QTest::newRow("inverted mirrors") << h << true << 1 << left << QPoint(34, 7) << 15;
        QTest::newRow("right button does not jump") << h << false << 1 << int(Qt::RightButton) << QPoint(68, 7) << 1;
    }
    void jumpToClick()
    {
        QFETCH(int, orientation);
        QFETCH(bool, inverted);
        QFETCH(int, start);
        QFETCH(int, button);
        QFETCH(QPoint, click);
        QFETCH(int, expected);

        Slider slider(Qt::Orientation(orientation), start);
        slider.setInvertedAppearance(inverted);
        QVERIFY(QTest::qWaitForWindowExposed(&slider));
        QVERIFY2(!slider.handle().contains(click), "the click must miss the handle");
        QSignalSpy spy(&slider, &QSlider::valueChanged);
        QTest::mouseClick(&slider, Qt::MouseButton(button), Qt::NoModifier, click);
        QCOMPARE(slider.value(), expected);
        // One jump, not a walk by page steps.
        QCOMPARE(spy.count(), expected == start ? 0 : 1);
    }

    void pressOnHandleDrags()
    {
        Slider slider(Qt::Horizontal, 10);
        QVERIFY(QTest::qWaitForWindowExposed(&slider));
        const QPoint centre = slider.handle().center();
        QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, centre);
        QCOMPARE(slider.value(), 10);
        QVERIFY(slider.isSliderDown());
        // QTest::mouseMove carries no buttons for widgets; a drag needs the left button held.
        const QPoint end(slider.width() - 1, centre.y());
        QMouseEvent move(QEvent::MouseMove, end, slider.mapToGlobal(end), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&slider, &move);
        QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, end);
        QCOMPARE(slider.value(), 20);
    }

    // The wheel is left unaccepted, so that the application hands it to the scrolling panel.
    void wheelIsPassedOn()
    {
        Slider slider(Qt::Horizontal, 10);
        QVERIFY(QTest::qWaitForWindowExposed(&slider));
        for (const int delta : { 120, -120 }) {
            QWheelEvent event(QPointF(68, 7), slider.mapToGlobal(QPoint(68, 7)), QPoint(), QPoint(0, delta),
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(&slider, &event);
            QVERIFY(!event.isAccepted());
            QCOMPARE(slider.value(), 10);
        }
    }
};

QTEST_MAIN(tst_MySlider)
#include "tst_myslider.moc"
