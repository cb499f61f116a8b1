#include "app/PictureLayouts.h"

#include "backup/AutoBackup.h"
#include "backup/LayoutBackup.h"
#include "platform/AtomicFile.h"

#include <QDir>

namespace tw {

namespace {

const QRectF screenFrame(0, 0, 1440, 900);

GridLayout layoutOf(const QStringList& kinds) {
    GridLayout layout;
    double x = 40;
    for (const QString& kind : kinds) {
        WidgetInstance instance;
        instance.kind = kind;
        instance.posX = x;
        instance.posY = 860;
        x += 108;
        layout.instances.append(instance);
    }
    return layout;
}

SmartLayoutRule rule(const QString& name, const QUuid& profile, SmartLayoutRule::Trigger trigger) {
    SmartLayoutRule made;
    made.id = QUuid::createUuid();
    made.name = name;
    made.profileID = profile;
    made.trigger = trigger;
    return made;
}

// An automatic backup from `daysAgo` days before `now` holding `widgets` tiles.
void writeBackup(const QDir& dir, const QDateTime& now, int daysAgo, int widgets) {
    LayoutBackup::Snapshot snapshot;
    snapshot.exportedAt = now.addDays(-daysAgo).addSecs(-3600L * daysAgo).toUTC();
    QStringList kinds;
    for (int i = 0; i < widgets; ++i) {
        kinds.append(QStringLiteral("clock"));
    }
    snapshot.files.insert(QStringLiteral("grid.json"), layoutOf(kinds).toJsonText());
    AtomicFile::write(
        dir.filePath(LayoutBackup::backupsFolder + QLatin1Char('/') + AutoBackup::prefix +
                     snapshot.exportedAt.toString(QStringLiteral("yyyy-MM-dd-HHmmss")) +
                     LayoutBackup::extension),
        LayoutBackup::encode(snapshot));
}

} // namespace

PictureLayouts::PictureLayouts(const Clock& clock, Scheduler& scheduler, Defaults& defaults)
    : m_clock(clock, OffsetClock::offsetFor(QStringLiteral("2026-11-24T10:09:00"), clock.now())
                         .value_or(std::chrono::milliseconds{0}))
    , m_displays({{QStringLiteral("main"), QStringLiteral("Built-in Display"), screenFrame,
                   screenFrame, true}}) {
    const QDir dir(m_dir.path());
    m_grid = std::make_unique<GridStore>(
        GridStore::Services{m_clock, scheduler, m_registry, &defaults, &m_displays, nullptr},
        dir.filePath(QStringLiteral("grid.json")));
    m_grid->replaceLayout(layoutOf({QStringLiteral("clock"), QStringLiteral("weather")}));
    m_watcher = std::make_unique<ScreenTopologyWatcher>(m_displays, scheduler);
    m_profiles =
        std::make_unique<LayoutProfileStore>(m_clock, m_displays, m_grid->layout(),
                                             dir.filePath(QStringLiteral("layout-profiles.json")));
    m_rules = std::make_unique<SmartLayoutRuleStore>(
        m_clock, dir.filePath(QStringLiteral("smart-layout-rules.json")));
    const QList<std::pair<QString, QStringList>> profiles{
        {QStringLiteral("Work"), {QStringLiteral("calendar"), QStringLiteral("system")}},
        {QStringLiteral("Home"), {QStringLiteral("weather"), QStringLiteral("nowplaying")}},
        {QStringLiteral("Presenting"), {QStringLiteral("clock")}},
    };
    QList<QUuid> ids;
    for (const auto& profile : profiles) {
        const LayoutProfile made = m_profiles->createProfile(
            profile.first, m_grid->layout(), std::nullopt, LayoutProfileStore::Activate::no);
        m_profiles->capture(layoutOf(profile.second), made.id, std::nullopt,
                            LayoutProfileStore::Save::yes);
        ids.append(made.id);
    }
    using Trigger = SmartLayoutRule::Trigger;
    SmartLayoutRule hours = rule(QStringLiteral("Working hours"), ids[0], Trigger::schedule);
    hours.startMinute = 9 * 60;
    hours.endMinute = 17 * 60 + 30;
    SmartLayoutRule evenings = rule(QStringLiteral("Evenings"), ids[1], Trigger::schedule);
    evenings.startMinute = 19 * 60;
    evenings.endMinute = 7 * 60;
    evenings.isEnabled = false;
    SmartLayoutRule drawing = rule(QStringLiteral("Drawing"), ids[1], Trigger::application);
    drawing.applicationBundleID = QStringLiteral("org.inkscape.Inkscape");
    SmartLayoutRule projector = rule(QStringLiteral("Projector"), ids[2], Trigger::display);
    projector.displayName = QStringLiteral("Projector");
    for (const SmartLayoutRule& each : {projector, hours, evenings, drawing}) {
        m_rules->add(each);
    }
    m_coordinator = std::make_unique<SmartLayoutCoordinator>(SmartLayoutCoordinator::Services{
        .profiles = *m_profiles,
        .rules = *m_rules,
        .grid = *m_grid,
        .watcher = *m_watcher,
        .displays = m_displays,
        .clock = m_clock,
        .scheduler = scheduler,
        .foreground = nullptr,
    });
    m_coordinator->evaluateNow(SmartLayoutCoordinator::Pause::respect);
    dir.mkpath(LayoutBackup::backupsFolder);
    writeBackup(dir, m_clock.now(), 1, 6);
    writeBackup(dir, m_clock.now(), 2, 5);
}

} // namespace tw
