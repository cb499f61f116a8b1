// Each kind finds its face, and each face asks for time no finer than it shows.
#include "TestRows.h"
#include "faces/FaceRegistry.h"
#include "model/WidgetRegistry.h"

#include <QTest>

using namespace tw;

namespace {

using tw::test::row;

class FixedFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize, const WidgetSettings&) const override {
        return TimeGrain::Minutes;
    }
    void paint(QPainter&, const QRectF&, const FaceContext&) const override {}
};

} // namespace

class TestFaceRegistry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Faces of their own are for catalogue kinds that show the time or the machine's readings.
    void ownFacesAreCatalogueKinds() {
        const FaceRegistry faces;
        QVERIFY(!faces.kinds().isEmpty());
        for (const QString& kind : faces.kinds()) {
            QVERIFY2(WidgetRegistry::builtInDefinition(kind).has_value(), qPrintable(kind));
            // Woken by a clock or by readings, never both; or by the weather it shows.
            const WidgetFace& face = faces.face(kind);
            const bool clocked = face.grain(WidgetSize::large, {}).has_value();
            const bool read = face.feeds(WidgetSize::large, {}) != ReadingFeeds();
            QVERIFY2(!(clocked && read), qPrintable(kind));
            QVERIFY2(clocked || read || face.showsWeather({}), qPrintable(kind));
        }
    }

    void addReplacesAFace() {
        FaceRegistry faces;
        auto face = std::make_unique<FixedFace>();
        const WidgetFace* added = face.get();
        faces.add(QStringLiteral("weather"), std::move(face));
        QVERIFY(faces.hasOwnFace(QStringLiteral("weather")));
        QCOMPARE(&faces.face(QStringLiteral("weather")), added);
    }

    // "none": the generic face, shared by every kind without one of its own.
    void grains_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<WidgetSettings>("settings");
        QTest::addColumn<QString>("grain");
        const WidgetSettings none;
        const WidgetSettings analog{{QStringLiteral("style"), QStringLiteral("analog")}};
        const WidgetSettings noSeconds{{QStringLiteral("seconds"), QStringLiteral("false")}};
        row("digital clock shows seconds", "clock", WidgetSize::wide, none, "seconds");
        row("small digital clock has no room for them", "clock", WidgetSize::small, none,
            "minutes");
        row("analog clock has a second hand", "clock", WidgetSize::small, analog, "seconds");
        row("seconds switched off", "clock", WidgetSize::large, noSeconds, "minutes");
        row("simple clock", "simpleclock", WidgetSize::banner, none, "minutes");
        row("flip clock, two cards", "flipclock", WidgetSize::wide, none, "minutes");
        row("flip clock, seconds card", "flipclock", WidgetSize::panorama, none, "seconds");
        row("word clock", "wordclock", WidgetSize::grand, none, "minutes");
        row("world clock", "worldclock", WidgetSize::huge, none, "minutes");
        row("day progress", "dayprogress", WidgetSize::wideTall, none, "minutes");
        row("year progress", "yearprogress", WidgetSize::large, none, "minutes");
        row("countdown", "countdown", WidgetSize::wide, none, "seconds");
        row("weather turns to night by the minute", "weather", WidgetSize::large, none, "minutes");
        row("mirror", "mirror", WidgetSize::large, none, "none");
        row("readings wake no clock", "network", WidgetSize::grand, none, "none");
        row("nor does the air, woken by its weather", "airquality", WidgetSize::large, none,
            "none");
        row("moon", "moon", WidgetSize::small, none, "minutes");
        row("world map", "worldmap", WidgetSize::panorama, none, "minutes");

        row("a custom widget", "custom.0000", WidgetSize::large, none, "minutes");
        row("no kind", "", WidgetSize::large, none, "none");
    }
    void grains() {
        QFETCH(QString, kind);
        QFETCH(WidgetSize, size);
        QFETCH(WidgetSettings, settings);
        QFETCH(QString, grain);
        const FaceRegistry faces;
        const std::optional<TimeGrain> asked = faces.face(kind).grain(size, settings);
        QCOMPARE(!asked                         ? QStringLiteral("none")
                 : *asked == TimeGrain::Seconds ? QStringLiteral("seconds")
                                                : QStringLiteral("minutes"),
                 grain);
        const WidgetFace& face = faces.face(kind);
        QCOMPARE(faces.hasOwnFace(kind) && !face.feeds(size, settings) &&
                     !face.showsWeather(settings),
                 grain != QLatin1String("none") && !face.showsWeather(settings));
    }
};

QTEST_APPLESS_MAIN(TestFaceRegistry)
#include "tst_faceregistry.moc"
