#include "custom/CustomBoard.h"

#include "model/JsonCoding.h"
#include "readings/ReadingsBoard.h"

namespace tw {

const CustomWidgetDefinition* CustomBoard::definition(const QString& kind) const {
    const auto found = definitions.constFind(kind);
    return found == definitions.cend() ? nullptr : &found.value();
}

CustomValueBag CustomBoard::bag(const CustomWidgetDefinition& definition, const QDateTime& now,
                                const ReadingsBoard* readings) const {
    CustomValueBag bag;
    bag.now = now;
    if (readings != nullptr) {
        bag.battery = readings->battery;
        bag.system = readings->system;
    }
    bag.host = host;
    bag.user = user;
    if (bootedAt && now.isValid()) {
        bag.uptime =
            std::chrono::duration<double>(std::max<qint64>(0, bootedAt->msecsTo(now)) / 1000.0);
    }
    if (definition.source) {
        const auto state = sources.constFind(definition.source->cacheKey());
        if (state != sources.cend()) {
            bag.data = state->json;
            bag.dataError = state->error;
        }
    }
    for (const CustomSource& extra : definition.extraSources.value_or(QList<CustomSource>())) {
        const auto state = sources.constFind(extra.cacheKey());
        if (!extra.name || state == sources.cend()) {
            continue;
        }
        if (state->json) {
            bag.named.insert(*extra.name, *state->json);
        }
        if (!bag.dataError) {
            bag.dataError = state->error;
        }
    }
    return bag;
}

std::optional<CustomSourceState>
CustomBoard::sourceState(const CustomWidgetDefinition& definition) const {
    QList<CustomSourceState> states;
    for (const CustomSource& source : definition.allSources()) {
        const auto state = sources.constFind(source.cacheKey());
        if (state != sources.cend()) {
            states.append(*state);
        }
    }
    return CustomSourceState::merged(states);
}

QString CustomBoard::historyKey(const CustomWidgetDefinition& definition, int row, int element) {
    return JsonCoding::encodeUuid(definition.id) + u'|' + QString::number(row) + u'|' +
           QString::number(element);
}

} // namespace tw
