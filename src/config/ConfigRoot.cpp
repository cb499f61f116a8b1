#include "config/ConfigRoot.h"

#include "config/AboutPage.h"
#include "config/AppearancePage.h"
#include "config/ConfigContext.h"
#include "config/ConfigPalette.h"
#include "config/CustomWidgetsPage.h"
#include "config/DesktopWidgetsPage.h"
#include "config/GalleryView.h"
#include "config/GeneralPage.h"
#include "config/LayoutsPage.h"
#include "config/NoticeSheet.h"
#include "config/NoticeSlot.h"
#include "config/OnboardingView.h"
#include "config/SizePicker.h"
#include "config/UpdatesPage.h"
#include "config/WidgetSettingsPage.h"
#include "model/WidgetRegistry.h"
#include "settings/AppSettings.h"
#include "text/L.h"

#include <QAbstractButton>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QListWidget>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace tw {

namespace {

// Row 0 is the gallery, then the tiles on the desktop where the host lists them; the sections
// follow in their order.
constexpr ConfigSection rowSections[] = {ConfigSection::general, ConfigSection::appearance,
                                         ConfigSection::layouts, ConfigSection::updates,
                                         ConfigSection::about};

QString sectionTitle(std::optional<ConfigSection> section) {
    if (!section) {
        return L("config.widgets", QStringLiteral("Widgets"));
    }
    switch (*section) {
    case ConfigSection::general:
        return L("config.general", QStringLiteral("General"));
    case ConfigSection::appearance:
        return L("config.appearance", QStringLiteral("Appearance"));
    case ConfigSection::layouts:
        return L("config.layouts", QStringLiteral("Layouts"));
    case ConfigSection::updates:
        return L("config.updates", QStringLiteral("Updates"));
    case ConfigSection::about:
        return L("config.about", QStringLiteral("About"));
    }
    return {};
}

} // namespace

ConfigRoot::ConfigRoot(ConfigContext& context, ColorScheme scheme, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_scheme(scheme)
    , m_sidebar(new QListWidget(this))
    , m_stack(new QStackedWidget(this)) {
    setObjectName(QStringLiteral("configRoot"));
    setAttribute(Qt::WA_StyledBackground);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_sidebar->setObjectName(QStringLiteral("sidebar"));
    m_sidebar->setFixedWidth(200);
    m_sidebar->setAccessibleName(L("config.sections", QStringLiteral("Sections")));
    m_sidebar->addItem(sectionTitle(std::nullopt));
    if (m_context.grid && m_context.registry) {
        m_desktopRow = 1;
        m_sidebar->addItem(L("config.onDesktop", QStringLiteral("On the desktop")));
        ++m_extraRows;
    }
    if (m_context.customWidgets) {
        m_customRow = 1 + m_extraRows;
        m_sidebar->addItem(L("config.customWidgets", QStringLiteral("Custom widgets")));
        ++m_extraRows;
    }
    for (const ConfigSection section : rowSections) {
        m_sidebar->addItem(sectionTitle(section));
    }
    layout->addWidget(m_sidebar);
    // The banner of notices stands over every page.
    auto* content = new QVBoxLayout();
    content->setContentsMargins(0, 0, 0, 0);
    content->setSpacing(0);
    if (m_context.notices) {
        auto* banner = new QWidget(this);
        auto* bannerLayout = new QVBoxLayout(banner);
        bannerLayout->setContentsMargins(24, 14, 24, 0);
        auto* slot = new NoticeSlot(*m_context.notices, Notice::Placement::banner,
                                    NoticeCard::Style::banner, m_context.symbols, banner);
        bannerLayout->addWidget(slot);
        banner->setVisible(slot->notice().has_value());
        connect(slot, &NoticeSlot::occupiedChanged, banner, &QWidget::setVisible);
        content->addWidget(banner);
    }
    content->addWidget(m_stack, 1);
    layout->addLayout(content, 1);
    connect(m_sidebar, &QListWidget::currentRowChanged, this, &ConfigRoot::showRow);
    // From a tile's page its row is current already, so a click on it must go back by itself.
    connect(m_sidebar, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        if (m_sidebar->row(item) == m_desktopRow && !m_widget.isNull()) {
            showRow(m_desktopRow);
        }
    });

    auto shortcut = [this](const QKeySequence& keys, auto slot) {
        auto* s = new QShortcut(keys, this);
        s->setContext(Qt::WindowShortcut);
        connect(s, &QShortcut::activated, this, slot);
    };
    shortcut(QKeySequence::Find, [this] { search(); });
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_Z), [this] {
        if (m_context.undo) {
            m_context.undo();
        }
    });
    shortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), [this] {
        if (m_context.redo) {
            m_context.redo();
        }
    });
    shortcut(QKeySequence(Qt::Key_Escape), [this] { window()->close(); });
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_W), [this] { window()->close(); });

    setColorScheme(scheme);
    m_sidebar->setCurrentRow(0);

    // The guide, until it is skipped or done; a window closed on the way shows it again. A
    // notice for the sheet waits for a window without the guide.
    if (!m_context.settings.hasSeenGuide()) {
        showGuide();
    } else if (m_context.notices) {
        NoticeSheet::presentIfDue(*m_context.notices, m_context.symbols, *this);
    }
}

void ConfigRoot::showGuide() {
    auto* guide = new OnboardingView(m_context.hasTray ? OnboardingView::StatusPlace::tray
                                                       : OnboardingView::StatusPlace::menuBar,
                                     this);
    connect(guide, &OnboardingView::finished, this, [this, guide] {
        m_context.settings.setHasSeenGuide(true);
        guide->hide();
        guide->deleteLater();
    });
    guide->show();
    guide->raise();
}

