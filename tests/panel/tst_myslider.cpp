#include "MySlider.h"

#include <QStyleOptionSlider>
#include <QWheelEvent>
#include <QtTest>

namespace {

QRect handleRect(MySlider& aSlider)
{
    QStyleOptionSlider option;
    option.initFrom(&aSlider);
    option.orientation = aSlider.orientation();
    option.minimum = aSlider.minimum();
    option.maximum = aSlider.maximum();
    option.sliderPosition = aSlider.sliderPosition();
    option.sliderValue = aSlider.value();
    option.upsideDown = aSlider.orientation() == Qt::Horizontal
                            ? (aSlider.invertedAppearance() != (option.direction == Qt::RightToLeft))
                            : !aSlider.invertedAppearance();
    option.subControls = QStyle::SC_All;
    return aSlider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &aSlider);
}

} // namespace

class tst_MySlider : public QObject
{
    Q_OBJECT
private slots:
    void jumpToClick_data();
    void jumpToClick();
    void pressOnHandleDrags();
    void otherButtonsDoNotJump();
    void wheelIsPassedOn_data();
    void wheelIsPassedOn();
};

void tst_MySlider::jumpToClick_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("inverted");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("start");
    QTest::addColumn<QPoint>("click");
    QTest::addColumn<int>("expected");

    const int h = int(Qt::Horizontal);
    const int v = int(Qt::Vertical);
    QTest::newRow("x 68 of 136, 1..20: 9.5 rounds away from zero") << h << false << 1 << 20 << 1 << QPoint(68, 7) << 11;
    QTest::newRow("x 100 of 136, 1..20") << h << false << 1 << 20 << 1 << QPoint(100, 7) << 15;
    QTest::newRow("x 135 of 136, 1..20") << h << false << 1 << 20 << 1 << QPoint(135, 7) << 20;
    QTest::newRow("x 40 of 136 back from the right") << h << false << 1 << 20 << 20 << QPoint(40, 7) << 7;
    QTest::newRow("font range 8..72") << h << false << 8 << 72 << 8 << QPoint(68, 7) << 40;
    QTest::newRow("single step range 0..1") << h << false << 0 << 1 << 0 << QPoint(100, 7) << 1;
    QTest::newRow("vertical y 68 of 136") << v << false << 1 << 20 << 20 << QPoint(7, 68) << 11;
    QTest::newRow("vertical y 34 of 136") << v << false << 1 << 20 << 1 << QPoint(7, 34) << 15;
    QTest::newRow("inverted mirrors") << h << true << 1 << 20 << 1 << QPoint(34, 7) << 15;
}

void tst_MySlider::jumpToClick()
{
    QFETCH(int, orientation);
    QFETCH(bool, inverted);
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(int, start);
    QFETCH(QPoint, click);
    QFETCH(int, expected);

    MySlider slider{ Qt::Orientation(orientation) };
    slider.setRange(minimum, maximum);
    slider.setPageStep(1);
    slider.setInvertedAppearance(inverted);
    slider.setValue(start);
    slider.setFixedSize(orientation == Qt::Horizontal ? QSize(136, 15) : QSize(15, 136));
    slider.show();
    QVERIFY(QTest::qWaitForWindowExposed(&slider));
    QVERIFY2(!handleRect(slider).contains(click), "the click must miss the handle");

    QSignalSpy spy(&slider, &QSlider::valueChanged);
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, click);
    QCOMPARE(slider.value(), expected);
    // One jump, not a walk by page steps.
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toInt(), expected);
}

void tst_MySlider::pressOnHandleDrags()
{
    MySlider slider(Qt::Horizontal);
    slider.setRange(1, 20);
    slider.setPageStep(1);
    slider.setValue(10);
    slider.setFixedSize(136, 15);
    slider.show();
    QVERIFY(QTest::qWaitForWindowExposed(&slider));

    const QPoint centre = handleRect(slider).center();
    QSignalSpy spy(&slider, &QSlider::valueChanged);
    QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, centre);
    QCOMPARE(slider.value(), 10);
    QVERIFY(slider.isSliderDown());
    // QTest::mouseMove carries no buttons for widgets; a drag needs the left button held.
    const QPoint end(slider.width() - 1, centre.y());
    QMouseEvent move(QEvent::MouseMove, end, slider.mapToGlobal(end), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&slider, &move);
    QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, end);
    QCOMPARE(slider.value(), 20);
    QVERIFY(!spy.isEmpty());
}

void tst_MySlider::otherButtonsDoNotJump()
{
    MySlider slider(Qt::Horizontal);
    slider.setRange(1, 20);
    slider.setValue(1);
    slider.setFixedSize(136, 15);
    slider.show();
    QVERIFY(QTest::qWaitForWindowExposed(&slider));
    QTest::mouseClick(&slider, Qt::RightButton, Qt::NoModifier, QPoint(68, 7));
    QCOMPARE(slider.value(), 1);
}

void tst_MySlider::wheelIsPassedOn_data()
{
    QTest::addColumn<bool>("plainSlider");
    QTest::addColumn<int>("delta");
    QTest::addColumn<int>("expected");
    QTest::newRow("up") << false << 120 << 10;
    QTest::newRow("down") << false << -120 << 10;
    QTest::newRow("several notches") << false << 480 << 10;
    // Control: the same event does move an ordinary slider.
    QTest::newRow("plain QSlider moves") << true << 120 << 13;
}

void tst_MySlider::wheelIsPassedOn()
{
    QFETCH(bool, plainSlider);
    QFETCH(int, delta);
    QFETCH(int, expected);

    QWidget parent;
    QSlider* slider = plainSlider ? new QSlider(Qt::Horizontal, &parent) : new MySlider(Qt::Horizontal, &parent);
    slider->setRange(1, 20);
    slider->setValue(10);
    slider->setGeometry(0, 0, 136, 15);
    parent.resize(150, 30);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));

    QSignalSpy spy(slider, &QSlider::valueChanged);
    const QPointF pos(68, 7);
    QWheelEvent event(pos, slider->mapToGlobal(pos.toPoint()), QPoint(), QPoint(0, delta), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(slider, &event);
    QCOMPARE(slider->value(), expected);
    QCOMPARE(spy.count(), expected == 10 ? 0 : 1);
    // Left unaccepted, so that the application hands it to the parent (the scrolling panel).
    QCOMPARE(event.isAccepted(), plainSlider);
}

QTEST_MAIN(tst_MySlider)
#include "tst_myslider.moc"
