// The faces of shares, coins and exchange rates: every size from every state of their board
// inside the tile, the change drawn in the colour of its direction, and a click on a symbol that
// is not known opening the settings.
#include "FaceSpill.h"
#include "TestRows.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/QuoteKit.h"
#include "market/MarketSample.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"

#include <QTest>
#include <QTimeZone>

using namespace tw;
using namespace tw::test;

Q_DECLARE_METATYPE(tw::WidgetSize)

namespace {

const NullSymbolProvider kSymbols;
const QDateTime kNow(QDate(2026, 11, 24), QTime(15, 30), QTimeZone::utc());

FaceContext contextFor(const QString& kind, WidgetSize size, const MarketBoard* board) {
    FaceContext context =
        FaceContext::forKind(WidgetRegistry::builtInDefinition(kind)->metadata, size);
    context.theme = Theme::defaultTheme();
    context.surface = SurfaceFlags::snapshot();
    context.symbols = &kSymbols;
    context.now = kNow;
    context.market = board;
    return context;
}

// The sample board turned into one of the states a tile can meet.
MarketBoard board(const QString& state) {
    MarketBoard b = sampleMarket(kNow.addSecs(-600));
    const QString apple = QStringLiteral("AAPL");
    const QString bitcoin = CryptoQuote::key(QStringLiteral("bitcoin"), QStringLiteral("usd"));
    const QString euro = QStringLiteral("EUR");
    if (state == QLatin1String("offline")) {
        b.stocks.unreachable.insert(apple);
        b.crypto.unreachable.insert(bitcoin);
        b.currency.failed.insert(euro);
    } else if (state == QLatin1String("unknown") || state == QLatin1String("unreachable") ||
               state == QLatin1String("loading")) {
        b = {};
        QSet<QString>& stocks =
            state == QLatin1String("unknown") ? b.stocks.unknown : b.stocks.unreachable;
        QSet<QString>& coins =
            state == QLatin1String("unknown") ? b.crypto.unknown : b.crypto.unreachable;
        if (state != QLatin1String("loading")) {
            stocks.insert(apple);
            coins.insert(bitcoin);
            b.currency.failed.insert(euro);
        }
    } else if (state == QLatin1String("extreme")) {
        // Prices far beyond any real one, a day without movement, a lone point.
        StockQuote& quote = b.stocks.quotes[apple];
        quote.price = 987654321.5;
        quote.previousClose = 0.000001;
        quote.series = {5, 5, 5};
        quote.name = QString(300, QLatin1Char('W'));
        b.crypto.quotes[bitcoin].price = 0.00000001234;
        b.crypto.quotes[bitcoin].series = {1};
        b.currency.latest[euro].rates[QStringLiteral("USD")] = 123456789.0;
    }
    return b;
}

// The share of the picture in `colour`, give or take a little.
double shareOf(const QImage& image, const QColor& colour) {
    qsizetype hits = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            hits += std::abs(c.red() - colour.red()) + std::abs(c.green() - colour.green()) +
                                std::abs(c.blue() - colour.blue()) <
                            24
                        ? 1
                        : 0;
        }
    }
    return static_cast<double>(hits) / static_cast<double>(image.width() * image.height());
}

QImage paintedFace(const FaceContext& context) {
    QImage image(context.points.toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    FaceRegistry().face(context.kind()).paint(painter, QRectF(QPointF(), context.points), context);
    return image;
}

} // namespace

class TestQuoteFaces : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void staysInside_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("state");
        for (const char* kind : {"stocks", "crypto", "currency"}) {
            const auto definition = WidgetRegistry::builtInDefinition(QLatin1String(kind));
            for (WidgetSize size : definition->metadata.allowedSizes) {
                for (const char* state :
                     {"ready", "offline", "unknown", "unreachable", "loading", "extreme", "none"}) {
                    const QByteArray tag =
                        QByteArray(kind) + '/' + rawValue(size).toUtf8() + '/' + state;
                    row(tag.constData(), kind, size, state);
                }
            }
        }
    }
    void staysInside() {
        QFETCH(QString, kind);
        QFETCH(WidgetSize, size);
        QFETCH(QString, state);
        const MarketBoard b = board(state);
        for (GlassLook::Shade shade : {GlassLook::Shade::Dark, GlassLook::Shade::Light}) {
            FaceContext context =
                contextFor(kind, size, state == QLatin1String("none") ? nullptr : &b);
            context.glass.shade = shade;
            const QString spill = spillOf(FaceRegistry().face(kind), context);
            QVERIFY2(spill.isEmpty(), qPrintable(spill));
        }
    }

    // A day up is drawn in the rising colour and not the falling one, and the other way round.
    void changeTakesItsDirectionsColour_data() {
        QTest::addColumn<double>("price");
        QTest::addColumn<bool>("up");
        row("up", 195.0, true);
        row("down", 180.0, false);
    }
    void changeTakesItsDirectionsColour() {
        QFETCH(double, price);
        QFETCH(bool, up);
        MarketBoard b = sampleMarket(kNow);
        b.stocks.quotes[QStringLiteral("AAPL")].price = price;
        FaceContext context = contextFor(QStringLiteral("stocks"), WidgetSize::wide, &b);
        context.glass.shade = GlassLook::Shade::Light;
        const QImage image = paintedFace(context);
        const double rising = shareOf(image, QuoteKit::rise(context));
        const double falling = shareOf(image, QuoteKit::fall(context));
        QVERIFY2((up ? rising : falling) > 0.002,
                 qPrintable(QString::number(up ? rising : falling)));
        QCOMPARE(up ? falling : rising, 0.0);
    }

    void unknownSymbolOpensSettings() {
        const MarketBoard unknown = board(QStringLiteral("unknown"));
        const MarketBoard ready = board(QStringLiteral("ready"));
        const FaceRegistry faces;
        const WidgetFace& face = faces.face(QStringLiteral("stocks"));
        QVERIFY(face.opensSettingsOnClick(contextFor(u"stocks"_qs, WidgetSize::small, &unknown)));
        QVERIFY(!face.opensSettingsOnClick(contextFor(u"stocks"_qs, WidgetSize::small, &ready)));
        QVERIFY(!face.opensSettingsOnClick(contextFor(u"stocks"_qs, WidgetSize::small, nullptr)));
    }
};

QTEST_MAIN(TestQuoteFaces)
#include "tst_quotefaces.moc"
