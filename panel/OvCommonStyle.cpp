#include "OvCommonStyle.h"

#include <QWidget>

namespace {

// Placeholders: %1 widget font size, %2 image size suffix, %3 menu font size,
// %4 indent of profile menu items, %5 check-box indicator side, %6 check-box image suffix.
const char* const kStyleTemplate =
    "* { background-color: rgb(98, 98, 98); color: rgb(49, 49, 49); font-family: Segoe UI; font-size: %1px,0.2em; }\n"
    "QToolTip { color: rgb(255, 255, 255); background-color: rgb(0, 0, 0); border: 0px; }\n"
    "QDoubleSpinBox, QSpinBox { background: transparent; }\n"
    "QDoubleSpinBox:focus, QSpinBox:focus { background: white; border: 1px solid black; }\n"
    "QFrame { background-color: rgb(69, 69, 69); }\n"
    "QLabel { color: rgb(229, 229, 229); background-color: rgb(98, 98, 98); background: transparent; }\n"
    "QCheckBox { background: transparent; }\n"
    "QCheckBox::indicator { width: %5px; height: %5px; background: transparent; }\n"
    "QCheckBox::indicator:unchecked { image: url(:/tessilarresources/checkboxstandard-off%6.png); }\n"
    "QCheckBox::indicator:checked { image: url(:/tessilarresources/checkboxstandard-on%6.png); }\n"
    "QLabel:disabled { color: rgb(170, 170, 170); }\n"
    "QLabel[grayText=\"true\"] { color: rgb(49, 49, 49); }\n"
    "QPushButton { padding-left: 4px; padding-right: 4px; padding-top: 2px; padding-bottom: 2px;"
    " border: 1px solid rgb(49, 49, 49); color: rgb(229, 229, 229);"
    " background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, stop: 0 rgb(112, 112, 112), stop: 1 rgb(125, 125, 125)); }\n"
    "QPushButton:pressed, QPushButton:on {"
    " background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, stop: 0 rgb(54, 54, 54), stop: 1 rgb(36, 36, 36)); }\n"
    "QPushButton:hover:!pressed:!on {"
    " background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, stop: 0 rgb(149, 149, 149), stop: 1 rgb(168, 168, 168)); }\n"
    "QPushButton:disabled { color: rgb(170, 170, 170); }\n"
    "QSlider::groove:horizontal, QSlider::groove:horizontal:disabled { image: url(:/tessilarresources/progresbar%2.png); }\n"
    "QSlider::handle:horizontal { image: url(:/tessilarresources/slider%2.png); }\n"
    "QToolButton { border: 0px; }\n"
    "QToolButton::menu-button { image: url(:/tessilarresources/drop-down-normal%2.png);"
    " subcontrol-origin: content; subcontrol-position: right center; }\n"
    "QToolButton::menu-button:hover { image: url(:/tessilarresources/drop-down-hover%2.png); }\n"
    "QRadioButton::indicator::checked { image: url(:/tessilarresources/radio-on%2.png); }\n"
    "QRadioButton::indicator::unchecked { image: url(:/tessilarresources/radio-off%2.png); }\n"
    "QComboBox::drop-down { image: url(:/tessilarresources/drop-down%2.png); }\n"
    "QComboBox::down-arrow { image: url(:/tessilarresources/drop-up-normal%2.png); }\n"
    "QComboBox::down-arrow:on, QComboBox::down-arrow:hover { image: url(:/tessilarresources/drop-up-hover%2.png); }\n"
    "QComboBox { background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1,"
    " stop: 0 #818384, stop: 0.4 #747577, stop: 0.5 #646768, stop: 1.0 #555859);"
    " border: 0px solid #313131; margin: 0px; }\n"
    "QListView { background: white; }\n"
    "QListView::item:selected { color: white; border-top: 1px solid rgb(29, 146, 236);"
    " border-bottom: 1px solid rgb(26, 131, 212);"
    " background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, stop: 0 rgb(29, 146, 236),"
    " stop: 0.5 rgb(65, 167, 243), stop: 0.7 rgb(65, 167, 243), stop: 1 rgb(26, 131, 212)); }\n"
    "QMenu { font-family: Segoe UI; font-size: %3px,0.2em; color: rgb(67, 67, 67);"
    " background-color: rgb(248, 248, 248); border: 1px solid rgb(83, 83, 83); }\n"
    "QMenu::item { padding: 2px 20px 2px 2px; }\n"
    "QMenu[profile=\"true\"]::item { padding: 2px 20px 2px %4px; }\n"
    "QMenu::separator { margin: 0px; color: rgb(210, 210, 210); }\n"
    "QMenu::item:selected { border-color: darkblue; background: #41A7F3; color: rgb(255, 255, 255); }\n"
    "QMenu::item:disabled { color: rgb(150, 150, 150); }\n"
    "QMenu::indicator:checked { image: url(:/tessilarresources/check-normal%2.png);"
    " subcontrol-position: right center; subcontrol-origin: padding; }\n"
    "QMenuBar { font-family: Segoe UI; font-size: %3px,0.2em; padding-left: -5px; spacing: 8px;"
    " background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, stop: 0 rgb(120, 120, 120), stop: 1 rgb(200, 200, 200));"
    " border-bottom: 1px solid rgb(26, 131, 212); }\n"
    "QMenuBar::item { padding: 1px 4px; background: transparent; border-radius: 0px; }\n"
    "QMenuBar::item:selected { background: qconicalgradient(cx: 0, cy: 0.5, angle: 90,"
    " stop: 0 rgb(29, 146, 236), stop: 1 rgb(65, 167, 243)); color: rgb(255, 255, 255); }\n";

// Qt rejects limits outside 0..QWIDGETSIZE_MAX with a warning; keep scaled sizes inside.
int boundedSize(double aSize)
{
    if (!(aSize > 0.0))
        return 0;
    return aSize >= double(QWIDGETSIZE_MAX) ? QWIDGETSIZE_MAX : int(aSize);
}

} // namespace

