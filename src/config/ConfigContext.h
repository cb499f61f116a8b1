// What the configuration window's pages read and change, handed in by the host (or by a
// picture mode with stores of its own), so that no page reaches for a global.
#pragma once

#include "look/Theme.h"
#include "market/QuoteCheck.h"
#include "market/QuoteSuggestion.h"
#include "model/WidgetInstance.h"
#include "model/WidgetOption.h"
#include "model/WidgetSize.h"
#include "platform/AppDirectory.h"
#include "platform/Installation.h"

#include <QHash>
#include <QList>
#include <QSizeF>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <functional>
#include <optional>

class QObject;
class QPainter;
class QRectF;
class QWidget;

namespace tw {

class AppEnergyMeter;
class AppSettings;
class Clock;
class CustomWidgetRuntime;
class CustomWidgetStore;
class FaceRegistry;
class CalendarSetup;
class ConnectedTiles;
class Defaults;
class GridStore;
class LoginItem;
class NoticeService;
class PowerWatcher;
class Scheduler;
class SymbolProvider;
class SmartLayoutCoordinator;
class ThemeStore;
class TickCoordinator;
class UpdateService;
class WidgetRegistry;
struct FaceContext;
struct GeoSuggestion;
struct WidgetInstance;

struct ConfigContext {
    struct Display {
        QString id;
        QString name;
    };
    // What the tiles cost to draw, for the About section.
    struct Cost {
        struct Tile {
            QString name;
            double milliseconds = 0;
            int paints = 0;
        };
        // The tiles' drawing in the last minute, the costliest first.
        QList<Tile> tiles;
    };

    AppSettings& settings;
    ThemeStore& theme;
    // Where both keep their preferences; asked whether it can still write before a change.
    Defaults& defaults;
    // Null where starting at login is not offered.
    LoginItem* loginItem = nullptr;
    // Why this system cannot show tiles above its lock screen; empty where it can.
    QString lockScreenUnavailable = {};
    // Why the pointer gives no touch feedback here; empty where it does.
    QString hapticsUnavailable = {};
    // Why there is no dock icon to hide here; empty where there is one.
    QString dockIconUnavailable = {};
    QList<Display> displays = {};
    QString version = {};
    QString dataDirectory = {};
    // Whether the panel has a tray for the status item; without one it is in the window's menu bar.
    bool hasTray = true;

    // The gallery's view, made when the window needs it.
    std::function<QWidget*()> makeGallery = {};
    // "Match my wallpaper": the theme of the desktop picture, or nullopt without one.
    std::function<std::optional<Theme>()> wallpaperTheme = {};
    std::function<void()> relaunch = {};
    std::function<void()> undo = {};
    std::function<void()> redo = {};
    std::function<bool(const QUrl&)> open = {};
    // The lock screen's pane (the preview with the widgets and whether they show) in a rectangle
    // of `lockPaneSize` points; none leaves it out.
    std::function<void(QPainter&, const QRectF&)> paintLockPane = {};
    // Asked every two seconds while the About section is on screen; none leaves the figures out.
    std::function<Cost()> cost = {};
    // The program's processor share and memory, live and with the window closed; none leaves
    // them out.
    AppEnergyMeter* energy = nullptr;
    // Why power is short, for the energy card; none where the machine's power is not watched.
    const PowerWatcher* power = nullptr;
    Scheduler* scheduler = nullptr;
    static constexpr QSizeF lockPaneSize{760, 480};

