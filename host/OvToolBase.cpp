#include "OvToolBase.h"

#include "OvGuiMainWindowBase.h"

#include <QEvent>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QSvgRenderer>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const int kIconSize = 24;

QPixmap renderSvg(const QString& aFile, int aSize)
{
    QSvgRenderer renderer(aFile);
    if (!renderer.isValid())
        return QPixmap();
    QPixmap pixmap(aSize, aSize);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    return pixmap;
}

} // namespace

OvToolBase::OvToolBase(OvGuiMainWindowBase* aMainWindow, const QString& anIconName, const QString& aTitle,
                       const QString& aName, bool aHideReset)
    : QWidget(nullptr)
    , name(aName)
    , title(aTitle)
    , iconName(anIconName)
{
    setObjectName(aName);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    header = new QWidget(this);
    header->setObjectName(QStringLiteral("toolHeader"));
    auto* headerLayout = new QHBoxLayout(header);
    headerLayout->setContentsMargins(4, 2, 4, 2);
    headerLayout->setSpacing(4);

    activateButton = new QToolButton(header);
    activateButton->setObjectName(QStringLiteral("activateButton"));
    activateButton->setCheckable(true);
    activateButton->setAutoRaise(true);
    activateButton->setIcon(createIcon(anIconName, kIconSize));
    activateButton->setIconSize(QSize(kIconSize, kIconSize));
    activateButton->setToolTip(aTitle);
    headerLayout->addWidget(activateButton);

    titleLabel = new QLabel(aTitle, header);
    titleLabel->setObjectName(QStringLiteral("titleLabel"));
    titleLabel->installEventFilter(this);
    headerLayout->addWidget(titleLabel, 1);

    resetButton = new QToolButton(header);
    resetButton->setObjectName(QStringLiteral("resetButton"));
    resetButton->setAutoRaise(true);
    resetButton->setIcon(style()->standardIcon(QStyle::SP_BrowserReload));
    resetButton->setToolTip(tr("Reset to defaults"));
    resetButton->setVisible(!aHideReset);
    headerLayout->addWidget(resetButton);

    expandButton = new QToolButton(header);
    expandButton->setObjectName(QStringLiteral("expandButton"));
    expandButton->setCheckable(true);
    expandButton->setAutoRaise(true);
    expandButton->setArrowType(Qt::RightArrow);
    expandButton->setToolTip(tr("Show or hide the settings"));
    headerLayout->addWidget(expandButton);

    body = new QWidget(this);
    body->setObjectName(QStringLiteral("toolBody"));
    bodyLayout = new QVBoxLayout(body);
    bodyLayout->setContentsMargins(0, 0, 0, 0);
    body->hide();

    notice = new QWidget(this);
    notice->setObjectName(QStringLiteral("toolNotice"));
    auto* noticeLayout = new QVBoxLayout(notice);
    noticeLayout->setContentsMargins(8, 2, 8, 6);
    noticeLayout->setSpacing(4);
    noticeLabel = new QLabel(notice);
    noticeLabel->setObjectName(QStringLiteral("noticeLabel"));
    noticeLabel->setWordWrap(true);
    noticeLayout->addWidget(noticeLabel);
    noticeButtons = new QWidget(notice);
    auto* buttonLayout = new QHBoxLayout(noticeButtons);
    buttonLayout->setContentsMargins(0, 0, 0, 0);
    noticeLayout->addWidget(noticeButtons);
    notice->hide();

    // Header and body are disabled together; the notice between them never is.
    layout->addWidget(header);
    layout->addWidget(notice);
    layout->addWidget(body);

    connect(activateButton, &QToolButton::clicked, this, [this](bool aChecked) { slotActivate(aChecked); });
    connect(expandButton, &QToolButton::clicked, this, [this](bool aChecked) { slotExpandGui(aChecked); });
    connect(resetButton, &QToolButton::clicked, this, &OvToolBase::resetButtonClicked);

    updateHeader();
    if (aMainWindow)
        aMainWindow->addToolEntry(this);
}

OvToolBase::~OvToolBase() = default;

void OvToolBase::setGuiWidget(QWidget* aWidget)
{
    if (aWidget == guiWidget)
        return;
    if (guiWidget && guiWidget->parentWidget() == body) {
        bodyLayout->removeWidget(guiWidget);
        guiWidget->hide();
        guiWidget->setParent(nullptr);
    }
    guiWidget = aWidget;
    if (aWidget) {
        bodyLayout->addWidget(aWidget);
        aWidget->show();
    }
}

