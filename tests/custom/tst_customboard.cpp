#include "TestRows.h"
#include "custom/CustomBoard.h"
#include "readings/ReadingsBoard.h"

#include <QTest>

using namespace tw;
using namespace tw::test;

namespace {

CustomSource at(const char* url, const char* name = nullptr) {
    CustomSource source;
    source.url = QString::fromLatin1(url);
    if (name != nullptr) {
        source.name = QString::fromLatin1(name);
    }
    return source;
}

// "json/error/loading" of a state, e.g. "1/-/L"; "none" for no state.
QString summary(const std::optional<CustomSourceState>& state) {
    if (!state) {
        return QStringLiteral("none");
    }
    return QStringLiteral("%1/%2/%3")
        .arg(state->json ? state->json->root.toVariant().toString() : QStringLiteral("-"))
        .arg(state->error.value_or(QStringLiteral("-")))
        .arg(state->loading ? QStringLiteral("L") : QStringLiteral("-"));
}

} // namespace

class TestCustomBoard : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Sources "m" (main), "a" and "b" (extras) in states given as "json/error/loading", ";"
    // between them, "" for none; the bag's document, named documents and error, and the merged
    // state.
    void readsTheSources_data() {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("bag");
        QTest::addColumn<QString>("merged");
        row("no states", ";;", "-|||-", "none");
        row("main alone, loading", "/-/L;;", "-|||-", "-/-/L");
        row("main good", "1/-/-;;", "1|||-", "1/-/-");
        row("main stale", "1/down/-;;", "1|||down", "1/down/-");
        row("extra failing", "1/-/-;/e503/-;3/-/L", "1||3|e503", "1/e503/L");
        row("main failed, extra good", "/down/-;2/-/-;", "-|2||down", "2/down/-");
        row("extras only", ";2/ea/-;3/eb/-", "-|2|3|ea", "2/ea/-");
    }
    void readsTheSources() {
        QFETCH(QString, given);
        const QStringList states = given.split(u';');
        QFETCH(QString, bag);
        CustomWidgetDefinition definition;
        definition.source = at("https://m.test/");
        definition.extraSources =
            QList<CustomSource>{at("https://a.test/", "a"), at("https://b.test/", "b")};
        CustomBoard board;
        const QList<CustomSource> all = definition.allSources();
        for (qsizetype i = 0; i < all.size(); ++i) {
            if (states[i].isEmpty()) {
                continue;
            }
            const QStringList parts = states[i].split(u'/');
            CustomSourceState state;
            if (!parts[0].isEmpty()) {
                state.json = CustomJSON::parse(parts[0].toUtf8());
            }
            if (parts[1] != u"-") {
                state.error = parts[1];
            }
            state.loading = parts[2] == u"L";
            board.sources.insert(all[i].cacheKey(), state);
        }
        const CustomValueBag values = board.bag(definition, QDateTime(), nullptr);
        const auto text = [](const std::optional<CustomJSON>& json) {
            return json ? json->root.toVariant().toString() : QString();
        };
        const QString got = QStringLiteral("%1|%2|%3|%4")
                                .arg(values.data ? text(values.data) : QStringLiteral("-"))
                                .arg(text(values.named.contains(QStringLiteral("a"))
                                              ? std::optional(values.named[QStringLiteral("a")])
                                              : std::nullopt))
                                .arg(text(values.named.contains(QStringLiteral("b"))
                                              ? std::optional(values.named[QStringLiteral("b")])
                                              : std::nullopt))
                                .arg(values.dataError.value_or(QStringLiteral("-")));
        QCOMPARE(got, bag);
        QTEST(summary(board.sourceState(definition)), "merged");
    }

    // The readings, the machine and the time since boot come into the bag as given.
    void fillsTheMachineValues() {
        CustomBoard board;
        board.host = QStringLiteral("desk");
        board.user = QStringLiteral("ada");
        const QDateTime now(QDate(2026, 3, 14), QTime(10, 0));
        board.bootedAt = now.addSecs(-3600);
        ReadingsBoard readings;
        readings.system = SystemSnapshot{};
        readings.system->cpu = 0.25;
        const CustomValueBag bag = board.bag(CustomWidgetDefinition(), now, &readings);
        QCOMPARE(bag.host, QStringLiteral("desk"));
        QCOMPARE(bag.user, QStringLiteral("ada"));
        QCOMPARE(bag.uptime.count(), 3600.0);
        QCOMPARE(bag.system, readings.system);
        QVERIFY(!bag.battery);
        board.bootedAt = now.addSecs(60);
        QCOMPARE(board.bag(CustomWidgetDefinition(), now, nullptr).uptime.count(), 0.0);
    }
};

QTEST_GUILESS_MAIN(TestCustomBoard)
#include "tst_customboard.moc"
