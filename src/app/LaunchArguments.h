// The raw process arguments as the launch chain reads them: exact, case-sensitive whole matches.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tw {

class LaunchArguments {
public:
    explicit LaunchArguments(QStringList arguments)
        : m_arguments(std::move(arguments)) {}

    // Membership of a boolean flag.
    bool has(const QString& flag) const { return m_arguments.contains(flag); }
    // The `count` arguments after the first occurrence of `flag`; nullopt when the flag is
    // absent or fewer follow, so that a value flag without its value counts as absent.
    std::optional<QStringList> values(const QString& flag, int count) const;
    // The single value of `flag`, as values(flag, 1).
    std::optional<QString> value(const QString& flag) const;
    // The argument after the flag's own value, unless there is none or it begins with "--".
    std::optional<QString> secondValue(const QString& flag) const;

    const QStringList& all() const { return m_arguments; }

private:
    QStringList m_arguments;
};

} // namespace tw
