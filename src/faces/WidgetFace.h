// The view of one widget kind: draws every size the kind allows from a FaceContext.
#pragma once

#include "desk/DeskAction.h"
#include "model/WidgetInstance.h"
#include "model/WidgetSize.h"
#include "platform/CalendarItems.h"
#include "platform/MediaPlayers.h"
#include "readings/ReadingFeed.h"
#include "tick/TimeGrain.h"

#include <QDateTime>
#include <QRectF>
#include <QStringList>
#include <QUrl>

#include <optional>

class QPainter;

namespace tw {

struct FaceContext;

class WidgetFace {
public:
    // What one point of the face offers: a web page a click there opens, and a line of help for
    // the pointer resting there.
    struct Spot {
        std::optional<QUrl> link;
        QString help;
        // A control of the tile's own that a press there works (a timer's start or reset).
        std::optional<DeskAction> control;
        // A transport command a press there sends to the player the tile shows.
        std::optional<MediaCommand> media;
        // A reminder whose check mark is there: a press marks it done, or open again.
        std::optional<ReminderItem> reminder;
        // A control of a kind with a behaviour of its own, which the click hands it by name.
        QString command;
    };

    virtual ~WidgetFace() = default;

    // The coarsest grain at which the face's picture changes, so the host wakes it only then;
    // nullopt for a face that shows no time at all.
    virtual std::optional<TimeGrain> grain(WidgetSize size,
                                           const WidgetSettings& settings) const = 0;

    // Draws the content into `rect`, in the tile's points at scale 1: the painter already carries
    // the tile scale and the device pixel ratio. `rect` is the whole tile for full-bleed and
    // chromeless kinds and the padded inside of the glass for the others; the painter is clipped
    // to the tile's rounded shape.
    virtual void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const = 0;

    // The readings of the machine the face shows at this size, so that the host samples them
    // while the tile is in view and repaints it when they change.
    virtual ReadingFeeds feeds(WidgetSize size, const WidgetSettings& settings) const {
        Q_UNUSED(size)
        Q_UNUSED(settings)
        return {};
    }

    // Whether the face draws the weather of the place its settings name, so that the host keeps
    // a service running for that place while the tile is in view.
    virtual bool showsWeather(const WidgetSettings& settings) const {
        Q_UNUSED(settings)
        return false;
    }

    // Whether the face draws the events or reminders its settings choose, so that the host keeps
    // them fresh while the tile is in view.
    virtual bool showsCalendar(const WidgetSettings& settings) const {
        Q_UNUSED(settings)
        return false;
    }

    // The frames per second the face's scene asks for as it shows now (its settings and the
    // data in `context`); 0 for a still face. The host runs it at what the surface's pace allows,
    // asks again when the data changes, and hands the scene time in the context.
    virtual double sceneFps(const FaceContext& context) const {
        Q_UNUSED(context)
        return 0;
    }

    // Whether a click on the tile, as it shows now, should open the tile's settings (a face that
    // needs the person to choose something before it can show anything).
    virtual bool opensSettingsOnClick(const FaceContext& context) const {
        Q_UNUSED(context)
        return false;
    }

    // What `point` offers, both in the coordinates of `rect` as given to paint; nothing unless
    // the face knows better.
    virtual Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const {
        Q_UNUSED(rect)
        Q_UNUSED(point)
        Q_UNUSED(context)
        return {};
    }

    // The values of the "style" setting the face draws differently, the default first; empty
    // for a face with one look.
    virtual QStringList styles() const { return {}; }

    // The part of `rect` (as given to paint) whose picture may differ between the times `before`
    // and `after`, so that a host repaints only that: all of `rect` unless the face knows better.
    virtual QRectF changedRect(const QRectF& rect, const FaceContext& context,
                               const QDateTime& before, const QDateTime& after) const {
        Q_UNUSED(context)
        Q_UNUSED(before)
        Q_UNUSED(after)
        return rect;
    }
};

} // namespace tw
