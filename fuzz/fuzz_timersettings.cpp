// A timer tile's stored settings, whatever "grid.json" held: "key=value" lines read as the
// settings of a timer, a pomodoro and a stopwatch. Each reads a state inside its bounds, every
// press on it gives settings that read back to the state it meant, and each face draws at every
// size and answers a press anywhere without breaking.
#include "Require.h"
#include "desk/PomodoroState.h"
#include "desk/StopwatchState.h"
#include "desk/TimerState.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "look/Theme.h"
#include "platform/null/NullSymbolProvider.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QTimeZone>

#include <cstdint>

using namespace tw;
using tw::fuzz::require;

namespace {

const QDateTime now(QDate(2026, 3, 9), QTime(9, 41), QTimeZone::utc());

void checkTimer(const WidgetSettings& settings) {
    const TimerState state = TimerState::from(settings);
    require(state.selectedMinutes >= 1 && state.selectedMinutes <= 120, "minutes out of range");
    require(state.phase(now) == TimerState::Phase::running ||
                (state.remaining(now) >= 0 && state.remaining(now) <= state.total()),
            "a stopped timer with more time than its length");
    require(state.fraction(now) >= 0 && state.fraction(now) <= 1, "a fraction out of range");
    const WidgetSettings toggled = TimerState::toggled(settings, now);
    const TimerState after = TimerState::from(toggled);
    switch (state.phase(now)) {
    case TimerState::Phase::idle:
    case TimerState::Phase::paused:
        require(after.phase(now.addMSecs(1)) == TimerState::Phase::running ||
                    state.remaining(now) < 0.002,
                "a start that does not run");
        break;
    case TimerState::Phase::running:
        require(after.phase(now) == TimerState::Phase::paused, "a pause that does not stand");
        break;
    case TimerState::Phase::finished:
        require(after.phase(now) == TimerState::Phase::idle, "a finished timer not back to idle");
        break;
    }
}

void checkPomodoro(const WidgetSettings& settings) {
    const PomodoroPlan plan = PomodoroPlan::from(settings);
    require(plan.rounds >= 2 && plan.rounds <= 8, "rounds out of range");
    const PomodoroState state = PomodoroState::from(settings);
    require(state.remaining(plan, now) >= 0, "time below nothing");
    require(state.isRunning() || state.remaining(plan, now) <= plan.seconds(state.phase),
            "a stopped phase longer than itself");
    require(state.roundsInSet(plan) >= 0 && state.roundsInSet(plan) <= plan.rounds,
            "rounds in the set out of range");
    const PomodoroState next = PomodoroState::from(
        state.advanced(plan, now, true, PomodoroState::ByHand::yes).appliedTo(settings));
    require(!next.isRunning(), "a skip by hand that starts");
    require(PomodoroState::from(state.started(plan, now).appliedTo(settings)).isRunning() ||
                state.remaining(plan, now) < 0.002,
            "a start that does not run");
}

void checkStopwatch(const WidgetSettings& settings) {
    const StopwatchState state = StopwatchState::from(settings);
    require(state.laps.size() <= StopwatchState::maxLaps, "too many laps");
    require(state.elapsed(now) >= 0, "time below nothing");
    for (const double split : state.lapSplits()) {
        require(split >= 0, "a lap shorter than nothing");
    }
    const StopwatchState lapped =
        StopwatchState::from(state.toggled(now).withLap(now).appliedTo(settings));
    require(!lapped.laps.isEmpty(), "a lap lost");
}

void draw(const QString& kind, const WidgetSettings& settings) {
    static const NullSymbolProvider symbols;
    static const FaceRegistry faces;
    WidgetMetadata metadata;
    metadata.kind = kind;
    for (const WidgetSize size : {WidgetSize::small, WidgetSize::wide, WidgetSize::large}) {
        FaceContext context = FaceContext::forKind(metadata, size);
        context.theme = Theme::defaultTheme();
        context.symbols = &symbols;
        context.now = now;
        context.settings = settings;
        QImage image(context.points.toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        const QRectF whole(QPointF(0, 0), context.points);
        const WidgetFace& face = faces.face(kind);
        face.paint(painter, whole, context);
        for (const QPointF point : {whole.center(), whole.bottomRight() - QPointF(4, 4)}) {
            const auto control = face.spotAt(whole, point, context).control;
            require(!control || control->kind != DeskAction::Kind::minutes ||
                        (control->minutes >= 1 && control->minutes <= 120),
                    "a preset out of range");
        }
    }
}

} // namespace

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\nleak:libQt6Gui.so\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static int argc = 1;
    static char name[] = "fuzz_timersettings";
    static char* argv[] = {name, nullptr};
    static const bool offscreen = qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication app(argc, argv);
    Q_UNUSED(offscreen)
    WidgetSettings settings;
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        settings.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1));
    }
    checkTimer(settings);
    checkPomodoro(settings);
    checkStopwatch(settings);
    for (const char* kind : {"timer", "pomodoro", "stopwatch"}) {
        draw(QLatin1String(kind), settings);
    }
    return 0;
}
