#include "config/WidgetSettingsPage.h"

#include "config/AppPicker.h"
#include "config/CalendarSourcesView.h"
#include "config/ConfigContext.h"
#include "config/FolderField.h"
#include "config/GitHubTokenField.h"
#include "config/LinesField.h"
#include "config/PlaceField.h"
#include "config/QuoteField.h"
#include "config/SettingsCard.h"
#include "config/SizePicker.h"
#include "config/SmartHomeAccountView.h"
#include "config/SwitchButton.h"
#include "connected/ConnectedTiles.h"
#include "desk/CalendarSetup.h"
#include "faces/CountdownFace.h"
#include "faces/GallerySheet.h"
#include "faces/SmartHomeFace.h"
#include "grid/GridStore.h"
#include "model/WidgetOption.h"
#include "model/WidgetRegistry.h"
#include "text/L.h"
#include "tick/TickCoordinator.h"

#include <QComboBox>
#include <QDateEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

const QString kScaleKey = QStringLiteral("tileScale");
// Long enough for a title or a zone, short enough that a pasted page does not land in grid.json.
constexpr int kMostText = 200;

// The tile as the desktop draws it, fitted onto a piece of desktop.
class TilePreview final : public QWidget {
public:
    TilePreview(const ConfigContext& context, const std::optional<WidgetInstance>& instance,
                QWidget* parent)
        : QWidget(parent)
        , m_context(context)
        , m_instance(instance) {
        setFixedSize(300, 190);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF stage = rect();
        QPainterPath clip;
        clip.addRoundedRect(stage, 10, 10);
        painter.setClipPath(clip);
        GallerySheet::paintBackdrop(painter, stage);
        if (!m_instance || !m_context.paintTile) {
            return;
        }
        const QSizeF tile = m_instance->pixelSize();
        const qreal s = std::min(
            {1.0, (stage.width() - 28) / tile.width(), (stage.height() - 28) / tile.height()});
        painter.translate(stage.center() - QPointF(tile.width(), tile.height()) * s / 2);
        painter.scale(s, s);
        m_context.paintTile(painter, QRectF(QPointF(0, 0), tile), *m_instance);
    }

private:
    const ConfigContext& m_context;
    const std::optional<WidgetInstance>& m_instance;
};

int scaleStep(double scale) {
    return static_cast<int>(std::lround((scale - 1.0) * 20));
}

QString scaleText(int step) {
    return QString::number(1.0 + step * 0.05, 'f', 2) + QChar(0x00D7);
}

} // namespace

