#include "desk/TimerState.h"

#include "desk/DeskSettings.h"

#include <algorithm>

namespace tw {

namespace {

const QString minutesKey = QStringLiteral("minutes");
const QString endsKey = QStringLiteral("endsAt");
const QString pausedKey = QStringLiteral("paused");

double secondsBetween(const QDateTime& from, const QDateTime& to) {
    return static_cast<double>(from.msecsTo(to)) / 1000;
}

} // namespace

int TimerState::minutes(const WidgetSettings& settings) {
    return DeskSettings::read(settings, minutesKey, 5, 1, 120);
}

TimerState TimerState::from(const WidgetSettings& settings) {
    TimerState state;
    state.selectedMinutes = minutes(settings);
    const QStringList presets =
        settings.value(QStringLiteral("presets")).split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (presets.size() == int(state.presets.size())) {
        Presets read{};
        bool ok = true;
        for (std::size_t i = 0; i < read.size() && ok; ++i) {
            read.at(i) = presets.at(int(i)).trimmed().toInt(&ok);
            ok = ok && read.at(i) >= 1 && read.at(i) <= 120;
        }
        if (ok) {
            state.presets = read;
        }
    }
    state.label = settings.value(QStringLiteral("label")).trimmed();
    state.endsAt = DeskSettings::moment(settings, endsKey);
    if (!state.endsAt) {
        if (const auto left = DeskSettings::seconds(settings, pausedKey)) {
            state.remainingWhenPaused = std::clamp(*left, 0.0, state.total());
        }
    }
    return state;
}

TimerState::Phase TimerState::phase(const QDateTime& now) const {
    if (endsAt) {
        return *endsAt <= now ? Phase::finished : Phase::running;
    }
    return remainingWhenPaused ? Phase::paused : Phase::idle;
}

double TimerState::remaining(const QDateTime& now) const {
    if (endsAt) {
        return std::max(0.0, secondsBetween(now, *endsAt));
    }
    return remainingWhenPaused.value_or(total());
}

double TimerState::fraction(const QDateTime& now) const {
    return std::clamp(remaining(now) / total(), 0.0, 1.0);
}

WidgetSettings TimerState::toggled(WidgetSettings settings, const QDateTime& now) {
    const TimerState state = from(settings);
    settings.remove(endsKey);
    settings.remove(pausedKey);
    switch (state.phase(now)) {
    case Phase::idle:
    case Phase::paused:
        settings.insert(endsKey, DeskSettings::fromMoment(now.addMSecs(
                                     static_cast<qint64>(state.remaining(now) * 1000))));
        break;
    case Phase::running:
        settings.insert(pausedKey, DeskSettings::fromSeconds(state.remaining(now)));
        break;
    case Phase::finished:
        break;
    }
    return settings;
}

WidgetSettings TimerState::reset(WidgetSettings settings) {
    settings.remove(endsKey);
    settings.remove(pausedKey);
    return settings;
}

WidgetSettings TimerState::withMinutes(WidgetSettings settings, int minutes) {
    settings.insert(minutesKey, QString::number(std::clamp(minutes, 1, 120)));
    return reset(std::move(settings));
}

} // namespace tw
