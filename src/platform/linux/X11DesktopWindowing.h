// Desktop windows on X11: EWMH/ICCCM hints that put a window in the layer below normal windows on
// every workspace, out of task bars and pagers, and VisibilityNotify for when one is covered.
#pragma once

#include "platform/DesktopWindowing.h"

#include <QAbstractNativeEventFilter>
#include <QHash>
#include <QPointer>
#include <QWindow>

#include <initializer_list>
#include <memory>

struct xcb_connection_t;

namespace tw {

class X11DesktopWindowing final : public DesktopWindowing, private QAbstractNativeEventFilter {
    Q_OBJECT
public:
    // The X11 implementation when the application runs on X11, else one that does nothing.
    static std::unique_ptr<DesktopWindowing> create(QObject* parent = nullptr);

    ~X11DesktopWindowing() override;

    void prepare(QObject* window, Focus focus) override;
    void watchCoverage(QObject* window) override;
    void release(QObject* window) override;
    bool isCompositing() const override;
    bool canReportCoverage() const override { return true; }

private:
    explicit X11DesktopWindowing(xcb_connection_t* connection, QObject* parent);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    quint32 atom(const char* name);
    void applyUnmappedHints(quint32 window, Focus focus);
    void applyMappedHints(quint32 window, Focus focus);
    void sendToRoot(quint32 window, quint32 type, std::initializer_list<quint32> data);
    void writeFocusHints(quint32 window, Focus focus);
    void watchVisibility(quint32 window);

    struct Tracked {
        QPointer<QWindow> window;
        Focus focus = Focus::Never;
        bool covered = false;
        // Desktop windows get their hints again at every map; watched ones only report.
        bool desktop = true;
    };

    xcb_connection_t* m_connection;
    QHash<QByteArray, quint32> m_atoms;
    QHash<quint32, Tracked> m_tracked;
};

} // namespace tw
