// The GitHub tile's token: typed once, kept in the keychain, never shown again; "Remove" forgets
// it. Says whether GitHub took the token the last time it was used.
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;

namespace tw {

class GitHubBehaviour;

class GitHubTokenField final : public QWidget {
    Q_OBJECT
public:
    // `target` is the key of the tile's target, whose state tells whether the token was taken.
    GitHubTokenField(GitHubBehaviour& tiles, const QString& target, QWidget* parent = nullptr);

    QLineEdit* field() const { return m_field; }
    QLabel* status() const { return m_status; }

private:
    void refresh();

    GitHubBehaviour& m_tiles;
    QString m_target;
    QLineEdit* m_field = nullptr;
    QPushButton* m_save = nullptr;
    QPushButton* m_remove = nullptr;
    QLabel* m_status = nullptr;
};

} // namespace tw
