#include "faces/FaceRegistry.h"

#include "faces/ActivityFace.h"
#include "faces/AirQualityFace.h"
#include "faces/AmbientSoundFace.h"
#include "faces/AppUsageFace.h"
#include "faces/AppsFace.h"
#include "faces/BatteryFace.h"
#include "faces/BluetoothFace.h"
#include "faces/CalculatorFace.h"
#include "faces/CalendarFace.h"
#include "faces/ClipboardFace.h"
#include "faces/ClockFace.h"
#include "faces/CompanionFace.h"
#include "faces/CountdownFace.h"
#include "faces/CryptoFace.h"
#include "faces/CurrencyFace.h"
#include "faces/CustomWidgetFace.h"
#include "faces/DayProgressFace.h"
#include "faces/DiskFace.h"
#include "faces/DropZoneFace.h"
#include "faces/FlipClockFace.h"
#include "faces/FolderFace.h"
#include "faces/GenericFace.h"
#include "faces/GitHubFace.h"
#include "faces/MirrorFace.h"
#include "faces/MoonFace.h"
#include "faces/NetworkFace.h"
#include "faces/NowPlayingFace.h"
#include "faces/PasswordGeneratorFace.h"
#include "faces/PhotosFace.h"
#include "faces/PomodoroFace.h"
#include "faces/QuoteFace.h"
#include "faces/RemindersFace.h"
#include "faces/SensorsFace.h"
#include "faces/ShortcutFace.h"
#include "faces/SimpleClockFace.h"
#include "faces/SmartHomeFace.h"
#include "faces/SpeedTestFace.h"
#include "faces/StarfieldFace.h"
#include "faces/StickyNoteFace.h"
#include "faces/StocksFace.h"
#include "faces/StopwatchFace.h"
#include "faces/SystemFace.h"
#include "faces/TerminalFace.h"
#include "faces/TimerFace.h"
#include "faces/ToolboxFace.h"
#include "faces/TrashFace.h"
#include "faces/UnitConverterFace.h"
#include "faces/WeatherFace.h"
#include "faces/WebFace.h"
#include "faces/WordClockFace.h"
#include "faces/WorldClockFace.h"
#include "faces/WorldMapFace.h"
#include "faces/YearProgressFace.h"

namespace tw {

FaceRegistry::FaceRegistry()
    : m_generic(std::make_unique<GenericFace>())
    , m_custom(std::make_unique<CustomWidgetFace>()) {
    add(QStringLiteral("clock"), std::make_unique<ClockFace>());
    add(QStringLiteral("simpleclock"), std::make_unique<SimpleClockFace>());
    add(QStringLiteral("flipclock"), std::make_unique<FlipClockFace>());
    add(QStringLiteral("wordclock"), std::make_unique<WordClockFace>());
    add(QStringLiteral("worldclock"), std::make_unique<WorldClockFace>());
    add(QStringLiteral("dayprogress"), std::make_unique<DayProgressFace>());
    add(QStringLiteral("yearprogress"), std::make_unique<YearProgressFace>());
    add(QStringLiteral("countdown"), std::make_unique<CountdownFace>());
    add(QStringLiteral("timer"), std::make_unique<TimerFace>());
    add(QStringLiteral("pomodoro"), std::make_unique<PomodoroFace>());
    add(QStringLiteral("speedtest"), std::make_unique<SpeedTestFace>());
    add(QStringLiteral("stopwatch"), std::make_unique<StopwatchFace>());
    add(QStringLiteral("battery"), std::make_unique<BatteryFace>());
    add(QStringLiteral("network"), std::make_unique<NetworkFace>());
    add(QStringLiteral("disk"), std::make_unique<DiskFace>());
    add(QStringLiteral("btdevices"), std::make_unique<BluetoothFace>());
    add(QStringLiteral("system"), std::make_unique<SystemFace>());
    add(QStringLiteral("activity"), std::make_unique<ActivityFace>());
    add(QStringLiteral("sensors"), std::make_unique<SensorsFace>());
    add(QStringLiteral("airquality"), std::make_unique<AirQualityFace>());
    add(QStringLiteral("worldmap"), std::make_unique<WorldMapFace>());
    add(QStringLiteral("moon"), std::make_unique<MoonFace>());
    add(QStringLiteral("nowplaying"), std::make_unique<NowPlayingFace>());
    add(QStringLiteral("weather"), std::make_unique<WeatherFace>());
    add(QStringLiteral("calendar"), std::make_unique<CalendarFace>());
    add(QStringLiteral("reminders"), std::make_unique<RemindersFace>());
    add(QStringLiteral("stocks"), std::make_unique<StocksFace>());
    add(QStringLiteral("crypto"), std::make_unique<CryptoFace>());
    add(QStringLiteral("currency"), std::make_unique<CurrencyFace>());
    add(QStringLiteral("appusage"), std::make_unique<AppUsageFace>());
    add(QStringLiteral("github"), std::make_unique<GitHubFace>());
    add(QStringLiteral("smarthome"), std::make_unique<SmartHomeFace>());
    add(QStringLiteral("calculator"), std::make_unique<CalculatorFace>());
    add(QStringLiteral("unitconverter"), std::make_unique<UnitConverterFace>());
    add(QStringLiteral("passwordgenerator"), std::make_unique<PasswordGeneratorFace>());
    add(QStringLiteral("starfield"), std::make_unique<StarfieldFace>());
    add(QStringLiteral("ambientsound"), std::make_unique<AmbientSoundFace>());
    add(QStringLiteral("companion"), std::make_unique<CompanionFace>());
    add(QStringLiteral("web"), std::make_unique<WebFace>());
    add(QStringLiteral("mirror"), std::make_unique<MirrorFace>());
    add(QStringLiteral("photos"), std::make_unique<PhotosFace>());
    add(QStringLiteral("folder"), std::make_unique<FolderFace>());
    add(QStringLiteral("dropzone"), std::make_unique<DropZoneFace>());
    add(QStringLiteral("trash"), std::make_unique<TrashFace>());
    add(QStringLiteral("apps"), std::make_unique<AppsFace>());
    add(QStringLiteral("shortcut"), std::make_unique<ShortcutFace>());
    add(QStringLiteral("toolbox"), std::make_unique<ToolboxFace>());
    add(QStringLiteral("terminal"), std::make_unique<TerminalFace>());
    add(QStringLiteral("stickynote"), std::make_unique<StickyNoteFace>());
    add(QStringLiteral("quote"), std::make_unique<QuoteFace>());
    add(QStringLiteral("clipboard"), std::make_unique<ClipboardFace>());
}

FaceRegistry::~FaceRegistry() = default;

void FaceRegistry::add(const QString& kind, std::unique_ptr<WidgetFace> face) {
    m_faces[kind] = std::move(face);
}

const WidgetFace& FaceRegistry::face(const QString& kind) const {
    const auto found = m_faces.find(kind);
    if (found != m_faces.end()) {
        return *found->second;
    }
    return CustomWidgetDefinition::isCustom(kind) ? *m_custom : *m_generic;
}

bool FaceRegistry::hasOwnFace(const QString& kind) const {
    return m_faces.count(kind) > 0 || CustomWidgetDefinition::isCustom(kind);
}

QStringList FaceRegistry::kinds() const {
    QStringList out;
    for (const auto& [kind, face] : m_faces) {
        out << kind;
    }
    return out;
}

} // namespace tw
