#include "updates/SemanticVersion.h"

#include <QRegularExpression>

namespace tw {

namespace {

bool isNumeric(const QString& identifier) {
    return !identifier.isEmpty() && std::all_of(identifier.begin(), identifier.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
}

std::optional<quint64> number(const QString& text) {
    if (!isNumeric(text) || (text.size() > 1 && text.front() == QLatin1Char('0'))) {
        return std::nullopt;
    }
    bool ok = false;
    const quint64 value = text.toULongLong(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

// Numeric identifiers rank below alphanumeric ones and compare as numbers; a longer list wins
// when all before are equal.
std::strong_ordering comparePreRelease(const QStringList& a, const QStringList& b) {
    if (a.isEmpty() || b.isEmpty()) {
        // A release ranks above any of its pre-releases.
        return b.size() <=> a.size();
    }
    for (qsizetype i = 0; i < std::min(a.size(), b.size()); ++i) {
        const bool aNumeric = isNumeric(a[i]);
        const bool bNumeric = isNumeric(b[i]);
        if (aNumeric && bNumeric) {
            // Longer digit strings are larger numbers: no overflow for any length.
            if (const auto bySize = a[i].size() <=> b[i].size(); bySize != 0) {
                return bySize;
            }
        } else if (aNumeric != bNumeric) {
            return aNumeric ? std::strong_ordering::less : std::strong_ordering::greater;
        }
        const int order = a[i].compare(b[i]);
        if (order != 0) {
            return order < 0 ? std::strong_ordering::less : std::strong_ordering::greater;
        }
    }
    return a.size() <=> b.size();
}

} // namespace

std::optional<SemanticVersion> SemanticVersion::parse(const QString& text) {
    QString rest = text.trimmed();
    if (rest.isEmpty() || rest.size() > maxLength) {
        return std::nullopt;
    }
    if (rest.front() == QLatin1Char('v') || rest.front() == QLatin1Char('V')) {
        rest.remove(0, 1);
    }
    if (const qsizetype plus = rest.indexOf(QLatin1Char('+')); plus >= 0) {
        static const QRegularExpression build(QStringLiteral("^[0-9A-Za-z-]+(\\.[0-9A-Za-z-]+)*$"));
        if (!build.match(rest.mid(plus + 1)).hasMatch()) {
            return std::nullopt;
        }
        rest.truncate(plus);
    }
    SemanticVersion version;
    if (const qsizetype dash = rest.indexOf(QLatin1Char('-')); dash >= 0) {
        version.preRelease = rest.mid(dash + 1).split(QLatin1Char('.'));
        rest.truncate(dash);
        static const QRegularExpression identifier(QStringLiteral("^[0-9A-Za-z-]+$"));
        for (const QString& part : std::as_const(version.preRelease)) {
            if (!identifier.match(part).hasMatch() ||
                (isNumeric(part) && part.size() > 1 && part.front() == QLatin1Char('0'))) {
                return std::nullopt;
            }
        }
    }
    const QStringList parts = rest.split(QLatin1Char('.'));
    if (parts.size() > 3) {
        return std::nullopt;
    }
    quint64* fields[] = {&version.major, &version.minor, &version.patch};
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const std::optional<quint64> value = number(parts[i]);
        if (!value) {
            return std::nullopt;
        }
        *fields[i] = *value;
    }
    return version;
}

QString SemanticVersion::toString() const {
    QString text = QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(patch);
    if (isPreRelease()) {
        text += QLatin1Char('-') + preRelease.join(QLatin1Char('.'));
    }
    return text;
}

std::strong_ordering SemanticVersion::operator<=>(const SemanticVersion& other) const {
    if (const auto order =
            std::tie(major, minor, patch) <=> std::tie(other.major, other.minor, other.patch);
        order != 0) {
        return order;
    }
    return comparePreRelease(preRelease, other.preRelease);
}

} // namespace tw
