// The GitHub and Smart Home faces: every size in each honest state kept inside its tile, what a
// click meets on them, and a state as a person reads it.
#include "FaceSpill.h"
#include "TestRows.h"
#include "faces/FaceContext.h"
#include "faces/GitHubFace.h"
#include "faces/SmartHomeFace.h"
#include "faces/TileRenderer.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"

#include <QTest>

#include <functional>

using namespace tw;
using tw::test::row;

namespace {

// A face that draws what the test hands it.
class Drawn final : public WidgetFace {
public:
    using Paint = std::function<void(QPainter&, const QRectF&, const FaceContext&)>;
    explicit Drawn(Paint paint)
        : m_paint(std::move(paint)) {}
    std::optional<TimeGrain> grain(WidgetSize, const WidgetSettings&) const override {
        return std::nullopt;
    }
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override {
        m_paint(painter, rect, context);
    }

private:
    Paint m_paint;
};

const QDateTime now(QDate(2026, 11, 24), QTime(12, 0));

FaceContext contextOf(const QString& kind, WidgetSize size, const NullSymbolProvider& symbols,
                      WidgetSettings settings) {
    FaceContext context =
        FaceContext::forKind(WidgetRegistry::builtInDefinition(kind)->metadata, size);
    context.surface = SurfaceFlags::desktop();
    context.symbols = &symbols;
    context.now = now;
    context.settings = std::move(settings);
    return context;
}

// The sample as a picture draws it, turned into each state.
GitHubFace::Shown gitHubIn(const QString& state) {
    FaceContext sample = FaceContext::forKind(
        WidgetRegistry::builtInDefinition(u"github"_qs)->metadata, WidgetSize::large);
    sample.surface = SurfaceFlags::snapshot();
    sample.now = now;
    sample.settings.insert(u"target"_qs, state == u"person" ? u"octocat"_qs : u"kde/kate"_qs);
    GitHubFace::Shown shown = GitHubFace::shownOf(sample);
    GitHubState& s = shown.state;
    s.activity.reviews.append(GitHubItem{QString(2000, u'W'), u"kde/kate"_qs, 7, {}, {}, now});
    if (state == u"no target") {
        shown.target.reset();
    } else if (state == u"loading") {
        s = {};
    } else if (state == u"offline") {
        s.status = GitHubStatus::offline;
        s.message = u"Offline"_qs;
    } else if (state == u"rate limited") {
        s.status = GitHubStatus::rateLimited;
        s.retryAt = now.addSecs(900);
    } else if (state == u"not found") {
        s = {};
        s.status = GitHubStatus::notFound;
        s.message = u"No such repository"_qs;
    } else if (state == u"token refused") {
        s = {};
        s.status = GitHubStatus::tokenRefused;
        s.message = u"GitHub refused the token"_qs;
    } else if (state == u"needs token") {
        s.notifications = GitHubNotifications::needsToken;
        s.activity.notifications.clear();
        s.activity.reviews.clear();
        s.activity.notificationCount.reset();
    }
    return shown;
}

SmartHomeBoard homeIn(const QString& state) {
    SmartHomeBoard board;
    board.status = SmartHomeStatus::live;
    board.statesRead = true;
    board.updated = now.addSecs(-120);
    const auto add = [&](const QString& id, const QString& name, const QString& value,
                         const QString& unit) {
        board.entities.insert(id, HaEntity{id, name, value, unit, {}, {}, now});
    };
    add(u"light.kitchen"_qs, u"Kitchen"_qs, u"on"_qs, {});
    add(u"sensor.outside"_qs, u"Outside temperature far too long a name"_qs, u"-12.25"_qs,
        u"°C"_qs);
    add(u"switch.fan"_qs, u"Fan"_qs, u"unavailable"_qs, {});
    board.pending.insert(u"switch.fan"_qs);
    board.refused.insert(u"light.kitchen"_qs, u"Service not found"_qs);
    if (state == u"no account") {
        board = {};
    } else if (state == u"connecting") {
        board = {};
        board.status = SmartHomeStatus::connecting;
    } else if (state == u"unreachable") {
        board.status = SmartHomeStatus::unreachable;
        board.message = u"Home Assistant does not answer"_qs;
        board.retryAt = now.addSecs(4);
    } else if (state == u"unreachable, nothing read") {
        board = {};
        board.status = SmartHomeStatus::unreachable;
        board.message = u"Home Assistant does not answer"_qs;
        board.retryAt = now.addSecs(4);
    } else if (state == u"unauthorised") {
        board.status = SmartHomeStatus::unauthorised;
        board.message = u"Home Assistant refused the token"_qs;
    }
    return board;
}

const WidgetSettings chosenEntities{
    {u"entities"_qs, u"light.kitchen,sensor.outside,switch.fan,light.gone,sensor.outside,"
                     u"light.a,light.b,light.c"_qs}};

} // namespace

