// The connected displays as Qt's screens report them, turned into internal points (origin at the
// lower-left of the primary display, y up) here and nowhere else; sleep and wake from logind.
#pragma once

#include "platform/Displays.h"

#include <QHash>
#include <QRectF>

class QScreen;

namespace tw {

class X11ScreenPower;

class QtDisplays final : public Displays {
    Q_OBJECT
public:
    // Needs a QGuiApplication.
    explicit QtDisplays(QObject* parent = nullptr);

    QList<ScreenInfo> screens() const override;

    // Qt's global rectangles (top-left origin, y down) to internal points and back, given the
    // primary screen's geometry in Qt's space.
    static QRectF toInternal(const QRectF& qtRect, const QRectF& primary);
    static QRectF toQt(const QRectF& internalRect, const QRectF& primary);
    // The same against the primary screen of this moment.
    QRectF toQt(const QRectF& internalRect) const;

    // Ids by screen name, made unique: of screens sharing an id (twin monitors without serial
    // numbers), the one whose name sorts first keeps it and the others add "-" and their name,
    // so that neither a lone monitor nor a change of primary screen changes an id.
    static QHash<QString, QString> uniqueIds(const QHash<QString, QString>& idsByName);

private Q_SLOTS:
    void onPrepareForSleep(bool start);

private:
    void watch(QScreen* screen);
    void refreshIdentities();
    void listenForSleep();

    // Stable ids by screen name, read once per change of the screen set: reading EDIDs costs
    // round trips to the X server, and screens() is asked on every save.
    QHash<QString, QString> m_idsByName;
    X11ScreenPower* m_screenPower = nullptr;
};

} // namespace tw