void ConfigRoot::selectKind(const QString& kind) {
    m_sidebar->setCurrentRow(0);
    auto* gallery = qobject_cast<GalleryView*>(page(std::nullopt));
    if (!gallery) {
        return;
    }
    const auto definition =
        m_context.registry ? m_context.registry->definition(kind) : std::nullopt;
    gallery->setQuery(definition ? definition->metadata.displayName : kind);
}

void ConfigRoot::setColorScheme(ColorScheme scheme) {
    m_scheme = scheme;
    applyColors();
    if (m_customPage) {
        m_customPage->setColorScheme(scheme);
    }
}

CustomWidgetsPage* ConfigRoot::customWidgets() {
    if (m_customRow < 0) {
        return nullptr;
    }
    m_sidebar->setCurrentRow(m_customRow);
    return m_customPage;
}

void ConfigRoot::applyColors() {
    const ConfigPalette palette = ConfigPalette::of(m_scheme);
    // The whole window wears it, its menu bar included, once the root stands in one.
    QWidget* target = window();
    target->setPalette(palette.palette());
    target->setStyleSheet(palette.styleSheet());
}

bool ConfigRoot::event(QEvent* event) {
    if (event->type() == QEvent::ParentChange) {
        applyColors();
    }
    return QWidget::event(event);
}

QWidget* ConfigRoot::page(std::optional<ConfigSection> section) {
    const int row = rowOf(section);
    if (QWidget* made = m_pages.value(row)) {
        return made;
    }
    QWidget* made = nullptr;
    if (!section) {
        made = m_context.makeGallery ? m_context.makeGallery() : new QWidget();
    } else {
        switch (*section) {
        case ConfigSection::general:
            made = new GeneralPage(m_context);
            break;
        case ConfigSection::appearance:
            made = new AppearancePage(m_context);
            break;
        case ConfigSection::layouts:
            made = new LayoutsPage(m_context);
            break;
        case ConfigSection::updates:
            made = new UpdatesPage(m_context);
            break;
        case ConfigSection::about:
            made = new AboutPage(m_context);
            break;
        }
    }
    m_stack->addWidget(made);
    m_pages.insert(row, made);
    return made;
}

int ConfigRoot::rowOf(std::optional<ConfigSection> section) const {
    return section ? static_cast<int>(*section) + 1 + m_extraRows : 0;
}

std::optional<ConfigSection> ConfigRoot::sectionOf(int row) const {
    const int index = row - 1 - m_extraRows;
    if (row <= 0 || row == m_desktopRow || row == m_customRow ||
        index >= static_cast<int>(std::size(rowSections))) {
        return std::nullopt;
    }
    return rowSections[index];
}

void ConfigRoot::showRow(int row) {
    m_page.clear();
    m_widget = QUuid();
    if (row == m_desktopRow) {
        if (!m_desktopPage) {
            m_desktopPage = new DesktopWidgetsPage(m_context);
            connect(m_desktopPage, &DesktopWidgetsPage::widgetChosen, this,
                    [this](const QUuid& id) { showWidget(id); });
            m_stack->addWidget(m_desktopPage);
        }
        m_stack->setCurrentWidget(m_desktopPage);
        return;
    }
    if (row == m_customRow) {
        if (!m_customPage) {
            m_customPage = new CustomWidgetsPage(m_context, m_scheme);
            m_stack->addWidget(m_customPage);
        }
        m_stack->setCurrentWidget(m_customPage);
        return;
    }
    m_stack->setCurrentWidget(page(sectionOf(row)));
}

void ConfigRoot::showWidget(const QUuid& id) {
    {
        const QSignalBlocker quiet(m_sidebar);
        m_sidebar->setCurrentRow(m_desktopRow);
    }
    // One tile's page at a time: the one before goes with its controls.
    delete m_widgetPage;
    m_widgetPage = new WidgetSettingsPage(m_context, id);
    connect(m_widgetPage, &WidgetSettingsPage::backRequested, this,
            [this] { showRow(m_desktopRow); });
    m_stack->addWidget(m_widgetPage);
    m_stack->setCurrentWidget(m_widgetPage);
    // The keyboard starts on the tile's size, unless the first-start guide holds it.
    const auto* guide = findChild<OnboardingView*>();
    if (guide == nullptr || guide->isHidden()) {
        for (auto* segment : m_widgetPage->sizePicker()->findChildren<QAbstractButton*>()) {
            if (segment->isChecked()) {
                segment->setFocus();
            }
        }
    }
    m_page.clear();
    m_widget = id;
}

void ConfigRoot::select(const ConfigSelection& selection) {
    if (!selection.widget.isNull() && m_desktopRow > 0) {
        showWidget(selection.widget);
        return;
    }
    m_sidebar->setCurrentRow(rowOf(selection.section));
    if (selection.page.isEmpty()) {
        return;
    }
    if (auto* settings = qobject_cast<SettingsPage*>(page(selection.section))) {
        settings->ensurePolished();
        if (settings->showPage(selection.page)) {
            m_page = selection.page;
        }
    }
}

ConfigSelection ConfigRoot::selection() const {
    return {.section = sectionOf(m_sidebar->currentRow()), .page = m_page, .widget = m_widget};
}

void ConfigRoot::search() {
    select({});
    if (auto* gallery = qobject_cast<GalleryView*>(page(std::nullopt))) {
        gallery->focusSearch();
    }
}

} // namespace tw
