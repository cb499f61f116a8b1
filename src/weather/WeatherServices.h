// The weather of every place tiles show: the shared service for where the machine is and one per
// fixed city, made on first use and kept for the life of the program, published as one board.
// Also the city search, which asks the same geocoding service.
#pragma once

#include "model/WidgetInstance.h"
#include "weather/GeoSuggestion.h"
#include "weather/WeatherBoard.h"
#include "weather/WeatherService.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <memory>

namespace tw {

class WeatherServices final : public QObject {
    Q_OBJECT
public:
    using Services = WeatherService::Services;
    using SearchDone =
        std::function<void(const QList<GeoSuggestion>& places, const QString& failure)>;

    static constexpr std::chrono::milliseconds searchTimeout{8'000};

    explicit WeatherServices(const Services& services, QObject* parent = nullptr);
    ~WeatherServices() override;

    const WeatherBoard& board() const { return m_board; }
    // The service a tile with these settings shows: the shared one, or its city's.
    WeatherService& service(const WidgetSettings& settings);
    WeatherService& shared() { return *m_shared; }

    // Refreshes, where stale, the places the tiles in view show, and no other.
    void refresh(const QDateTime& now, const QList<WidgetSettings>& placesInView);

    // Places whose name matches `text`; `done` gets them, or an empty list and the reason. It
    // never runs once `requester` is gone.
    void searchCities(const QString& text, const QObject* requester, SearchDone done);

Q_SIGNALS:
    // A place on the board changed.
    void boardChanged();

private:
    std::unique_ptr<WeatherService> make(std::optional<FixedLocation> fixed);
    void publish(const QString& key, const WeatherService& service);

    Services m_services;
    std::unique_ptr<WeatherService> m_shared;
    QHash<QString, std::shared_ptr<WeatherService>> m_fixed;
    WeatherBoard m_board;
};

} // namespace tw
