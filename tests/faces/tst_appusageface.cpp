// The app time face: its durations, and every size drawn inside its tile from every state of its
// board, with and without a goal.
#include "FaceSpill.h"
#include "TestRows.h"
#include "desk/AppUsageView.h"
#include "faces/AppUsageFace.h"
#include "faces/FaceContext.h"
#include "look/Theme.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"

#include <QTest>
#include <QTimeZone>

using namespace tw;
using namespace tw::test;

namespace {

const NullSymbolProvider symbols;
const QDateTime now(QDate(2026, 3, 14), QTime(0, 20), QTimeZone::utc());

// "none": no board; "empty": counted less than a minute; "sample"; "extreme": names and totals
// far beyond what fits, a goal long past.
AppUsageBoard boardOf(const QString& state, const AppUsageSettings& settings) {
    AppUsageBoard board;
    if (state == QLatin1String("none")) {
        return board;
    }
    AppUsageView view = sampleAppUsageView(settings, now);
    if (state == QLatin1String("empty")) {
        view.summary = {
            {{.appID = QStringLiteral("a"), .name = QStringLiteral("A"), .seconds = 30}}, 30};
    } else if (state == QLatin1String("extreme")) {
        for (AppUsageRow& row : view.summary.rows) {
            row.name = QString(200, QLatin1Char('W'));
            row.seconds *= 1e6;
        }
        view.summary.total *= 1e6;
        view.goalDone = 1e9;
        view.icons.insert(view.summary.rows.first().appID, QStringLiteral("/nonexistent.png"));
    }
    board.views.insert(QUuid(), view);
    return board;
}

} // namespace

class TestAppUsageFace : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void durations_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        row("under a minute", 59.9, "<1m");
        row("a minute", 60.0, "1m");
        row("minutes round down", 3599.0, "59m");
        row("an hour", 3600.0, "1h 00m");
        row("hours and minutes", 7384.0, "2h 03m");
    }
    void durations() {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        QCOMPARE(AppUsageFace::durationText(seconds), text);
    }

    void staysInside_data() {
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("goal");
        QTest::addColumn<QString>("group");
        const WidgetMetadata metadata =
            WidgetRegistry::builtInDefinition(QStringLiteral("appusage"))->metadata;
        for (WidgetSize size : metadata.allowedSizes) {
            for (const char* state : {"none", "empty", "sample", "extreme"}) {
                for (const char* goal : {"off", "focus", "limit"}) {
                    for (const char* group : {"apps", "categories"}) {
                        const QByteArray tag =
                            rawValue(size).toUtf8() + '/' + state + '/' + goal + '/' + group;
                        row(tag.constData(), size, state, goal, group);
                    }
                }
            }
        }
    }
    void staysInside() {
        QFETCH(WidgetSize, size);
        QFETCH(QString, state);
        QFETCH(QString, goal);
        QFETCH(QString, group);
        FaceContext context = FaceContext::forKind(
            WidgetRegistry::builtInDefinition(QStringLiteral("appusage"))->metadata, size);
        context.theme = Theme::defaultTheme();
        context.surface = SurfaceFlags::desktop();
        context.symbols = &symbols;
        context.now = now;
        context.settings = {{QStringLiteral("goal"), goal}, {QStringLiteral("group"), group}};
        const AppUsageBoard board = boardOf(state, AppUsageSettings::read(context.settings));
        context.appUsage = &board;
        const AppUsageFace face;
        for (GlassLook::Shade shade : {GlassLook::Shade::Dark, GlassLook::Shade::Light}) {
            context.glass.shade = shade;
            const QString spill = spillOf(face, context);
            QVERIFY2(spill.isEmpty(), qPrintable(spill));
        }
    }
};

QTEST_MAIN(TestAppUsageFace)
#include "tst_appusageface.moc"
