// Every symbol the catalogue names maps to a glyph that the installed Material icon font has.
#include "model/WidgetCategory.h"
#include "model/WidgetRegistry.h"
#include "platform/linux/MaterialSymbolProvider.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>
#include <QRegularExpression>
#include <QTest>

using namespace tw;

class TestMaterialSymbolProvider : public QObject {
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
};

QTEST_MAIN(TestMaterialSymbolProvider)
#include "tst_materialsymbolprovider.moc"
