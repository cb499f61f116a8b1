#include "platform/linux/ICalReader.h"

#include <QHash>

#include <algorithm>
#include <libical/ical.h>
#include <memory>
#include <mutex>
#include <set>

namespace tw {
namespace {

struct ComponentFree {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, ComponentFree>;

Component parse(const QByteArray& text) {
    // A malformed line is libical's to skip, never a reason to abort the process.
    static std::once_flag quiet;
    std::call_once(quiet, [] { icalerror_set_errors_are_fatal(0); });
    // libical reads up to a NUL; bytes handed in raw may have none at their end.
    const QByteArray terminated(text.constData(), text.size());
    return Component(icalparser_parse_string(terminated.constData()));
}

QString textOf(const char* value) {
    return value != nullptr ? QString::fromUtf8(value).trimmed() : QString();
}

const char* tzidOf(icalproperty* property) {
    icalparameter* parameter = property != nullptr
                                   ? icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER)
                                   : nullptr;
    return parameter != nullptr ? icalparameter_get_tzid(parameter) : nullptr;
}

// Turns the times of one calendar into moments: UTC as written, a zone the file describes by
// its own rules, a zone known by name, else the reader's zone (floating times and dates).
class Moments {
public:
    Moments(icalcomponent* root, const QTimeZone& zone)
        : m_root(root)
        , m_zone(zone) {}

    QDateTime at(icaltimetype time, const char* tzid) {
        if (icaltime_is_null_time(time) || icaltime_is_valid_time(time) == 0) {
            return {};
        }
        const QDate day(time.year, time.month, time.day);
        if (!day.isValid()) {
            return {};
        }
        if (time.is_date != 0) {
            return day.startOfDay(m_zone);
        }
        const QTime clock(time.hour, time.minute, std::min(time.second, 59));
        if (!clock.isValid()) {
            return {};
        }
        if (icaltime_is_utc(time) != 0) {
            return QDateTime(day, clock, QTimeZone::utc());
        }
        if (tzid != nullptr) {
            if (icaltimezone* own = icalcomponent_get_timezone(m_root, tzid)) {
                time.zone = own;
                const icaltimetype inUtc =
                    icaltime_convert_to_zone(time, icaltimezone_get_utc_timezone());
                return QDateTime(QDate(inUtc.year, inUtc.month, inUtc.day),
                                 QTime(inUtc.hour, inUtc.minute, std::min(inUtc.second, 59)),
                                 QTimeZone::utc());
            }
            const QTimeZone named = namedZone(QByteArray(tzid));
            if (named.isValid()) {
                return QDateTime(day, clock, named);
            }
        }
        return QDateTime(day, clock, m_zone);
    }

private:
    // Writers put their own prefixes before the zone's name
    // ("/mozilla.org/20070129_1/Europe/Berlin").
    QTimeZone namedZone(const QByteArray& tzid) {
        const auto known = m_named.constFind(tzid);
        if (known != m_named.constEnd()) {
            return *known;
        }
        QTimeZone found;
        QByteArray id = tzid;
        while (!id.isEmpty()) {
            if (QTimeZone::isTimeZoneIdAvailable(id)) {
                found = QTimeZone(id);
                break;
            }
            const qsizetype slash = id.indexOf('/');
            if (slash < 0) {
                break;
            }
            id = id.mid(slash + 1);
        }
        m_named.insert(tzid, found);
        return found;
    }

    icalcomponent* m_root;
    QTimeZone m_zone;
    QHash<QByteArray, QTimeZone> m_named;
};

QList<icalcomponent*> itemsOf(icalcomponent* root, icalcomponent_kind kind) {
    QList<icalcomponent*> out;
    if (icalcomponent_isa(root) == kind) {
        out << root;
        return out;
    }
    for (icalcomponent* c = icalcomponent_get_first_component(root, kind); c != nullptr;
         c = icalcomponent_get_next_component(root, kind)) {
        out << c;
    }
    return out;
}

QDateTime recurrenceIdOf(icalcomponent* event, Moments& moments) {
    icalproperty* property = icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY);
    return property != nullptr
               ? moments.at(icalproperty_get_recurrenceid(property), tzidOf(property))
               : QDateTime();
}

struct Span {
    QDateTime from;
    QDateTime to;
};

class EventExpansion {
public:
    EventExpansion(icalcomponent* event, Moments& moments, const QTimeZone& zone)
        : m_event(event)
        , m_moments(moments)
        , m_zone(zone) {}

