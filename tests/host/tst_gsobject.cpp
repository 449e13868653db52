#include "CmdRemoveObject.h"
#include "GsTestHelper.h"

#include <QPainter>

class tst_GsObject : public QObject
{
    Q_OBJECT

private slots:
    void linesIntersect_data()
    {
        QTest::addColumn<QLineF>("a");
        QTest::addColumn<QLineF>("b");
        QTest::addColumn<bool>("expected");
        QTest::addColumn<QPointF>("point");

        QTest::newRow("cross") << QLineF(0, 0, 8, 0) << QLineF(2, -3, 2, 5) << true << QPointF(2, 0);
        QTest::newRow("T touching end") << QLineF(0, 0, 10, 0) << QLineF(5, 0, 5, 7) << true << QPointF(5, 0);
        QTest::newRow("lines cross beyond segment") << QLineF(0, 0, 4, 0) << QLineF(6, -1, 6, 1) << false << QPointF();
        QTest::newRow("near miss") << QLineF(0, 0, 10, 0) << QLineF(5, 0.01, 5, 3) << false << QPointF();
        QTest::newRow("parallel apart") << QLineF(0, 0, 10, 0) << QLineF(0, 1, 10, 1) << false << QPointF();
        QTest::newRow("collinear overlapping") << QLineF(0, 0, 10, 0) << QLineF(6, 0, 14, 0) << true << QPointF(6, 0);
        QTest::newRow("collinear reversed") << QLineF(10, 0, 0, 0) << QLineF(14, 0, 6, 0) << true << QPointF(10, 0);
        QTest::newRow("collinear disjoint") << QLineF(0, 0, 4, 4) << QLineF(5, 5, 9, 9) << false << QPointF();
        QTest::newRow("point on segment") << QLineF(3, 3, 3, 3) << QLineF(0, 0, 6, 6) << true << QPointF(3, 3);
        QTest::newRow("point off segment") << QLineF(3, 4, 3, 4) << QLineF(0, 0, 6, 6) << false << QPointF();
        QTest::newRow("two equal points") << QLineF(2, 2, 2, 2) << QLineF(2, 2, 2, 2) << true << QPointF(2, 2);
        QTest::newRow("probe diagonal on a line") << QLineF(0, 0, 100, 1) << QLineF(46, -4, 54, 4) << true
                                                  << QPointF(5000.0 / 99.0, 50.0 / 99.0);
    }

    void linesIntersect()
    {
        QFETCH(QLineF, a);
        QFETCH(QLineF, b);
        QFETCH(bool, expected);
        QFETCH(QPointF, point);

        QPointF hit(-1, -1);
        QCOMPARE(KxGsObject::linesIntersect(a.p1(), a.p2(), b.p1(), b.p2(), hit), expected);
        if (expected)
            QVERIFY2(QLineF(hit, point).length() < 1e-6, qPrintable(QStringLiteral("%1,%2").arg(hit.x()).arg(hit.y())));
        // Symmetric in the two segments (the point may differ on overlaps).
        QCOMPARE(KxGsObject::linesIntersect(b.p1(), b.p2(), a.p1(), a.p2(), hit), expected);
    }

    void labelText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("expected");

