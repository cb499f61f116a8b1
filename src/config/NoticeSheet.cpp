#include "config/NoticeSheet.h"

#include "config/NoticeSlot.h"
#include "notices/NoticeService.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tw {

NoticeSheet* NoticeSheet::presentIfDue(NoticeService& service, const SymbolProvider* symbols,
                                       QWidget& parent) {
    if (!service.top(Notice::Placement::sheet)) {
        return nullptr;
    }
    return new NoticeSheet(service, symbols, parent);
}

NoticeSheet::NoticeSheet(NoticeService& service, const SymbolProvider* symbols, QWidget& parent)
    : QWidget(&parent) {
    // The guide's dimmed backdrop.
    setObjectName(QStringLiteral("guide"));
    setAttribute(Qt::WA_StyledBackground);
    // Centred by stretches, not alignment, so that the card's wrapped text gets its height.
    auto* layout = new QVBoxLayout(this);
    auto* middle = new QHBoxLayout();
    auto* slot =
        new NoticeSlot(service, Notice::Placement::sheet, NoticeCard::Style::card, symbols, this);
    slot->setFixedWidth(460);
    middle->addStretch(1);
    middle->addWidget(slot);
    middle->addStretch(1);
    layout->addStretch(1);
    layout->addLayout(middle);
    layout->addStretch(1);
    connect(slot, &NoticeSlot::occupiedChanged, this, [this](bool occupied) {
        if (!occupied) {
            hide();
            deleteLater();
        }
    });
    parent.installEventFilter(this);
    setGeometry(parent.rect());
    show();
    raise();
}

bool NoticeSheet::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tw
