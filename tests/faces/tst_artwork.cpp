// The built-in artwork: every symbol the catalogue names maps to a glyph that the installed
// Material icon font has, drawn in its rectangle and colour; every wallpaper is drawn, and applied
// at each display's own size.
#include "faces/WallpaperRenderer.h"
#include "model/WidgetCategory.h"
#include "model/WidgetRegistry.h"
#include "platform/DesktopPictureSetter.h"
#include "platform/linux/MaterialSymbolProvider.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

namespace {

// Records what it is asked to show; takes as many displays as it is told to.
class RecordingSetter final : public DesktopPictureSetter {
public:
    QList<Target> displays;
    int takes = 0;
    QStringList shown;

    QList<Target> targets() const override { return displays; }
    int show(const QList<Target>& targets, const QStringList& files) override {
        Q_ASSERT(targets.size() == files.size());
        shown = files;
        return takes;
    }
};

} // namespace

class TestArtwork : public QObject {
    Q_OBJECT

    QRawFont m_font;

private Q_SLOTS:
    void initTestCase() {
        m_font = QRawFont(MaterialSymbolProvider::defaultFontPath(), 24);
        QVERIFY2(m_font.isValid(),
                 "the Material icon font (fonts-material-design-icons-iconfont) is not installed");
    }

    void everyCatalogueSymbolHasAGlyph_data() {
        QTest::addColumn<QString>("symbol");
        for (const WidgetDefinition& definition : WidgetRegistry::all()) {
            QTest::newRow(qPrintable(definition.metadata.kind)) << definition.metadata.symbol;
        }
        for (WidgetCategory category : allWidgetCategories) {
            QTest::newRow(qPrintable(QStringLiteral("category ") + rawValue(category)))
                << symbol(category);
        }
        QTest::newRow("countdown without a date") << QStringLiteral("hourglass");
        for (const char* weather : {"sun.max.fill", "moon.stars.fill", "cloud.rain.fill",
                                    "cloud.snow.fill", "cloud.fog.fill", "cloud.bolt.rain.fill",
                                    "location.slash", "location.fill", "clock.arrow.circlepath"}) {
            QTest::newRow(weather) << QString::fromLatin1(weather);
        }
    }

    void everyCatalogueSymbolHasAGlyph() {
        QFETCH(QString, symbol);
        const MaterialSymbolProvider provider;
        QVERIFY(provider.isLoaded());
        QVERIFY2(provider.hasSymbol(symbol), qPrintable(symbol));
        const char16_t codepoint = MaterialSymbolProvider::codepoint(symbol);
        QVERIFY(m_font.supportsCharacter(QChar(codepoint)));
        // A glyph that exists but is empty would draw nothing.
        const QList<quint32> glyphs = m_font.glyphIndexesForString(QString(QChar(codepoint)));
        QCOMPARE(glyphs.size(), 1);
        QVERIFY(!m_font.pathForGlyph(glyphs.first()).isEmpty());
    }

    void codepointsMatchTheIconNames() {
        // The package's stylesheet lists every icon name with its code point; where it is present,
        // the table must agree with it, so a symbol shows the icon its entry names.
        QFile variables(
            QStringLiteral("/usr/share/fonts-material-design-icons-iconfont/scss/_variables.scss"));
        if (!variables.open(QIODevice::ReadOnly)) {
            QSKIP("the package's code point list is not installed");
        }
        const QString text = QString::fromUtf8(variables.readAll());
        for (const QString& symbol : MaterialSymbolProvider::symbolNames()) {
            const QString name = MaterialSymbolProvider::materialName(symbol);
            const QRegularExpression entry(
                QStringLiteral("\"%1\": ([0-9a-f]+)").arg(QRegularExpression::escape(name)));
            const QRegularExpressionMatch match = entry.match(text);
            QVERIFY2(match.hasMatch(), qPrintable(name));
            QCOMPARE(match.captured(1).toUInt(nullptr, 16),
                     uint(MaterialSymbolProvider::codepoint(symbol)));
        }
    }

    void drawsInsideTheRectInTheColour() {
        const MaterialSymbolProvider provider;
        QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        {
            QPainter painter(&image);
            QVERIFY(provider.drawSymbol(painter, QStringLiteral("clock"), QRectF(16, 16, 32, 32),
                                        QColor(255, 0, 0)));
        }
        int inside = 0;
        for (int y = 0; y < 64; ++y) {
            for (int x = 0; x < 64; ++x) {
                const QRgb pixel = image.pixel(x, y);
                if (qAlpha(pixel) == 0) {
                    continue;
                }
                QVERIFY2(QRect(15, 15, 34, 34).contains(x, y),
                         qPrintable(QStringLiteral("%1,%2").arg(x).arg(y)));
                QCOMPARE(qGreen(pixel), 0);
                ++inside;
            }
        }
        QVERIFY(inside > 100);
    }