WidgetSettingsPage::WidgetSettingsPage(ConfigContext& context, const QUuid& id, QWidget* parent)
    : SettingsPage(
          [&] {
              const auto instance = context.grid->instance(id);
              const auto definition =
                  instance ? context.registry->definition(instance->kind) : std::nullopt;
              if (!definition) {
                  return L("widget.gone", QStringLiteral("Widget"));
              }
              // The name that tells copies apart, where the kind has one.
              const auto copy = WidgetRegistry::copyLabel(*instance);
              return copy ? *copy : definition->metadata.displayName;
          }(),
          parent)
    , m_context(context)
    , m_id(id)
    , m_instance(context.grid->instance(id)) {
    setObjectName(QStringLiteral("widgetPage"));
    const auto definition =
        m_instance ? m_context.registry->definition(m_instance->kind) : std::nullopt;

    auto* hero = new QFrame();
    hero->setObjectName(QStringLiteral("card"));
    auto* heroRow = new QHBoxLayout(hero);
    heroRow->setContentsMargins(12, 12, 16, 12);
    heroRow->setSpacing(16);
    m_preview = new TilePreview(m_context, m_instance, hero);
    heroRow->addWidget(m_preview);
    auto* words = new QVBoxLayout();
    words->setSpacing(4);
    m_kind = new QLabel(hero);
    m_kind->setObjectName(QStringLiteral("caption"));
    m_kind->setWordWrap(true);
    words->addWidget(m_kind);
    words->addStretch(1);
    auto* back =
        new QPushButton(L("widgetPage.back", QStringLiteral("All widgets on the desktop")), hero);
    back->setCursor(Qt::PointingHandCursor);
    connect(back, &QPushButton::clicked, this, &WidgetSettingsPage::backRequested);
    words->addWidget(back, 0, Qt::AlignLeft);
    heroRow->addLayout(words, 1);
    addWidget(hero);

    const QList<WidgetSize> sizes = definition   ? definition->metadata.allowedSizes
                                    : m_instance ? QList<WidgetSize>{m_instance->size}
                                                 : QList<WidgetSize>{WidgetSize::small};
    m_sizes = new SizePicker(sizes, m_instance ? m_instance->size : sizes.first());
    // Its segments give up their width to a narrow card; here the row has room for all.
    m_sizes->setMinimumWidth(static_cast<int>(sizes.size()) * 58);
    m_scale = new QSlider(Qt::Horizontal);
    m_scale->setRange(0, scaleSteps);
    m_scale->setPageStep(5);
    m_scale->setFixedWidth(180);
    // One change when the knob is let go, not one for every step it passes.
    m_scale->setTracking(false);
    m_scaleText = new QLabel();
    m_scaleText->setMinimumWidth(44);
    auto* scaleRow = new QWidget();
    auto* scaleLayout = new QHBoxLayout(scaleRow);
    scaleLayout->setContentsMargins(0, 0, 0, 0);
    scaleLayout->addWidget(m_scale);
    scaleLayout->addWidget(m_scaleText);
    m_scale->setAccessibleName(L("widgetPage.scale", QStringLiteral("Scale")));

    SettingsCard* tile =
        addGroup(QStringLiteral("tile"), L("widgetPage.tile", QStringLiteral("Tile")));
    tile->addRow(L("widgetPage.size", QStringLiteral("Size")),
                 L("widgetPage.sizeCaption", QStringLiteral("Columns by rows of the grid")),
                 m_sizes);
    tile->addRow(L("widgetPage.scale", QStringLiteral("Scale")),
                 L("widgetPage.scaleCaption", QStringLiteral("From 1× to 2.5×, in steps of 0.05")),
                 scaleRow);
    connect(m_sizes, &SizePicker::sizeChanged, this, &WidgetSettingsPage::chooseSize);
    connect(m_scale, &QSlider::valueChanged, this, &WidgetSettingsPage::chooseScale);
    connect(m_scale, &QSlider::sliderMoved, this,
            [this](int step) { m_scaleText->setText(scaleText(step)); });

    addOptions(m_instance ? m_instance->kind : QString());
    addCalendarSources(m_instance ? m_instance->kind : QString());
    addConnectedAccount(m_instance ? m_instance->kind : QString());
    connect(m_context.grid, &GridStore::layoutChanged, this, &WidgetSettingsPage::refresh);
    if (m_context.ticker) {
        connect(m_context.ticker, &TickCoordinator::nowChanged, m_preview, [this] {
            if (!m_preview->visibleRegion().isEmpty()) {
                m_preview->update();
            }
        });
    }
    refresh();
}

