// A place where notices of one placement show: the best one for now, following the service (a
// new feed, the switch, a dismissal), counted as shown when it comes on screen, and its buttons
// carried out through the service.
#pragma once

#include "config/NoticeCard.h"

#include <QWidget>

namespace tw {

class NoticeService;
class SymbolProvider;

class NoticeSlot final : public QWidget {
    Q_OBJECT
public:
    // The card's content for a notice: texts in the service's language, action labels.
    static NoticeCard::Content contentOf(const Notice& notice, const NoticeService& service,
                                         const QColor& fallbackAccent);

    NoticeSlot(NoticeService& service, Notice::Placement placement, NoticeCard::Style style,
               const SymbolProvider* symbols, QWidget* parent = nullptr);

    // The notice on show, if any.
    const std::optional<Notice>& notice() const { return m_notice; }

Q_SIGNALS:
    // Whether a notice stands here now; a host hides what holds the slot when none does.
    void occupiedChanged(bool occupied);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void refresh();
    void noteShownIfVisible();

    NoticeService& m_service;
    Notice::Placement m_placement;
    NoticeCard* m_card;
    std::optional<Notice> m_notice;
};

} // namespace tw
