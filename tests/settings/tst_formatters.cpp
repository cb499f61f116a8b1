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

    void datesInTheirZone_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QDateTime>("time");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const char* pattern, const char* zone, QDateTime time,
                            const char* expected) {
            QTest::newRow(name) << QString::fromLatin1(pattern) << QByteArray(zone) << time
                                << QString::fromUtf8(expected);
        };
        const QDateTime noonUtc(QDate(2026, 3, 14), QTime(12, 5), Qt::UTC);
        row("Tokyo", "HH:mm", "Asia/Tokyo", noonUtc, "21:05");
        row("New York, day and month", "ddd d MMM HH:mm", "America/New_York", noonUtc,
            "Sat 14 Mar 08:05");
        row("next day east", "d.M. HH:mm", "Pacific/Kiritimati", noonUtc, "15.3. 02:05");
        row("previous day west", "d.M. HH:mm", "America/Los_Angeles", noonUtc.addSecs(12 * 3600),
            "14.3. 17:05");
        row("invalid time", "HH:mm", "Asia/Tokyo", QDateTime(), "—");
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
        const auto row = [](const char* name, int decimals, Grouping grouping, double value,
                            const char* expected) {
            QTest::newRow(name) << decimals << grouping << value << QString::fromUtf8(expected);
        };
        row("grouped", 1, Grouping::on, 1234567.24, "1,234,567.2");
        row("ungrouped", 1, Grouping::off, 1234567.24, "1234567.2");
        row("no decimals rounds", 0, Grouping::on, 2.5, "3");
        row("negative", 2, Grouping::on, -1500.0, "-1,500.00");
        row("rounds to zero, no sign", 1, Grouping::on, -0.04, "0.0");
        row("negative zero", 0, Grouping::off, -0.0, "0");
        row("NaN", 2, Grouping::on, std::nan(""), "—");
        row("infinity", 0, Grouping::on, HUGE_VAL, "—");
        row("decimals held at 0", -3, Grouping::off, 9.75, "10");
        row("decimals held at 15", 40, Grouping::off, 0.5, "0.500000000000000");
    }
    void numbers() {
        QFETCH(int, decimals);
        QFETCH(Grouping, grouping);
        QFETCH(double, value);
        QFETCH(QString, expected);
        QCOMPARE(Formatters::number(decimals, grouping)->string(value), expected);
    }

    // Formatters are cached by pattern and zone: every thread asking for the same key gets the one
    // formatter, and none is made twice.
    void sharedAcrossThreads() {
        constexpr int threads = 4;
        constexpr int keys = 16;
        std::vector<std::vector<const tw::DateFormatter*>> seen(threads);
        std::vector<std::thread> workers;
        for (int t = 0; t < threads; ++t) {
            workers.emplace_back([&seen = seen[t]] {
                for (int round = 0; round < 200 * keys; ++round) {
                    const auto formatter = Formatters::date(
                        QStringLiteral("'k%1' HH:mm:ss").arg(round % keys), "Europe/Berlin");
                    if (round < keys) {
                        seen.push_back(formatter.get());
                    }
                    const QString text = formatter->string(QDateTime::currentDateTimeUtc());
                    Q_UNUSED(text);
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
};

QTEST_GUILESS_MAIN(TestFormatters)
#include "tst_formatters.moc"
