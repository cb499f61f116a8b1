#include "app/LaunchArguments.h"

namespace tw {

std::optional<QStringList> LaunchArguments::values(const QString& flag, int count) const {
    const qsizetype index = m_arguments.indexOf(flag);
    if (index < 0 || index + count >= m_arguments.size()) {
        return std::nullopt;
    }
    return m_arguments.mid(index + 1, count);
}

std::optional<QString> LaunchArguments::value(const QString& flag) const {
    if (const auto found = values(flag, 1)) {
        return found->first();
    }
    return std::nullopt;
}

std::optional<QString> LaunchArguments::secondValue(const QString& flag) const {
    const std::optional<QStringList> found = values(flag, 2);
    if (!found || found->at(1).startsWith(QLatin1String("--"))) {
        return std::nullopt;
    }
    return found->at(1);
}

} // namespace tw
