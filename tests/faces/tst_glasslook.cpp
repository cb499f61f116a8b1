// The tile's glass follows the theme store: style, strength and the tint against the system.
#include "ManualClock.h"
#include "faces/FaceContext.h"
#include "faces/GlassLook.h"
#include "platform/null/MemoryDefaults.h"

#include <QTemporaryDir>
#include <QTest>

using namespace tw;

class TestGlassLook : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fromStore_data() {
        QTest::addColumn<ThemeStore::GlassStyle>("style");
        QTest::addColumn<double>("strength");
        QTest::addColumn<ThemeStore::GlassTint>("tint");
        QTest::addColumn<ThemeStore::SystemAppearance>("system");
        QTest::addColumn<GlassLook>("expected");
        using Style = ThemeStore::GlassStyle;
        using Tint = ThemeStore::GlassTint;
        using System = ThemeStore::SystemAppearance;
        QTest::newRow("defaults") << Style::Frosted << 0.0 << Tint::Dark << System::Light
                                  << GlassLook{GlassLook::Finish::Frosted, 0.0,
                                               GlassLook::Shade::Dark};
        QTest::newRow("clear and light")
            << Style::Clear << 0.4 << Tint::Light << System::Dark
            << GlassLook{GlassLook::Finish::Clear, 0.4, GlassLook::Shade::Light};
        QTest::newRow("liquid") << Style::Liquid << 1.0 << Tint::Dark << System::Dark
                                << GlassLook{GlassLook::Finish::Liquid, 1.0,
                                             GlassLook::Shade::Dark};
        // Automatic takes the system's darkness as it stands, as the store defines it.
        QTest::newRow("automatic on a dark system")
            << Style::Frosted << 0.0 << Tint::Auto << System::Dark
            << GlassLook{GlassLook::Finish::Frosted, 0.0, GlassLook::Shade::Light};
        QTest::newRow("automatic on a light system")
            << Style::Frosted << 0.0 << Tint::Auto << System::Light
            << GlassLook{GlassLook::Finish::Frosted, 0.0, GlassLook::Shade::Dark};
    }

    void fromStore() {
        QFETCH(ThemeStore::GlassStyle, style);
        QFETCH(double, strength);
        QFETCH(ThemeStore::GlassTint, tint);
        QFETCH(ThemeStore::SystemAppearance, system);
        QTemporaryDir dir;
        MemoryDefaults defaults;
        tw::test::ManualClock clock;
        ThemeStore store(defaults, clock, dir.filePath(QStringLiteral("theme.json")));
        store.setGlassStyle(style);
        store.setGlassStrength(strength);
        store.setGlassTint(tint);
        QTEST(GlassLook::from(store, system), "expected");
    }

    // Content takes dark ink on light glass and over a bright lens, light ink otherwise.
    void inkFollowsWhatShowsThrough_data() {
        QTest::addColumn<GlassLook::Shade>("shade");
        QTest::addColumn<bool>("brightBehind");
        QTest::addColumn<bool>("dark");
        QTest::newRow("dark glass") << GlassLook::Shade::Dark << false << false;
        QTest::newRow("light glass") << GlassLook::Shade::Light << false << true;
        QTest::newRow("dark glass over a bright lens") << GlassLook::Shade::Dark << true << true;
    }

    void inkFollowsWhatShowsThrough() {
        QFETCH(GlassLook::Shade, shade);
        QFETCH(bool, brightBehind);
        QFETCH(bool, dark);
        FaceContext context;
        context.theme = Theme::defaultTheme();
        context.glass = {GlassLook::Finish::Liquid, 0.0, shade, brightBehind};
        QCOMPARE(context.glass.darkInk(), dark);
        QCOMPARE(context.primary().lightness() < 128, dark);
        QCOMPARE(context.secondary().lightness() < 128, dark);
    }
};

QTEST_GUILESS_MAIN(TestGlassLook)
#include "tst_glasslook.moc"
