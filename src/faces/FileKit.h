// What the file tiles share: the places a press lands on (a command each), buttons, a file's
// icon from the icon theme, a dashed drop target and the age of a moment.
#pragma once

#include "faces/WidgetFace.h"

#include <QList>
#include <QRectF>
#include <QString>

class QPainter;

namespace tw {

struct FaceContext;

namespace FileKit {

struct Target {
    QRectF rect;
    // What the tile's behaviour does with a press there ("open:2", "empty", "choose").
    QString command;
    QString help;
};

// The first target under `point`; nothing outside them all.
WidgetFace::Spot spotAt(const QList<Target>& targets, QPointF point);

enum class Button { plain, primary, destructive };
// A capsule with its word fitted inside.
void drawButton(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const QString& text, Button style);

// The icon theme's icon of a type (`iconName`, else `genericIconName`), else the folder or the
// document symbol; pixmaps come from the theme's own cache.
void drawFileIcon(QPainter& painter, const FaceContext& context, const QRectF& rect,
                  const QString& iconName, const QString& genericIconName, bool isFolder);

// A rounded field with a dashed edge: where files are dropped.
void drawDropTarget(QPainter& painter, const FaceContext& context, const QRectF& rect);

// "just now", "5 min ago", "3 h ago", "yesterday", then the date.
QString ago(const QDateTime& then, const QDateTime& now);
// "Downloads" for "/home/ana/Downloads", "Home" for the home folder itself.
QString folderName(const QString& path);
// "12 items", "1 item", "Empty".
QString itemCount(int items);

} // namespace FileKit

} // namespace tw
