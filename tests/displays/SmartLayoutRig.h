// Profiles "Default" (a clock), "Night" (a battery) and "Work" (a calendar), a rules store and a
// coordinator over a real grid store, on virtual time, in a temporary directory.
#pragma once

#include "../grid/GridFixture.h"
#include "displays/LayoutProfileStore.h"
#include "displays/ScreenTopologyWatcher.h"
#include "displays/SmartLayoutCoordinator.h"
#include "displays/SmartLayoutRuleStore.h"
#include "platform/null/FixedForegroundApplication.h"

namespace tw::test {

inline const ScreenInfo mainScreen{QStringLiteral("main"), QStringLiteral("Main"),
                                   QRectF(0, 0, 1440, 900), QRectF(0, 0, 1440, 875), true};
inline const ScreenInfo projector{QStringLiteral("HDMI-2"), QStringLiteral("Projector"),
                                  QRectF(1440, 0, 1920, 1080), QRectF(1440, 0, 1920, 1080), false};

// Each profile holds one tile of its own kind, so the desktop tells which profile it shows.
inline const QHash<QString, QString> profileKind{
    {QStringLiteral("Default"), QStringLiteral("clock")},
    {QStringLiteral("Night"), QStringLiteral("battery")},
    {QStringLiteral("Work"), QStringLiteral("calendar")}};

struct SmartLayoutRig {
    explicit SmartLayoutRig(const QTime& start) {
        fixture.clock.setNow(QDateTime(QDate(2026, 5, 1), start));
        fixture.writeGrid(layoutOf(QStringLiteral("clock small 0,0 at 100,800")));
        grid = fixture.appStore();
        watcher.start();
        profiles = std::make_unique<LayoutProfileStore>(fixture.clock, fixture.displays,
                                                        grid->layout(), path("profiles.json"));
        rules = std::make_unique<SmartLayoutRuleStore>(fixture.clock, path("rules.json"));
        for (const QString& name : {QStringLiteral("Night"), QStringLiteral("Work")}) {
            const LayoutProfile made = profiles->createProfile(name, grid->layout(), std::nullopt,
                                                               LayoutProfileStore::Activate::no);
            profiles->capture(layoutOf(profileKind[name] + QStringLiteral(" small 0,0 at 300,600")),
                              made.id, std::nullopt, LayoutProfileStore::Save::yes);
        }
        coordinator = std::make_unique<SmartLayoutCoordinator>(SmartLayoutCoordinator::Services{
            .profiles = *profiles,
            .rules = *rules,
            .grid = *grid,
            .watcher = watcher,
            .displays = fixture.displays,
            .clock = fixture.clock,
            .scheduler = fixture.scheduler,
            .foreground = &foreground,
        });
    }
    QString path(const char* name) const { return fixture.dir.filePath(QLatin1String(name)); }
    QUuid idOf(const QString& name) const {
        for (const LayoutProfile& profile : profiles->profiles()) {
            if (profile.name == name) {
                return profile.id;
            }
        }
        return {};
    }
    // "schedule 1320..420 Night", "application org.Editor Night", "display Projector Night".
    void addRule(const QString& text) {
        const QStringList words = text.split(QLatin1Char(' '));
        SmartLayoutRule rule;
        rule.id = QUuid::createUuid();
        rule.name = text;
        rule.trigger = *SmartLayoutRule::triggerFromRawValue(words[0]);
        rule.startMinute = words[1].section(QStringLiteral(".."), 0, 0).toInt();
        rule.endMinute = words[1].section(QStringLiteral(".."), 1, 1).toInt();
        rule.applicationBundleID = words[1];
        rule.displayName = words[1];
        rule.profileID = idOf(words[2]);
        rules->add(rule);
    }
    // The active profile's name, and whether the desktop shows that profile's tile.
    QString shown() const {
        const QString active = profiles->activeProfile()->name;
        const bool onDesktop =
            grid->instanceCount(profileKind[active]) == 1 && grid->layout().instances.size() == 1;
        return onDesktop ? active : active + QStringLiteral(" (desktop differs)");
    }

    GridFixture fixture;
    std::unique_ptr<GridStore> grid;
    ScreenTopologyWatcher watcher{fixture.displays, fixture.scheduler};
    FixedForegroundApplication foreground;
    std::unique_ptr<LayoutProfileStore> profiles;
    std::unique_ptr<SmartLayoutRuleStore> rules;
    std::unique_ptr<SmartLayoutCoordinator> coordinator;
};

} // namespace tw::test
