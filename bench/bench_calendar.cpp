// A busy calendar kept as a vdir folder: 500 events over a year, 50 of them weekly, read for the
// span a tile shows (six weeks) and for the whole year.
#include "platform/linux/VdirCalendarStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

QByteArray stamp(const QDateTime& t) {
    return t.toUTC().toString(QStringLiteral("yyyyMMddTHHmmssZ")).toLatin1();
}

struct BusyCalendar {
    QTemporaryDir home;
    QDateTime start{QDate(2026, 1, 5), QTime(8, 0), QTimeZone::utc()};

    BusyCalendar() {
        const QString folder = home.filePath(QStringLiteral("work"));
        QDir().mkpath(folder);
        for (int i = 0; i < 500; ++i) {
            const QDateTime at = start.addSecs(qint64(i) * 63113);
            QByteArray body =
                "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//bench//EN\r\nBEGIN:VEVENT\r\nUID:e" +
                QByteArray::number(i) + "\r\nSUMMARY:Meeting " + QByteArray::number(i) +
                "\r\nDTSTART:" + stamp(at) + "\r\nDTEND:" + stamp(at.addSecs(1800)) + "\r\n";
            if (i % 10 == 0) {
                body += "RRULE:FREQ=WEEKLY\r\n";
            }
            body += "END:VEVENT\r\nEND:VCALENDAR\r\n";
            QFile file(folder + QStringLiteral("/e%1.ics").arg(i));
            if (!file.open(QIODevice::WriteOnly) || file.write(body) != body.size()) {
                std::abort();
            }
        }
    }
};

void readSpan(benchmark::State& state) {
    static const BusyCalendar calendar;
    const tw::VdirCalendarStore store({{calendar.home.path()}, {}});
    const QDateTime from = calendar.start.addDays(150);
    const QDateTime to = from.addDays(state.range(0));
    qsizetype count = 0;
    for (auto _ : state) {
        count = store.events(from, to, std::nullopt, QTimeZone::utc()).items.size();
        benchmark::DoNotOptimize(count);
    }
    state.counters["occurrences"] = static_cast<double>(count);
}
BENCHMARK(readSpan)->Arg(42)->Arg(365)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
