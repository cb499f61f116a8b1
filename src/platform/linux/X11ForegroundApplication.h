// The foreground application on X11: the root window's _NET_ACTIVE_WINDOW, that window's
// WM_CLASS for the id and the desktop entry of that class for the name.
#pragma once

#include "platform/ForegroundApplication.h"

#include <QAbstractNativeEventFilter>
#include <QHash>

#include <memory>

struct xcb_connection_t;

namespace tw {

class X11ForegroundApplication final : public ForegroundApplication,
                                       private QAbstractNativeEventFilter {
    Q_OBJECT
public:
    // The X11 implementation when the application runs on X11, else one that knows nothing.
    static std::unique_ptr<ForegroundApplication> create(QObject* parent = nullptr);

    ~X11ForegroundApplication() override;

    std::optional<ForegroundApp> frontmost() const override;

private:
    X11ForegroundApplication(xcb_connection_t* connection, QObject* parent);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    quint32 activeWindow() const;
    std::optional<ForegroundApp> appOf(quint32 window) const;
    QString nameFor(const QString& windowClass) const;

    xcb_connection_t* m_connection;
    quint32 m_root = 0;
    quint32 m_activeAtom = 0;
    quint32 m_pidAtom = 0;
    std::optional<ForegroundApp> m_last;
    // Desktop entries are read once per class, when it first comes to the front.
    mutable QHash<QString, QString> m_names;
};

} // namespace tw
