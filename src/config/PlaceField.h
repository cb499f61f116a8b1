// A tile's place on its page: where the machine is, or a city found by name. The choice between the
// two sits at the right of the option's row; this field, under the row's title, shows the city kept
// and searches for another as the person types, a moment after the last key, showing each place's
// name over its region and country.
#pragma once

#include "config/ConfigContext.h"
#include "model/WidgetInstance.h"
#include "model/WidgetOption.h"
#include "platform/ScheduledTask.h"
#include "weather/FixedLocation.h"

#include <QWidget>

#include <chrono>

class QComboBox;
class QLabel;
class QLineEdit;
class QVBoxLayout;

namespace tw {

class Scheduler;
class SettingsCard;

class PlaceField final : public QWidget {
    Q_OBJECT
public:
    // The pause after the last key before a search goes out.
    static constexpr std::chrono::milliseconds debounce{300};
    // Shorter names match too much of the world to be worth asking for.
    static constexpr int shortestSearch = 2;

    // Without `search` the field says that finding cities is not available; without `scheduler`
    // each key searches at once.
    PlaceField(const WidgetOption& option, ConfigContext::CitySearch search, Scheduler* scheduler,
               QWidget* parent = nullptr);

    // Makes the option's row on `card`: the choice at its right, this field under its title.
    // Gives the row.
    QWidget* addTo(SettingsCard& card, const QString& title, const QString& text);
    // The choice between where the machine is and a city.
    QComboBox* modeBox() const { return m_mode; }
    QLineEdit* searchField() const { return m_search; }
    // The places of the last answer, in its order, each a button that picks it.
    QList<QWidget*> results() const;
    // What the last search came to, when it found nothing or failed; empty otherwise.
    QString status() const;

    // Shows what the tile's settings say, without telling anyone.
    void show(const WidgetSettings& settings);

Q_SIGNALS:
    // The tile should show where the machine is.
    void currentChosen();
    // The tile should show this city.
    void cityChosen(const tw::FixedLocation& city);

private:
    void chooseMode(int index);
    void typed(const QString& text);
    void search(const QString& text);
    void answer(const QString& text, const QList<GeoSuggestion>& places, const QString& failure);
    void clearResults();
    void say(const QString& text);

    const QString m_key;
    ConfigContext::CitySearch m_find;
    Scheduler* m_scheduler;
    QComboBox* m_mode;
    QLabel* m_city;
    QLineEdit* m_search;
    QLabel* m_status;
    QWidget* m_results;
    QVBoxLayout* m_resultsLayout;
    ScheduledTask m_pending;
    // Only the answer to the latest search is shown.
    int m_generation = 0;
    // The city kept in the settings, which "A city" brings back.
    std::optional<FixedLocation> m_kept;
    // "A city" is chosen but none has been picked yet: nothing to write until one is.
    bool m_awaitingCity = false;
};

} // namespace tw
