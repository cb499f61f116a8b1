#include "config/SuggestionButton.h"

#include "config/SettingsCard.h"

#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {

// A button as tall as its two lines, which a push button's own size leaves out.
class TwoLineButton final : public QPushButton {
public:
    using QPushButton::QPushButton;
    QSize sizeHint() const override { return layout()->totalSizeHint(); }
    QSize minimumSizeHint() const override { return layout()->totalMinimumSize(); }
};

} // namespace

QPushButton* suggestionButton(const QString& title, const QString& detail) {
    auto* button = new TwoLineButton();
    button->setObjectName(QStringLiteral("suggestion"));
    button->setCursor(Qt::PointingHandCursor);
    button->setAccessibleName(detail.isEmpty() ? title : title + QStringLiteral(", ") + detail);
    auto* lines = new QVBoxLayout(button);
    lines->setContentsMargins(10, 5, 10, 5);
    lines->setSpacing(1);
    auto* name = new QLabel(title, button);
    name->setObjectName(QStringLiteral("suggestionTitle"));
    lines->addWidget(name);
    if (!detail.isEmpty()) {
        lines->addWidget(caption(detail, button));
    }
    for (QLabel* label : button->findChildren<QLabel*>()) {
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    return button;
}

} // namespace tw
