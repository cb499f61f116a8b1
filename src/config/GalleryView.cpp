#include "config/GalleryView.h"

#include "config/FlowLayout.h"
#include "config/GalleryCard.h"
#include "config/GalleryPreviewSource.h"
#include "faces/FaceRegistry.h"
#include "market/MarketSample.h"
#include "model/WidgetRegistry.h"
#include "platform/Clock.h"
#include "readings/Readings.h"
#include "text/L.h"
#include "tick/TickCoordinator.h"
#include "weather/MockForecast.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QStyle>
#include <QVBoxLayout>

namespace tw {

namespace {

constexpr int kSideMargin = 20;
constexpr int kCardGap = 14;

QPushButton* makeChip(const QString& text, const QString& id, QWidget* parent) {
    auto* chip = new QPushButton(text, parent);
    chip->setObjectName(QStringLiteral("chip"));
    chip->setProperty("category", id);
    chip->setCheckable(true);
    // Exclusive among the row's chips; the arrow keys move the choice.
    chip->setAutoExclusive(true);
    chip->setCursor(Qt::PointingHandCursor);
    return chip;
}

// A magnifying glass in a grey that reads on light and dark fields alike.
QIcon searchIcon() {
    const QColor colour(0x8e, 0x8e, 0x93);
    QPixmap pixmap(QSize(32, 32));
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 3.2, Qt::SolidLine, Qt::RoundCap));
    painter.drawEllipse(QRectF(6, 6, 15, 15));
    painter.drawLine(QPointF(19, 19), QPointF(26, 26));
    return QIcon(pixmap);
}

void repolish(QWidget* widget) {
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}

} // namespace

GalleryView::GalleryView(const FaceRegistry& faces, const SymbolProvider& symbols,
                         const Clock& clock, QWidget* parent, const WidgetRegistry* registry)
    : QWidget(parent)
    , m_registry(registry)
    , m_source(std::make_unique<GalleryPreviewSource>(faces))
    , m_search(new QLineEdit(this))
    , m_scroll(new QScrollArea(this))
    , m_empty(new QWidget)
    , m_emptyTitle(new QLabel(m_empty))
    , m_message(new QLabel(this)) {
    FaceContext& base = m_source->base();
    base.symbols = &symbols;
    base.surface = SurfaceFlags::gallery();
    base.now = clock.now();
    m_source->weather().places.insert(WeatherBoard::currentPlace,
                                      mockPlace(WxScene::clouds, base.now));
    base.weather = &m_source->weather();
    m_source->market() = sampleMarket(base.now);
    base.market = &m_source->market();
    setObjectName(QStringLiteral("gallery"));

    m_search->setObjectName(QStringLiteral("gallery-search"));
    m_search->setPlaceholderText(L("gallery.search", QStringLiteral("Search widgets")));
    m_search->setClearButtonEnabled(true);
    m_search->addAction(searchIcon(), QLineEdit::LeadingPosition);
    connect(m_search, &QLineEdit::textChanged, this, [this] { apply(); });

    auto* chips = new QHBoxLayout;
    chips->setSpacing(6);
    QPushButton* all =
        makeChip(L("gallery.all", QStringLiteral("All")), QStringLiteral("all"), this);
    all->setChecked(true);
    connect(all, &QPushButton::toggled, this, [this](bool on) {
        if (on) {
            setCategory(std::nullopt);
        }
    });
    chips->addWidget(all);
    m_chips.append(all);

    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(kSideMargin, 0, kSideMargin, kSideMargin);
    column->setSpacing(6);
    const QList<WidgetRegistry::CategoryGroup> groups =
        m_registry != nullptr ? m_registry->groupedWithCustom() : WidgetRegistry::grouped();
    for (const WidgetRegistry::CategoryGroup& group : groups) {
        const WidgetCategory category = group.category;
        QPushButton* chip = makeChip(title(category), rawValue(category), this);
        connect(chip, &QPushButton::toggled, this, [this, category](bool on) {
            if (on) {
                setCategory(category);
            }
        });
        chips->addWidget(chip);
        m_chips.append(chip);

        auto* heading = new QLabel(title(category), content);
        heading->setObjectName(QStringLiteral("sectionHeading"));
        column->addWidget(heading);
        auto* grid = new QWidget(content);
        auto* flow = new FlowLayout(grid, GalleryCard::minimumWidth, kCardGap);
        Section section{category, heading, grid, {}};
        for (const WidgetDefinition& definition : group.widgets) {
            auto* card =
                new GalleryCard(definition.metadata,
                                WidgetRegistry::summary(definition.metadata.kind), *m_source, grid);
            connect(card, &GalleryCard::addClicked, this,
                    [this](const QString& kind) { add(kind); });
            flow->addWidget(card);
            section.cards.append(card);
        }
        column->addWidget(grid);
        m_sections.append(section);
    }
    chips->addStretch(1);

    m_empty->setObjectName(QStringLiteral("gallery-empty"));
    m_emptyTitle->setObjectName(QStringLiteral("emptyTitle"));
    m_emptyTitle->setAlignment(Qt::AlignCenter);
    m_emptyTitle->setWordWrap(true);
    auto* emptyHint = new QLabel(
        L("gallery.noMatchHint", QStringLiteral("Try another word, or clear the search.")),
        m_empty);
    emptyHint->setObjectName(QStringLiteral("caption"));
    emptyHint->setAlignment(Qt::AlignCenter);
    auto* emptyColumn = new QVBoxLayout(m_empty);
    emptyColumn->setContentsMargins(0, 80, 0, 0);
    emptyColumn->addWidget(m_emptyTitle);
    emptyColumn->addWidget(emptyHint);
    m_empty->hide();
    column->addWidget(m_empty);
    column->addStretch(1);

    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_scroll->setWidget(content);

    m_message->setObjectName(QStringLiteral("notice"));
    m_message->setWordWrap(true);
    m_message->setContentsMargins(kSideMargin, 8, kSideMargin, 10);
    m_message->hide();

    auto* top = new QVBoxLayout;
    top->setContentsMargins(kSideMargin, 16, kSideMargin, 10);
    top->setSpacing(12);
    top->addWidget(m_search);
    top->addLayout(chips);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(m_scroll, 1);
    layout->addWidget(m_message);
    setAddHandler(nullptr);
    refreshLimits();
}

