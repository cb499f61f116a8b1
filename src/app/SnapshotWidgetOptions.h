// The modifiers of the picture modes and the look they give every tile of a picture.
#pragma once

#include "faces/GlassLook.h"
#include "model/WidgetInstance.h"

#include <QDateTime>
#include <QImage>
#include <QSize>
#include <QString>

namespace tw {

class LaunchArguments;
class SymbolProvider;
struct FaceContext;

// One glass look of a scene picture: its finish, its name on the command line and the name people
// read.
struct SceneLook {
    GlassLook::Finish finish;
    QString id;
    QString name;
};

struct SnapshotWidgetOptions {
    QString kind;
    // --template: a custom widget template drawn with sample values in place of --kind.
    QString templateId;
    // The raw --size; empty means the kind's default size.
    QString size;
    QString themeId;
    GlassLook::Shade shade = GlassLook::Shade::Dark;
    // Pixels per point of the picture.
    double devicePixelRatio = 2.0;
    // --style S and every --set key=value, in order, later ones winning.
    WidgetSettings settings;
    // --wallpaper: a built-in's id or a picture file; empty for the built-in that suits the shade.
    QString wallpaper;
    // What was wrong with a modifier (an unknown --theme, a --scale that is no number), for
    // stderr; empty when nothing was.
    QString problem;

    static SnapshotWidgetOptions parse(const LaunchArguments& arguments);

    // Theme (none given: the default theme), glass, pixel ratio, time and the surface of
    // a picture; the caller sets the kind and size.
    FaceContext baseContext(const SymbolProvider& symbols, const QDateTime& now) const;

    // The desktop picture of a scene at `pixels`: --wallpaper's built-in or file, else the
    // built-in that suits the shade. Null, with the reason in `why`, when the file cannot be
    // read.
    QImage wallpaperPicture(const QSize& pixels, QString& why) const;
    // The looks --style keeps, in the order frosted, clear, liquid: all of them when it is
    // absent, none for a name that is no look, and then the reason in `why` unless it already
    // holds one.
    QList<SceneLook> sceneLooks(QString& why) const;
    // The shade as the " dark=" field has it.
    QString darkField() const;
};

} // namespace tw
