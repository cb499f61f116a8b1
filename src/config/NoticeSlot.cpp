#include "config/NoticeSlot.h"

#include "notices/NoticeService.h"
#include "platform/Clock.h"

#include <QVBoxLayout>

namespace tw {

NoticeCard::Content NoticeSlot::contentOf(const Notice& notice, const NoticeService& service,
                                          const QColor& fallbackAccent) {
    NoticeCard::Content content{
        .title = service.text(notice.title),
        .body = service.text(notice.body),
        .code = notice.code.value_or(QString()),
        .symbol = notice.symbol.value_or(QString()),
        .accent = NoticeCard::accentOf(notice, fallbackAccent),
        .actions = {},
        .dismissible = notice.dismissible,
    };
    for (const Notice::Action& action : notice.actions) {
        content.actions.append(service.label(action));
    }
    return content;
}

NoticeSlot::NoticeSlot(NoticeService& service, Notice::Placement placement, NoticeCard::Style style,
                       const SymbolProvider* symbols, QWidget* parent)
    : QWidget(parent)
    , m_service(service)
    , m_placement(placement)
    , m_card(new NoticeCard(style, symbols)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_card);
    connect(m_card, &NoticeCard::actionChosen, this, [this](int index) {
        if (m_notice && index >= 0 && index < m_notice->actions.size()) {
            const Notice notice = *m_notice;
            m_service.perform(notice.actions.at(index), notice);
        }
    });
    connect(m_card, &NoticeCard::closeRequested, this, [this] {
        if (m_notice) {
            const Notice notice = *m_notice;
            m_service.dismiss(notice);
        }
    });
    connect(&m_service, &NoticeService::changed, this, &NoticeSlot::refresh);
    refresh();
}

void NoticeSlot::refresh() {
    const bool wasOccupied = m_notice.has_value();
    m_notice = m_service.top(m_placement);
    if (m_notice) {
        m_card->setContent(
            contentOf(*m_notice, m_service, window()->palette().color(QPalette::Highlight)));
    }
    // A slot not yet placed in a window must not show as a window of its own.
    if (!m_notice) {
        hide();
    } else if (parentWidget() != nullptr) {
        show();
    }
    noteShownIfVisible();
    if (wasOccupied != m_notice.has_value()) {
        Q_EMIT occupiedChanged(m_notice.has_value());
    }
}

void NoticeSlot::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    noteShownIfVisible();
}

void NoticeSlot::noteShownIfVisible() {
    // Counted when a person can see it, not when a hidden page is made.
    if (m_notice && isVisible()) {
        m_service.shown(*m_notice, m_service.clock().now());
    }
}

} // namespace tw
