#include "config/NoticeCard.h"

#include "platform/SymbolProvider.h"
#include "text/L.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {

QColor mix(const QColor& a, const QColor& b, float t) {
    return QColor::fromRgbF(a.redF() * (1 - t) + b.redF() * t,
                            a.greenF() * (1 - t) + b.greenF() * t,
                            a.blueF() * (1 - t) + b.blueF() * t);
}

int badgeSide(NoticeCard::Style style) {
    return style == NoticeCard::Style::banner ? 28 : 40;
}

constexpr int padding = 14;

} // namespace

QColor NoticeCard::accentOf(const Notice& notice, const QColor& fallback) {
    const QString raw = notice.accent.value_or(QString());
    static const QRegularExpression hex(QStringLiteral("^#[0-9A-Fa-f]{6}$"));
    return hex.match(raw).hasMatch() ? QColor(raw) : fallback;
}

NoticeCard::NoticeCard(Style style, const SymbolProvider* symbols, QWidget* parent)
    : QWidget(parent)
    , m_style(style)
    , m_symbols(symbols)
    , m_title(new QLabel())
    , m_body(new QLabel())
    , m_code(new QLabel())
    , m_buttons(new QHBoxLayout())
    , m_close(new QPushButton(QStringLiteral("✕"))) {
    setObjectName(QStringLiteral("noticeCard"));
    m_title->setObjectName(QStringLiteral("noticeTitle"));
    m_body->setObjectName(style == Style::banner ? QStringLiteral("caption") : QString());
    m_code->setObjectName(QStringLiteral("noticeCode"));
    for (QLabel* label : {m_title, m_body}) {
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
    }
    m_code->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_code->setTextFormat(Qt::PlainText);
    m_close->setObjectName(QStringLiteral("flat"));
    m_close->setAccessibleName(L("notice.close", QStringLiteral("Close")));
    m_close->setToolTip(m_close->accessibleName());
    m_close->setCursor(Qt::PointingHandCursor);
    connect(m_close, &QPushButton::clicked, this, &NoticeCard::closeRequested);

    const int badge = badgeSide(style);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(padding + badge + 12, style == Style::banner ? 10 : padding, 8,
                            style == Style::banner ? 10 : padding);
    row->setSpacing(12);
    auto* texts = new QVBoxLayout();
    texts->setSpacing(style == Style::banner ? 1 : 6);
    texts->addWidget(m_title);
    texts->addWidget(m_body);
    texts->addWidget(m_code, 0, Qt::AlignLeft);
    m_buttons->setSpacing(8);
    if (style == Style::banner) {
        row->addLayout(texts, 1);
        row->addLayout(m_buttons);
    } else {
        m_buttons->addStretch(1);
        texts->addSpacing(4);
        texts->addLayout(m_buttons);
        row->addLayout(texts, 1);
    }
    row->addWidget(m_close, 0, style == Style::banner ? Qt::AlignVCenter : Qt::AlignTop);
    setMinimumHeight(badge + (style == Style::banner ? 20 : 2 * padding));
}

void NoticeCard::setContent(const Content& content) {
    m_content = content;
    m_title->setText(content.title);
    m_title->setVisible(!content.title.isEmpty());
    m_body->setText(content.body);
    m_body->setVisible(!content.body.isEmpty());
    m_code->setText(content.code);
    m_code->setVisible(!content.code.isEmpty());
    m_close->setVisible(content.dismissible);
    qDeleteAll(m_actionButtons);
    m_actionButtons.clear();
    for (int i = 0; i < content.actions.size(); ++i) {
        auto* button = new QPushButton(content.actions[i]);
        // The first action is the one the notice is about.
        button->setObjectName(i == 0 ? QStringLiteral("primary") : QString());
        button->setCursor(Qt::PointingHandCursor);
        connect(button, &QPushButton::clicked, this, [this, i] { Q_EMIT actionChosen(i); });
        m_buttons->addWidget(button);
        m_actionButtons.append(button);
    }
    update();
}

void NoticeCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // The window's own colours: a style sheet leaves a child's palette half the application's.
    const QPalette& colours = window()->palette();
    const QColor base = colours.color(QPalette::AlternateBase);
    const QColor accent =
        m_content.accent.isValid() ? m_content.accent : colours.color(QPalette::Highlight);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = m_style == Style::banner ? 10 : 12;
    QColor border = accent;
    border.setAlphaF(0.45f);
    painter.setPen(QPen(border, 1));
    painter.setBrush(mix(base, accent, 0.10f));
    painter.drawRoundedRect(frame, radius, radius);

    const int side = badgeSide(m_style);
    const QRectF badge(padding, m_style == Style::banner ? (height() - side) / 2.0 : padding, side,
                       side);
    painter.setPen(Qt::NoPen);
    painter.setBrush(accent);
    painter.drawRoundedRect(badge, side * 0.3, side * 0.3);
    const QString symbol =
        m_content.symbol.isEmpty() ? QStringLiteral("megaphone.fill") : m_content.symbol;
    const QRectF glyph = badge.adjusted(side * 0.22, side * 0.22, -side * 0.22, -side * 0.22);
    const bool drawn =
        m_symbols != nullptr &&
        (m_symbols->drawSymbol(painter, symbol, glyph, Qt::white) ||
         m_symbols->drawSymbol(painter, QStringLiteral("megaphone.fill"), glyph, Qt::white));
    if (!drawn) {
        painter.setBrush(Qt::white);
        painter.drawEllipse(badge.center(), side * 0.12, side * 0.12);
    }
}

} // namespace tw
