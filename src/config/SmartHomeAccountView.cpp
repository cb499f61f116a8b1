#include "config/SmartHomeAccountView.h"

#include "connected/SmartHomeBehaviour.h"
#include "text/L.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tw {

namespace {

constexpr int idRole = Qt::UserRole;

} // namespace

SmartHomeAccountView::SmartHomeAccountView(SmartHomeBehaviour& tiles, const QStringList& chosen,
                                           QWidget* parent)
    : QWidget(parent)
    , m_tiles(tiles)
    , m_chosen(chosen) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    auto* form = new QFormLayout();
    m_address = new QLineEdit();
    m_address->setPlaceholderText(QStringLiteral("http://homeassistant.local:8123"));
    m_address->setMaxLength(255);
    m_token = new QLineEdit();
    m_token->setEchoMode(QLineEdit::Password);
    m_token->setMaxLength(1024);
    m_connect = new QPushButton(L("smarthome.connect", QStringLiteral("Connect")));
    form->addRow(L("smarthome.address", QStringLiteral("Address")), m_address);
    form->addRow(L("smarthome.token", QStringLiteral("Long-lived token")), m_token);
    column->addLayout(form);
    m_status = new QLabel();
    m_status->setWordWrap(true);
    column->addWidget(m_status);
    column->addWidget(m_connect, 0, Qt::AlignLeft);
    m_filter = new QLineEdit();
    m_filter->setPlaceholderText(L("smarthome.search", QStringLiteral("Search entities")));
    m_filter->setClearButtonEnabled(true);
    column->addWidget(m_filter);
    m_list = new QListWidget();
    m_list->setMinimumHeight(220);
    m_list->setAccessibleName(L("smarthome.entities", QStringLiteral("Entities")));
    column->addWidget(m_list);

    connect(m_connect, &QPushButton::clicked, this, [this] {
        m_tiles.setAccount(m_address->text(), m_token->text());
        m_token->clear();
        m_tiles.service().readStates();
    });
    connect(m_token, &QLineEdit::returnPressed, m_connect, &QPushButton::click);
    connect(m_filter, &QLineEdit::textChanged, this, &SmartHomeAccountView::fillList);
    connect(m_list, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
        const QString id = item->data(idRole).toString();
        const bool checked = item->checkState() == Qt::Checked;
        if (checked == m_chosen.contains(id)) {
            return;
        }
        if (checked) {
            m_chosen.append(id);
        } else {
            m_chosen.removeAll(id);
        }
        Q_EMIT entitiesChosen(m_chosen);
    });
    connect(&m_tiles, &SmartHomeBehaviour::accountChanged, this, [this] {
        showAccount();
        m_tiles.service().readStates();
    });
    connect(&m_tiles, &TileBehaviour::changed, this, [this] {
        showStatus();
        fillList();
    });
    showAccount();
    showStatus();
    fillList();
    m_tiles.service().readStates();
}

void SmartHomeAccountView::showAccount() {
    if (!m_address->hasFocus()) {
        m_address->setText(m_tiles.address());
    }
    m_token->setPlaceholderText(
        m_tiles.hasToken() ? L("smarthome.tokenKept", QStringLiteral("Kept in the keychain"))
                           : L("smarthome.tokenHint",
                               QStringLiteral("From your Home Assistant profile, Security")));
}

void SmartHomeAccountView::showStatus() {
    const SmartHomeBoard& board = m_tiles.board();
    QString words;
    switch (board.status) {
    case SmartHomeStatus::noAccount:
        words = L("smarthome.needsAccount",
                  QStringLiteral("Give the address of your Home Assistant and a long-lived "
                                 "access token."));
        break;
    case SmartHomeStatus::idle:
    case SmartHomeStatus::live:
        words = board.statesRead ? L("smarthome.found", QStringLiteral("Connected: %1 entities"))
                                       .arg(board.entities.size())
                                 : L("smarthome.connecting", QStringLiteral("Connecting…"));
        break;
    case SmartHomeStatus::connecting:
        words = L("smarthome.connecting", QStringLiteral("Connecting…"));
        break;
    case SmartHomeStatus::unreachable:
    case SmartHomeStatus::unauthorised:
    case SmartHomeStatus::failed:
        words = board.message;
        break;
    }
    m_status->setText(words);
}

void SmartHomeAccountView::fillList() {
    const SmartHomeBoard& board = m_tiles.board();
    QList<HaEntity> entities = board.entities.values();
    std::sort(entities.begin(), entities.end(), [](const HaEntity& a, const HaEntity& b) {
        return a.name.localeAwareCompare(b.name) < 0;
    });
    const QString filter = m_filter->text().trimmed();
    const QSignalBlocker quiet(m_list);
    m_list->clear();
    const auto add = [&](const QString& id, const QString& text) {
        auto* item = new QListWidgetItem(text, m_list);
        item->setData(idRole, id);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        item->setCheckState(m_chosen.contains(id) ? Qt::Checked : Qt::Unchecked);
    };
    // Chosen ids Home Assistant does not list stay, so that they can be unchecked.
    for (const QString& id : std::as_const(m_chosen)) {
        if (board.statesRead && !board.entities.contains(id)) {
            add(id, L("smarthome.missing", QStringLiteral("%1 (not found)")).arg(id));
        }
    }
    for (const HaEntity& entity : std::as_const(entities)) {
        if (!filter.isEmpty() && !entity.name.contains(filter, Qt::CaseInsensitive) &&
            !entity.id.contains(filter, Qt::CaseInsensitive)) {
            continue;
        }
        add(entity.id, entity.name + u"  ·  "_qs + entity.id);
    }
}

} // namespace tw
