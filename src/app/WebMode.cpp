#include "app/LaunchModes.h"
#include "live/WebPage.h"
#include "platform/PlatformServices.h"
#include "platform/QtScheduler.h"

#include <QCoreApplication>
#include <QImageWriter>

namespace tw {

std::optional<int> runWebMode(LaunchContext& context) {
    const QString address = context.values.value(0);
    const QString path = context.values.value(1);
    const auto report = [&](bool ok) {
        context.out << "web ok=" << (ok ? "true" : "false") << " path=" << path << Qt::endl;
        return ok ? 0 : 1;
    };
    WebTileSettings settings;
    settings.url = webPageAddress(address).value_or(QUrl());
    settings.refresh = std::chrono::minutes(0);
    if (!settings.url.isValid()) {
        return report(false);
    }
    // The tiles' own page host, at 900 × 600 points and zoom 1.
    QtScheduler scheduler;
    WebPage page(WebPage::installedHelper(PlatformServices::isAdministrator()), scheduler);
    QObject::connect(&page, &WebPage::changed, &page, [&page] {
        if (page.state() != WebPage::State::loading) {
            QCoreApplication::quit();
        }
    });
    page.show(settings, QSize(900, 600));
    if (page.state() == WebPage::State::loading) {
        QCoreApplication::exec();
    }
    page.stop();
    const bool shown = page.state() == WebPage::State::shown && !page.picture().isNull();
    return report(shown && QImageWriter(path).write(page.picture()));
}

} // namespace tw
