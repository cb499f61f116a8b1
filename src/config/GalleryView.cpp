#include "config/GalleryView.h"

#include "config/FlowLayout.h"
#include "config/GalleryCard.h"
#include "config/GalleryPreviewSource.h"
#include "faces/FaceRegistry.h"
#include "model/WidgetRegistry.h"
#include "platform/Clock.h"
#include "text/L.h"
#include "tick/TickCoordinator.h"

#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QSet>
#include <QVBoxLayout>

namespace tw {

GalleryView::GalleryView(const FaceRegistry& faces, const SymbolProvider& symbols,
                         const Clock& clock, QWidget* parent)
    : QWidget(parent)
    , m_source(std::make_unique<GalleryPreviewSource>(faces))
    , m_search(new QLineEdit(this))
    , m_empty(new QLabel(this))
    , m_message(new QLabel(this)) {
    FaceContext& base = m_source->base();
    base.symbols = &symbols;
    base.surface = SurfaceFlags::gallery();
    base.now = clock.now();

    m_search->setObjectName(QStringLiteral("gallery-search"));
    m_search->setPlaceholderText(L("gallery.search", QStringLiteral("Search widgets")));
    m_search->setClearButtonEnabled(true);
    connect(m_search, &QLineEdit::textChanged, this, [this] { applyQuery(); });

    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(4, 4, 12, 12);
    column->setSpacing(10);
    for (const WidgetRegistry::CategoryGroup& group : WidgetRegistry::grouped()) {
        auto* sectionWidget = new QWidget(content);
        auto* sectionLayout = new QVBoxLayout(sectionWidget);
        sectionLayout->setContentsMargins(0, 8, 0, 0);
        auto* heading = new QLabel(title(group.category), sectionWidget);
        QFont headingFont = heading->font();
        headingFont.setPointSizeF(headingFont.pointSizeF() * 1.3);
        headingFont.setWeight(QFont::Bold);
        heading->setFont(headingFont);
        sectionLayout->addWidget(heading);
        auto* cardsWidget = new QWidget(sectionWidget);
        auto* flow = new FlowLayout(cardsWidget, 16);
        Section section{sectionWidget, {}};
        for (const WidgetDefinition& definition : group.widgets) {
            auto* card = new GalleryCard(definition.metadata, *m_source, cardsWidget);
            connect(card, &GalleryCard::addClicked, this,
                    [this](const QString& kind) { add(kind); });
            flow->addWidget(card);
            section.cards.append(card);
        }
        sectionLayout->addWidget(cardsWidget);
        column->addWidget(sectionWidget);
        m_sections.append(section);
    }
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->hide();
    column->addWidget(m_empty);
    column->addStretch(1);

    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(content);

    m_message->setObjectName(QStringLiteral("gallery-message"));
    m_message->setWordWrap(true);
    m_message->hide();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_search);
    layout->addWidget(scroll, 1);
    layout->addWidget(m_message);
    setAddHandler(nullptr);
}

GalleryView::~GalleryView() = default;

void GalleryView::setAddHandler(AddHandler handler) {
    m_addHandler = std::move(handler);
    for (const Section& section : m_sections) {
        for (GalleryCard* card : section.cards) {
            card->setAddEnabled(static_cast<bool>(m_addHandler));
        }
    }
}

void GalleryView::setTheme(const Theme& theme) {
    if (m_source->base().theme == theme) {
        return;
    }
    m_source->base().theme = theme;
    update();
    for (const Section& section : m_sections) {
        for (GalleryCard* card : section.cards) {
            card->update();
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

void GalleryView::applyQuery() {
    QSet<QString> matching;
    for (const WidgetDefinition& definition : WidgetRegistry::search(m_search->text())) {
        matching.insert(definition.metadata.kind);
    }
    bool any = false;
    for (const Section& section : m_sections) {
        bool sectionShown = false;
        for (GalleryCard* card : section.cards) {
            const bool shown = matching.contains(card->metadata().kind);
            card->setVisible(shown);
            sectionShown = sectionShown || shown;
        }
        section.widget->setVisible(sectionShown);
        any = any || sectionShown;
    }
    m_empty->setText(L("gallery.noMatch", QStringLiteral("No widget matches \u201c%1\u201d."))
                         .arg(m_search->text().trimmed()));
    m_empty->setVisible(!any);
}

QStringList GalleryView::visibleKinds() const {
    QStringList out;
    for (const Section& section : m_sections) {
        for (const GalleryCard* card : section.cards) {
            if (!card->isHidden() && !section.widget->isHidden()) {
                out << card->metadata().kind;
            }
        }
    }
    return out;
}

QString GalleryView::messageFor(AddOutcome outcome, const QString& kind) {
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
        return L("gallery.noRoom", QStringLiteral("There is no free space for a %1 on the screen. "
                                                  "Make room by moving or removing a widget."))
            .arg(name);
    }
    return {};
}

GalleryView::AddOutcome GalleryView::add(const QString& kind) {
    const std::optional<WidgetDefinition> definition = WidgetRegistry::builtInDefinition(kind);
    if (!definition || !m_addHandler) {
        return AddOutcome::NoRoom;
    }
    const AddOutcome outcome = m_addHandler(kind, definition->metadata.defaultSize);
    m_message->setText(messageFor(outcome, kind));
    QPalette palette = this->palette();
    if (outcome != AddOutcome::Added) {
        palette.setColor(QPalette::WindowText, QColor(0xC0, 0x39, 0x2B));
    }
    m_message->setPalette(palette);
    m_message->show();
    if (outcome == AddOutcome::Added) {
        Q_EMIT added(kind);
    }
    return outcome;
}

QString GalleryView::message() const {
    return m_message->isHidden() ? QString() : m_message->text();
}

} // namespace tw