GalleryView::~GalleryView() {
    if (m_readings) {
        m_readings->setPreviewDemand({});
    }
}

void GalleryView::setAddHandler(AddHandler handler) {
    m_addHandler = std::move(handler);
    for (const Section& section : m_sections) {
        for (GalleryCard* card : section.cards) {
            card->setAddEnabled(static_cast<bool>(m_addHandler));
        }
    }
}

void GalleryView::setPlacedCount(PlacedCount count) {
    m_placedCount = std::move(count);
    refreshLimits();
}

void GalleryView::refreshLimits() {
    for (const Section& section : m_sections) {
        for (GalleryCard* card : section.cards) {
            const QString& kind = card->metadata().kind;
            card->setPlaced(m_placedCount ? m_placedCount(kind) : 0,
                            WidgetRegistry::maxInstances(kind));
        }
    }
}

void GalleryView::setTheme(const Theme& theme) {
    if (m_source->base().theme == theme) {
        return;
    }
    m_source->base().theme = theme;
    for (const Section& section : m_sections) {
        for (GalleryCard* card : section.cards) {
            card->update();
        }
    }
}

void GalleryView::setReadings(Readings* readings) {
    m_readings = readings;
    m_source->base().readings = &readings->board();
    connect(readings, &Readings::boardChanged, this, &GalleryView::readingsChanged);
    askForReadings();
    readingsChanged(Readings::allFeeds);
}

void GalleryView::setCustomBoard(const CustomBoard* board) {
    m_source->base().custom = board;
    customBoardChanged();
}

void GalleryView::customBoardChanged() {
    for (const Section& section : m_sections) {
        for (GalleryCard* card : section.cards) {
            if (WidgetRegistry::isCustomKind(card->metadata().kind)) {
                card->update();
            }
        }
    }
}

ReadingFeeds GalleryView::previewFeeds() const {
    ReadingFeeds feeds;
    for (const Section& section : m_sections) {
        for (const GalleryCard* card : section.cards) {
            if (!card->isHidden() && !section.grid->isHidden()) {
                feeds |= m_source->faces().face(card->metadata().kind).feeds(card->size(), {});
            }
        }
    }
    return feeds;
}

void GalleryView::askForReadings() {
    if (m_readings) {
        m_readings->setPreviewDemand(isVisible() ? previewFeeds() : ReadingFeeds());
    }
}

void GalleryView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    askForReadings();
}

void GalleryView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    askForReadings();
}

void GalleryView::readingsChanged(ReadingFeeds changed) {
    for (const Section& section : m_sections) {
        for (GalleryCard* card : section.cards) {
            const WidgetFace& face = m_source->faces().face(card->metadata().kind);
            if (face.feeds(card->size(), {}).testAnyFlags(changed)) {
                card->update();
            }
        }
    }
}

void GalleryView::setGlass(const GlassLook& glass) {
    if (m_source->base().glass == glass) {
        return;
    }
    m_source->base().glass = glass;
    for (const Section& section : m_sections) {
        for (GalleryCard* card : section.cards) {
            card->update();
        }
    }
}

void GalleryView::setNow(const QDateTime& now) {
    const QDateTime before = m_source->base().now;
    m_source->base().now = now;
    for (const Section& section : m_sections) {
        for (GalleryCard* card : section.cards) {
            card->timeMoved(before, now);
        }
    }
}

