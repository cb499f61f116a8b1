#include "config/ControlKit.h"

#include "config/ConfigPalette.h"
#include "config/PlaceField.h"
#include "config/SettingsCard.h"
#include "config/SizePicker.h"
#include "config/SwitchButton.h"
#include "config/ThemeSwatch.h"
#include "look/Theme.h"
#include "model/WidgetOption.h"
#include "weather/GeoSuggestion.h"

#include <QComboBox>
#include <QDateEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

namespace tw {

namespace {

QWidget* rowOf(const QList<QWidget*>& widgets) {
    auto* row = new QWidget();
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    for (QWidget* widget : widgets) {
        layout->addWidget(widget);
    }
    layout->addStretch(1);
    return row;
}

QPushButton* button(const QString& text, const char* name = nullptr, bool enabled = true) {
    auto* made = new QPushButton(text);
    if (name != nullptr) {
        made->setObjectName(QLatin1String(name));
    }
    made->setEnabled(enabled);
    return made;
}

SwitchButton* switchIn(bool on, bool enabled = true) {
    auto* made = new SwitchButton();
    made->setChecked(on);
    made->setEnabled(enabled);
    return made;
}

// Segments join into one control only when each knows where it stands in the row.
QWidget* segments(const QStringList& titles, int chosen) {
    QList<QWidget*> buttons;
    for (qsizetype i = 0; i < titles.size(); ++i) {
        QPushButton* segment = button(titles[i], "segment");
        segment->setCheckable(true);
        segment->setChecked(i == chosen);
        segment->setProperty("roomy", true);
        segment->setProperty("edge", QLatin1String(i == 0                   ? "first"
                                                   : i == titles.size() - 1 ? "last"
                                                                            : "middle"));
        buttons.append(segment);
    }
    QWidget* row = rowOf(buttons);
    row->layout()->setSpacing(0);
    return row;
}

QWidget* chips(const QStringList& titles, int chosen) {
    QList<QWidget*> buttons;
    for (qsizetype i = 0; i < titles.size(); ++i) {
        QPushButton* chip = button(titles[i], "chip");
        chip->setCheckable(true);
        chip->setChecked(i == chosen);
        buttons.append(chip);
    }
    return rowOf(buttons);
}

QLineEdit* field(const QString& text, const QString& placeholder, bool enabled = true) {
    auto* made = new QLineEdit(text);
    made->setPlaceholderText(placeholder);
    made->setEnabled(enabled);
    made->setMinimumWidth(200);
    return made;
}

QWidget* swatches() {
    QList<QWidget*> tiles;
    const QList<Theme>& themes = Theme::builtIns();
    for (qsizetype i = 0; i < std::min<qsizetype>(themes.size(), 3); ++i) {
        auto* swatch = new ThemeSwatch(themes[i]);
        swatch->setCheckable(true);
        swatch->setChecked(i == 0);
        tiles.append(swatch);
    }
    return rowOf(tiles);
}

SettingsCard* buttonsCard() {
    auto* card = new SettingsCard();
    card->addRow(QStringLiteral("Buttons"), QStringLiteral("Primary, plain and unavailable"),
                 rowOf({button(QStringLiteral("Restart Now"), "primary"),
                        button(QStringLiteral("Open Folder")),
                        button(QStringLiteral("Undo"), nullptr, false)}));
    card->addRow(QStringLiteral("Switches"), QStringLiteral("On, off and unavailable"),
                 rowOf({switchIn(true), switchIn(false), switchIn(false, false)}));
    card->addRow(
        QStringLiteral("Segments"), QStringLiteral("One choice of a few"),
        segments({QStringLiteral("Frosted"), QStringLiteral("Clear"), QStringLiteral("Liquid")},
                 1));
    auto* sizes =
        new SizePicker({WidgetSize::small, WidgetSize::wide, WidgetSize::large}, WidgetSize::wide);
    // Its segments take what room they are given, as on a narrow card.
    sizes->setMinimumWidth(220);
    card->addRow(QStringLiteral("Sizes"), QStringLiteral("The allowed sizes of a kind"), sizes);
    return card;
}

SettingsCard* fieldsCard() {
    auto* card = new SettingsCard();
    card->addRow(QStringLiteral("Text"), QStringLiteral("Filled, empty and unavailable"),
                 rowOf({field(QStringLiteral("Lisbon"), QString()),
                        field(QString(), QStringLiteral("City or place")),
                        field(QStringLiteral("Europe/Lisbon"), QString(), false)}));
    auto* search = field(QString(), QStringLiteral("Search widgets"));
    search->setObjectName(QStringLiteral("gallery-search"));
    card->addRow(QStringLiteral("Search"), QString(), search);
    auto* choice = new QComboBox();
    choice->addItems({QStringLiteral("As the system says"), QStringLiteral("12-hour"),
                      QStringLiteral("24-hour")});
    card->addRow(QStringLiteral("Menu"), QString(), choice);
    auto* day = new QDateEdit(QDate(2027, 1, 1));
    day->setCalendarPopup(true);
    day->setDisplayFormat(QStringLiteral("d MMMM yyyy"));
    card->addRow(QStringLiteral("Day"), QStringLiteral("Picked on a calendar"), day);
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setRange(0, 100);
    slider->setValue(60);
    slider->setMinimumWidth(220);
    card->addRow(QStringLiteral("Slider"), QString(), slider);
    card->addRow(QStringLiteral("Chips"), QStringLiteral("Filters of the gallery"),
                 chips({QStringLiteral("All"), QStringLiteral("Time"), QStringLiteral("System"),
                        QStringLiteral("Weather")},
                       0));
    card->addRow(QStringLiteral("Themes"), QString(), swatches());
    return card;
}

// A city kept, and a search under way with its answer.
SettingsCard* placeCard() {
    auto* card = new SettingsCard();
    const WidgetOption option = WidgetOption::of(QStringLiteral("weather")).first();
    const auto answer = [](const QString&, const QObject*, const ConfigContext::CitiesFound& done) {
        done({{.id = 1,
               .name = QStringLiteral("Lisbon"),
               .admin = QStringLiteral("Lisbon"),
               .country = QStringLiteral("Portugal"),
               .countryCode = QStringLiteral("PT"),
               .latitude = 38.72,
               .longitude = -9.14},
              {.id = 2,
               .name = QStringLiteral("Lisburn"),
               .admin = QStringLiteral("Northern Ireland"),
               .country = QStringLiteral("United Kingdom"),
               .countryCode = QStringLiteral("GB"),
               .latitude = 54.52,
               .longitude = -6.04}},
             QString());
    };
    auto* place = new PlaceField(option, answer, nullptr);
    place->show({{QStringLiteral("location"), QStringLiteral("custom")},
                 {QStringLiteral("locName"), QStringLiteral("Porto")},
                 {QStringLiteral("locLat"), QStringLiteral("41.15")},
                 {QStringLiteral("locLon"), QStringLiteral("-8.61")},
                 {QStringLiteral("locCountry"), QStringLiteral("PT")}});
    place->searchField()->setText(QStringLiteral("Lis"));
    Q_EMIT place->searchField()->textEdited(place->searchField()->text());
    place->addTo(*card, option.title, QStringLiteral("A city searched by name"));
    return card;
}

} // namespace

ControlKit::ControlKit(ColorScheme scheme, QWidget* parent)
    : QWidget(parent) {
    const ConfigPalette palette = ConfigPalette::of(scheme);
    setAutoFillBackground(true);
    setPalette(palette.palette());
    setStyleSheet(palette.styleSheet());

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(28, 24, 28, 28);
    column->setSpacing(10);
    auto* title = new QLabel(QStringLiteral("Controls"));
    title->setObjectName(QStringLiteral("title"));
    column->addWidget(title);
    column->addWidget(sectionHeading(QStringLiteral("Actions and choices")));
    column->addWidget(buttonsCard());
    column->addWidget(sectionHeading(QStringLiteral("Input")));
    column->addWidget(fieldsCard());
    column->addWidget(placeCard());
    column->addWidget(caption(QStringLiteral(
        "Captions sit below a row in secondary text and wrap when they are longer than the "
        "row is wide.")));
    column->addStretch(1);
}

} // namespace tw