void WidgetSettingsPage::addOptions(const QString& kind) {
    SettingsCard* card =
        addGroup(QStringLiteral("options"), L("widgetPage.options", QStringLiteral("Options")));
    const QList<WidgetOption> options = WidgetOption::of(kind);
    if (options.isEmpty()) {
        card->addRow(
            L("widgetPage.noOptions", QStringLiteral("This widget has no settings of its own.")),
            QString(), nullptr);
        return;
    }
    for (const WidgetOption& option : options) {
        QWidget* control = nullptr;
        switch (option.type) {
        case WidgetOption::Type::choice:
        case WidgetOption::Type::source: {
            auto* box = new QComboBox();
            fillChoices(box, option, kind);
            connect(box, &QComboBox::activated, this, [this, box, key = option.key](int index) {
                setOption(key, box->itemData(index).toString());
            });
            control = box;
            break;
        }
        case WidgetOption::Type::toggle: {
            auto* toggle = new SwitchButton();
            connect(toggle, &SwitchButton::toggled, this, [this, key = option.key](bool on) {
                setOption(key, on ? QStringLiteral("true") : QStringLiteral("false"));
            });
            control = toggle;
            break;
        }
        case WidgetOption::Type::text: {
            auto* field = new QLineEdit();
            field->setMaxLength(kMostText);
            field->setMinimumWidth(220);
            connect(field, &QLineEdit::editingFinished, this,
                    [this, field, key = option.key] { setOption(key, field->text().trimmed()); });
            control = field;
            break;
        }
        case WidgetOption::Type::lines: {
            auto* lines = new LinesField();
            connect(lines, &LinesField::editingFinished, this,
                    [this, key = option.key](const QString& value) { setOption(key, value); });
            control = lines;
            break;
        }
        case WidgetOption::Type::date: {
            auto* day = new QDateEdit();
            day->setCalendarPopup(true);
            day->setDisplayFormat(QLocale().dateFormat(QLocale::LongFormat));
            day->setMinimumWidth(220);
            connect(day, &QDateEdit::editingFinished, this, [this, day, key = option.key] {
                setOption(key, day->date().toString(Qt::ISODate));
            });
            control = day;
            break;
        }
        case WidgetOption::Type::place: {
            auto* place = new PlaceField(option, m_context.searchCities, m_context.scheduler);
            connect(place, &PlaceField::currentChosen, this,
                    [this, key = option.key] { setOption(key, QString()); });
            connect(place, &PlaceField::cityChosen, this, &WidgetSettingsPage::chooseCity);
            control = place;
            break;
        }
        case WidgetOption::Type::folder: {
            // Blank keeps the kind's own default, which the field names.
            auto* folder =
                new FolderField(kind == QLatin1String("photos")
                                    ? L("widgetPage.folderPictures", QStringLiteral("Pictures"))
                                    : L("widgetPage.folderDesktop", QStringLiteral("Desktop")));
            connect(folder, &FolderField::chosen, this,
                    [this, key = option.key](const QString& value) { setOption(key, value); });
            control = folder;
            break;
        }
        case WidgetOption::Type::app:
        case WidgetOption::Type::apps: {
            if (!m_context.installedApps) {
                auto* field = new QLineEdit();
                connect(field, &QLineEdit::editingFinished, this, [this, field, key = option.key] {
                    setOption(key, field->text().trimmed());
                });
                control = field;
                break;
            }
            auto* picker =
                new AppPicker(m_context.installedApps, option.type == WidgetOption::Type::app
                                                           ? AppPicker::Choosing::one
                                                           : AppPicker::Choosing::several);
            connect(picker, &AppPicker::chosen, this,
                    [this, key = option.key](const QString& value) { setOption(key, value); });
            control = picker;
            break;
        }
        case WidgetOption::Type::quote: {
            QuoteField::Check check;
            if (m_context.checkQuote) {
                check = [this, kind,
                         key = option.key](const QString& text, const WidgetSettings& settings,
                                           const QObject* requester, QuoteField::Checked done) {
                    m_context.checkQuote(kind, key, text, settings, requester, std::move(done));
                };
            }
            QuoteField::Suggest suggest;
            if (m_context.suggestQuotes) {
                suggest = [this, kind](const QString& text, const QObject* requester,
                                       QuoteField::Found done) {
                    m_context.suggestQuotes(kind, text, requester, std::move(done));
                };
            }
            auto* quote = new QuoteField(std::move(check), std::move(suggest), m_context.scheduler);
            connect(quote, &QuoteField::chosen, this,
                    [this, key = option.key](const QString& value) { setOption(key, value); });
            control = quote;
            break;
        }
        }
        control->setProperty("optionKey", option.key);
        m_options.insert(option.key, control);
        auto* place = qobject_cast<PlaceField*>(control);
        m_rows.insert(option.key, place != nullptr
                                      ? place->addTo(*card, option.title, QString())
                                      : card->addRow(option.title, QString(), control));
    }
    if (kind == QLatin1String("appusage")) {
        addAppUsageRows(*card);
    }
}

void WidgetSettingsPage::addConnectedAccount(const QString& kind) {
    if (m_context.connected == nullptr || !m_instance) {
        return;
    }
    if (kind == QLatin1String("github")) {
        const auto target =
            GitHubTarget::parse(m_instance->setting(QStringLiteral("target")).value_or(QString()));
        auto* token =
            new GitHubTokenField(m_context.connected->github(), target ? target->key() : QString());
        m_options.insert(QStringLiteral("token"), token);
        addGroup(QStringLiteral("account"), L("widgetPage.account", QStringLiteral("Account")))
            ->addRow(L("github.token", QStringLiteral("Token")),
                     L("github.tokenCaption",
                       QStringLiteral("Optional: adds your notifications and a higher rate "
                                      "limit. Kept in the keychain.")),
                     token);
    } else if (kind == QLatin1String("smarthome")) {
        auto* account = new SmartHomeAccountView(
            m_context.connected->smartHome(),
            SmartHomeFace::chosen(m_instance->settings.value_or(WidgetSettings())));
        connect(account, &SmartHomeAccountView::entitiesChosen, this,
                [this](const QStringList& ids) {
                    setOption(QStringLiteral("entities"), ids.join(QLatin1Char(',')));
                });
        m_options.insert(QStringLiteral("account"), account);
        addGroup(QStringLiteral("account"),
                 L("smarthome.account", QStringLiteral("Home Assistant")))
            ->addWide(account);
    }
}

