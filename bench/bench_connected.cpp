// The smart home link's cost per state change: one state_changed frame decoded, and one change
// from a Home Assistant on loopback to the board (the server's send, the socket, the decode, the
// board and its signal), in a home of 20 and of 2,000 entities.
#include "HomeAssistantServer.h"
#include "connected/HaDecoding.h"
#include "connected/SmartHomeService.h"
#include "net/QtHttpClient.h"
#include "platform/QtScheduler.h"
#include "platform/SystemClock.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <benchmark/benchmark.h>

using namespace tw;

namespace {

QByteArray eventFrame(int value) {
    return R"({"id":1,"type":"event","event":{"event_type":"state_changed","data":{)"
           R"("entity_id":"sensor.power","old_state":null,"new_state":{"entity_id":)"
           R"("sensor.power","state":")" +
           QByteArray::number(value) +
           R"(","attributes":{"unit_of_measurement":"W","device_class":"power",)"
           R"("friendly_name":"Power"},"last_changed":"2026-11-24T12:00:00+00:00"}}}})";
}

void decodeStateChanged(benchmark::State& state) {
    const QByteArray frame = eventFrame(1234);
    for (auto _ : state) {
        benchmark::DoNotOptimize(decodeHaMessage(frame));
    }
}

void stateChangeOverLoopback(benchmark::State& state) {
    test::HomeAssistantServer home;
    for (int i = 0; i < state.range(0); ++i) {
        home.entities.insert(u"sensor.s%1"_qs.arg(i), {u"1"_qs, u"S"_qs, u"W"_qs});
    }
    home.entities.insert(u"sensor.power"_qs, {u"0"_qs, u"Power"_qs, u"W"_qs});
    QtScheduler scheduler;
    SystemClock clock;
    QtHttpClient http(scheduler);
    SmartHomeService service({.http = http, .clock = clock, .scheduler = scheduler});
    service.setAccount(home.address(), home.token);
    service.setActive(true);
    QElapsedTimer wait;
    wait.start();
    while (service.board().status != SmartHomeStatus::live && wait.elapsed() < 10'000) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    if (service.board().status != SmartHomeStatus::live) {
        state.SkipWithError("no link");
        return;
    }
    int value = 0;
    for (auto _ : state) {
        const QString expected = QString::number(++value);
        home.setState(u"sensor.power"_qs, expected);
        while (service.board().entities.value(u"sensor.power"_qs).state != expected) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        }
    }
    state.counters["entities"] = static_cast<double>(service.board().entities.size());
}

} // namespace

BENCHMARK(decodeStateChanged);
BENCHMARK(stateChangeOverLoopback)->Arg(20)->Arg(2000)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
