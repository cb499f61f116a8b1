// One section of the configuration window: a title, then named groups of settings that a page
// name scrolls to, in a scroll area. A change the preferences cannot keep is reported on it.
#pragma once

#include <QHash>
#include <QScrollArea>

class QLabel;
class QVBoxLayout;

namespace tw {

class SettingsCard;

class SettingsPage : public QScrollArea {
    Q_OBJECT
public:
    explicit SettingsPage(const QString& title, QWidget* parent = nullptr);

    // A group under a heading, known to showPage() by `page`.
    SettingsCard* addGroup(const QString& page, const QString& heading);
    // Anything else at the foot of the page (a note, a button row).
    void addWidget(QWidget* widget);
    // A group that a widget of this page made itself, known to showPage() by `page`.
    void addPage(const QString& page, QWidget* group);
    // Brings the named group into view and gives its first control the focus; false if the page
    // has no such group.
    bool showPage(const QString& page);
    // The group that showPage() last brought into view, for tests and pictures.
    QString shownPage() const { return m_shownPage; }

    // Says that a change was not kept, until the next change that is.
    void reportNotSaved(const QString& what);
    // Any other thing that went wrong, in a sentence.
    void reportProblem(const QString& sentence);
    void clearReport();
    QString report() const;

private:
    QVBoxLayout* m_column;
    QLabel* m_report;
    QHash<QString, QWidget*> m_groups;
    QString m_shownPage;
};

} // namespace tw
