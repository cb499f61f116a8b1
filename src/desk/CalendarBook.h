// The bookkeeping both calendar services share: one reading per filter, when each was fetched,
// which fetch is current, and room for a few filters only, the least recently used going first.
#pragma once

#include "desk/CalendarReading.h"

#include <QDateTime>
#include <QHash>
#include <QString>

#include <chrono>
#include <optional>

namespace tw {

template <typename Filter, typename Item>
class CalendarBook {
public:
    // Filters kept at most; one more evicts the least recently used.
    static constexpr int mostFilters = 5;
    static constexpr std::chrono::seconds freshFor{60};
    // A failed fetch is tried again sooner.
    static constexpr std::chrono::seconds freshAfterErrorFor{30};

    // Notes the use of `filter` at `now` and tells whether it should be fetched now.
    bool wantsFetch(const Filter& filter, const QDateTime& now) {
        Bookkeeping& book = m_book[filter];
        book.lastUsed = now;
        evictIfNeeded(filter);
        if (book.fetching) {
            return false;
        }
        if (book.lastFetch) {
            const auto limit =
                reading(filter).state == CalendarState::error ? freshAfterErrorFor : freshFor;
            if (book.lastFetch->secsTo(now) < limit.count() && *book.lastFetch <= now) {
                return false;
            }
        }
        return true;
    }

    // A fetch of `filter` begins; its generation is what `apply` must be handed back.
    quint64 begin(const Filter& filter) {
        Bookkeeping& book = m_book[filter];
        book.fetching = true;
        book.generation = ++m_nextGeneration;
        CalendarReading<Item>& shown = m_readings[filter];
        if (!shown.lastGood) {
            shown.state = CalendarState::loading;
        }
        return book.generation;
    }

    // The result of the fetch `generation` of `filter`; false when a newer fetch or an eviction
    // made it moot.
    bool apply(const Filter& filter, quint64 generation, const QList<Item>& items,
               const QString& error, const QDateTime& now) {
        const auto found = m_book.find(filter);
        if (found == m_book.end() || found->generation != generation) {
            return false;
        }
        found->fetching = false;
        found->lastFetch = found->staleAgain ? std::nullopt : std::optional<QDateTime>(now);
        found->staleAgain = false;
        CalendarReading<Item>& shown = m_readings[filter];
        if (error.isEmpty()) {
            shown = {CalendarState::ready, {}, items};
        } else {
            shown.state = CalendarState::error;
            shown.message = error;
        }
        return true;
    }

    QList<Filter> filters() const { return m_book.keys(); }
    // The next `wantsFetch` of the filters `which` says yes to says yes; one being fetched is
    // fetched again after, since what it read may be from before the change.
    template <typename Which>
    void markStale(const Which& which) {
        for (auto it = m_book.begin(); it != m_book.end(); ++it) {
            if (which(it.key())) {
                it->lastFetch.reset();
                it->staleAgain = it->fetching;
            }
        }
    }

    CalendarReading<Item> reading(const Filter& filter) const { return m_readings.value(filter); }
    const QHash<Filter, CalendarReading<Item>>& readings() const { return m_readings; }

private:
    struct Bookkeeping {
        std::optional<QDateTime> lastFetch;
        bool fetching = false;
        bool staleAgain = false;
        quint64 generation = 0;
        QDateTime lastUsed;
    };

    void evictIfNeeded(const Filter& keeping) {
        while (m_book.size() > mostFilters) {
            auto oldest = m_book.end();
            for (auto it = m_book.begin(); it != m_book.end(); ++it) {
                if (!(it.key() == keeping) &&
                    (oldest == m_book.end() || it->lastUsed < oldest->lastUsed)) {
                    oldest = it;
                }
            }
            m_readings.remove(oldest.key());
            m_book.erase(oldest);
        }
    }

    QHash<Filter, Bookkeeping> m_book;
    QHash<Filter, CalendarReading<Item>> m_readings;
    quint64 m_nextGeneration = 0;
};

} // namespace tw