    // Every occurrence in `span` but those in `replaced`, which other items of the file stand for.
    void into(QList<ICalReader::Event>& out, const Span& span, const std::set<qint64>& replaced) {
        icalproperty* startProperty =
            icalcomponent_get_first_property(m_event, ICAL_DTSTART_PROPERTY);
        if (startProperty == nullptr) {
            return;
        }
        m_start = icalproperty_get_dtstart(startProperty);
        m_tzid = tzidOf(startProperty);
        const QDateTime first = m_moments.at(m_start, m_tzid);
        if (!first.isValid()) {
            return;
        }
        m_allDay = m_start.is_date != 0;
        measure(first);

        std::set<qint64> starts{first.toMSecsSinceEpoch()};
        const bool repeats =
            icalcomponent_get_first_property(m_event, ICAL_RECURRENCEID_PROPERTY) == nullptr;
        if (repeats) {
            for (icalproperty* rule =
                     icalcomponent_get_first_property(m_event, ICAL_RRULE_PROPERTY);
                 rule != nullptr;
                 rule = icalcomponent_get_next_property(m_event, ICAL_RRULE_PROPERTY)) {
                expand(icalproperty_get_rrule(rule), span, starts);
            }
            for (icalproperty* extra =
                     icalcomponent_get_first_property(m_event, ICAL_RDATE_PROPERTY);
                 extra != nullptr;
                 extra = icalcomponent_get_next_property(m_event, ICAL_RDATE_PROPERTY)) {
                const icaldatetimeperiodtype value = icalproperty_get_rdate(extra);
                const icaltimetype when =
                    icaltime_is_null_time(value.time) ? value.period.start : value.time;
                const QDateTime at =
                    m_moments.at(when, tzidOf(extra) != nullptr ? tzidOf(extra) : m_tzid);
                if (at.isValid()) {
                    starts.insert(at.toMSecsSinceEpoch());
                }
            }
        }
        std::set<qint64> excluded = replaced;
        std::set<qint64> excludedDays;
        for (icalproperty* ex = icalcomponent_get_first_property(m_event, ICAL_EXDATE_PROPERTY);
             ex != nullptr; ex = icalcomponent_get_next_property(m_event, ICAL_EXDATE_PROPERTY)) {
            const icaltimetype when = icalproperty_get_exdate(ex);
            const QDateTime at = m_moments.at(when, tzidOf(ex) != nullptr ? tzidOf(ex) : m_tzid);
            if (!at.isValid()) {
                continue;
            }
            // A date excludes that day's occurrence of a timed event too.
            (when.is_date != 0 && !m_allDay ? excludedDays : excluded)
                .insert(when.is_date != 0 ? QDate(when.year, when.month, when.day).toJulianDay()
                                          : at.toMSecsSinceEpoch());
        }

        const QString uid = textOf(icalcomponent_get_uid(m_event));
        const QString title = textOf(icalcomponent_get_summary(m_event));
        for (const qint64 msecs : starts) {
            if (excluded.count(msecs) > 0) {
                continue;
            }
            const QDateTime start = QDateTime::fromMSecsSinceEpoch(msecs, m_zone);
            if (excludedDays.count(start.date().toJulianDay()) > 0) {
                continue;
            }
            const QDateTime end = endOf(start);
            const bool overlaps =
                start < span.to && (end > span.from || (end == start && start >= span.from));
            if (overlaps) {
                out.append({uid, title, start, end, m_allDay});
            }
        }
    }

private:
    void measure(const QDateTime& first) {
        icalproperty* endProperty = icalcomponent_get_first_property(m_event, ICAL_DTEND_PROPERTY);
        icalproperty* durationProperty =
            icalcomponent_get_first_property(m_event, ICAL_DURATION_PROPERTY);
        QDateTime end;
        if (endProperty != nullptr) {
            end = m_moments.at(icalproperty_get_dtend(endProperty),
                               tzidOf(endProperty) != nullptr ? tzidOf(endProperty) : m_tzid);
        } else if (durationProperty != nullptr) {
            end =
                first.addSecs(icaldurationtype_as_int(icalproperty_get_duration(durationProperty)));
        }
        if (m_allDay) {
            m_days = end.isValid() ? std::max<qint64>(1, first.date().daysTo(end.date())) : 1;
        } else {
            m_seconds = end.isValid() ? std::max<qint64>(0, first.secsTo(end)) : 0;
        }
    }