void WidgetSettingsPage::addAppUsageRows(SettingsCard& card) {
    card.addRow(L("appusage.goal.note",
                  QStringLiteral("Focus: at least this long in Work apps today. Limit: at most "
                                 "this long in Entertainment apps today. The goal shows in the 2×2 "
                                 "and larger sizes and counts from midnight.")),
                QString(), nullptr);
    if (!m_context.clearAppUsage) {
        return;
    }
    auto* row = new QWidget();
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* clear = new QPushButton(L("appusage.clear", QStringLiteral("Clear")));
    auto* done = new QLabel();
    layout->addWidget(done);
    layout->addWidget(clear);
    connect(clear, &QPushButton::clicked, this, [this, done] {
        m_context.clearAppUsage();
        done->setText(L("appusage.cleared", QStringLiteral("Cleared")));
    });
    m_options.insert(QStringLiteral("clear"), clear);
    card.addRow(L("appusage.clear.title", QStringLiteral("Counted app time")),
                L("appusage.clear.caption",
                  QStringLiteral("Kept on this computer only. Clear forgets every app's time.")),
                row);
}

void WidgetSettingsPage::fillChoices(QComboBox* box, const WidgetOption& option,
                                     const QString& kind) {
    const QSignalBlocker blocker(box);
    box->clear();
    QList<WidgetOption::Choice> choices = option.choices;
    if (option.type == WidgetOption::Type::source && m_context.calendarSources) {
        choices += m_context.calendarSources(kind);
    }
    for (const WidgetOption::Choice& choice : choices) {
        box->addItem(choice.title, choice.value);
    }
}

void WidgetSettingsPage::addCalendarSources(const QString& kind) {
    const bool calendar = kind == QLatin1String("calendar");
    if ((!calendar && kind != QLatin1String("reminders")) || m_context.calendarSetup == nullptr ||
        m_context.clock == nullptr) {
        return;
    }
    SettingsCard* card = addGroup(QStringLiteral("sources"),
                                  calendar ? L("widgetPage.calendars", QStringLiteral("Calendars"))
                                           : L("widgetPage.lists", QStringLiteral("Lists")));
    auto found = [this, kind] {
        QStringList names;
        if (m_context.calendarSources) {
            for (const WidgetOption::Choice& choice : m_context.calendarSources(kind)) {
                names << choice.title;
            }
        }
        return names;
    };
    m_sources = new CalendarSourcesView(*m_context.calendarSetup, *m_context.clock,
                                        std::move(found), m_context.pickFolder, calendar);
    card->addWide(m_sources);
    // What was added can be chosen at once.
    connect(m_context.calendarSetup, &CalendarSetup::changed, this, [this, kind] {
        for (const WidgetOption& option : WidgetOption::of(kind)) {
            if (auto* box = qobject_cast<QComboBox*>(m_options.value(option.key));
                box != nullptr && option.type == WidgetOption::Type::source) {
                fillChoices(box, option, kind);
            }
        }
        refresh();
    });
}

void WidgetSettingsPage::chooseCity(const FixedLocation& city) {
    if (!m_instance) {
        return;
    }
    clearReport();
    m_context.grid->replaceSettings(
        m_id, city.writtenTo(m_instance->settings.value_or(WidgetSettings())));
    refresh();
}

