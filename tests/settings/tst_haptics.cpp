#include "ManualClock.h"
#include "TestRows.h"
#include "platform/HapticPulse.h"
#include "platform/null/MemoryDefaults.h"
#include "settings/Haptics.h"

#include <QTest>

using namespace std::chrono_literals;
using tw::test::row;

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
    // What the haptics key holds (none, or a value), whether the run is silenced, then a script
    // of calls "a" (align) or "h" (hover) at uptime offsets in milliseconds, "on" storing the key
    // as true; the string of what fired: 1 for a pulse, 0 for a call that felt nothing.
    void guards_data() {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("silenced");
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("fired");
        row("align inside 0.04 s", QVariant(), false, "a0 a39", "10");
        row("align at 0.04 s", QVariant(), false, "a0 a40", "11");
        row("hover inside 0.09 s", QVariant(), false, "h0 h89", "10");
        row("hover at 0.09 s", QVariant(), false, "h0 h90", "11");
        row("one stamp: hover after align", QVariant(), false, "a0 h50 h90", "101");
        row("swallowed calls do not extend the guard", QVariant(), false, "a0 a20 a39 a40 a79 a80",
            "100101");
        // Turning haptics on takes effect at once, and a call that felt nothing left no stamp.
        row("off", QVariant(false), false, "a0 h10 on a10", "001");
        row("unknown word", QVariant(QStringLiteral("sometimes")), false, "a0", "1");
        row("silenced run", QVariant(true), true, "a0 h100", "00");
    }
    void guards() {
        QFETCH(QVariant, stored);
        QFETCH(bool, silenced);
        QFETCH(QString, script);
        tw::MemoryDefaults defaults;
        if (stored.isValid()) {
            defaults.setValue(tw::Haptics::enabledKey(), stored);
        }
        tw::test::ManualClock clock;
        CountingPulse pulse;
        tw::Haptics haptics(defaults, clock, pulse, [silenced] { return silenced; });
        const auto start = clock.uptime();
        QString seen;
        for (const QString& step : script.split(QLatin1Char(' '))) {
            if (step == QLatin1String("on")) {
                defaults.setValue(tw::Haptics::enabledKey(), true);
                continue;
            }
            clock.setUptime(start + std::chrono::milliseconds(step.mid(1).toInt()));
            const int before = pulse.count;
            if (step.startsWith(QLatin1Char('a'))) {
                haptics.align();
            } else {
                haptics.hover();
            }
            seen += pulse.count > before ? QLatin1Char('1') : QLatin1Char('0');
        }
        QTEST(seen, "fired");
    }
};

QTEST_GUILESS_MAIN(TestHaptics)
#include "tst_haptics.moc"
