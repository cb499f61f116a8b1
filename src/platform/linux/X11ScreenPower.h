// Whether the displays are dark while the machine runs: the X server's screen saver (which DPMS
// standby and off also raise) and a desktop's screen-saver service on the session bus.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <memory>

struct xcb_connection_t;

namespace tw {

class X11ScreenPower final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT
public:
    // Watches the X server behind `connection` (may be null: the session bus alone).
    explicit X11ScreenPower(xcb_connection_t* connection, QObject* parent = nullptr);
    ~X11ScreenPower() override;

    bool isAsleep() const { return m_serverSaver || m_desktopSaver; }

Q_SIGNALS:
    void asleepChanged(bool asleep);

private Q_SLOTS:
    void onDesktopSaverChanged(bool active);

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void listenToServer();
    void listenToDesktop();
    void update(bool& which, bool active);

    xcb_connection_t* m_connection;
    int m_notifyEvent = -1;
    bool m_serverSaver = false;
    bool m_desktopSaver = false;
};

} // namespace tw
