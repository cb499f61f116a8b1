// The picture that simple desktops and wallpaper setters leave on the X root window: a pixmap
// named by the root's "_XROOTPMAP_ID" (or "ESETROOT_PMAP_ID") property, followed as the property
// changes.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QImage>
#include <QObject>
#include <QString>

struct xcb_connection_t;

namespace tw {

class X11RootPicture final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT
public:
    // Watches the root window of the first screen of `connection`, the application's own,
    // whose events arrive through the native event filter.
    explicit X11RootPicture(xcb_connection_t* connection, QObject* parent = nullptr);
    ~X11RootPicture() override;

    // The pixmap published now, 0 for none.
    quint32 pixmap() const { return m_pixmap; }
    // Changes with every announcement, also of the same pixmap drawn afresh; empty for none.
    QString identity() const;
    // The pixmap's pixels now; a null image when there is none or it cannot be read.
    QImage picture() const;

    // Pixmaps of more pixels are not read: that much memory for a tint is never worth it.
    static constexpr qint64 maximumPixels = qint64(16384) * 4096;
    static QImage read(xcb_connection_t* connection, quint32 pixmap);

Q_SIGNALS:
    void changed();

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    quint32 readPixmap() const;

    xcb_connection_t* m_connection;
    quint32 m_root = 0;
    quint32 m_atoms[2] = {};
    quint32 m_pixmap = 0;
    quint64 m_generation = 0;
};

} // namespace tw