    void drawsNothingWithoutAGlyph_data() {
        QTest::addColumn<QString>("font");
        QTest::addColumn<QString>("symbol");
        QTest::newRow("unknown name")
            << MaterialSymbolProvider::defaultFontPath() << "no.such.symbol";
        QTest::newRow("missing font") << "/nonexistent/MaterialIcons.ttf"
                                      << "clock";
    }

    void drawsNothingWithoutAGlyph() {
        QFETCH(QString, font);
        QFETCH(QString, symbol);
        if (!QFileInfo::exists(font)) {
            QTest::ignoreMessage(QtWarningMsg,
                                 QRegularExpression(QStringLiteral("symbol font not readable")));
        }
        const MaterialSymbolProvider provider(font);
        QCOMPARE(provider.isLoaded(), QFileInfo::exists(font));
        QVERIFY(!provider.hasSymbol(symbol));
        QImage image(32, 32, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        const QImage empty = image;
        QPainter painter(&image);
        QVERIFY(!provider.drawSymbol(painter, symbol, QRectF(0, 0, 32, 32), Qt::white));
        painter.end();
        QCOMPARE(image, empty);
    }

    // Each display gets the picture at its own pixel size; displays of one size share a file.
    void applyEverywhere_data() {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QList<QRect>>("displays");
        QTest::addColumn<int>("takes");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("names"); // the names handed to the desktop, in order
        const QRect wide(0, 0, 320, 200);
        const QRect tall(320, 0, 120, 240);
        QTest::newRow("two sizes") << "dunes" << QList<QRect>{wide, tall} << 2 << 2
                                   << "dunes-320x200.png dunes-120x240.png";
        QTest::newRow("twins share a file")
            << "aurora" << QList<QRect>{wide, wide.translated(320, 0)} << 2 << 2
            << "aurora-320x200.png aurora-320x200.png";
        QTest::newRow("the desktop takes fewer") << "meadow" << QList<QRect>{wide, tall} << 1 << 1
                                                 << "meadow-320x200.png meadow-120x240.png";
        QTest::newRow("no display") << "dawn" << QList<QRect>{} << 0 << 0 << "";
        QTest::newRow("unknown id") << "sunset" << QList<QRect>{wide} << 1 << -1 << "";
    }
    void applyEverywhere() {
        QFETCH(QString, id);
        QFETCH(QList<QRect>, displays);
        QFETCH(int, takes);
        QFETCH(QString, names);
        const QStringList files = names.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        RecordingSetter setter;
        for (const QRect& area : displays) {
            setter.displays.append({QStringLiteral("OUT-%1").arg(setter.displays.size()), area});
        }
        setter.takes = takes;
        const QTemporaryDir data;
        const QString folder = data.filePath(QStringLiteral("Wallpapers"));
        QTEST(WallpaperRenderer::applyEverywhere(id, setter, folder), "count");
        QCOMPARE(setter.shown.size(), files.size());
        for (qsizetype i = 0; i < files.size(); ++i) {
            QCOMPARE(setter.shown[i], QDir(folder).filePath(files[i]));
            QCOMPARE(QImage(setter.shown[i]).size(), displays[i].size());
        }
    }

    // Every built-in covers the picture, is more than one colour, and has a unique id; a moving
    // one changes within its loop and is back at its still picture after a whole period, a still
    // one ignores the time.
    void everyWallpaperIsDrawn() {
        QSet<QString> ids;
        int moving = 0;
        for (const Wallpaper& wallpaper : Wallpaper::all()) {
            ids.insert(wallpaper.id);
            const QImage picture = WallpaperRenderer::render(wallpaper, QSize(64, 40));
            QCOMPARE(picture.size(), QSize(64, 40));
            QVERIFY2(picture.pixel(0, 0) != picture.pixel(63, 39), qPrintable(wallpaper.id));
            const QImage later = WallpaperRenderer::render(
                wallpaper, QSize(64, 40), wallpaper.moves() ? wallpaper.period / 3 : 17);
            QVERIFY2((later != picture) == wallpaper.moves(), qPrintable(wallpaper.id));
            if (wallpaper.moves()) {
                ++moving;
                QCOMPARE(WallpaperRenderer::render(wallpaper, QSize(64, 40), wallpaper.period),
                         picture);
            }
        }
        QCOMPARE(moving, 3);
        QCOMPARE(ids.size(), Wallpaper::all().size());
        QVERIFY(WallpaperRenderer::render(Wallpaper::all().first(), QSize(0, 10)).isNull());
        QVERIFY(WallpaperRenderer::render(Wallpaper::all().first(), QSize(20000, 20000)).isNull());
    }
};

QTEST_MAIN(TestArtwork)
#include "tst_artwork.moc"
