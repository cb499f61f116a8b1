// The application in front and word when another one comes to the front: what smart layout rules
// and app usage judge by.
#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace tw {

struct ForegroundApp {
    // Stable across runs, compared ignoring case: the window class on X11.
    QString id;
    // As people read it: the desktop entry's name where one is found, else the id.
    QString name;
    // This program's own window: rules keep judging by the application before it.
    bool isThisProgram = false;

    friend bool operator==(const ForegroundApp&, const ForegroundApp&) = default;
};

class ForegroundApplication : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Nothing when no window is active or the system cannot tell.
    virtual std::optional<ForegroundApp> frontmost() const = 0;

Q_SIGNALS:
    // Another application came to the front.
    void activated(const tw::ForegroundApp& app);
};

} // namespace tw

Q_DECLARE_METATYPE(tw::ForegroundApp)
