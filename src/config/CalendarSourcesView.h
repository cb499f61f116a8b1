// Where a calendar or reminders tile may read from, on its settings page: what was found in the
// usual places, the person's own folders with "Add Folder…", and for calendars the subscriptions
// by "webcal"/https address, each checked by fetching it before it is listed. Only names of
// folders are read here; no calendar item is read before the tile's person chooses a source.
#pragma once

#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace tw {

class CalendarSetup;
class Clock;

class CalendarSourcesView final : public QWidget {
    Q_OBJECT
public:
    // The names of the calendars or lists found now.
    using Found = std::function<QStringList()>;
    // A folder the person picked, or nothing.
    using PickFolder = std::function<QString(QWidget* parent)>;

    // `subscriptions` is for calendar tiles; reminder lists cannot be subscribed to.
    CalendarSourcesView(CalendarSetup& setup, const Clock& clock, Found found,
                        PickFolder pickFolder, bool subscriptions, QWidget* parent = nullptr);

    QLineEdit* addressField() const { return m_address; }
    QPushButton* subscribeButton() const { return m_subscribe; }
    QPushButton* addFolderButton() const { return m_addFolder; }
    // The last word on an addition: why it was refused, or that it is being checked.
    QString status() const;

private:
    void rebuild();
    void addFolder();
    void subscribe();
    void say(const QString& sentence);

    CalendarSetup& m_setup;
    const Clock& m_clock;
    Found m_found;
    PickFolder m_pickFolder;
    QLabel* m_foundText;
    QVBoxLayout* m_folders;
    QVBoxLayout* m_addresses = nullptr;
    QPushButton* m_addFolder;
    QLineEdit* m_address = nullptr;
    QPushButton* m_subscribe = nullptr;
    QLabel* m_status;
};

} // namespace tw