    QDateTime endOf(const QDateTime& start) const {
        return m_allDay ? start.date().addDays(m_days).startOfDay(m_zone)
                        : start.addSecs(m_seconds);
    }

    void expand(const icalrecurrencetype& rule, const Span& span, std::set<qint64>& starts) {
        // Occurrences that began before the span may still reach into it.
        const QDateTime earliest = span.from.addDays(-(m_days + 2)).addSecs(-m_seconds);
        if (!icaltime_is_null_time(rule.until)) {
            const QDateTime until = m_moments.at(rule.until, m_tzid);
            if (until.isValid() && until < earliest) {
                return;
            }
        }
        icalrecur_iterator* iterator = icalrecur_iterator_new(rule, m_start);
        if (iterator == nullptr) {
            return;
        }
        // Without a count the iterator may start near the span instead of walking there.
        if (rule.count == 0) {
            const QDateTime jump = earliest.toUTC();
            icaltimetype from = m_start;
            from.year = jump.date().year();
            from.month = jump.date().month();
            from.day = jump.date().day();
            if (icaltime_compare(from, m_start) > 0) {
                icalrecur_iterator_set_start(iterator, from);
            }
        }
        int found = 0;
        for (int step = 0; step < ICalReader::mostSteps && found < ICalReader::mostOccurrences;
             ++step) {
            icaltimetype next = icalrecur_iterator_next(iterator);
            if (icaltime_is_null_time(next)) {
                break;
            }
            next.zone = m_start.zone;
            next.is_date = m_start.is_date;
            const QDateTime at = m_moments.at(next, m_tzid);
            if (!at.isValid()) {
                continue;
            }
            if (at >= span.to) {
                break;
            }
            if (at >= earliest) {
                starts.insert(at.toMSecsSinceEpoch());
                ++found;
            }
        }
        icalrecur_iterator_free(iterator);
    }

    icalcomponent* m_event;
    Moments& m_moments;
    QTimeZone m_zone;
    icaltimetype m_start{};
    const char* m_tzid = nullptr;
    bool m_allDay = false;
    qint64 m_days = 0;
    qint64 m_seconds = 0;
};

icaltimetype utcTime(const QDateTime& now) {
    return icaltime_from_timet_with_zone(static_cast<time_t>(now.toSecsSinceEpoch()), 0,
                                         icaltimezone_get_utc_timezone());
}

void removeAll(icalcomponent* component, icalproperty_kind kind) {
    while (icalproperty* property = icalcomponent_get_first_property(component, kind)) {
        icalcomponent_remove_property(component, property);
        icalproperty_free(property);
    }
}

} // namespace

