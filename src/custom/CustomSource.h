// A web address that feeds a custom widget, how often it is fetched, the request headers it
// needs and, for the extra sources, the name tokens and paths reach it by.
#pragma once

#include "custom/CustomWidgetIssue.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QMap>
#include <QString>
#include <QStringView>
#include <QUrl>

#include <chrono>
#include <optional>
#include <variant>

namespace tw {

struct CustomSource {
    static constexpr int minimumRefresh = 60;
    static constexpr int maximumRefresh = 86400;
    static constexpr int defaultRefresh = 900;

    QString url;
    int refreshSeconds = defaultRefresh;
    // May carry secrets (an API key); never written into an exported file.
    std::optional<QMap<QString, QString>> headers;
    std::optional<QString> name;

    // Every key is optional; a field of the wrong JSON type gives nullopt.
    static std::optional<CustomSource> fromJson(const QJsonValue& json);
    QJsonObject toJson() const;

    // `refreshSeconds` held to 60...86400, safe also for a source that was never cleaned.
    std::chrono::duration<double> interval() const;
    // What one fetch state is shared by: the address, and the headers in order of their keys.
    QString cacheKey() const;
    // The address trimmed, the refresh held to its range, an empty header map made absent.
    CustomSource sanitized() const;

    // 1 to 16 characters, each "a" to "z", "0" to "9" or "_".
    static bool isValidName(QStringView name);
    // The address a source may be fetched from: https anywhere, plain http only on the local
    // network; otherwise the issue that says why not.
    static std::variant<QUrl, CustomWidgetIssue> resolve(const QString& text);
    // Loopback, private IPv4 ranges, link-local and ".local"/".localhost" names.
    static bool isLocalHost(const QString& host);

    bool operator==(const CustomSource&) const = default;
};

} // namespace tw