    // The tiles on the desktop, for each one's own page and the list of them; without both the
    // window leaves them out.
    GridStore* grid = nullptr;
    const WidgetRegistry* registry = nullptr;
    // Draws a tile as the desktop shows it, in a rectangle of its size in points.
    std::function<void(QPainter&, const QRectF&, const WidgetInstance&)> paintTile = {};
    // The tick the window's previews follow while it is on screen; none leaves them still.
    TickCoordinator* ticker = nullptr;
    // Gives a tile another size as its context menu does (its neighbours make way).
    std::function<void(const QUuid&, WidgetSize)> resizeWidget = {};
    // The calendars or lists a tile of `kind` may read, or the players a music tile may prefer,
    // found on the machine, for its "source" options; none offers the fixed choices alone.
    std::function<QList<WidgetOption::Choice>(const QString& kind)> calendarSources = {};
    // The person's own calendar folders and subscriptions, added and removed on the pages of
    // calendar and reminders tiles (with `clock`); none leaves that part out.
    CalendarSetup* calendarSetup = nullptr;
    // Asks the person for a folder; none uses the system's folder dialog.
    std::function<QString(QWidget* parent)> pickFolder = {};
    // The applications installed here, for the launchers' pickers; none leaves the apps to be
    // typed by id.
    std::function<QList<InstalledApp>()> installedApps = {};
    // Forgets the app time counted on this machine; none leaves the app time tile's "Clear" out.
    std::function<void()> clearAppUsage = {};
    // The GitHub and smart home tiles' accounts and entities; none leaves their account out.
    ConnectedTiles* connected = nullptr;
    // Whether a tile this large, in points, fits on some display; none takes every size.
    std::function<bool(const QSizeF&)> tileFits = {};
    // The places a city search answers with, or none and why (the person's words).
    using CitiesFound =
        std::function<void(const QList<GeoSuggestion>& places, const QString& failure)>;
    // Asks for the places whose name matches the text; the answer never comes once `requester`
    // is gone. None leaves the city search off.
    using CitySearch =
        std::function<void(const QString& text, const QObject* requester, CitiesFound done)>;
    CitySearch searchCities = {};
    // Asks the service of a tile of `kind` about `text` typed as its option `key` ("symbol",
    // "coin", "to"), with the tile's other settings; the answer never comes once `requester` is
    // gone. None keeps what is typed unchecked.
    std::function<void(const QString& kind, const QString& key, const QString& text,
                       const WidgetSettings& settings, const QObject* requester,
                       std::function<void(const QuoteCheck&)> done)>
        checkQuote = {};
    // The matches or why there are none (the person's words).
    using QuotesFound =
        std::function<void(const QList<QuoteSuggestion>& matches, const QString& failure)>;
    // What `text` typed as the symbol of a tile of `kind` may mean; the answer never comes once
    // `requester` is gone. None leaves the suggestions out.
    std::function<void(const QString& kind, const QString& text, const QObject* requester,
                       QuotesFound done)>
        suggestQuotes = {};

    // The person's custom widgets; without them the window leaves their editor out. Without the
    // runtime (what fetches their sources) the editor cannot test a source.
    CustomWidgetStore* customWidgets = nullptr;
    CustomWidgetRuntime* customRuntime = nullptr;
    // The editor's unsaved text by widget, kept by the host so that closing the window loses
    // none; without it drafts last as long as the window's page.
    QHash<QUuid, QString>* customDrafts = nullptr;
    // The faces and the look, time and symbols tiles are drawn with now, for the editor's
    // previews; without both it shows none.
    const FaceRegistry* faces = nullptr;
    std::function<FaceContext()> faceBase = {};

    // The time of backups and boards; none takes the system's.
    const Clock* clock = nullptr;
    // The main display's visible frame in global points (y up), where a board is taken from and
    // lands; none leaves boards empty.
    std::function<QRectF()> desktopFrame = {};

    // The layout profiles and their rules, switched through it; none leaves their cards out.
    SmartLayoutCoordinator* smartLayouts = nullptr;
    // The notices from the people who run the program, shown as the window's banner, over the
    // window, on the About page, and its switch on the General page; none leaves them out.
    NoticeService* notices = nullptr;
    // Draws the symbols of notices; none leaves their badges plain.
    const SymbolProvider* symbols = nullptr;
    // The update check the "updates" section shows and drives; none leaves it to say only how
    // new versions arrive.
    UpdateService* updates = nullptr;
    // How this copy was installed, which decides how a new version is brought in.
    Installation installation = {};
    // Opens the "What's new" window with the notes of this version.
    std::function<void()> showWhatsNew = {};

    // Whether a change can be kept; the page says so when it cannot.
    bool canSave() const;
};

} // namespace tw
