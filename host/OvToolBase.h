#pragma once

#include "KxHostGlobal.h"

#include <QIcon>
#include <QList>
#include <QString>
#include <QWidget>

class OvGuiMainWindowBase;
class QAction;
class QLabel;
class QToolButton;
class QVBoxLayout;

// A tool's entry in the main window's tool dock: a header (icon, title,
// activation toggle, expand arrow, optional reset button) over a body that
// shows the tool's panel while expanded. Clicking the icon or the title
// toggles activation; the arrow toggles expansion. Activating also expands.
// A notice under the header (text and buttons) stays usable while the rest
// of the entry is disabled, so the entry can say what it needs.
class KX_HOST_EXPORT OvToolBase : public QWidget
{
    Q_OBJECT

public:
    // Adds itself to aMainWindow's tool dock (no parent without one). The
    // icon comes from ":/tessilarresources/<anIconName>-normal.svg" and its
    // -hover, -active and -deactive variants.
    OvToolBase(OvGuiMainWindowBase* aMainWindow, const QString& anIconName, const QString& aTitle,
               const QString& aName, bool aHideReset);
    ~OvToolBase() override;

    // Re-parents aWidget into the body (replacing any previous one, which is
    // handed back to no parent and hidden).
    void setGuiWidget(QWidget* aWidget);
    QWidget* getGuiWidget() const;

    // Enables or disables the whole entry, panel included (the panel gets
    // QEvent::EnabledChange). aByMedia: disabled because of the current
    // picture; the entry then tells so in its tool tip.
    void setEnabled(bool anEnabled, bool aByMedia = false);
    // The entry's own state (header and panel); the notice never follows it.
    bool isEnabled() const;
    bool isDisabledByMedia() const;
    // Shows aText with one button per action under the header, enabled
    // whatever the entry is; an empty text hides the notice. The actions stay
    // the caller's.
    void setNotice(const QString& aText, const QList<QAction*>& anActions);
    QString getNotice() const;
    QWidget* getNoticeWidget() const;
    bool isActive() const;
    bool isExpanded() const;
    QString getName() const;
    QString getTitle() const;
    QString getIconName() const;

    // The tool icon from the host artwork, aSize pixels square.
    static QIcon createIcon(const QString& anIconName, int aSize);

    // For tests and the main window's tool menu.
    QToolButton* getActivateButton() const;
    QToolButton* getExpandButton() const;
    QToolButton* getResetButton() const;
    QLabel* getTitleLabel() const;

public slots:
    // Emits toolActivated(anActivate) when the state changes.
    void slotActivate(bool anActivate = true);
    // Emits guiExpanded(anExpand) when the state changes.
    void slotExpandGui(bool anExpand = true);

signals:
    void toolActivated(bool anActivated);
    void guiExpanded(bool anExpanded);
    void resetButtonClicked();

protected:
    bool eventFilter(QObject* anObj, QEvent* anEvent) override;

private:
    void updateHeader();

    QString name;
    QString title;
    QString iconName;
    QToolButton* activateButton;
    QLabel* titleLabel;
    QToolButton* expandButton;
    QToolButton* resetButton;
    QWidget* header;
    QWidget* body;
    QWidget* notice;
    QLabel* noticeLabel;
    QWidget* noticeButtons;
    QVBoxLayout* bodyLayout;
    QWidget* guiWidget = nullptr;
    bool active = false;
    bool expanded = false;
    bool disabledByMedia = false;
};
