// The layout profiles on the "layouts" section: which one is active and what the rules are
// doing, switching by hand, saving the desktop into the active one, new, rename, duplicate, and
// delete with a way back.
#pragma once

#include "displays/SmartLayoutCoordinator.h"

#include <QList>
#include <QUuid>
#include <QWidget>

#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace tw {

class LayoutProfilesCard final : public QWidget {
    Q_OBJECT
public:
    explicit LayoutProfilesCard(SmartLayoutCoordinator& coordinator, QWidget* parent = nullptr);

    // What the status line says.
    static QString statusText(const SmartLayoutCoordinator::Status& status);

private:
    struct Shown {
        QUuid id;
        QString name;
        bool isDefault = false;
        bool isActive = false;

        friend bool operator==(const Shown&, const Shown&) = default;
    };

    void refreshStatus();
    void refreshList();
    QWidget* rowFor(const Shown& profile);
    void deleteProfile(const QUuid& id, const QString& name);

    SmartLayoutCoordinator& m_coordinator;
    QLabel* m_status;
    QPushButton* m_resume;
    QVBoxLayout* m_list;
    QLineEdit* m_newName;
    QWidget* m_undoBar;
    QLabel* m_undoText;
    std::optional<SmartLayoutCoordinator::Deleted> m_deleted;
    // The list is rebuilt only when a name or the active profile changes, not at every capture.
    QList<Shown> m_shown;
};

} // namespace tw
