#include "GoldenFile.h"
#include "look/CatalogCounts.h"
#include "look/Theme.h"
#include "model/WidgetAction.h"
#include "model/WidgetRegistry.h"

#include <QTest>

using namespace tw;

namespace {

QString colour(const ThemeColor& c) {
    const auto byte = [](double fraction) {
        return QStringLiteral("%1").arg(qRound(fraction * 255.0), 2, 16, QLatin1Char('0'));
    };
    return QLatin1Char('#') + (byte(c.red) + byte(c.green) + byte(c.blue)).toUpper() +
           QLatin1Char('/') + QString::number(c.opacity);
}

QString themeLine(const char* what, const Theme& t) {
    return QStringList{QLatin1String(what),
                       t.id,
                       QLatin1Char('"') + t.name + QLatin1Char('"'),
                       colour(t.accent),
                       colour(t.surface),
                       colour(t.surfaceElevated),
                       colour(t.textPrimary),
                       colour(t.textSecondary),
                       colour(t.separator)}
        .join(QLatin1Char(' '));
}

QString orDash(const QStringList& words) {
    return words.isEmpty() ? QStringLiteral("-") : words.join(QLatin1Char(','));
}

QString kindLine(const WidgetMetadata& m) {
    QStringList sizes;
    for (const WidgetSize size : m.allowedSizes) {
        sizes << rawValue(size);
    }
    QStringList permissions;
    for (const WidgetPermission permission : m.permissions) {
        permissions << rawValue(permission);
    }
    QStringList traits;
    const std::pair<bool, const char*> flags[]{{!m.hasSettings, "noSettings"},
                                               {m.fullBleed, "fullBleed"},
                                               {m.chromeless, "chromeless"},
                                               {m.typedInto, "typedInto"}};
    for (const auto& [set, name] : flags) {
        if (set) {
            traits << QLatin1String(name);
        }
    }
    const QSet<QString> keys = WidgetRegistry::contentKeys(m.kind);
    QStringList content(keys.cbegin(), keys.cend());
    content.sort();
    const auto role = WidgetAction::defaultRole(m.kind);
    const QString refresh = m.refresh.isNever() ? QStringLiteral("never")
                                                : QString::number(m.refresh.interval()->count());
    return QStringLiteral("kind %1 \"%2\" %3 sizes=%4 default=%5 refresh=%6 %7 max=%8 "
                          "permissions=%9 traits=%10 content=%11 click=%12")
        .arg(m.kind, m.displayName, m.symbol, sizes.join(QLatin1Char(',')), rawValue(m.defaultSize),
             refresh, rawValue(widgetCategoryOf(m.kind)))
        .arg(WidgetRegistry::maxInstances(m.kind))
        .arg(orDash(permissions), orDash(traits), orDash(content),
             role ? rawValue(*role) : QStringLiteral("-"));
}

} // namespace

// The whole catalogue written out as text and compared with a reviewed copy under golden/: a
// changed cell shows as a readable difference.
class TestCatalogue : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void matchesTheReviewedCopy() {
        QStringList lines{CatalogCounts::line()};
        for (const WidgetSize size : allWidgetSizes) {
            const QSizeF points = nominalPixelSize(size);
            lines << QStringLiteral("size %1 %2 \"%3\" %4x%5")
                         .arg(rawValue(size), spanHint(size), label(size))
                         .arg(points.width())
                         .arg(points.height());
        }
        for (const WidgetCategory category : allWidgetCategories) {
            lines << QStringLiteral("category %1 \"%2\" %3")
                         .arg(rawValue(category), title(category), symbol(category));
        }
        for (const WidgetDefinition& definition : WidgetRegistry::all()) {
            lines << kindLine(definition.metadata);
        }
        for (const Theme& theme : Theme::builtIns()) {
            lines << themeLine("theme", theme);
        }
        lines << themeLine("chrome", Theme::appChrome())
              << themeLine("chrome", Theme::appChromeDark());

        // The counts line cites what the rest of the dump lists.
        const auto count = [&lines](const QString& prefix) {
            return QString::number(lines.filter(QRegularExpression(u'^' + prefix + u' ')).size());
        };
        QCOMPARE(lines.first(),
                 QStringLiteral("widgets=%1 sizes=%2 themes=%3")
                     .arg(count(QStringLiteral("kind")), count(QStringLiteral("size")),
                          count(QStringLiteral("theme"))));

        tw::test::compareWithGolden(QStringLiteral(TW_GOLDEN_DIR "/catalogue.txt"), lines);
    }
};

QTEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
