#include "DisplayFixtures.h"
#include "GoldenFile.h"
#include "displays/DisplayDiagnostics.h"

#include <QTest>

namespace tw {

using namespace test;

class TestDisplayDiagnostics : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Names, primary, rounded frames, scales, positions off screen and without one, homes half
    // known, and an anonymous custom kind (TW_UPDATE_GOLDEN=1 rewrites the record).
    void reportDescribesScreensAndWidgets() {
        auto displays = displaysOf(QStringLiteral(
            "edid-1a2b@0,0,1512x982*^949.5=Built-in Retina Display;R@1512,-120.4,2560x1440"));
        displays[1].name.clear();
        const GridLayout layout = layoutOf(QStringLiteral(
            "1 large 24,926; 2 small 2000,700 x1.5 custom.6F1C2D0E-1111-2222-3333-444455556666;"
            "3 wide - weather; 4 small 9000.4,-3000 battery"));
        LayoutWidgetPlacement home;
        home.anchorH = LayoutAnchor::leading;
        home.anchorV = LayoutAnchor::top;
        LayoutWidgetPlacement halfHome;
        halfHome.anchorV = LayoutAnchor::bottom;
        const QString report = DisplayDiagnostics::report(
            displays, layout, 3, QStringLiteral("0.1.0"),
            QStringLiteral("Debian GNU/Linux 12 (bookworm)"),
            DisplayDiagnostics::SeparateSpaces::no, {{widgetId(1), home}, {widgetId(4), halfHome}});
        QVERIFY(report.endsWith(QLatin1Char('\n')));
        compareWithGolden(QStringLiteral(TW_GOLDEN_DIR "/display-report.txt"),
                          report.chopped(1).split(QLatin1Char('\n')));
    }

    void currentReportReadsTheMomentAndTheMemory() {
        MemoryRig rig(screensOf(QStringLiteral("A@0,0,800x600*^570=Panel")));
        const auto memory = rig.memory();
        const GridLayout layout = layoutOf(QStringLiteral("1 small 10,500"));
        memory->remember(layout, LayoutDisplay::currentDisplays(rig.displays));

        QCoreApplication::setApplicationVersion(QStringLiteral("9.9"));
        const QStringList lines = DisplayDiagnostics(rig.displays, *memory)
                                      .currentReport(layout)
                                      .split(QLatin1Char('\n'));
        QCOMPARE(lines.at(1), QStringLiteral("App 9.9 · %1 · separate Spaces per display: no")
                                  .arg(QSysInfo::prettyProductName()));
        QCOMPARE(lines.at(2), QStringLiteral("Remembered display configurations: 1"));
        QCOMPARE(lines.at(4), QStringLiteral("  [1] Panel · id A · primary"));
        QCOMPARE(lines.at(8), QStringLiteral("  clock small ×1.0 at 10, top 500 · on [1], pinned "
                                             "leading/top"));
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestDisplayDiagnostics)
#include "tst_displaydiagnostics.moc"
