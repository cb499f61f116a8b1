#include "config/OnboardingView.h"

#include "config/OnboardingPicture.h"
#include "config/PanePicture.h"
#include "text/L.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tw {

namespace {

constexpr int bodyWidth = 432;
constexpr int cardMargin = 24;

struct Text {
    QString title;
    QString body;
};

Text textOf(int step, OnboardingView::StatusPlace place) {
    switch (step) {
    case 0:
        return {L("guide.tiles.title", QStringLiteral("Tiles on your desktop")),
                L("guide.tiles.body",
                  QStringLiteral("Tarnwick puts live glass tiles on your desktop: clocks, weather, "
                                 "readings of your computer and more. Each tile is a kind from the "
                                 "gallery, in one of the sizes it allows."))};
    case 1:
        return {L("guide.move.title", QStringLiteral("Moving tiles")),
                L("guide.move.body",
                  QStringLiteral("Drag a tile to move it: it snaps into place and never overlaps "
                                 "another. Drop it on a tile of the same size to stack them, and "
                                 "scroll over a stack to turn it. %1 undoes any change."))
                    .arg(QKeySequence(QKeySequence::Undo).toString(QKeySequence::NativeText))};
    default:
        if (place == OnboardingView::StatusPlace::tray) {
            return {L("guide.tray.title", QStringLiteral("Tarnwick in the tray")),
                    L("guide.tray.body",
                      QStringLiteral("Tarnwick's icon lives in the panel's tray. Click it to open "
                                     "this window, to show or hide your tiles, or to quit."))};
        }
        return {L("guide.menuBar.title", QStringLiteral("Tarnwick's menu")),
                L("guide.menuBar.body",
                  QStringLiteral("Your desktop has no tray, so Tarnwick's menu is in this window's "
                                 "menu bar, under \"Tarnwick\". There you show or hide your tiles, "
                                 "or quit."))};
    }
}

} // namespace

OnboardingView::OnboardingView(StatusPlace place, QWidget* parent)
    : QWidget(parent)
    , m_place(place)
    , m_picture(new PanePicture(
          [this](QPainter& painter, const QRectF& rect) {
              OnboardingPicture::paint(painter, rect, m_step, m_place, window()->palette());
          },
          OnboardingPicture::size))
    , m_title(new QLabel())
    , m_body(new QLabel())
    , m_dots(new PanePicture(
          [this](QPainter& painter, const QRectF& rect) {
              OnboardingPicture::paintDots(painter, rect, m_step, window()->palette());
          },
          QSizeF(60, 8)))
    , m_skip(new QPushButton(L("guide.skip", QStringLiteral("Skip"))))
    , m_back(new QPushButton(L("guide.back", QStringLiteral("Back"))))
    , m_next(new QPushButton()) {
    setObjectName(QStringLiteral("guide"));
    // The veil over the window's content is the style sheet's, in either shade.
    setAttribute(Qt::WA_StyledBackground);
    setAccessibleName(L("guide.name", QStringLiteral("Welcome to Tarnwick")));

    auto* card = new QFrame(this);
    card->setObjectName(QStringLiteral("card"));
    auto* column = new QVBoxLayout(card);
    column->setContentsMargins(cardMargin, cardMargin, cardMargin, 20);
    column->setSpacing(12);
    column->addWidget(m_picture);
    m_title->setObjectName(QStringLiteral("guideTitle"));
    column->addWidget(m_title);
    m_body->setWordWrap(true);
    m_body->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    column->addWidget(m_body);
    const QSizeF drawn = OnboardingPicture::size;
    m_picture->setFixedSize(bodyWidth,
                            static_cast<int>(bodyWidth * drawn.height() / drawn.width()));
    m_dots->setFixedSize(60, 8);
    column->addWidget(m_dots, 0, Qt::AlignHCenter);
    auto* buttons = new QHBoxLayout();
    buttons->addWidget(m_skip);
    buttons->addStretch(1);
    buttons->addWidget(m_back);
    m_next->setObjectName(QStringLiteral("primary"));
    buttons->addWidget(m_next);
    column->addLayout(buttons);

    auto* centre = new QVBoxLayout(this);
    centre->addStretch(1);
    centre->addWidget(card, 0, Qt::AlignHCenter);
    centre->addStretch(1);

    connect(m_skip, &QPushButton::clicked, this, &OnboardingView::skip);
    connect(m_back, &QPushButton::clicked, this, &OnboardingView::back);
    connect(m_next, &QPushButton::clicked, this, &OnboardingView::next);

    parent->installEventFilter(this);
    setGeometry(parent->rect());
    raise();
    showStep(0);
    m_next->setFocus();
}

void OnboardingView::showStep(int step) {
    if (step < 0 || step >= stepCount) {
        return;
    }
    m_step = step;
    const Text text = textOf(step, m_place);
    m_title->setText(text.title);
    m_body->setText(text.body);
    // As tall as the longest step's text, so the buttons stay put from step to step; a wrapping
    // label left to itself asks for far more.
    m_body->ensurePolished();
    int height = 0;
    for (int other = 0; other < stepCount; ++other) {
        height = std::max(height, m_body->fontMetrics()
                                      .boundingRect(QRect(0, 0, bodyWidth, 10000), Qt::TextWordWrap,
                                                    textOf(other, m_place).body)
                                      .height());
    }
    m_body->setFixedSize(bodyWidth, height);
    const bool last = step == stepCount - 1;
    m_next->setText(last ? L("guide.done", QStringLiteral("Done"))
                         : L("guide.next", QStringLiteral("Next")));
    m_skip->setVisible(!last);
    m_back->setVisible(step > 0);
    m_picture->update();
    m_dots->update();
}

void OnboardingView::next() {
    if (m_step == stepCount - 1) {
        Q_EMIT finished();
        return;
    }
    showStep(m_step + 1);
}

void OnboardingView::back() {
    showStep(m_step - 1);
}

void OnboardingView::skip() {
    Q_EMIT finished();
}

bool OnboardingView::event(QEvent* event) {
    // Enter and Esc are the guide's while it shows, not the window's shortcuts.
    if (event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

bool OnboardingView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
    }
    return QWidget::eventFilter(watched, event);
}

void OnboardingView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        skip();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        next();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

bool OnboardingView::focusNextPrevChild(bool next) {
    QList<QWidget*> ring;
    for (QPushButton* button : {m_skip, m_back, m_next}) {
        if (button->isVisibleTo(this)) {
            ring.append(button);
        }
    }
    if (ring.isEmpty()) {
        return false;
    }
    const qsizetype at = ring.indexOf(focusWidget());
    const qsizetype count = ring.size();
    const qsizetype to = at < 0 ? 0 : (at + (next ? 1 : count - 1)) % count;
    ring.at(to)->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

} // namespace tw
