// Which notices to show where, decided from the feed's own rules and local facts alone: no
// network, no storage, so that every decision can be checked in isolation.
#pragma once

#include "notices/Notice.h"
#include "notices/NoticeContext.h"
#include "notices/NoticeState.h"

#include <QByteArray>
#include <QList>
#include <QSet>

#include <optional>

namespace tw {

class NoticeEngine {
public:
    NoticeEngine() = delete;

    // The notices of a feed document in feed order, the first of each id; empty when the feed
    // is switched off. Nullopt, with the reason in `why`, when the document as a whole cannot be
    // read; a notice or action that cannot be read is lost alone.
    static std::optional<QList<Notice>> decode(const QByteArray& feed, QString* why = nullptr);

    // The notices for `placement`, best first: through the channel's policy, at that
    // placement, eligible, by priority, later start, then id.
    static QList<Notice> notices(const QList<Notice>& feed, Notice::Placement placement,
                                 const NoticeContext& context, const NoticeState& state,
                                 const QSet<QString>& shownThisSession);
    static bool isEligible(const Notice& notice, const NoticeContext& context,
                           const NoticeState& state, const QSet<QString>& shownThisSession);
};

} // namespace tw
