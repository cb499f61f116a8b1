#include "settings/Formatters.h"

#include <QTest>

#include <thread>
#include <vector>

using tw::Formatters;
using tw::Grouping;

class TestFormatters : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void cachedByPatternAndZone() {
        const auto local = Formatters::date(QStringLiteral("HH:mm"));
        QCOMPARE(Formatters::date(QStringLiteral("HH:mm")), local);
        QCOMPARE(Formatters::date(QStringLiteral("HH:mm"), QByteArray()), local);
        const auto tokyo = Formatters::date(QStringLiteral("HH:mm"), "Asia/Tokyo");
        QVERIFY(tokyo != local);
        QCOMPARE(Formatters::date(QStringLiteral("HH:mm"), "Asia/Tokyo"), tokyo);
        QVERIFY(Formatters::date(QStringLiteral("H:mm"), "Asia/Tokyo") != tokyo);

        const auto grouped = Formatters::number(2, Grouping::on);
        QCOMPARE(Formatters::number(2, Grouping::on), grouped);
        QVERIFY(Formatters::number(2, Grouping::off) != grouped);
        QVERIFY(Formatters::number(1, Grouping::on) != grouped);
        // Held decimals share the formatter of the value they are held to.
        QCOMPARE(Formatters::number(-4, Grouping::on), Formatters::number(0, Grouping::on));
        QCOMPARE(Formatters::number(40, Grouping::off), Formatters::number(15, Grouping::off));
    }

    void datesInTheirZone_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QDateTime>("time");
        QTest::addColumn<QString>("expected");
        const QDateTime noonUtc(QDate(2026, 3, 14), QTime(12, 5), Qt::UTC);
        QTest::newRow("Tokyo") << QStringLiteral("HH:mm") << QByteArray("Asia/Tokyo") << noonUtc
                               << QStringLiteral("21:05");
        QTest::newRow("New York, day and month")
            << QStringLiteral("ddd d MMM HH:mm") << QByteArray("America/New_York") << noonUtc
            << QStringLiteral("Sat 14 Mar 08:05");
        QTest::newRow("next day east")
            << QStringLiteral("d.M. HH:mm") << QByteArray("Pacific/Kiritimati") << noonUtc
            << QStringLiteral("15.3. 02:05");
        QTest::newRow("previous day west")
            << QStringLiteral("d.M. HH:mm") << QByteArray("America/Los_Angeles")
            << noonUtc.addSecs(12 * 3600) << QStringLiteral("14.3. 17:05");
        QTest::newRow("invalid time") << QStringLiteral("HH:mm") << QByteArray("Asia/Tokyo")
                                      << QDateTime() << QStringLiteral("—");
    }
    void datesInTheirZone() {
        QFETCH(QString, pattern);
        QFETCH(QByteArray, zone);
        QFETCH(QDateTime, time);
        QFETCH(QString, expected);
        QCOMPARE(Formatters::date(pattern, zone)->string(time), expected);
    }

    void unknownZoneIsLocalTime() {
        const QDateTime time(QDate(2026, 7, 1), QTime(6, 30), Qt::UTC);
        QCOMPARE(Formatters::date(QStringLiteral("HH:mm"), "Mars/Olympus_Mons")->string(time),
                 time.toLocalTime().toString(QStringLiteral("HH:mm")));
        QVERIFY(!Formatters::date(QStringLiteral("HH:mm"), "Mars/Olympus_Mons")->timeZone());
    }

    void numbers_data() {
        QTest::addColumn<int>("decimals");
        QTest::addColumn<Grouping>("grouping");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("expected");
        QTest::newRow("grouped") << 1 << Grouping::on << 1234567.24
                                 << QStringLiteral("1,234,567.2");
        QTest::newRow("ungrouped")
            << 1 << Grouping::off << 1234567.24 << QStringLiteral("1234567.2");
        QTest::newRow("no decimals rounds") << 0 << Grouping::on << 2.5 << QStringLiteral("3");
        QTest::newRow("negative") << 2 << Grouping::on << -1500.0 << QStringLiteral("-1,500.00");
        QTest::newRow("rounds to zero, no sign")
            << 1 << Grouping::on << -0.04 << QStringLiteral("0.0");
        QTest::newRow("negative zero") << 0 << Grouping::off << -0.0 << QStringLiteral("0");
        QTest::newRow("NaN") << 2 << Grouping::on << std::nan("") << QStringLiteral("—");
        QTest::newRow("infinity") << 0 << Grouping::on << HUGE_VAL << QStringLiteral("—");
        QTest::newRow("decimals held") << -3 << Grouping::off << 9.75 << QStringLiteral("10");
    }
    void numbers() {
        QFETCH(int, decimals);
        QFETCH(Grouping, grouping);
        QFETCH(double, value);
        QFETCH(QString, expected);
        QCOMPARE(Formatters::number(decimals, grouping)->string(value), expected);
    }

    // Every thread asking for the same key gets the one formatter, and none is made twice.
    void sharedAcrossThreads() {
        constexpr int threads = 4;
        constexpr int keys = 16;
        std::vector<std::vector<const tw::DateFormatter*>> seen(threads);
        std::vector<std::thread> workers;
        for (int t = 0; t < threads; ++t) {
            workers.emplace_back([t, &seen] {
                for (int round = 0; round < 200; ++round) {
                    for (int k = 0; k < keys; ++k) {
                        const auto formatter = Formatters::date(
                            QStringLiteral("'k%1' HH:mm:ss").arg(k), "Europe/Berlin");
                        if (round == 0) {
                            seen[t].push_back(formatter.get());
                        }
                        QString text = formatter->string(QDateTime::currentDateTimeUtc());
                        Q_UNUSED(text);
                    }
                }
            });
        }
        for (auto& worker : workers) {
            worker.join();
        }
        for (int t = 1; t < threads; ++t) {
            QCOMPARE(seen[t], seen[0]);
        }
    }

    // Formatters speak the application's language: the default locale set at start-up.
    void madeInTheLaunchLocale() {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const QDateTime time(QDate(2026, 3, 14), QTime(12, 0), Qt::UTC);
        QCOMPARE(Formatters::date(QStringLiteral("d. MMMM"), "Europe/Berlin")->string(time),
                 QStringLiteral("14. März"));
        QCOMPARE(Formatters::number(3, Grouping::on)->string(1234.5), QStringLiteral("1.234,500"));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    }
};

QTEST_GUILESS_MAIN(TestFormatters)
#include "tst_formatters.moc"
