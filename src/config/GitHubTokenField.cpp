#include "config/GitHubTokenField.h"

#include "connected/GitHubBehaviour.h"
#include "text/L.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

GitHubTokenField::GitHubTokenField(GitHubBehaviour& tiles, const QString& target, QWidget* parent)
    : QWidget(parent)
    , m_tiles(tiles)
    , m_target(target) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    auto* row = new QHBoxLayout();
    m_field = new QLineEdit();
    m_field->setEchoMode(QLineEdit::Password);
    m_field->setMaxLength(255);
    m_field->setMinimumWidth(220);
    m_field->setAccessibleName(L("github.token", QStringLiteral("Token")));
    m_save = new QPushButton(L("github.saveToken", QStringLiteral("Save")));
    m_remove = new QPushButton(L("github.removeToken", QStringLiteral("Remove")));
    row->addWidget(m_field, 1);
    row->addWidget(m_save);
    row->addWidget(m_remove);
    column->addLayout(row);
    m_status = new QLabel();
    m_status->setWordWrap(true);
    column->addWidget(m_status);

    connect(m_save, &QPushButton::clicked, this, [this] {
        if (!m_field->text().trimmed().isEmpty()) {
            m_tiles.setToken(m_field->text());
            m_field->clear();
            refresh();
        }
    });
    connect(m_field, &QLineEdit::returnPressed, m_save, &QPushButton::click);
    connect(m_remove, &QPushButton::clicked, this, [this] {
        m_tiles.setToken(QString());
        refresh();
    });
    connect(&m_tiles, &TileBehaviour::changed, this, &GitHubTokenField::refresh);
    refresh();
}

void GitHubTokenField::refresh() {
    const bool has = m_tiles.hasToken();
    m_remove->setEnabled(has);
    m_field->setPlaceholderText(has ? L("github.tokenKept", QStringLiteral("Kept in the keychain"))
                                    : L("github.tokenNone", QStringLiteral("None")));
    const GitHubState state = m_tiles.state(m_target);
    if (has && state.status == GitHubStatus::tokenRefused) {
        m_status->setText(L("github.tokenRefusedLong",
                            QStringLiteral("GitHub refused this token: it may have expired. "
                                           "Enter a new one.")));
    } else if (has && state.notifications == GitHubNotifications::refused) {
        m_status->setText(L("github.tokenNoNotifications",
                            QStringLiteral("This token may not read notifications.")));
    } else {
        m_status->setText(has ? L("github.tokenInUse", QStringLiteral("A token is in use."))
                              : QString());
    }
    m_status->setVisible(!m_status->text().isEmpty());
}

} // namespace tw
