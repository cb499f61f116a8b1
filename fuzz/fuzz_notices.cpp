// The notice feed and the stored memory: whatever bytes arrive, every notice that survives has an
// id and a placement, ids are unique, days are at least 1, and the selection over it keeps to the
// feed's own notices for any placement; the memory reads back what it writes.
#include "Require.h"
#include "notices/NoticeEngine.h"
#include "notices/NoticeState.h"

#include <QByteArray>
#include <QTimeZone>

#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));

    if (const std::optional<QList<tw::Notice>> feed = tw::NoticeEngine::decode(bytes)) {
        QSet<QString> ids;
        for (const tw::Notice& notice : *feed) {
            require(!notice.id.isEmpty(), "a notice without id");
            require(!notice.placements.isEmpty(), "a notice with no placement");
            require(notice.frequency.days >= 1, "days under 1");
            require(!ids.contains(notice.id), "an id twice");
            ids.insert(notice.id);
            (void)tw::Notice::localized(notice.title, QStringLiteral("pt-BR"));
        }
        const tw::NoticeContext context{
            .channel = QStringLiteral("store"),
            .version = QStringLiteral("1.2.3"),
            .language = QStringLiteral("de-AT"),
            .daysInstalled = 3,
            .widgetKinds = {QStringLiteral("clock")},
            .widgetCount = 1,
            .now = QDateTime(QDate(2026, 5, 1), QTime(8, 0), QTimeZone::utc()),
            .userAllows = true,
            .testing = false};
        for (const auto placement : {tw::Notice::Placement::banner, tw::Notice::Placement::menu}) {
            for (const tw::Notice& shown :
                 tw::NoticeEngine::notices(*feed, placement, context, {}, {})) {
                require(ids.contains(shown.id), "a notice not in the feed");
                require(shown.code == std::nullopt, "a code outside the direct channel");
            }
        }
    }

    if (const std::optional<tw::NoticeState> state = tw::NoticeState::fromJson(bytes)) {
        require(tw::NoticeState::fromJson(state->toJson()) == state,
                "the memory does not read back");
    }
    return 0;
}
