#include "lockscreen/LockScreenLayout.h"
#include "lockscreen/LockScreenPolicy.h"
#include "lockscreen/LockScreenSystemUI.h"

#include <QTest>

using namespace tw;
namespace Layout = LockScreenLayout;

namespace {

WidgetInstance widget(const QString& kind, WidgetSize size, WidgetSettings settings = {}) {
    WidgetInstance instance;
    instance.kind = kind;
    instance.size = size;
    if (!settings.isEmpty()) {
        instance.settings = settings;
    }
    return instance;
}

QRectF pointsRect(const WidgetInstance& instance, const QPointF& centre) {
    const QSizeF size = Layout::pixelSize(instance);
    return {centre - QPointF(size.width() / 2, size.height() / 2), size};
}

} // namespace

class TestLockScreenLayout : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void policy_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("choice");
        QTest::addColumn<bool>("shows");
        QTest::addColumn<bool>("warns");
        QTest::newRow("public") << "clock"
                                << "" << true << false;
        QTest::newRow("public hidden by hand") << "weather"
                                               << "hide" << false << false;
        QTest::newRow("personal") << "clipboard"
                                  << "" << false << true;
        QTest::newRow("personal shown by hand still warns") << "stickynote"
                                                            << "show" << true << true;
        QTest::newRow("not a choice keeps the default") << "calendar"
                                                        << "yes" << false << true;
        QTest::newRow("unknown kind stays off") << "custom.mine"
                                                << "" << false << false;
        QTest::newRow("warned yet not listed as personal") << "appusage"
                                                           << "" << false << true;
    }
    void policy() {
        QFETCH(QString, kind);
        QFETCH(QString, choice);
        WidgetSettings settings;
        if (!choice.isEmpty()) {
            settings.insert(LockScreenPolicy::overrideKey, choice);
        }
        QFETCH(bool, shows);
        QFETCH(bool, warns);
        QCOMPARE(LockScreenPolicy::shows(widget(kind, WidgetSize::small, settings)), shows);
        QCOMPARE(LockScreenPolicy::privacyNote(kind).has_value(), warns);
    }

    void collisions_data() {
        QTest::addColumn<QRectF>("unit");
        QTest::addColumn<QStringList>("regions");
        QTest::newRow("top-left corner") << QRectF(0, 0, 0.1, 0.1) << QStringList();
        QTest::newRow("touching the clock's left edge")
            << QRectF(0.18, 0.1, 0.10, 0.05) << QStringList{QStringLiteral("clock")};
        QTest::newRow("just short of it") << QRectF(0.18, 0.1, 0.0999, 0.05) << QStringList();
        QTest::newRow("down the middle")
            << QRectF(0.45, 0.0, 0.1, 1.0)
            << QStringList{QStringLiteral("clock"), QStringLiteral("login"),
                           QStringLiteral("footer")};
        QTest::newRow("between clock and login") << QRectF(0.3, 0.27, 0.4, 0.06) << QStringList();
    }
    void collisions() {
        QFETCH(QRectF, unit);
        QFETCH(QStringList, regions);
        QCOMPARE(LockScreenSystemUI::collisions(unit), regions);
    }

    void isLegal_data() {
        QTest::addColumn<QPointF>("centre");
        QTest::addColumn<bool>("legal");
        // A small tile (96 points) on a 1000 × 1000 screen.
        QTest::newRow("flush with the top-left corner") << QPointF(48, 48) << true;
        QTest::newRow("past the left edge") << QPointF(47, 48) << false;
        QTest::newRow("beyond 1.0 at the bottom, no region") << QPointF(48, 960) << false;
        QTest::newRow("on the login region") << QPointF(500, 500) << false;
        QTest::newRow("right side, clear") << QPointF(900, 500) << true;
    }
    void isLegal() {
        QFETCH(QPointF, centre);
        QFETCH(bool, legal);
        QCOMPARE(Layout::isLegal(centre, widget(QStringLiteral("clock"), WidgetSize::small),
                                 QSizeF(1000, 1000)),
                 legal);
    }

    void carry_data() {
        QTest::addColumn<double>("pos");
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::addColumn<double>("scale");
        QTest::addColumn<double>("expected");
        QTest::newRow("near edge keeps its distance") << 100.0 << 1000.0 << 2000.0 << 1.0 << 100.0;
        QTest::newRow("near edge, scaled") << 100.0 << 1000.0 << 2000.0 << 2.0 << 200.0;
        QTest::newRow("far edge keeps its distance") << 900.0 << 1000.0 << 2000.0 << 1.0 << 1900.0;
        QTest::newRow("centre band edge") << 570.0 << 1000.0 << 2000.0 << 1.0 << 1070.0;
        QTest::newRow("just past the band") << 571.0 << 1000.0 << 2000.0 << 1.0 << 1571.0;
        QTest::newRow("below the band") << 429.0 << 1000.0 << 2000.0 << 1.0 << 429.0;
        QTest::newRow("no source span") << 300.0 << 0.0 << 2000.0 << 1.0 << 300.0;
    }
    void carry() {
        QFETCH(double, pos);
        QFETCH(double, from);
        QFETCH(double, to);
        QFETCH(double, scale);
        QFETCH(double, expected);
        QCOMPARE(Layout::carry(pos, from, to, scale), expected);
    }

    void positionsTravelBetweenDisplays() {
        // Set on a 1440 × 900 design at the far right, read on 2560 × 1440.
        WidgetSettings settings;
        Layout::store(QPointF(1340, 100), settings, QSizeF(1440, 900));
        WidgetInstance placed = widget(QStringLiteral("clock"), WidgetSize::small, settings);
        QCOMPARE(Layout::position(placed, QSizeF(2560, 1440)), QPointF(2460, 100));
        QVERIFY(!Layout::isInheritingPosition(placed));

        Layout::clearPosition(*placed.settings);
        QVERIFY(Layout::isInheritingPosition(placed));
        QCOMPARE(Layout::position(placed, QSizeF(2560, 1440)), std::nullopt);
        placed.col = 2;
        placed.row = 1;
        // Mirrors the grid from the top-left margin.
        QCOMPARE(Layout::position(placed, QSizeF(2000, 1000)),
                 QPointF(50 + 216 + 48, 25 + 108 + 48));

        placed.settings->insert(Layout::xKey, QStringLiteral("12"));
        placed.settings->insert(Layout::yKey, QStringLiteral("12"));
        placed.settings->insert(Layout::designWidthKey, QStringLiteral("wide"));
        placed.settings->insert(Layout::designHeightKey, QStringLiteral("900"));
        QCOMPARE(Layout::position(placed, QSizeF(2000, 1000)), std::nullopt);
    }

    void size_data() {
        QTest::addColumn<QString>("lockSize");
        QTest::addColumn<WidgetSize>("expected");
        QTest::newRow("none") << "" << WidgetSize::wide;
        QTest::newRow("allowed") << "banner" << WidgetSize::banner;
        QTest::newRow("not allowed for clocks") << "grand" << WidgetSize::wide;
        QTest::newRow("not a size") << "Large" << WidgetSize::wide;
    }
    void size() {
        QFETCH(QString, lockSize);
        WidgetSettings settings;
        if (!lockSize.isEmpty()) {
            settings.insert(Layout::sizeKey, lockSize);
        }
        settings.insert(QStringLiteral("tileScale"), QStringLiteral("1.5"));
        const WidgetInstance clock = widget(QStringLiteral("clock"), WidgetSize::wide, settings);
        QFETCH(WidgetSize, expected);
        QCOMPARE(Layout::size(clock), expected);
        QCOMPARE(Layout::pixelSize(clock), nominalPixelSize(expected) * 1.5);
    }

    void snapCountsFromTheCentre() {
        QCOMPARE(Layout::snap(QPointF(500 + 50, 500 - 60), QSizeF(1000, 1000)),
                 QPointF(500, 500 - 108));
    }

    // Widgets stacked on one spot, on the clock and beyond the screen, with and without positions:
    // whatever is resolved is legal, overlaps nothing, and one already well placed stays put.
    void resolvedPositionsAreLegalAndApart() {
        const QSizeF screen(1440, 900);
        QList<WidgetInstance> widgets;
        const auto add = [&](const QString& kind, WidgetSize size, std::optional<QPointF> at) {
            WidgetSettings settings;
            if (at) {
                Layout::store(*at, settings, screen);
            }
            widgets.append(widget(kind, size, settings));
        };
        add(QStringLiteral("weather"), WidgetSize::large, QPointF(200, 450));
        add(QStringLiteral("clock"), WidgetSize::wide, QPointF(200, 450));
        add(QStringLiteral("battery"), WidgetSize::small, QPointF(720, 100));
        add(QStringLiteral("system"), WidgetSize::huge, QPointF(1500, 1000));
        add(QStringLiteral("clipboard"), WidgetSize::small, QPointF(1000, 100));
        for (int i = 0; i < 8; ++i) {
            add(QStringLiteral("moon"), WidgetSize::small, std::nullopt);
        }
        const QList<Layout::Placement> resolved = Layout::resolvedPositions(widgets, screen);
        QCOMPARE(resolved.size(), widgets.size() - 1);
        QCOMPARE(resolved.front().second, QPointF(200, 450));
        QList<QRectF> taken;
        for (const auto& [id, centre] : resolved) {
            const auto it = std::find_if(widgets.cbegin(), widgets.cend(),
                                         [&](const WidgetInstance& w) { return w.id == id; });
            QVERIFY(it != widgets.cend());
            QVERIFY(it->kind != QStringLiteral("clipboard"));
            QVERIFY2(Layout::isLegal(centre, *it, screen), qPrintable(it->kind));
            QVERIFY2(Layout::isFree(centre, *it, taken), qPrintable(it->kind));
            taken.append(pointsRect(*it, centre));
        }
    }

    void autoArrangeFillsFromTheEdges() {
        const QSizeF screen(1000, 1000);
        QList<WidgetInstance> widgets(12, widget(QStringLiteral("moon"), WidgetSize::small));
        for (WidgetInstance& w : widgets) {
            w.id = QUuid::createUuid();
        }
        const QList<Layout::Placement> arranged = Layout::autoArrange(widgets, screen);
        QCOMPARE(arranged.size(), 12);
        QCOMPARE(arranged.front().second, QPointF(25 + 48, 25 + 48));
        // Eight fit down the left column above 0.97 of the height; the ninth starts on the right.
        QCOMPARE(arranged.at(7).second, QPointF(73, 25 + 7 * 108 + 48));
        QCOMPARE(arranged.at(8).second, QPointF(1000 - 25 - 48, 25 + 48));
        QList<QRectF> taken;
        for (int i = 0; i < arranged.size(); ++i) {
            QVERIFY(Layout::isLegal(arranged.at(i).second, widgets.at(i), screen));
            QVERIFY(Layout::isFree(arranged.at(i).second, widgets.at(i), taken));
            taken.append(pointsRect(widgets.at(i), arranged.at(i).second));
        }
    }

    void nothingFitsOnATinyScreen() {
        const WidgetInstance big = widget(QStringLiteral("system"), WidgetSize::grand);
        QCOMPARE(Layout::nearestLegal(QPointF(50, 50), big, QSizeF(100, 100), {}), std::nullopt);
        QVERIFY(Layout::resolvedPositions({big}, QSizeF(100, 100)).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestLockScreenLayout)
#include "tst_lockscreenlayout.moc"
