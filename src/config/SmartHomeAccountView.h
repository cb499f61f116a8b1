// The smart home tile's account and picker: the Home Assistant address and a long-lived token
// (kept in the keychain), how the link is, and every entity Home Assistant lists, searchable, to
// check the ones the tile shows.
#pragma once

#include <QStringList>
#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace tw {

class SmartHomeBehaviour;

class SmartHomeAccountView final : public QWidget {
    Q_OBJECT
public:
    SmartHomeAccountView(SmartHomeBehaviour& tiles, const QStringList& chosen,
                         QWidget* parent = nullptr);

    QLineEdit* address() const { return m_address; }
    QLineEdit* token() const { return m_token; }
    QPushButton* connectButton() const { return m_connect; }
    QListWidget* entities() const { return m_list; }
    QLabel* status() const { return m_status; }

Q_SIGNALS:
    // The checked entities, in the order they were checked.
    void entitiesChosen(const QStringList& ids);

private:
    void showAccount();
    void showStatus();
    void fillList();

    SmartHomeBehaviour& m_tiles;
    QStringList m_chosen;
    QLineEdit* m_address = nullptr;
    QLineEdit* m_token = nullptr;
    QPushButton* m_connect = nullptr;
    QLabel* m_status = nullptr;
    QLineEdit* m_filter = nullptr;
    QListWidget* m_list = nullptr;
};

} // namespace tw
