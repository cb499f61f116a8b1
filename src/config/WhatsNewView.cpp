#include "config/WhatsNewView.h"

#include "config/ConfigPalette.h"
#include "config/ReleaseNotesList.h"
#include "config/SettingsCard.h"
#include "text/L.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace tw {

QString WhatsNewView::title(const QString& runningVersion) {
    return L("whatsnew.title", QStringLiteral("What’s New in Tarnwick %1")).arg(runningVersion);
}

WhatsNewView::WhatsNewView(const QList<Release>& releases, const QString& runningVersion,
                           ColorScheme scheme, QWidget* parent)
    : QWidget(parent) {
    const ConfigPalette palette = ConfigPalette::of(scheme);
    setPalette(palette.palette());
    setStyleSheet(palette.styleSheet());
    setObjectName(QStringLiteral("configRoot"));
    setAutoFillBackground(true);
    setWindowTitle(title(runningVersion));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(28, 24, 28, 20);
    column->setSpacing(10);
    auto* heading = new QLabel(title(runningVersion), this);
    heading->setObjectName(QStringLiteral("title"));
    heading->setWordWrap(true);
    column->addWidget(heading);
    column->addWidget(caption(
        L("whatsnew.sub", QStringLiteral("Tarnwick was updated. Here is what changed.")), this));

    auto* card = new SettingsCard();
    card->addWide(new ReleaseNotesList(releases));
    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* inner = new QWidget();
    auto* innerColumn = new QVBoxLayout(inner);
    innerColumn->setContentsMargins(0, 0, 0, 0);
    innerColumn->addWidget(card);
    innerColumn->addStretch(1);
    scroll->setWidget(inner);
    column->addWidget(scroll, 1);

    auto* buttons = new QHBoxLayout();
    buttons->addStretch(1);
    auto* go = new QPushButton(L("whatsnew.continue", QStringLiteral("Continue")), this);
    go->setObjectName(QStringLiteral("primary"));
    go->setDefault(true);
    connect(go, &QPushButton::clicked, this, &WhatsNewView::done);
    buttons->addWidget(go);
    column->addLayout(buttons);
    resize(contentSize);
}

} // namespace tw
