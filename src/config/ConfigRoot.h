// The configuration window's view tree: a sidebar of sections beside the chosen section's page,
// in the window's own colours. Pages are made when first shown. Keys: Ctrl+F searches the
// gallery, Ctrl+Z and Ctrl+Shift+Z undo and redo desktop changes, Esc and Ctrl+W close.
#pragma once

#include "config/ConfigSection.h"
#include "platform/ColorSchemeWatcher.h"

#include <QHash>
#include <QPointer>
#include <QUuid>
#include <QWidget>

class QListWidget;
class QStackedWidget;

namespace tw {

struct ConfigContext;
class SettingsPage;

class CustomWidgetsPage;
class DesktopWidgetsPage;
class WidgetSettingsPage;

class ConfigRoot final : public QWidget {
    Q_OBJECT
public:
    explicit ConfigRoot(ConfigContext& context, ColorScheme scheme, QWidget* parent = nullptr);

    void select(const ConfigSelection& selection);
    ConfigSelection selection() const;
    // The view of a section (none: the gallery), made if needed.
    QWidget* page(std::optional<ConfigSection> section);
    void setColorScheme(ColorScheme scheme);
    // Shows the person's custom widgets and gives their page; null where the host keeps none.
    CustomWidgetsPage* customWidgets();
    ColorScheme colorScheme() const { return m_scheme; }

    // The gallery, searching for a kind's name.
    void selectKind(const QString& kind);
    // The first-start guide over the window, again.
    void showGuide();

public Q_SLOTS:
    // Shows the gallery with its search field focused.
    void search();

protected:
    bool event(QEvent* event) override;

private:
    void showRow(int row);
    // One tile's own page, under "On the desktop".
    void showWidget(const QUuid& id);
    int rowOf(std::optional<ConfigSection> section) const;
    std::optional<ConfigSection> sectionOf(int row) const;
    void applyColors();

    ConfigContext& m_context;
    ColorScheme m_scheme;
    QListWidget* m_sidebar;
    QStackedWidget* m_stack;
    // Sidebar row to its page, once made.
    QHash<int, QWidget*> m_pages;
    QString m_page;
    // "On the desktop" where the host lists its tiles; -1 without.
    int m_desktopRow = -1;
    DesktopWidgetsPage* m_desktopPage = nullptr;
    // "Custom widgets" where the host keeps them; -1 without.
    int m_customRow = -1;
    CustomWidgetsPage* m_customPage = nullptr;
    // Rows between the gallery and the sections.
    int m_extraRows = 0;
    QPointer<WidgetSettingsPage> m_widgetPage;
    QUuid m_widget;
};

} // namespace tw
