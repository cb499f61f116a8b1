#include "app/LaunchModes.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "app/WidgetPicture.h"
#include "config/ConfigPalette.h"
#include "config/NoticeCard.h"
#include "config/NoticeSlot.h"
#include "net/QtHttpClient.h"
#include "notices/NoticeService.h"
#include "platform/PlatformServices.h"
#include "platform/QtScheduler.h"
#include "platform/null/MemoryDefaults.h"
#include "tick/SnapshotClock.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayout>
#include <QLocale>
#include <QVBoxLayout>

namespace tw {

namespace {

constexpr int width = 760;

QLabel* heading(const QString& text) {
    auto* label = new QLabel(text);
    label->setObjectName(QStringLiteral("sectionHeading"));
    return label;
}

} // namespace

std::optional<int> runSnapshotNoticeMode(LaunchContext& context) {
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QImage picture;
    if (options.problem.isEmpty()) {
        // A service of its own that fetches nothing, for the texts in the app's language.
        MemoryDefaults defaults;
        QtScheduler scheduler;
        QtHttpClient http(scheduler);
        const NoticeService service(
            NoticeService::Services{.http = http,
                                    .clock = context.clock.system(),
                                    .scheduler = scheduler,
                                    .defaults = defaults,
                                    .registry = nullptr,
                                    .workspace = nullptr},
            NoticeService::Setup{.feedUrl = {},
                                 .testing = true,
                                 .cachePath = {},
                                 .dataDirectory = {},
                                 .version = QCoreApplication::applicationVersion(),
                                 .language = QLocale().bcp47Name()});
        const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
        const ConfigPalette palette = ConfigPalette::of(
            options.shade == GlassLook::Shade::Light ? ColorScheme::Light : ColorScheme::Dark);

        QWidget sheet;
        sheet.setObjectName(QStringLiteral("configRoot"));
        sheet.setAttribute(Qt::WA_StyledBackground);
        sheet.setPalette(palette.palette());
        sheet.setStyleSheet(palette.styleSheet());
        auto* column = new QVBoxLayout(&sheet);
        column->setContentsMargins(24, 14, 24, 24);
        column->setSpacing(8);
        const NoticeCard::Content content =
            NoticeSlot::contentOf(Notice::sample(), service, palette.accent);
        column->addWidget(heading(QStringLiteral("Banner")));
        auto* banner = new NoticeCard(NoticeCard::Style::banner, symbols.get());
        banner->setContent(content);
        column->addWidget(banner);
        column->addWidget(heading(QStringLiteral("Card")));
        auto* card = new NoticeCard(NoticeCard::Style::card, symbols.get());
        NoticeCard::Content withCode = content;
        withCode.code = QStringLiteral("TARNWICK-2026");
        card->setContent(withCode);
        card->setFixedWidth(460);
        auto* cardRow = new QHBoxLayout();
        cardRow->addWidget(card);
        cardRow->addStretch(1);
        column->addLayout(cardRow);
        sheet.setFixedWidth(width);
        sheet.layout()->activate();
        sheet.resize(width, sheet.layout()->totalHeightForWidth(width));
        picture = pictureOf(sheet, options.devicePixelRatio, palette.window);
    }
    return reportSnapshot(context, QStringLiteral("snapshot-notice"), context.values.value(0),
                          picture, options.problem,
                          QStringLiteral(" dark=%1").arg(options.darkField()));
}

} // namespace tw
