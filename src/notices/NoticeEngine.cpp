#include "notices/NoticeEngine.h"

#include "notices/NoticePolicy.h"
#include "notices/NoticeVersion.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace tw {

namespace {

void say(QString* why, const QString& text) {
    if (why != nullptr) {
        *why = text;
    }
}

bool audienceHolds(const Notice::Audience& a, const NoticeContext& c) {
    if (!a.channels.isEmpty() && !a.channels.contains(c.channel)) {
        return false;
    }
    if (a.minVersion && NoticeVersion::compare(c.version, *a.minVersion) < 0) {
        return false;
    }
    if (a.maxVersion && NoticeVersion::compare(c.version, *a.maxVersion) > 0) {
        return false;
    }
    if (!a.languages.isEmpty() &&
        !a.languages.contains(c.language.section(QLatin1Char('-'), 0, 0)) &&
        !a.languages.contains(c.language)) {
        return false;
    }
    if ((a.minDaysInstalled && c.daysInstalled < *a.minDaysInstalled) ||
        (a.maxDaysInstalled && c.daysInstalled > *a.maxDaysInstalled)) {
        return false;
    }
    for (const QString& kind : a.hasWidgets) {
        if (!c.widgetKinds.contains(kind)) {
            return false;
        }
    }
    for (const QString& kind : a.lacksWidgets) {
        if (c.widgetKinds.contains(kind)) {
            return false;
        }
    }
    return (!a.minWidgets || c.widgetCount >= *a.minWidgets) &&
           (!a.maxWidgets || c.widgetCount <= *a.maxWidgets);
}

} // namespace

std::optional<QList<Notice>> NoticeEngine::decode(const QByteArray& feed, QString* why) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(feed, &error);
    if (error.error != QJsonParseError::NoError) {
        say(why, error.errorString());
        return std::nullopt;
    }
    if (!document.isObject()) {
        say(why, QStringLiteral("the feed is no JSON object"));
        return std::nullopt;
    }
    const QJsonObject root = document.object();
    const QJsonValue disabled = root.value(QStringLiteral("noticesDisabled"));
    const QJsonValue list = root.value(QStringLiteral("notices"));
    if (!disabled.isUndefined() && !disabled.isNull() && !disabled.isBool()) {
        say(why, QStringLiteral("noticesDisabled is no boolean"));
        return std::nullopt;
    }
    if (!list.isUndefined() && !list.isNull() && !list.isArray()) {
        say(why, QStringLiteral("notices is no list"));
        return std::nullopt;
    }
    QList<Notice> out;
    if (disabled.toBool()) {
        return out;
    }
    QSet<QString> seen;
    for (const QJsonValue member : list.toArray()) {
        auto decoded = Notice::fromJson(member);
        auto* notice = std::get_if<Notice>(&decoded);
        if (notice != nullptr && !seen.contains(notice->id)) {
            seen.insert(notice->id);
            out.append(std::move(*notice));
        }
    }
    return out;
}

QList<Notice> NoticeEngine::notices(const QList<Notice>& feed, Notice::Placement placement,
                                    const NoticeContext& context, const NoticeState& state,
                                    const QSet<QString>& shownThisSession) {
    QList<Notice> out;
    for (const Notice& notice : feed) {
        std::optional<Notice> allowed = NoticePolicy::allowed(notice, context.channel);
        if (allowed && allowed->hasPlacement(placement) &&
            isEligible(*allowed, context, state, shownThisSession)) {
            out.append(std::move(*allowed));
        }
    }
    std::stable_sort(out.begin(), out.end(), [](const Notice& a, const Notice& b) {
        if (a.priority != b.priority) {
            return a.priority > b.priority;
        }
        // A missing start counts as the distant past.
        const QDateTime as = a.startsAt.value_or(QDateTime());
        const QDateTime bs = b.startsAt.value_or(QDateTime());
        if (as.isValid() != bs.isValid()) {
            return as.isValid();
        }
        if (as != bs) {
            return as > bs;
        }
        return a.id < b.id;
    });
    return out;
}

bool NoticeEngine::isEligible(const Notice& notice, const NoticeContext& context,
                              const NoticeState& state, const QSet<QString>& shownThisSession) {
    if (!context.userAllows || !notice.isRunning(context.now) || notice.placements.isEmpty() ||
        !audienceHolds(notice.audience, context)) {
        return false;
    }
    if (context.testing) {
        return true;
    }
    const NoticeState::Record record = state.record(notice.id);
    if (record.dismissed) {
        return false;
    }
    // Before the allowance, so that a notice on screen does not vanish because it was shown.
    if (shownThisSession.contains(notice.id)) {
        return true;
    }
    const Notice::Frequency& f = notice.frequency;
    if (f.maxImpressions && record.count >= *f.maxImpressions) {
        return false;
    }
    switch (f.mode) {
    case Notice::Mode::once:
        return record.count == 0;
    case Notice::Mode::everyDays:
        return !record.last || record.last->secsTo(context.now) >= qint64(f.days) * 86400;
    case Notice::Mode::everyLaunch:
    case Notice::Mode::always:
        return true;
    }
    return false;
}

} // namespace tw
