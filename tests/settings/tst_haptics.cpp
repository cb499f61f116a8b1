#include "ManualClock.h"
#include "platform/HapticPulse.h"
#include "platform/null/MemoryDefaults.h"
#include "settings/Haptics.h"

#include <QTest>

using namespace std::chrono_literals;

namespace {

// This machine has no haptic device; the fake only counts what would have been felt.
class CountingPulse final : public tw::HapticPulse {
public:
    bool isAvailable() const override { return true; }
    void performAlignment() override { ++count; }
    int count = 0;
};

} // namespace

class TestHaptics : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // A script of calls "a" (align) or "h" (hover) at uptime offsets in milliseconds; the string
    // of what fired: 1 for a pulse, 0 for a call the guard swallowed.
    void guards_data() {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("fired");
        const auto row = [](const char* name, const char* script, const char* fired) {
            QTest::newRow(name) << QString::fromLatin1(script) << QString::fromLatin1(fired);
        };
        row("first align fires", "a0", "1");
        row("align inside 0.04 s", "a0 a39", "10");
        row("align at 0.04 s", "a0 a40", "11");
        row("hover inside 0.09 s", "h0 h89", "10");
        row("hover at 0.09 s", "h0 h90", "11");
        row("one stamp: hover after align", "a0 h50 h90", "101");
        row("one stamp: align after hover", "h0 a40", "11");
        row("swallowed calls do not extend the guard", "a0 a20 a39 a40 a79 a80", "100101");
        row("a drag across many snap lines", "a0 a10 a20 a30 a40 a50 a60 a70 a80", "100010001");
    }
    void guards() {
        QFETCH(QString, script);
        QFETCH(QString, fired);
        tw::MemoryDefaults defaults;
        tw::test::ManualClock clock;
        CountingPulse pulse;
        tw::Haptics haptics(defaults, clock, pulse);
        const auto start = clock.uptime();
        QString seen;
        for (const QString& step : script.split(QLatin1Char(' '))) {
            clock.setUptime(start + std::chrono::milliseconds(step.mid(1).toInt()));
            const int before = pulse.count;
            if (step.startsWith(QLatin1Char('a'))) {
                haptics.align();
            } else {
                haptics.hover();
            }
            seen += pulse.count > before ? QLatin1Char('1') : QLatin1Char('0');
        }
        QCOMPARE(seen, fired);
    }

    void disabledOrSilencedFeelsNothing_data() {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("silenced");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<int>("pulses");
        QTest::newRow("absent key") << QVariant() << false << true << 1;
        QTest::newRow("on") << QVariant(true) << false << true << 1;
        QTest::newRow("off") << QVariant(false) << false << false << 0;
        QTest::newRow("off as INI word")
            << QVariant(QStringLiteral("false")) << false << false << 0;
        QTest::newRow("unknown word")
            << QVariant(QStringLiteral("sometimes")) << false << true << 1;
        QTest::newRow("silenced run") << QVariant(true) << true << true << 0;
    }
    void disabledOrSilencedFeelsNothing() {
        QFETCH(QVariant, stored);
        QFETCH(bool, silenced);
        QFETCH(bool, enabled);
        QFETCH(int, pulses);
        tw::MemoryDefaults defaults;
        if (stored.isValid()) {
            defaults.setValue(tw::Haptics::enabledKey(), stored);
        }
        tw::test::ManualClock clock;
        CountingPulse pulse;
        tw::Haptics haptics(defaults, clock, pulse, [silenced] { return silenced; });
        QCOMPARE(haptics.isEnabled(), enabled);
        haptics.align();
        QCOMPARE(pulse.count, pulses);

        if (silenced) {
            return;
        }
        // Turning haptics on takes effect at once. At the same uptime a second call pulses only
        // if the first left no stamp, which a call that felt nothing must not do.
        defaults.setValue(tw::Haptics::enabledKey(), true);
        haptics.align();
        QCOMPARE(pulse.count, 1);
    }
};

QTEST_GUILESS_MAIN(TestHaptics)
#include "tst_haptics.moc"
