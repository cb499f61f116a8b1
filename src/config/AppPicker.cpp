#include "config/AppPicker.h"

#include "launch/AppShelf.h"
#include "text/L.h"

#include <QFileInfo>
#include <QIcon>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

namespace tw {

namespace {

QIcon iconOf(const InstalledApp& app) {
    if (QFileInfo(app.icon).isAbsolute()) {
        return QIcon(app.icon);
    }
    return QIcon::fromTheme(app.icon, QIcon::fromTheme(QStringLiteral("application-x-executable")));
}

} // namespace

AppPicker::AppPicker(const std::function<QList<InstalledApp>()>& installed, Choosing choosing,
                     QWidget* parent)
    : QWidget(parent)
    , m_choosing(choosing)
    , m_installed(installed ? installed() : QList<InstalledApp>())
    , m_search(new QLineEdit())
    , m_list(new QListWidget()) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_search->setPlaceholderText(L("apps.picker.search", QStringLiteral("Search apps")));
    m_search->setClearButtonEnabled(true);
    m_list->setIconSize(QSize(22, 22));
    m_list->setMinimumSize(260, 220);
    m_list->setUniformItemSizes(true);
    layout->addWidget(m_search);
    layout->addWidget(m_list);
    connect(m_search, &QLineEdit::textChanged, this, &AppPicker::fill);
    connect(m_list, &QListWidget::itemClicked, this, &AppPicker::clicked);
    fill();
}

void AppPicker::show(const QString& value) {
    const QStringList chosen = m_choosing == Choosing::several
                                   ? AppShelf::read({{AppShelf::key(), value}})
                                   : (value.isEmpty() ? QStringList() : QStringList{value});
    if (chosen != m_chosen) {
        m_chosen = chosen;
        fill();
    }
}

void AppPicker::fill() {
    m_list->clear();
    const QString query = m_search->text();
    // What is chosen comes first in its order, so that a long list still shows it.
    QList<InstalledApp> shown;
    if (query.trimmed().isEmpty()) {
        for (const QString& id : m_chosen) {
            const auto found = std::find_if(m_installed.cbegin(), m_installed.cend(),
                                            [&](const InstalledApp& app) { return app.id == id; });
            shown.append(found != m_installed.cend()
                             ? *found
                             : InstalledApp{.id = id, .name = id, .icon = {}, .keywords = {}});
        }
    }
    for (const InstalledApp& app : AppShelf::search(m_installed, query)) {
        if (!shown.contains(app)) {
            shown.append(app);
        }
    }
    for (const InstalledApp& app : shown) {
        auto* item = new QListWidgetItem(iconOf(app), app.name, m_list);
        item->setData(Qt::UserRole, app.id);
        item->setToolTip(app.id);
        if (m_choosing == Choosing::several) {
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(m_chosen.contains(app.id) ? Qt::Checked : Qt::Unchecked);
        } else if (m_chosen.contains(app.id)) {
            item->setSelected(true);
        }
    }
}

void AppPicker::clicked(QListWidgetItem* item) {
    const QString id = item->data(Qt::UserRole).toString();
    if (m_choosing == Choosing::one) {
        m_chosen = {id};
        Q_EMIT chosen(id);
        return;
    }
    m_chosen = AppShelf::toggled(m_chosen, id);
    item->setCheckState(m_chosen.contains(id) ? Qt::Checked : Qt::Unchecked);
    Q_EMIT chosen(AppShelf::write(m_chosen));
}

} // namespace tw
