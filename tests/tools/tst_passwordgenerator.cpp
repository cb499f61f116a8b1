#include "TestRows.h"
#include "tools/PasswordGenerator.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>

using namespace tw;
using tw::test::row;

namespace {

RandomSource seeded(quint32 seed) {
    auto generator = std::make_shared<QRandomGenerator>(seed);
    return [generator] { return generator->generate(); };
}

WidgetSettings settingsOf(const QString& text) {
    WidgetSettings settings;
    for (const QString& pair : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        settings.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    }
    return settings;
}

} // namespace

class TestPasswordGenerator : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void recipes_data() {
        QTest::addColumn<QString>("settings");
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("pool"); // every character a password may hold
        QTest::addColumn<double>("bits");
        row("defaults: 82 characters", "", 20, "", 126.95);
        row("lower case only", "upper=false digits=false symbols=false similar=false length=12", 12,
            "abcdefghijklmnopqrstuvwxyz", 56.41);
        row("digits without look-alikes", "lower=false upper=false symbols=false length=10", 10,
            "23456789", 30.0);
        row("no set chosen is lower case",
            "lower=false upper=false digits=false symbols=false "
            "similar=false length=8",
            8, "abcdefghijklmnopqrstuvwxyz", 37.60);
        row("length held to 64", "length=500", 64, "", 406.88);
        row("length held to 8", "length=3", 8, "", 49.68);
        row("unreadable length", "length=lots", 20, "", 126.95);
    }
    void recipes() {
        QFETCH(QString, settings);
        QFETCH(int, length);
        QFETCH(QString, pool);
        QFETCH(double, bits);
        const PasswordRecipe recipe = PasswordRecipe::fromSettings(settingsOf(settings));
        QCOMPARE(recipe.length, length);
        QVERIFY2(std::fabs(recipe.entropyBits(0) - bits) < 0.05,
                 qPrintable(QString::number(recipe.entropyBits(0))));
        const QString allowed = pool.isEmpty() ? recipe.sets().join(QString()) : pool;
        const RandomSource source = seeded(7);
        for (int i = 0; i < 200; ++i) {
            const QString password = PasswordGenerator::make(recipe, {}, source);
            QCOMPARE(password.size(), length);
            for (const QString& set : recipe.sets()) {
                bool found = false;
                for (const QChar c : password) {
                    QVERIFY2(allowed.contains(c), qPrintable(password));
                    found = found || set.contains(c);
                }
                QVERIFY2(found, qPrintable(password));
            }
        }
    }

    // The inclusion and exclusion in entropyBits against counting every password of a recipe
    // small enough to count.
    void entropyCountsOnlyPasswordsWithEverySet() {
        PasswordRecipe recipe = PasswordRecipe::fromSettings(
            settingsOf(QStringLiteral("lower=false upper=false symbols=false similar=false")));
        recipe.length = 3;
        recipe.symbols = true;
        const QStringList sets = recipe.sets();
        const qsizetype pool = sets[0].size() + sets[1].size();
        qint64 valid = 0;
        for (qsizetype a = 0; a < pool; ++a) {
            for (qsizetype b = 0; b < pool; ++b) {
                for (qsizetype c = 0; c < pool; ++c) {
                    const bool digit = a < 10 || b < 10 || c < 10;
                    const bool symbol = a >= 10 || b >= 10 || c >= 10;
                    valid += (digit && symbol) ? 1 : 0;
                }
            }
        }
        QCOMPARE(recipe.entropyBits(0), std::log2(static_cast<double>(valid)));
    }

    void passphrases() {
        const QStringList& words = PasswordGenerator::wordList();
        QVERIFY2(words.size() >= 1024, qPrintable(QString::number(words.size())));
        const PasswordRecipe recipe = PasswordRecipe::fromSettings(
            settingsOf(QStringLiteral("mode=words words=4 separator=dot capitalize=true")));
        const QStringList parts =
            PasswordGenerator::make(recipe, words, seeded(3)).split(QLatin1Char('.'));
        QCOMPARE(parts.size(), 4);
        for (const QString& part : parts) {
            QVERIFY(part[0].isUpper());
            QVERIFY(words.contains(part.toLower()));
        }
        QCOMPARE(recipe.entropyBits(words.size()), 4 * std::log2(double(words.size())));
        QCOMPARE(PasswordRecipe::strength(recipe.entropyBits(words.size())),
                 PasswordRecipe::Strength::fair);
    }

    // A word at or above the largest multiple of n is drawn again, never folded in.
    void biasedWordsAreDrawnAgain() {
        QList<quint32> words = {0xFFFFFFFFU, 0xFFFFFFFEU, 61};
        const RandomSource scripted = [&words] { return words.takeFirst(); };
        QCOMPARE(RandomPick::below(scripted, 62), 61U);
        QVERIFY(words.isEmpty());
    }

    // The system source through `below`: counts of 62 outcomes over many draws stay within
    // what chance allows (chi-square, 61 degrees of freedom; 120 is beyond p = 1e-5).
    void choiceIsUniform() {
        constexpr quint32 n = 62;
        constexpr int draws = 310'000;
        std::array<int, n> counts{};
        const RandomSource source = RandomPick::system();
        for (int i = 0; i < draws; ++i) {
            ++counts[RandomPick::below(source, n)];
        }
        const double expected = double(draws) / n;
        double chi = 0;
        for (const int count : counts) {
            chi += (count - expected) * (count - expected) / expected;
        }
        QVERIFY2(chi < 120, qPrintable(QString::number(chi)));
    }
};

QTEST_GUILESS_MAIN(TestPasswordGenerator)
#include "tst_passwordgenerator.moc"