        QTest::newRow("name and value") << "Distance3" << "1.5 mm" << "Distance3: 1.5 mm";
        QTest::newRow("name only") << "Distance3" << "" << "Distance3";
        QTest::newRow("value only") << "" << "42 um" << "42 um";
        QTest::newRow("neither") << "" << "" << "";
    }

    void labelText()
    {
        QFETCH(QString, name);
        QFETCH(QString, value);
        QFETCH(QString, expected);

        TestGsItem box(nullptr, nullptr, kBoxType, QSizeF(10, 10));
        box.setColor(QColor(255, 0, 0));
        box.setLabelVisible(true);
        box.setName(name);
        box.setDisplayValue(value);
        box.setLabelPos(QPointF(20, 20));
        QCOMPARE(box.getLabelText(), expected);
        QCOMPARE(box.isPointOnLabel(QPointF(22, 22)), !expected.isEmpty());
        // Painted with its children: the label's dark background at its place, the shape at (0, 0).
        QImage image(120, 80, QImage::Format_ARGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        box.paintWithChildren(&painter);
        painter.end();
        QCOMPARE(qGray(image.pixel(21, 21)) < 128, !expected.isEmpty());
        QVERIFY(image.pixelColor(10, 5).red() > 200 && image.pixelColor(10, 5).green() < 60);
        QCOMPARE(image.pixelColor(100, 5), QColor(Qt::white));
        box.paintWithChildren(nullptr);
    }

    void labelKeptInsideArea_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QPointF>("itemPos");
        QTest::addColumn<QPointF>("labelPos");

        QTest::newRow("inside stays") << 1.0 << QPointF(50, 50) << QPointF(10, 10);
        QTest::newRow("past right") << 1.0 << QPointF(180, 50) << QPointF(10, 10);
        QTest::newRow("past left") << 1.0 << QPointF(10, 50) << QPointF(-40, 0);
        QTest::newRow("past bottom right") << 1.0 << QPointF(190, 145) << QPointF(5, 5);
        QTest::newRow("zoom 2 past right") << 2.0 << QPointF(190, 50) << QPointF(5, 0);
        // Wider than the picture: the right edge wins over the left one.
        QTest::newRow("zoom 0.25 wider than picture") << 0.25 << QPointF(20, 140) << QPointF(0, 0);
    }

    void labelKeptInsideArea()
    {
        QFETCH(double, zoom);
        QFETCH(QPointF, itemPos);
        QFETCH(QPointF, labelPos);

        GsFixture f;
        f.editor->setZoom(zoom);
        TestGsItem* box = f.manip->addUnstored(itemPos, QSizeF(5, 5));
        // Held, nothing measures the text yet: the height is known before it
        // is, and is what measuring gives.
        OvGsObject::holdLabels();
        box->setName(QStringLiteral("Length"));
        box->setDisplayValue(QStringLiteral("123.4 um"));
        box->setLabelFontPixSize(14);
        box->setLabelVisible(true);
        box->setLabelPos(labelPos);
        const double height = box->getLabelHeight();
        OvGsObject::releaseLabels();
        const QRectF area = f.editor->getEditorArea();
        const QRectF before = box->mapRectToParent(box->getLabelRect());
        QCOMPARE(before.height(), height);
        // The label keeps its size on screen: its item size shrinks with the zoom.
        QVERIFY(before.width() > 40.0 / zoom);

        // Held (an item being rebuilt from the store), the label is kept
        // inside only when the hold ends.
        OvGsObject::holdLabels();
        box->ensureLabelVisible();
        QCOMPARE(box->getLabelPos(), labelPos);
        OvGsObject::releaseLabels();
        const QRectF label = box->mapRectToParent(box->getLabelRect());
        QCOMPARE(label.size(), before.size());
        if (area.contains(before))
            QCOMPARE(box->getLabelPos(), labelPos);
        // A label wider than the area cannot fit: it stays where it was put
        // rather than running off the area's far side.
        if (label.width() > area.width()) {
            QCOMPARE(box->getLabelPos(), labelPos);
            return;
        }
        // Moved just far enough: flush with each edge it crossed.
        if (before.right() > area.right())
            QCOMPARE(label.right(), area.right());
        else if (before.left() < area.left())
            QCOMPARE(label.left(), area.left());
        if (before.bottom() > area.bottom())
            QCOMPARE(label.bottom(), area.bottom());
        else if (before.top() < area.top())
            QCOMPARE(label.top(), area.top());
        if (label.width() <= area.width())
            QVERIFY(area.adjusted(-1e-9, -1e-9, 1e-9, 1e-9).contains(label));
        // On screen the label is as many pixels as at zoom 1.
        const QRect onScreen = f.view->mapFromScene(box->mapToScene(box->getLabelRect())).boundingRect();
        QVERIFY(qAbs(onScreen.width() - before.width() * zoom) <= 2);
    }

    void trashVisibility_data()
    {
        QTest::addColumn<bool>("allowed");
        QTest::addColumn<bool>("current");
        QTest::addColumn<bool>("hidden");

        QTest::newRow("allowed, current") << true << true << false;
        QTest::newRow("allowed, not current") << true << false << false;
        QTest::newRow("not allowed, current") << false << true << false;
        QTest::newRow("allowed, current, hidden") << true << true << true;
    }

    void trashVisibility()
    {
        QFETCH(bool, allowed);
        QFETCH(bool, current);
        QFETCH(bool, hidden);

        GsFixture f;
        TestGsItem* box = f.manip->addStored(QPointF(20, 20), QSizeF(30, 30));
        box->allowTrashVisible(allowed);
        box->setAlwaysHidden(hidden);
        f.editor->setCurrentObject(current ? box : nullptr, false);
        const bool visible = allowed && current && !hidden;
        QCOMPARE(box->getTrashButton()->isVisible(), visible);
        // Order does not matter: allowing after becoming current shows it too.
        f.editor->setCurrentObject(nullptr, false);
        box->allowTrashVisible(false);
        f.editor->setCurrentObject(current ? box : nullptr, false);
        box->allowTrashVisible(allowed);
        QCOMPARE(box->getTrashButton()->isVisible(), visible);
    }

    void savedPictureShowsLabelsAtScreenSize_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::newRow("zoom 0.5") << 0.5;
        QTest::newRow("zoom 1") << 1.0;
        QTest::newRow("zoom 3") << 3.0;
    }

    // A picture saved with its measurements shows each label as large, in
    // picture pixels, as it is on the screen in screen pixels, whatever the
    // zoom (labels keep their screen size by scaling against the zoom).
    void savedPictureShowsLabelsAtScreenSize()
    {
        QFETCH(double, zoom);
        GsFixture f;
        QImage white(200, 150, QImage::Format_RGB32);
        white.fill(Qt::white);
        f.editor->setImage(white);
        f.editor->setZoom(zoom);
        TestGsItem* box = f.manip->addStored(QPointF(20, 20), QSizeF(10, 10));
        box->setLabelVisible(true);
        box->setName(QStringLiteral("Length"));
        box->setLabelPos(QPointF(40, 60));
        const QSizeF onScreen = box->getLabelRect().size() * zoom;

        QImage picture(200, 150, QImage::Format_ARGB32_Premultiplied);
        f.editor->beginPictureRender();
        {
            QPainter painter(&picture);
            f.scene.render(&painter, QRectF(0, 0, 200, 150), QRectF(0, 0, 200, 150));
        }
        f.editor->endPictureRender();
        // The dark box over white, its text aside: as many pixels as on screen.
        const int dark = countPixelsNear(picture, QColor(93, 93, 93), 25);
        QVERIFY2(qAbs(dark - onScreen.width() * onScreen.height()) < 0.25 * onScreen.width() * onScreen.height(),
                 qPrintable(QStringLiteral("%1 dark pixels, %2 x %3 on screen").arg(dark).arg(onScreen.width())
                                .arg(onScreen.height())));
        // The screen's sizes come back.
        QCOMPARE(box->getLabelRect().size() * zoom, onScreen);
    }

    void labelLeaderShowsOnlyFarFromTheAnchor()
    {
        GsFixture f;
        f.editor->setZoom(2.0);
        TestGsItem* box = f.manip->addStored(QPointF(20, 20), QSizeF(10, 10));
        box->setLabelVisible(true);
        box->setLabelAnchor(QPointF(0, 0));
        box->setLabelPos(QPointF(5, 5));
        // The leader line is made when first shown.
        const auto shownLeader = [box]() -> QGraphicsLineItem* {
            for (QGraphicsItem* child : box->childItems()) {
                auto* line = qgraphicsitem_cast<QGraphicsLineItem*>(child);
                if (line && line->isVisible())
                    return line;
            }
            return nullptr;
        };
        // Far apart on screen: 38 item units are 76 pixels at zoom 2 but 8 at zoom 0.2.
        QVERIFY(!shownLeader());
        box->setLabelPos(QPointF(35, 15));
        QVERIFY(shownLeader() && shownLeader()->line() == QLineF(0, 0, 35, 15));
        f.editor->setZoom(0.2);
        QVERIFY(!shownLeader());

        // Held (an item rebuilt from the store), the leader waits for the
        // last hold to end; an item deleted meanwhile is simply left out.
        f.editor->setZoom(2.0);
        TestGsItem* gone = f.manip->addStored(QPointF(60, 20), QSizeF(10, 10));
        gone->setLabelVisible(true);
        OvGsObject::holdLabels();
        OvGsObject::holdLabels();
        box->setLabelPos(QPointF(5, 5));
        gone->setLabelPos(QPointF(35, 15));
        QVERIFY(shownLeader());
        box->setLabelPos(QPointF(40, 20));
        f.stack.push(new CmdRemoveObject(kBoxType, f.manip->getObjectIdx(gone)));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        OvGsObject::releaseLabels();
        QVERIFY(shownLeader() && shownLeader()->line() == QLineF(0, 0, 35, 15));
        OvGsObject::releaseLabels();
        QVERIFY(shownLeader() && shownLeader()->line() == QLineF(0, 0, 40, 20));
        // More releases than holds change nothing.
        OvGsObject::releaseLabels();
        box->setLabelPos(QPointF(5, 5));
        QVERIFY(!shownLeader());
    }
};

QTEST_MAIN(tst_GsObject)
#include "tst_gsobject.moc"
