#include "desk/StopwatchState.h"

#include "desk/DeskSettings.h"

#include <cmath>

namespace tw {

namespace {

const QString anchorKey = QStringLiteral("swAnchor");
const QString accKey = QStringLiteral("swAcc");
const QString lapsKey = QStringLiteral("swLaps");
const QString droppedKey = QStringLiteral("swDropped");

// A reading no stopwatch reaches (about 3,000 years) counts as unreadable.
bool plausible(double seconds) {
    return std::isfinite(seconds) && seconds >= 0 && seconds < 1e11;
}

} // namespace

StopwatchState StopwatchState::from(const WidgetSettings& settings) {
    StopwatchState state;
    state.anchor = DeskSettings::moment(settings, anchorKey);
    state.accumulated = std::max(0.0, DeskSettings::seconds(settings, accKey).value_or(0));
    const QStringList laps = settings.value(lapsKey).split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& lap : laps) {
        bool ok = false;
        const double value = lap.trimmed().toDouble(&ok);
        // Totals only grow; one that does not is damage and is left out.
        if (ok && plausible(value) && (state.laps.isEmpty() || value >= state.laps.last())) {
            state.laps.append(value);
        }
    }
    while (state.laps.size() > maxLaps) {
        state.laps.removeFirst();
    }
    const QStringList dropped = settings.value(droppedKey).split(QLatin1Char(','));
    bool countOk = false;
    const int count = dropped.value(0).trimmed().toInt(&countOk);
    if (countOk && count > 0) {
        bool elapsedOk = false;
        const double elapsed = dropped.value(1).trimmed().toDouble(&elapsedOk);
        state.droppedLaps = count;
        state.droppedElapsed = elapsedOk && plausible(elapsed) ? elapsed : 0;
        if (!state.laps.isEmpty()) {
            state.droppedElapsed = std::min(state.droppedElapsed, state.laps.first());
        }
    }
    return state;
}

WidgetSettings StopwatchState::appliedTo(WidgetSettings settings) const {
    for (const QString& key : {anchorKey, accKey, lapsKey, droppedKey}) {
        settings.remove(key);
    }
    if (anchor) {
        settings.insert(anchorKey, DeskSettings::fromMoment(*anchor));
    }
    if (accumulated > 0) {
        settings.insert(accKey, DeskSettings::fromSeconds(accumulated));
    }
    if (!laps.isEmpty()) {
        QStringList texts;
        for (const double lap : laps) {
            texts.append(DeskSettings::fromSeconds(lap));
        }
        settings.insert(lapsKey, texts.join(QLatin1Char(',')));
    }
    if (droppedLaps > 0) {
        settings.insert(droppedKey, QString::number(droppedLaps) + QLatin1Char(',') +
                                        DeskSettings::fromSeconds(droppedElapsed));
    }
    return settings;
}

bool StopwatchState::showsHundredths(const WidgetSettings& settings) {
    return DeskSettings::flag(settings, QStringLiteral("hundredths"));
}

double StopwatchState::elapsed(const QDateTime& now) const {
    if (!anchor) {
        return accumulated;
    }
    // A clock set back before the start counts nothing rather than less than nothing.
    return accumulated + std::max(0.0, static_cast<double>(anchor->msecsTo(now)) / 1000);
}

QList<double> StopwatchState::lapSplits() const {
    QList<double> splits;
    double previous = droppedElapsed;
    for (const double lap : laps) {
        splits.append(lap - previous);
        previous = lap;
    }
    return splits;
}

StopwatchState StopwatchState::toggled(const QDateTime& now) const {
    StopwatchState next = *this;
    if (anchor) {
        next.accumulated = elapsed(now);
        next.anchor.reset();
    } else {
        next.anchor = now;
    }
    return next;
}

StopwatchState StopwatchState::withLap(const QDateTime& now) const {
    StopwatchState next = *this;
    next.laps.append(elapsed(now));
    while (next.laps.size() > maxLaps) {
        next.droppedElapsed = next.laps.takeFirst();
        next.droppedLaps += 1;
    }
    return next;
}

} // namespace tw