ICalReader::Contents ICalReader::read(const QByteArray& text, const QDateTime& from,
                                      const QDateTime& to, const QTimeZone& zone) {
    Contents contents;
    const Component root = parse(text);
    if (!root) {
        return contents;
    }
    contents.readable = true;
    Moments moments(root.get(), zone);

    const QList<icalcomponent*> events = itemsOf(root.get(), ICAL_VEVENT_COMPONENT);
    // An occurrence moved or changed on its own is an item of the same UID with the original
    // start as its RECURRENCE-ID; it stands in for that occurrence of the series.
    QHash<QString, std::set<qint64>> replaced;
    for (icalcomponent* event : events) {
        const QDateTime original = recurrenceIdOf(event, moments);
        if (original.isValid()) {
            replaced[textOf(icalcomponent_get_uid(event))].insert(original.toMSecsSinceEpoch());
        }
    }
    const Span span{from, to};
    for (icalcomponent* event : events) {
        if (icalcomponent_get_status(event) == ICAL_STATUS_CANCELLED) {
            continue;
        }
        const bool isOverride =
            icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY) != nullptr;
        const std::set<qint64> none;
        const QString uid = textOf(icalcomponent_get_uid(event));
        EventExpansion(event, moments, zone)
            .into(contents.events, span, isOverride ? none : replaced.value(uid));
    }
    std::stable_sort(contents.events.begin(), contents.events.end(),
                     [](const Event& a, const Event& b) { return a.start < b.start; });

    for (icalcomponent* todo : itemsOf(root.get(), ICAL_VTODO_COMPONENT)) {
        Todo item;
        item.uid = textOf(icalcomponent_get_uid(todo));
        item.title = textOf(icalcomponent_get_summary(todo));
        if (icalproperty* due = icalcomponent_get_first_property(todo, ICAL_DUE_PROPERTY)) {
            const QDateTime at = moments.at(icalproperty_get_due(due), tzidOf(due));
            if (at.isValid()) {
                item.due = at;
            }
        }
        icalproperty* completed = icalcomponent_get_first_property(todo, ICAL_COMPLETED_PROPERTY);
        item.completed =
            icalcomponent_get_status(todo) == ICAL_STATUS_COMPLETED || completed != nullptr;
        if (completed != nullptr) {
            const QDateTime at = moments.at(icalproperty_get_completed(completed), nullptr);
            if (at.isValid()) {
                item.completedAt = at;
            }
        }
        if (icalproperty* priority =
                icalcomponent_get_first_property(todo, ICAL_PRIORITY_PROPERTY)) {
            item.priority = std::clamp(icalproperty_get_priority(priority), 0, 9);
        }
        contents.todos.append(item);
    }
    return contents;
}

std::optional<QByteArray> ICalReader::withCompletion(const QByteArray& text, const QString& uid,
                                                     bool completed, const QDateTime& now) {
    const Component root = parse(text);
    if (!root) {
        return std::nullopt;
    }
    const QList<icalcomponent*> todos = itemsOf(root.get(), ICAL_VTODO_COMPONENT);
    const auto found = std::find_if(todos.cbegin(), todos.cend(), [&](icalcomponent* todo) {
        return textOf(icalcomponent_get_uid(todo)) == uid;
    });
    if (found == todos.cend()) {
        return std::nullopt;
    }
    icalcomponent* todo = *found;
    removeAll(todo, ICAL_COMPLETED_PROPERTY);
    removeAll(todo, ICAL_PERCENTCOMPLETE_PROPERTY);
    removeAll(todo, ICAL_LASTMODIFIED_PROPERTY);
    icalcomponent_set_status(todo, completed ? ICAL_STATUS_COMPLETED : ICAL_STATUS_NEEDSACTION);
    if (completed) {
        icalcomponent_add_property(todo, icalproperty_new_completed(utcTime(now)));
        icalcomponent_add_property(todo, icalproperty_new_percentcomplete(100));
    }
    icalcomponent_add_property(todo, icalproperty_new_lastmodified(utcTime(now)));
    char* written = icalcomponent_as_ical_string_r(root.get());
    if (written == nullptr) {
        return std::nullopt;
    }
    QByteArray out(written);
    icalmemory_free_buffer(written);
    return out;
}

} // namespace tw
