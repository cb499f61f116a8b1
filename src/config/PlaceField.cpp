#include "config/PlaceField.h"

#include "config/SettingsCard.h"
#include "config/SuggestionButton.h"
#include "platform/Scheduler.h"
#include "text/L.h"
#include "weather/GeoSuggestion.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {

const QString customValue = QStringLiteral("custom");
// As long as any place's name, short enough that a pasted page never goes out as a search.
constexpr int kMostText = 100;

// The city kept beside the option, also while the tile shows where the machine is.
std::optional<FixedLocation> keptCity(WidgetSettings settings, const QString& key) {
    settings.insert(key, customValue);
    return FixedLocation::fromSettings(settings);
}

} // namespace

PlaceField::PlaceField(const WidgetOption& option, ConfigContext::CitySearch search,
                       Scheduler* scheduler, QWidget* parent)
    : QWidget(parent)
    , m_key(option.key)
    , m_find(std::move(search))
    , m_scheduler(scheduler)
    , m_mode(new QComboBox())
    , m_city(caption(QString(), this))
    , m_search(new QLineEdit(this))
    , m_status(caption(QString(), this))
    , m_results(new QWidget(this))
    , m_resultsLayout(new QVBoxLayout(m_results)) {
    setObjectName(QStringLiteral("placeField"));
    // The row takes the box; this field lives as long as the row, so it is the box's owner too.
    m_mode->setParent(this);
    for (const WidgetOption::Choice& choice : option.choices) {
        m_mode->addItem(choice.title, choice.value);
    }
    connect(m_mode, &QComboBox::activated, this, &PlaceField::chooseMode);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 6, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_city);
    m_search->setMaxLength(kMostText);
    m_search->setClearButtonEnabled(true);
    m_search->setAccessibleName(L("place.search", QStringLiteral("Search for a city")));
    if (m_find) {
        m_search->setPlaceholderText(L("place.search", QStringLiteral("Search for a city")));
    } else {
        m_search->setPlaceholderText(
            L("place.unavailable", QStringLiteral("Finding cities is not available here")));
        m_search->setEnabled(false);
    }
    connect(m_search, &QLineEdit::textEdited, this, &PlaceField::typed);
    layout->addWidget(m_search);
    layout->addWidget(m_status);
    m_resultsLayout->setContentsMargins(0, 0, 0, 0);
    m_resultsLayout->setSpacing(2);
    layout->addWidget(m_results);
    m_status->hide();
    m_results->hide();
}

QWidget* PlaceField::addTo(SettingsCard& card, const QString& title, const QString& text) {
    QWidget* row = card.addRow(title, text, m_mode);
    row->layout()->setAlignment(m_mode, Qt::AlignRight | Qt::AlignTop);
    card.addLine(row, this);
    return row;
}

QList<QWidget*> PlaceField::results() const {
    QList<QWidget*> buttons;
    for (int i = 0; i < m_resultsLayout->count(); ++i) {
        buttons.append(m_resultsLayout->itemAt(i)->widget());
    }
    return buttons;
}

QString PlaceField::status() const {
    return m_status->isHidden() ? QString() : m_status->text();
}

void PlaceField::show(const WidgetSettings& settings) {
    const bool city = settings.value(m_key) == customValue;
    m_kept = keptCity(settings, m_key);
    if (city) {
        m_awaitingCity = false;
    }
    const bool showsCity = city || m_awaitingCity;
    m_mode->setCurrentIndex(std::max(0, m_mode->findData(showsCity ? customValue : QString())));
    for (QWidget* part : {static_cast<QWidget*>(m_city), static_cast<QWidget*>(m_search)}) {
        part->setVisible(showsCity);
    }
    if (!showsCity) {
        // A search under way no longer has anyone to answer.
        m_pending.cancel();
        ++m_generation;
        clearResults();
        m_search->clear();
    }
    if (city && m_kept) {
        const QString name = m_kept->name.isEmpty() ? QString::number(m_kept->latitude, 'f', 2) +
                                                          QStringLiteral(", ") +
                                                          QString::number(m_kept->longitude, 'f', 2)
                                                    : m_kept->name;
        m_city->setText(L("place.kept", QStringLiteral("Showing %1"))
                            .arg(m_kept->countryCode
                                     ? name + QStringLiteral(", ") + *m_kept->countryCode
                                     : name));
    } else {
        m_city->setText(L("place.none", QStringLiteral("No city chosen yet")));
    }
}

void PlaceField::chooseMode(int index) {
    if (m_mode->itemData(index).toString().isEmpty()) {
        m_awaitingCity = false;
        Q_EMIT currentChosen();
        return;
    }
    if (m_kept) {
        Q_EMIT cityChosen(*m_kept);
        return;
    }
    // Nothing is written until a city is picked; the search waits for it.
    m_awaitingCity = true;
    m_city->setText(L("place.none", QStringLiteral("No city chosen yet")));
    m_city->show();
    m_search->show();
    m_search->setFocus();
}

void PlaceField::typed(const QString& text) {
    m_pending.cancel();
    ++m_generation;
    const QString wanted = text.simplified();
    if (wanted.size() < shortestSearch) {
        clearResults();
        return;
    }
    if (m_scheduler == nullptr) {
        search(wanted);
        return;
    }
    m_pending = m_scheduler->singleShot(debounce, std::chrono::milliseconds(50), this,
                                        [this, wanted] { search(wanted); });
}

void PlaceField::search(const QString& text) {
    const int generation = ++m_generation;
    say(L("place.searching", QStringLiteral("Searching…")));
    m_find(text, this,
           [this, text, generation](const QList<GeoSuggestion>& places, const QString& failure) {
               if (generation == m_generation) {
                   answer(text, places, failure);
               }
           });
}

void PlaceField::answer(const QString& text, const QList<GeoSuggestion>& places,
                        const QString& failure) {
    clearResults();
    if (!failure.isEmpty()) {
        say(failure);
        return;
    }
    if (places.isEmpty()) {
        say(L("place.noneFound", QStringLiteral("No city called “%1” was found.")).arg(text));
        return;
    }
    for (const GeoSuggestion& place : places) {
        QPushButton* button = suggestionButton(place.name, place.detail());
        connect(button, &QPushButton::clicked, this, [this, place] {
            m_awaitingCity = false;
            m_search->clear();
            clearResults();
            Q_EMIT cityChosen(FixedLocation{.latitude = place.latitude,
                                            .longitude = place.longitude,
                                            .name = place.name,
                                            .countryCode = place.countryCode});
        });
        m_resultsLayout->addWidget(button);
    }
    m_results->show();
}

void PlaceField::clearResults() {
    while (QLayoutItem* item = m_resultsLayout->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    m_results->hide();
    m_status->hide();
    m_status->clear();
}

void PlaceField::say(const QString& text) {
    m_status->setText(text);
    m_status->show();
}

} // namespace tw
