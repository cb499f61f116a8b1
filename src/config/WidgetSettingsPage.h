// One tile's own page: its name and kind over a live preview, then what every tile has (its size
// and scale) and the options of its kind. Each change goes to the grid store as the desktop's own
// changes do, so it is saved, shown on the desktop at once and undone with Ctrl+Z.
#pragma once

#include "config/SettingsPage.h"
#include "model/WidgetInstance.h"

#include <QDate>
#include <QHash>
#include <QUuid>

#include <optional>

class QComboBox;
class QLabel;
class QSlider;

namespace tw {

struct ConfigContext;
struct FixedLocation;
class CalendarSourcesView;
class SettingsCard;
class SizePicker;
struct WidgetOption;

class WidgetSettingsPage final : public SettingsPage {
    Q_OBJECT
public:
    // Scale in steps of 0.05 from 1.0 to 2.5, as the slider counts them.
    static constexpr int scaleSteps = 30;

    // `context` must have a grid and a registry; an id the grid does not hold shows that it is
    // gone.
    WidgetSettingsPage(ConfigContext& context, const QUuid& id, QWidget* parent = nullptr);

    QUuid widgetID() const { return m_id; }
    SizePicker* sizePicker() const { return m_sizes; }
    QSlider* scaleSlider() const { return m_scale; }
    // The control of one of the kind's options, by key; null when the kind has no such option.
    QWidget* optionControl(const QString& key) const { return m_options.value(key); }
    // Where a calendar or reminders tile may read from; null for other kinds.
    CalendarSourcesView* sources() const { return m_sources; }

Q_SIGNALS:
    // "All widgets on the desktop" was chosen.
    void backRequested();

private:
    // Shows the store's state of the tile without writing anything back.
    void refresh();
    // Says why a tile changed so would fit on no display, and shows it as it stays.
    bool refuseUnfit(const WidgetInstance& changed);
    void chooseSize(WidgetSize size);
    void chooseScale(int step);
    void setOption(const QString& key, const QString& value);
    void chooseCity(const FixedLocation& city);
    void addOptions(const QString& kind);
    void addCalendarSources(const QString& kind);
    void fillChoices(QComboBox* box, const WidgetOption& option, const QString& kind);
    // The goal's note and "Clear" of the app time tile.
    void addAppUsageRows(SettingsCard& card);
    // The token of a GitHub tile; the account and the entities of a smart home tile.
    void addConnectedAccount(const QString& kind);
    // The day a date option shows for its stored value.
    QDate shownDay(const QString& value) const;

    ConfigContext& m_context;
    const QUuid m_id;
    std::optional<WidgetInstance> m_instance;
    QWidget* m_preview = nullptr;
    CalendarSourcesView* m_sources = nullptr;
    QLabel* m_kind = nullptr;
    SizePicker* m_sizes = nullptr;
    QSlider* m_scale = nullptr;
    QLabel* m_scaleText = nullptr;
    QHash<QString, QWidget*> m_options;
    // Each option's row, dimmed while the option does not count.
    QHash<QString, QWidget*> m_rows;
};

} // namespace tw
