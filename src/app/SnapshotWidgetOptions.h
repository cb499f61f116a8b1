// The modifiers of the widget picture modes (--snapshot-widget, --snapshot-gallery) and the look
// they give every tile of the picture.
#pragma once

#include "faces/GlassLook.h"
#include "model/WidgetInstance.h"

#include <QDateTime>
#include <QString>

namespace tw {

class LaunchArguments;
class SymbolProvider;
struct FaceContext;

struct SnapshotWidgetOptions {
    QString kind;
    // The raw --size; empty means the kind's default size.
    QString size;
    QString themeId;
    GlassLook::Shade shade = GlassLook::Shade::Dark;
    // Pixels per point of the picture.
    double devicePixelRatio = 2.0;
    // --style S and every --set key=value, in order, later ones winning.
    WidgetSettings settings;
    // What was wrong with a modifier (an unknown --theme, a --scale that is no number), for
    // stderr; empty when nothing was.
    QString problem;

    static SnapshotWidgetOptions parse(const LaunchArguments& arguments);

    // Theme (none given: the default theme), glass, pixel ratio, time and the surface of
    // a picture; the caller sets the kind and size.
    FaceContext baseContext(const SymbolProvider& symbols, const QDateTime& now) const;
};

} // namespace tw
