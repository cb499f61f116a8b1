// The applications a launcher tile opens, picked from those installed: a search field that
// narrows the list as the person types, and the list with each app's icon. Several apps are
// ticked in the order chosen (the tile's order); one is chosen with a click.
#pragma once

#include "platform/AppDirectory.h"

#include <QWidget>

#include <functional>

class QLineEdit;
class QListWidget;
class QListWidgetItem;

namespace tw {

class AppPicker final : public QWidget {
    Q_OBJECT
public:
    enum class Choosing { one, several };

    // `installed` is asked once, when the picker is made.
    AppPicker(const std::function<QList<InstalledApp>()>& installed, Choosing choosing,
              QWidget* parent = nullptr);

    QLineEdit* search() const { return m_search; }
    QListWidget* list() const { return m_list; }
    // Shows the value kept (an id, or ids separated by ";") without telling anyone.
    void show(const QString& value);

Q_SIGNALS:
    void chosen(const QString& value);

private:
    void fill();
    void clicked(QListWidgetItem* item);

    Choosing m_choosing;
    QList<InstalledApp> m_installed;
    QStringList m_chosen;
    QLineEdit* m_search;
    QListWidget* m_list;
};

} // namespace tw
