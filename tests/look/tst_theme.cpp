#include "look/Theme.h"

#include <QJsonDocument>
#include <QSet>
#include <QTest>

using tw::Theme;
using tw::ThemeColor;

Q_DECLARE_METATYPE(tw::ThemeColor)

// The colours themselves are in the catalogue's golden copy; here the rules around them.
class TestTheme : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void hexScanning_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("opacity");
        QTest::addColumn<ThemeColor>("expected");
        const ThemeColor blue{10 / 255.0, 132 / 255.0, 1.0, 1.0};
        QTest::newRow("with #") << "#0A84FF" << 1.0 << blue;
        QTest::newRow("without #, lower case") << "0a84ff" << 1.0 << blue;
        QTest::newRow("blanks, opacity") << "  #FFFFFF \n" << 0.5 << ThemeColor{1, 1, 1, 0.5};
        QTest::newRow("not hex") << "#GGGGGG" << 1.0 << ThemeColor{};
        QTest::newRow("empty") << "" << 1.0 << ThemeColor{};
    }
    void hexScanning() {
        QFETCH(QString, text);
        QFETCH(double, opacity);
        QTEST(ThemeColor::hex(text, opacity), "expected");
    }

    void offeredThemesAreDistinctAndFoundById() {
        QSet<QString> ids;
        QSet<QString> names;
        for (const Theme& theme : Theme::builtIns()) {
            ids.insert(theme.id);
            names.insert(theme.name);
            QCOMPARE(theme.accent.opacity, 1.0);
            QCOMPARE(Theme::builtIn(theme.id), theme);
            QCOMPARE(Theme::fromJson(theme.toJson()), theme);
        }
        QCOMPARE(ids.size(), Theme::builtIns().size());
        QCOMPARE(names.size(), Theme::builtIns().size());
        QCOMPARE(Theme::defaultTheme(), Theme::builtIns().first());
        QCOMPARE(Theme::defaultTheme().id, QStringLiteral("midnight"));
        for (const char* id : {"app-chrome", "app-chrome-dark", "Midnight", ""}) {
            QCOMPARE(Theme::builtIn(QLatin1String(id)), std::nullopt);
        }
        QCOMPARE(Theme::defaultTheme().toJson().value(QStringLiteral("accent")).toObject().keys(),
                 (QStringList{QStringLiteral("blue"), QStringLiteral("green"),
                              QStringLiteral("opacity"), QStringLiteral("red")}));
    }

    void lenientDecoding() {
        const auto decode = [](const char* text) {
            return Theme::fromJson(QJsonDocument::fromJson(QByteArray(text)).object());
        };
        QCOMPARE(decode(R"({"name":"No id"})"), std::nullopt);
        QCOMPARE(decode(R"({"id":7})"), std::nullopt);

        const auto partial =
            decode(R"({"id":"mine","accent":{"red":2,"green":-1,"blue":"x"},"surface":[1,2]})");
        QVERIFY(partial);
        QCOMPARE(partial->name, QStringLiteral("mine"));
        QCOMPARE(partial->accent, (ThemeColor{1.0, 0.0, 0.0, 1.0}));
        QCOMPARE(partial->surface, Theme::defaultTheme().surface);
        QCOMPARE(partial->separator, Theme::defaultTheme().separator);
    }
};

QTEST_GUILESS_MAIN(TestTheme)
#include "tst_theme.moc"
