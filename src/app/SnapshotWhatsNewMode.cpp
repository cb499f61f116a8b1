#include "app/LaunchModes.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "app/WidgetPicture.h"
#include "config/ConfigPalette.h"
#include "config/WhatsNewView.h"
#include "updates/ReleaseFeed.h"

#include <QCoreApplication>
#include <QLayout>
#include <QLocale>

namespace tw {

std::optional<int> runSnapshotWhatsNewMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    // Light unless asked for dark; --light wins when both are given.
    const bool dark = context.arguments.has(QStringLiteral("--dark")) &&
                      !context.arguments.has(QStringLiteral("--light"));
    const ColorScheme scheme = dark ? ColorScheme::Dark : ColorScheme::Light;
    const QString version = QCoreApplication::applicationVersion();
    // As the first start after an update from an unrecorded version shows it: this version's
    // notes.
    QList<Release> notes;
    const auto running = SemanticVersion::parse(version);
    for (const Release& release : ReleaseFeed::shipped(QLocale().bcp47Name()).releases) {
        if (running && release.version == *running) {
            notes.append(release);
        }
    }
    QString problem = options.problem;
    if (problem.isEmpty() && notes.isEmpty()) {
        problem = QStringLiteral("this build ships no notes for version %1.").arg(version);
    }
    QImage picture;
    if (problem.isEmpty()) {
        WhatsNewView view(notes, version, scheme);
        view.resize(WhatsNewView::contentSize);
        // Twice: wrapped notes know their height only once their width is set.
        view.layout()->activate();
        view.layout()->activate();
        picture = pictureOf(view, options.devicePixelRatio, ConfigPalette::of(scheme).window);
    }
    return reportSnapshot(context, QStringLiteral("snapshot-whatsnew"), path, picture, problem,
                          dark ? QStringLiteral(" dark=true") : QStringLiteral(" dark=false"));
}

} // namespace tw
