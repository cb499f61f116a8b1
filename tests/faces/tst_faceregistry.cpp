// Each kind finds its face, and each face asks for time no finer than it shows.
#include "faces/FaceRegistry.h"
#include "model/WidgetRegistry.h"

#include <QTest>

using namespace tw;

namespace {

class FixedFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize, const WidgetSettings&) const override {
        return TimeGrain::Minutes;
    }
    void paint(QPainter&, const QRectF&, const FaceContext&) const override {}
};

QString grainName(const std::optional<TimeGrain>& grain) {
    if (!grain) {
        return QStringLiteral("none");
    }
    return *grain == TimeGrain::Seconds ? QStringLiteral("seconds") : QStringLiteral("minutes");
}

} // namespace

class TestFaceRegistry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void timeKindsHaveFacesOfTheirOwn();
    void otherKindsShareTheGenericFace();
    void addReplacesAFace();
    void grains_data();
    void grains();
};

void TestFaceRegistry::timeKindsHaveFacesOfTheirOwn() {
    const FaceRegistry faces;
    QCOMPARE(faces.kinds(),
             (QStringList{QStringLiteral("clock"), QStringLiteral("countdown"),
                          QStringLiteral("dayprogress"), QStringLiteral("flipclock"),
                          QStringLiteral("simpleclock"), QStringLiteral("wordclock"),
                          QStringLiteral("worldclock"), QStringLiteral("yearprogress")}));
    for (const QString& kind : faces.kinds()) {
        QVERIFY2(WidgetRegistry::builtInDefinition(kind).has_value(), qPrintable(kind));
    }
}

void TestFaceRegistry::otherKindsShareTheGenericFace() {
    const FaceRegistry faces;
    const WidgetFace& generic = faces.face(QStringLiteral("weather"));
    QCOMPARE(&faces.face(QStringLiteral("mirror")), &generic);
    QCOMPARE(&faces.face(QStringLiteral("custom.0000")), &generic);
    QCOMPARE(&faces.face(QString()), &generic);
    QVERIFY(&faces.face(QStringLiteral("clock")) != &generic);
    QVERIFY(!generic.grain(WidgetSize::large, {}).has_value());
}

void TestFaceRegistry::addReplacesAFace() {
    FaceRegistry faces;
    auto face = std::make_unique<FixedFace>();
    const WidgetFace* added = face.get();
    faces.add(QStringLiteral("weather"), std::move(face));
    QVERIFY(faces.hasOwnFace(QStringLiteral("weather")));
    QCOMPARE(&faces.face(QStringLiteral("weather")), added);
}

void TestFaceRegistry::grains_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<WidgetSize>("size");
    QTest::addColumn<WidgetSettings>("settings");
    QTest::addColumn<QString>("grain");
    const WidgetSettings none;
    const WidgetSettings analog{{QStringLiteral("style"), QStringLiteral("analog")}};
    const WidgetSettings noSeconds{{QStringLiteral("seconds"), QStringLiteral("false")}};
    QTest::newRow("digital clock shows seconds")
        << "clock" << WidgetSize::wide << none << "seconds";
    QTest::newRow("small digital clock has no room for them")
        << "clock" << WidgetSize::small << none << "minutes";
    QTest::newRow("analog clock has a second hand")
        << "clock" << WidgetSize::small << analog << "seconds";
    QTest::newRow("seconds switched off") << "clock" << WidgetSize::large << noSeconds << "minutes";
    QTest::newRow("simple clock") << "simpleclock" << WidgetSize::banner << none << "minutes";
    QTest::newRow("flip clock, two cards") << "flipclock" << WidgetSize::wide << none << "minutes";
    QTest::newRow("flip clock, seconds card")
        << "flipclock" << WidgetSize::panorama << none << "seconds";
    QTest::newRow("word clock") << "wordclock" << WidgetSize::grand << none << "minutes";
    QTest::newRow("world clock") << "worldclock" << WidgetSize::huge << none << "minutes";
    QTest::newRow("day progress") << "dayprogress" << WidgetSize::wideTall << none << "minutes";
    QTest::newRow("year progress") << "yearprogress" << WidgetSize::large << none << "minutes";
    QTest::newRow("countdown") << "countdown" << WidgetSize::wide << none << "seconds";
}

void TestFaceRegistry::grains() {
    QFETCH(QString, kind);
    QFETCH(WidgetSize, size);
    QFETCH(WidgetSettings, settings);
    const FaceRegistry faces;
    QTEST(grainName(faces.face(kind).grain(size, settings)), "grain");
}

QTEST_APPLESS_MAIN(TestFaceRegistry)
#include "tst_faceregistry.moc"