void WidgetSettingsPage::refresh() {
    m_instance = m_context.grid->instance(m_id);
    widget()->setEnabled(m_instance.has_value());
    if (!m_instance) {
        reportProblem(
            L("widgetPage.gone", QStringLiteral("This widget is no longer on the desktop.")));
        return;
    }
    const QSignalBlocker sizes(m_sizes);
    m_sizes->setSize(m_instance->size);
    const int step = scaleStep(m_instance->scale());
    {
        const QSignalBlocker scale(m_scale);
        m_scale->setValue(step);
    }
    m_scaleText->setText(scaleText(step));
    const WidgetSettings settings = m_instance->settings.value_or(WidgetSettings());
    const QList<WidgetOption> options = WidgetOption::of(m_instance->kind);
    for (const WidgetOption& option : options) {
        QWidget* control = m_options.value(option.key);
        const QString value = settings.value(option.key, option.defaultValue);
        if (option.activeWhen) {
            const auto other = std::find_if(options.cbegin(), options.cend(), [&](const auto& o) {
                return o.key == option.activeWhen->key;
            });
            const QString otherDefault = other != options.cend() ? other->defaultValue : QString();
            m_rows.value(option.key)
                ->setEnabled(settings.value(option.activeWhen->key, otherDefault) ==
                             option.activeWhen->value);
        }
        const QSignalBlocker blocker(control);
        if (auto* place = qobject_cast<PlaceField*>(control)) {
            place->show(settings);
        } else if (auto* picker = qobject_cast<AppPicker*>(control)) {
            picker->show(value);
        } else if (auto* quote = qobject_cast<QuoteField*>(control)) {
            quote->show(value, settings);
        } else if (auto* folder = qobject_cast<FolderField*>(control)) {
            folder->show(value);
        } else if (auto* lines = qobject_cast<LinesField*>(control)) {
            lines->show(value);
        } else if (auto* box = qobject_cast<QComboBox*>(control)) {
            box->setCurrentIndex(std::max(0, box->findData(value)));
        } else if (auto* toggle = qobject_cast<SwitchButton*>(control)) {
            toggle->setChecked(value != QLatin1String("false"));
        } else if (auto* field = qobject_cast<QLineEdit*>(control); field && !field->hasFocus()) {
            field->setText(value);
        } else if (auto* day = qobject_cast<QDateEdit*>(control); day && !day->hasFocus()) {
            day->setDate(shownDay(value));
        }
    }
    const auto definition = m_context.registry->definition(m_instance->kind);
    m_kind->setText(QStringLiteral("%1 · %2 · %3")
                        .arg(definition ? definition->metadata.displayName : m_instance->kind,
                             label(m_instance->size), scaleText(step)));
    m_preview->update();
}

QDate WidgetSettingsPage::shownDay(const QString& value) const {
    const std::optional<QDateTime> moment = CountdownFace::moment(value);
    if (moment) {
        return moment->date();
    }
    // Nothing set yet: a month from the tick's day, a day worth counting towards.
    const QDateTime now = m_context.ticker ? m_context.ticker->now() : QDateTime();
    return (now.isValid() ? now.date() : QDate::currentDate()).addMonths(1);
}

bool WidgetSettingsPage::refuseUnfit(const WidgetInstance& changed) {
    if (!m_context.tileFits || m_context.tileFits(changed.pixelSize())) {
        clearReport();
        return false;
    }
    reportProblem(L("widgetPage.noRoom",
                    QStringLiteral("%1 at %2 does not fit on any display; make the tile smaller "
                                   "first."))
                      .arg(label(changed.size), scaleText(scaleStep(changed.scale()))));
    refresh();
    return true;
}

void WidgetSettingsPage::chooseSize(WidgetSize size) {
    if (!m_instance) {
        return;
    }
    WidgetInstance changed = *m_instance;
    changed.size = size;
    if (refuseUnfit(changed)) {
        return;
    }
    if (m_context.resizeWidget) {
        m_context.resizeWidget(m_id, size);
    } else {
        m_context.grid->setSize({m_id}, size);
    }
    refresh();
}

void WidgetSettingsPage::chooseScale(int step) {
    if (!m_instance) {
        return;
    }
    // 1× is no setting at all, as a new tile has it.
    const QString value = step <= 0 ? QString() : QString::number(1.0 + step * 0.05, 'f', 2);
    WidgetInstance changed = *m_instance;
    changed.settings = changed.settings.value_or(WidgetSettings());
    changed.settings->insert(kScaleKey, value);
    if (refuseUnfit(changed)) {
        return;
    }
    m_context.grid->setSetting(m_id, kScaleKey, value);
    refresh();
}

void WidgetSettingsPage::setOption(const QString& key, const QString& value) {
    clearReport();
    m_context.grid->setSetting(m_id, key, value);
    refresh();
}

} // namespace tw