QDateTime GalleryView::now() const {
    return m_source->base().now;
}

void GalleryView::followTicker(TickCoordinator& ticker) {
    setNow(ticker.currentTime());
    connect(&ticker, &TickCoordinator::nowChanged, this, &GalleryView::setNow);
}

QString GalleryView::query() const {
    return m_search->text();
}

void GalleryView::setQuery(const QString& query) {
    m_search->setText(query);
}

void GalleryView::setCategory(std::optional<WidgetCategory> category) {
    const QString id = category ? rawValue(*category) : QStringLiteral("all");
    for (QAbstractButton* chip : m_chips) {
        if (chip->property("category").toString() == id) {
            chip->setChecked(true);
        }
    }
    if (m_category == category) {
        return;
    }
    m_category = category;
    apply();
    m_scroll->verticalScrollBar()->setValue(0);
}

void GalleryView::focusSearch() {
    m_search->setFocus(Qt::ShortcutFocusReason);
    m_search->selectAll();
}

void GalleryView::apply() {
    QSet<QString> matching;
    const QString query = m_search->text();
    for (const WidgetDefinition& definition : m_registry != nullptr
                                                  ? m_registry->searchWithCustom(query)
                                                  : WidgetRegistry::search(query)) {
        matching.insert(definition.metadata.kind);
    }
    bool any = false;
    for (const Section& section : m_sections) {
        const bool chosen = !m_category || *m_category == section.category;
        bool sectionShown = false;
        for (GalleryCard* card : section.cards) {
            const bool shown = chosen && matching.contains(card->metadata().kind);
            card->setVisible(shown);
            sectionShown = sectionShown || shown;
        }
        section.grid->setVisible(sectionShown);
        // One category's chip names it already.
        section.heading->setVisible(sectionShown && !m_category);
        any = any || sectionShown;
    }
    m_emptyTitle->setText(L("gallery.noMatch", QStringLiteral("No widget matches \u201c%1\u201d"))
                              .arg(m_search->text().trimmed()));
    m_empty->setVisible(!any);
    askForReadings();
}

QStringList GalleryView::visibleKinds() const {
    QStringList out;
    for (const Section& section : m_sections) {
        for (const GalleryCard* card : section.cards) {
            if (!card->isHidden() && !section.grid->isHidden()) {
                out << card->metadata().kind;
            }
        }
    }
    return out;
}

bool GalleryView::isEmptyStateShown() const {
    return !m_empty->isHidden();
}

GalleryCard* GalleryView::card(const QString& kind) const {
    for (const Section& section : m_sections) {
        for (GalleryCard* card : section.cards) {
            if (card->metadata().kind == kind) {
                return card;
            }
        }
    }
    return nullptr;
}

QString GalleryView::messageFor(AddOutcome outcome, const QString& kind, WidgetSize size) {
    const std::optional<WidgetDefinition> definition = WidgetRegistry::builtInDefinition(kind);
    const QString name = definition ? definition->metadata.displayName : kind;
    switch (outcome) {
    case AddOutcome::Added:
        return L("gallery.added", QStringLiteral("%1 is on your desktop now.")).arg(name);
    case AddOutcome::AtMaximum: {
        const int most = WidgetRegistry::maxInstances(kind);
        if (most == 1) {
            return L("gallery.atMaximumOne",
                     QStringLiteral("Only one %1 can be on the desktop, and it is already there."))
                .arg(name);
        }
        return L("gallery.atMaximum",
                 QStringLiteral("%1: at most %2 can be on the desktop, and all %2 are there."))
            .arg(name)
            .arg(most);
    }
    case AddOutcome::NoRoom:
        return L("gallery.noRoom",
                 QStringLiteral("There is no free space for a %1 at %2 on the screen. Make room "
                                "by moving or removing a widget, or choose a smaller size."))
            .arg(name, label(size));
    }
    return {};
}

GalleryView::AddOutcome GalleryView::add(const QString& kind) {
    const GalleryCard* chosen = card(kind);
    if (chosen == nullptr || !m_addHandler) {
        return AddOutcome::NoRoom;
    }
    const WidgetSize size = chosen->size();
    const AddOutcome outcome = m_addHandler(kind, size);
    m_message->setText(messageFor(outcome, kind, size));
    m_message->setObjectName(outcome == AddOutcome::Added ? QStringLiteral("notice")
                                                          : QStringLiteral("error"));
    repolish(m_message);
    m_message->show();
    refreshLimits();
    if (outcome == AddOutcome::Added) {
        Q_EMIT added(kind);
    }
    return outcome;
}

QString GalleryView::message() const {
    return m_message->isHidden() ? QString() : m_message->text();
}

} // namespace tw