QString OvCommonStyle::generalStyleSheet(double scale)
{
    const QString imageSuffix = scale < 1.25 ? QString() : QStringLiteral("-") + QString::number(100.0 * scale);
    QString checkBoxSuffix;
    if (scale < 1.25)
        checkBoxSuffix = QStringLiteral("-150");
    else if (scale == 1.5)
        checkBoxSuffix = QStringLiteral("-200");
    else if (scale == 2.0)
        checkBoxSuffix = QStringLiteral("-250");
    else
        checkBoxSuffix = QStringLiteral("-300");

    return QString::fromLatin1(kStyleTemplate)
        .arg(12.0 * scale)
        .arg(imageSuffix)
        .arg(15.0 * scale)
        .arg(20.0 * scale)
        .arg(22.0 * scale)
        .arg(checkBoxSuffix);
}

void OvCommonStyle::resizeWidget(QWidget* w, double scale)
{
    if (!w)
        return;
    QSize maxSize = w->maximumSize();
    if (maxSize.width() != QWIDGETSIZE_MAX)
        maxSize.setWidth(boundedSize(maxSize.width() * scale));
    if (maxSize.height() != QWIDGETSIZE_MAX)
        maxSize.setHeight(boundedSize(maxSize.height() * scale));
    w->setMaximumSize(maxSize);

    const QSize minSize = w->minimumSize();
    w->setMinimumSize(boundedSize(minSize.width() * scale + 0.5), boundedSize(minSize.height() * scale + 0.5));
}

void OvCommonStyle::resizeHelper(QWidget* w, double scale, bool recursive, bool)
{
    if (!w)
        return;
    const QObjectList children = w->children();
    for (QObject* child : children) {
        QWidget* childWidget = qobject_cast<QWidget*>(child);
        if (!childWidget)
            continue;
        resizeWidget(childWidget, scale);
        if (recursive)
            resizeHelper(childWidget, scale, recursive, false);
    }
}