QWidget* OvToolBase::getGuiWidget() const
{
    return guiWidget;
}

void OvToolBase::setEnabled(bool anEnabled, bool aByMedia)
{
    header->setEnabled(anEnabled);
    body->setEnabled(anEnabled);
    disabledByMedia = !anEnabled && aByMedia;
    setToolTip(disabledByMedia ? tr("Not available for this picture") : QString());
}

bool OvToolBase::isEnabled() const
{
    return header->isEnabled();
}

void OvToolBase::setNotice(const QString& aText, const QList<QAction*>& anActions)
{
    noticeLabel->setText(aText);
    auto* buttonLayout = static_cast<QHBoxLayout*>(noticeButtons->layout());
    while (QLayoutItem* item = buttonLayout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (QAction* action : anActions) {
        auto* button = new QToolButton(noticeButtons);
        button->setDefaultAction(action);
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        buttonLayout->addWidget(button);
    }
    buttonLayout->addStretch();
    notice->setVisible(!aText.isEmpty());
}

QString OvToolBase::getNotice() const
{
    return noticeLabel->text();
}

QWidget* OvToolBase::getNoticeWidget() const
{
    return notice;
}

bool OvToolBase::isDisabledByMedia() const
{
    return disabledByMedia;
}

bool OvToolBase::isActive() const
{
    return active;
}

bool OvToolBase::isExpanded() const
{
    return expanded;
}

QString OvToolBase::getName() const
{
    return name;
}

QString OvToolBase::getTitle() const
{
    return title;
}

QString OvToolBase::getIconName() const
{
    return iconName;
}

QIcon OvToolBase::createIcon(const QString& anIconName, int aSize)
{
    struct Variant
    {
        const char* suffix;
        QIcon::Mode mode;
        QIcon::State state;
    };
    static const Variant kVariants[] = {
        {"-deactive.svg", QIcon::Disabled, QIcon::Off}, {"-deactive.svg", QIcon::Disabled, QIcon::On},
        {"-normal.svg", QIcon::Normal, QIcon::Off},     {"-active.svg", QIcon::Normal, QIcon::On},
        {"-active.svg", QIcon::Active, QIcon::On},      {"-hover.svg", QIcon::Active, QIcon::Off},
    };
    QIcon icon;
    for (const Variant& variant : kVariants) {
        const QString file = QStringLiteral(":/tessilarresources/") + anIconName + QLatin1String(variant.suffix);
        if (!QFile::exists(file))
            continue;
        const QPixmap pixmap = renderSvg(file, aSize);
        if (!pixmap.isNull())
            icon.addPixmap(pixmap, variant.mode, variant.state);
    }
    return icon;
}

QToolButton* OvToolBase::getActivateButton() const
{
    return activateButton;
}

QToolButton* OvToolBase::getExpandButton() const
{
    return expandButton;
}

QToolButton* OvToolBase::getResetButton() const
{
    return resetButton;
}

QLabel* OvToolBase::getTitleLabel() const
{
    return titleLabel;
}

void OvToolBase::slotActivate(bool anActivate)
{
    if (anActivate == active) {
        updateHeader();
        return;
    }
    active = anActivate;
    updateHeader();
    emit toolActivated(anActivate);
    // A tool being switched on shows its settings.
    if (anActivate && active)
        slotExpandGui(true);
}

void OvToolBase::slotExpandGui(bool anExpand)
{
    if (anExpand == expanded) {
        updateHeader();
        return;
    }
    expanded = anExpand;
    body->setVisible(anExpand);
    updateHeader();
    emit guiExpanded(anExpand);
}

bool OvToolBase::eventFilter(QObject* anObj, QEvent* anEvent)
{
    if (anObj == titleLabel && anEvent->type() == QEvent::MouseButtonRelease && isEnabled()) {
        auto* event = static_cast<QMouseEvent*>(anEvent);
        if (event->button() == Qt::LeftButton && titleLabel->rect().contains(event->pos())) {
            slotActivate(!active);
            return true;
        }
    }
    return QWidget::eventFilter(anObj, anEvent);
}

void OvToolBase::updateHeader()
{
    activateButton->setChecked(active);
    expandButton->setChecked(expanded);
    expandButton->setArrowType(expanded ? Qt::DownArrow : Qt::RightArrow);
    QFont font = titleLabel->font();
    font.setBold(active);
    titleLabel->setFont(font);
}
