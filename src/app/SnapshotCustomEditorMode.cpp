#include "app/LaunchModes.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "app/WidgetPicture.h"
#include "config/ConfigContext.h"
#include "config/ConfigRoot.h"
#include "config/ConfigWindow.h"
#include "config/CustomWidgetsPage.h"
#include "custom/CustomWidgetStore.h"
#include "custom/CustomWidgetTemplates.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "look/ThemeStore.h"
#include "platform/PlatformServices.h"
#include "platform/null/MemoryDefaults.h"
#include "platform/null/MemorySecretStore.h"
#include "settings/AppSettings.h"
#include "tick/SnapshotClock.h"

#include <QCoreApplication>
#include <QImage>
#include <QLayout>
#include <QTemporaryDir>

namespace tw {

namespace {

// The window at the custom widgets' editor with a template loaded, over a store of its own in a
// directory that goes with the picture.
QImage editorPicture(LaunchContext& context, const SnapshotWidgetOptions& options,
                     const QString& templateId) {
    MemoryDefaults defaults;
    AppSettings settings(defaults);
    settings.setHasSeenGuide(true);
    ThemeStore theme(defaults, context.clock, QString());
    theme.suppressPersistence();
    if (!options.themeId.isEmpty()) {
        theme.selectPalette(options.themeId);
    }
    const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
    const FaceRegistry faces;
    const FaceContext base = options.baseContext(*symbols, context.clock.now());
    QTemporaryDir directory;
    MemorySecretStore secrets;
    CustomWidgetStore store(CustomWidgetStore::Services{
        .clock = context.clock, .secrets = secrets, .directory = directory.path()});

    ConfigContext config{
        .settings = settings,
        .theme = theme,
        .defaults = defaults,
        .version = QCoreApplication::applicationVersion(),
    };
    config.customWidgets = &store;
    config.faces = &faces;
    config.faceBase = [&base] { return base; };
    ConfigRoot root(config, options.shade == GlassLook::Shade::Light ? ColorScheme::Light
                                                                     : ColorScheme::Dark);
    root.resize(ConfigWindow::contentSize);
    CustomWidgetsPage* page = root.customWidgets();
    page->editTemplate(templateId);
    root.layout()->activate();
    return pictureOf(root, options.devicePixelRatio, Qt::transparent);
}

} // namespace

std::optional<int> runSnapshotCustomEditorMode(LaunchContext& context) {
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString problem = options.problem;
    const QString templateId =
        context.arguments.value(QStringLiteral("--template")).value_or(QStringLiteral("crypto"));
    if (problem.isEmpty() && !CustomWidgetTemplates::byId(templateId)) {
        QStringList ids;
        for (const auto& t : CustomWidgetTemplates::all()) {
            ids << t.id;
        }
        problem = QStringLiteral("unknown template \"%1\"; the templates are %2.")
                      .arg(templateId, ids.join(QStringLiteral(", ")));
    }
    const QImage picture =
        problem.isEmpty() ? editorPicture(context, options, templateId) : QImage();
    return reportSnapshot(
        context, QStringLiteral("snapshot-customeditor"), context.values.value(0), picture, problem,
        QStringLiteral(" dark=%1 template=%2").arg(options.darkField(), templateId));
}

} // namespace tw
