#include "custom/CustomJSON.h"

#include <QJsonArray>
#include <QJsonObject>

namespace tw {

namespace {

QJsonArray titled(const QString& numberKey,
                  std::initializer_list<std::pair<const char*, int>> rows) {
    QJsonArray array;
    for (const auto& [title, number] : rows) {
        array.append(
            QJsonObject{{QStringLiteral("title"), QString::fromUtf8(title)}, {numberKey, number}});
    }
    return array;
}

QJsonArray numbers(std::initializer_list<double> values) {
    QJsonArray array;
    for (const double value : values) {
        array.append(value);
    }
    return array;
}

CustomJSON makePreview() {
    const QJsonArray hours =
        numbers({11.2, 10.8, 10.5, 10.4, 10.9, 12.1, 13.8, 15.6, 17.3, 18.9, 20.2, 21.1,
                 21.8, 22.0, 21.6, 20.7, 19.4, 17.8, 16.3, 15.1, 14.0, 13.2, 12.5, 11.9});
    const QJsonObject document{
        {QStringLiteral("value"), 42},
        {QStringLiteral("name"), QStringLiteral("Example")},
        {QStringLiteral("percent"), 68},
        {QStringLiteral("items"),
         titled(QStringLiteral("count"),
                {{"First", 12}, {"Second", 7}, {"Third", 5}, {"Fourth", 3}})},
        {QStringLiteral("series"), numbers({3, 5, 4, 7, 6, 9, 8, 11, 10, 12})},
        {QStringLiteral("hits"),
         titled(QStringLiteral("points"), {{"Show HN: A calm desktop for your Mac", 412},
                                           {"The state of Swift concurrency", 288},
                                           {"How a tiny database keeps its promises", 196},
                                           {"Why the sky is blue, again", 143}})},
        {QStringLiteral("current"), QJsonObject{{QStringLiteral("temperature_2m"), 21.4}}},
        {QStringLiteral("hourly"), QJsonObject{{QStringLiteral("temperature_2m"), hours}}},
        {QStringLiteral("bitcoin"),
         QJsonObject{{QStringLiteral("usd"), 97342.18}, {QStringLiteral("usd_24h_change"), 2.35}}},
        {QStringLiteral("ethereum"),
         QJsonObject{{QStringLiteral("usd"), 3412.77}, {QStringLiteral("usd_24h_change"), -1.12}}},
        {QStringLiteral("tag_name"), QStringLiteral("swift-6.2-RELEASE")},
        {QStringLiteral("published_at"), QStringLiteral("2025-09-15T17:00:00Z")},
        {QStringLiteral("html_url"), QStringLiteral("https://example.com/releases/6.2")},
        {QStringLiteral("latitude"), 48.21},
        {QStringLiteral("longitude"), 16.37},
        {QStringLiteral("altitude"), 417.6},
        {QStringLiteral("velocity"), 27583.4},
    };
    return CustomJSON{document};
}

} // namespace

const CustomJSON& CustomJSON::preview() {
    static const CustomJSON sample = makePreview();
    return sample;
}

} // namespace tw
