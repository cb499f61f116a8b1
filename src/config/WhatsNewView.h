// The "What's new" window's content: the notes of the versions a person just updated to, and a
// button to go on.
#pragma once

#include "platform/ColorSchemeWatcher.h"
#include "updates/Release.h"

#include <QWidget>

namespace tw {

class WhatsNewView final : public QWidget {
    Q_OBJECT
public:
    static constexpr QSize contentSize{560, 520};

    WhatsNewView(const QList<Release>& releases, const QString& runningVersion, ColorScheme scheme,
                 QWidget* parent = nullptr);

    // The window's title: "What's New in Tarnwick 0.3.0".
    static QString title(const QString& runningVersion);

Q_SIGNALS:
    void done();
};

} // namespace tw
