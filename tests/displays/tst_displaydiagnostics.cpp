#include "DisplayFixtures.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "displays/DisplayDiagnostics.h"
#include "displays/ScreenTopologyWatcher.h"
#include "displays/TopologyMemory.h"
#include "platform/null/FixedDisplays.h"

#include <QTemporaryDir>
#include <QTest>

namespace tw {

using namespace test;

class TestDisplayDiagnostics : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reportDescribesScreensAndWidgets() {
        LayoutDisplay unnamed = screenAt(QStringLiteral("R"), 1512, -120.4, 2560, 1440);
        unnamed.name.clear();
        const QList<LayoutDisplay> displays{
            withVisibleFrame(screenAt(QStringLiteral("edid-1a2b"), 0, 0, 1512, 982, Role::main,
                                      QStringLiteral("Built-in Retina Display")),
                             {0, 0, 1512, 949.5}),
            unnamed};
        WidgetInstance custom =
            widgetAt(2, WidgetSize::small, 2000, 700,
                     QStringLiteral("custom.6F1C2D0E-1111-2222-3333-444455556666"));
        custom.settings = WidgetSettings{{QStringLiteral("tileScale"), QStringLiteral("1.5")}};
        const GridLayout layout = layoutOf({
            widgetAt(1, WidgetSize::large, 24, 926),
            custom,
            widgetAt(3, WidgetSize::wide, std::nullopt, std::nullopt, QStringLiteral("weather")),
            widgetAt(4, WidgetSize::small, 9000.4, -3000, QStringLiteral("battery")),
        });
        LayoutWidgetPlacement home;
        home.widgetID = widgetId(1);
        home.anchorH = LayoutAnchor::leading;
        home.anchorV = LayoutAnchor::top;
        LayoutWidgetPlacement halfHome;
        halfHome.widgetID = widgetId(4);
        halfHome.anchorV = LayoutAnchor::bottom;

        const QString report =
            DisplayDiagnostics::report(displays, layout, 3, QStringLiteral("0.1.0"),
                                       QStringLiteral("Debian GNU/Linux 12 (bookworm)"),
                                       DisplayDiagnostics::SeparateSpaces::no,
                                       {{home.widgetID, home}, {halfHome.widgetID, halfHome}});

        QCOMPARE(report,
                 QString::fromUtf8(
                     "Tarnwick display report\n"
                     "App 0.1.0 · Debian GNU/Linux 12 (bookworm) · separate Spaces per "
                     "display: no\n"
                     "Remembered display configurations: 3\n"
                     "Screens (2):\n"
                     "  [1] Built-in Retina Display · id edid-1a2b · primary\n"
                     "    frame 0,0 1512×982\n"
                     "    visible 0,0 1512×950\n"
                     "  [2] (unnamed) · id R\n"
                     "    frame 1512,-120 2560×1440\n"
                     "    visible 1512,-120 2560×1440\n"
                     "Widgets (4):\n"
                     "  clock large ×1.0 at 24, top 926 · on [1], pinned leading/top\n"
                     "  custom small ×1.5 at 2000, top 700 · on [2], pinned -/-\n"
                     "  weather wide ×1.0 · no position yet, pinned -/-\n"
                     "  battery small ×1.0 at 9000, top -3000 · OFF SCREEN, pinned -/bottom\n"));
    }

    void currentReportReadsTheMomentAndTheMemory() {
        QTemporaryDir dir;
        test::ManualClock clock;
        test::ManualScheduler scheduler(&clock);
        FixedDisplays displays{{ScreenInfo{QStringLiteral("A"), QStringLiteral("Panel"),
                                           QRectF(0, 0, 800, 600), QRectF(0, 0, 800, 570), true}}};
        ScreenTopologyWatcher watcher(displays, scheduler);
        TopologyMemory memory(watcher, clock, dir.filePath(QStringLiteral("topology.json")));
        const GridLayout layout = layoutOf({widgetAt(1, WidgetSize::small, 10, 500)});
        memory.remember(layout, LayoutDisplay::currentDisplays(displays));

        const QStringList lines =
            DisplayDiagnostics(displays, memory).currentReport(layout).split(QLatin1Char('\n'));
        QVERIFY(lines.at(1).startsWith(QStringLiteral("App ")));
        QVERIFY(lines.at(1).contains(QSysInfo::prettyProductName()));
        QVERIFY(lines.at(1).endsWith(QStringLiteral("separate Spaces per display: no")));
        QCOMPARE(lines.at(2), QStringLiteral("Remembered display configurations: 1"));
        QCOMPARE(lines.at(4), QStringLiteral("  [1] Panel · id A · primary"));
        QCOMPARE(lines.at(8), QStringLiteral("  clock small ×1.0 at 10, top 500 · on [1], pinned "
                                             "leading/top"));
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestDisplayDiagnostics)
#include "tst_displaydiagnostics.moc"
