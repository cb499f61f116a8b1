// Whether the desktop is set to a light or a dark look, and when that changes.
#pragma once

#include <QObject>

namespace tw {

enum class ColorScheme { Light, Dark };

class ColorSchemeWatcher : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    virtual ColorScheme colorScheme() const = 0;

Q_SIGNALS:
    // Only on a real change.
    void colorSchemeChanged(tw::ColorScheme scheme);
};

} // namespace tw