class TestConnectedFaces : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void staysInside_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("state");
        QTest::addColumn<WidgetSize>("size");
        const QStringList github{u"live"_qs,      u"person"_qs,        u"no target"_qs,
                                 u"loading"_qs,   u"offline"_qs,       u"rate limited"_qs,
                                 u"not found"_qs, u"token refused"_qs, u"needs token"_qs};
        const QStringList home{u"live"_qs,
                               u"no account"_qs,
                               u"connecting"_qs,
                               u"unreachable"_qs,
                               u"unreachable, nothing read"_qs,
                               u"unauthorised"_qs,
                               u"nothing chosen"_qs};
        for (const auto& [kind, states] :
             {std::pair(u"github"_qs, github), std::pair(u"smarthome"_qs, home)}) {
            const auto definition = WidgetRegistry::builtInDefinition(kind);
            for (const WidgetSize size : definition->metadata.allowedSizes) {
                for (const QString& state : states) {
                    QTest::newRow(qPrintable(kind + u' ' + state + u' ' + rawValue(size)))
                        << kind << state << size;
                }
            }
        }
    }
    void staysInside() {
        QFETCH(QString, kind);
        QFETCH(QString, state);
        QFETCH(WidgetSize, size);
        const NullSymbolProvider symbols;
        const FaceContext context = contextOf(
            kind, size, symbols, state == u"nothing chosen" ? WidgetSettings() : chosenEntities);
        const Drawn face([&](QPainter& painter, const QRectF& rect, const FaceContext& c) {
            if (kind == u"github") {
                GitHubFace::paintShown(painter, rect, c, gitHubIn(state));
            } else {
                SmartHomeFace::paintBoard(painter, rect, c, homeIn(state));
            }
        });
        const QString spill = tw::test::spillOf(face, context);
        QVERIFY2(spill.isEmpty(), qPrintable(spill));
    }

    // The title opens the repository, a figure its page, a line its item; a card of a light
    // toggles it while the link is live, unless the person keeps clicks from switching.
    void spots() {
        const NullSymbolProvider symbols;
        FaceContext context = contextOf(u"github"_qs, WidgetSize::large, symbols, {});
        const QRectF rect(0, 0, 176, 176);
        const GitHubFace::Shown shown = gitHubIn(u"live"_qs);
        QCOMPARE(GitHubFace::spotIn(rect, {60, 10}, context, shown).link,
                 QUrl(u"https://github.com/kde/kate"_qs));
        QCOMPARE(GitHubFace::spotIn(rect, {80, 60}, context, shown).link,
                 QUrl(u"https://github.com/kde/kate/pulls"_qs));
        QVERIFY(!GitHubFace::spotIn(rect, {80, 100}, context, shown).help.isEmpty());
        QVERIFY(!GitHubFace::spotIn(rect, {60, 10}, context, gitHubIn(u"loading"_qs)).link);

        context = contextOf(u"smarthome"_qs, WidgetSize::large, symbols, chosenEntities);
        SmartHomeBoard board = homeIn(u"live"_qs);
        QCOMPARE(SmartHomeFace::spotIn(rect, {20, 60}, context, board).command,
                 u"toggle:light.kitchen"_qs);
        QCOMPARE(SmartHomeFace::spotIn(rect, {150, 60}, context, board).command, QString());
        QCOMPARE(SmartHomeFace::spotIn(rect, {150, 150}, context, board).help,
                 u"Home Assistant does not know light.gone"_qs);
        board.status = SmartHomeStatus::unreachable;
        QCOMPARE(SmartHomeFace::spotIn(rect, {20, 60}, context, board).command, QString());
        context.settings.insert(u"clicks"_qs, u"none"_qs);
        QCOMPARE(SmartHomeFace::spotIn(rect, {20, 60}, context, homeIn(u"live"_qs)).command,
                 QString());
    }

    void stateText_data() {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("unit");
        QTest::addColumn<QString>("deviceClass");
        QTest::addColumn<QString>("text");
        row("temperature", "sensor.t", "21.456", "°C", "temperature", "21.46 °C");
        row("percent", "sensor.h", "46", "%", "humidity", "46%");
        row("door open", "binary_sensor.d", "on", "", "door", "Open");
        row("motion clear", "binary_sensor.m", "off", "", "motion", "Clear");
        row("switch off", "switch.s", "off", "", "", "Off");
        row("unavailable", "light.l", "unavailable", "", "", "Unavailable");
        row("unknown", "sensor.x", "unknown", "", "", "—");
        row("words", "climate.c", "heat_cool", "", "", "Heat cool");
    }
    void stateText() {
        QFETCH(QString, id);
        QFETCH(QString, state);
        QFETCH(QString, unit);
        QFETCH(QString, deviceClass);
        QFETCH(QString, text);
        QCOMPARE(SmartHomeFace::stateText(HaEntity{id, id, state, unit, deviceClass, {}, {}}),
                 text);
    }
};

QTEST_MAIN(TestConnectedFaces)
#include "tst_connectedfaces.moc"
