#include "platform/linux/QtDisplays.h"

#include "platform/linux/X11Edid.h"
#include "platform/linux/X11ScreenPower.h"

#include <QCryptographicHash>
#include <QDBusConnection>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QScreen>
#include <QSet>

namespace tw {

namespace {
Q_LOGGING_CATEGORY(lcDisplays, "Displays")

const QString loginService = QStringLiteral("org.freedesktop.login1");
const QString loginPath = QStringLiteral("/org/freedesktop/login1");
const QString loginManager = QStringLiteral("org.freedesktop.login1.Manager");

QString shortHash(const QByteArray& bytes) {
    return QString::fromLatin1(
        QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().left(16));
}

QRectF primaryGeometry() {
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary != nullptr ? QRectF(primary->geometry()) : QRectF();
}

} // namespace

QtDisplays::QtDisplays(QObject* parent)
    : Displays(parent) {
    for (QScreen* screen : QGuiApplication::screens()) {
        watch(screen);
    }
    refreshIdentities();
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        watch(screen);
        refreshIdentities();
        Q_EMIT screensChanged();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this] {
        refreshIdentities();
        Q_EMIT screensChanged();
    });
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &Displays::screensChanged);
    listenForSleep();
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    m_screenPower = new X11ScreenPower(x11 != nullptr ? x11->connection() : nullptr, this);
    connect(m_screenPower, &X11ScreenPower::asleepChanged, this, [this](bool asleep) {
        if (asleep) {
            Q_EMIT screensDidSleep();
        } else {
            Q_EMIT screensDidWake();
        }
    });
}

QList<ScreenInfo> QtDisplays::screens() const {
    QList<QScreen*> screens = QGuiApplication::screens();
    QScreen* primary = QGuiApplication::primaryScreen();
    // The main display comes first, as the rest of the program expects.
    if (primary != nullptr && screens.removeOne(primary)) {
        screens.prepend(primary);
    }
    const QRectF primaryRect = primaryGeometry();
    QList<ScreenInfo> result;
    result.reserve(screens.size());
    for (const QScreen* screen : std::as_const(screens)) {
        const QString model =
            QString(screen->manufacturer() + QLatin1Char(' ') + screen->model()).trimmed();
        // Without an EDID the connector or monitor name identifies the display; a screen with
        // no name at all is known by its place.
        QString id = m_idsByName.value(screen->name(), screen->name());
        if (id.isEmpty()) {
            id = QStringLiteral("screen-%1-%2")
                     .arg(screen->geometry().x())
                     .arg(screen->geometry().y());
        }
        result.append(ScreenInfo{id, screen->model().isEmpty() ? screen->name() : model,
                                 toInternal(screen->geometry(), primaryRect),
                                 toInternal(screen->availableGeometry(), primaryRect),
                                 screen == primary});
    }
    return result;
}

QRectF QtDisplays::toInternal(const QRectF& qtRect, const QRectF& primary) {
    return {qtRect.x() - primary.x(),
            (primary.y() + primary.height()) - (qtRect.y() + qtRect.height()), qtRect.width(),
            qtRect.height()};
}

QRectF QtDisplays::toQt(const QRectF& internalRect, const QRectF& primary) {
    return {internalRect.x() + primary.x(),
            (primary.y() + primary.height()) - (internalRect.y() + internalRect.height()),
            internalRect.width(), internalRect.height()};
}

QRectF QtDisplays::toQt(const QRectF& internalRect) const {
    return toQt(internalRect, primaryGeometry());
}

QHash<QString, QString> QtDisplays::uniqueIds(const QHash<QString, QString>& idsByName) {
    QStringList names = idsByName.keys();
    names.sort();
    QSet<QString> taken;
    QHash<QString, QString> result;
    for (const QString& name : std::as_const(names)) {
        QString id = idsByName.value(name);
        if (taken.contains(id)) {
            id += QLatin1Char('-') + name;
        }
        taken.insert(id);
        result.insert(name, id);
    }
    return result;
}

void QtDisplays::watch(QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, &Displays::screensChanged);
    connect(screen, &QScreen::availableGeometryChanged, this, &Displays::screensChanged);
}

void QtDisplays::refreshIdentities() {
    QHash<QString, QByteArray> edids;
    // Other platforms answer the X11 interface too, with no connection behind it.
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 != nullptr && x11->connection() != nullptr) {
        edids = X11Edid::byName(x11->connection());
    }
    m_idsByName.clear();
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QString name = screen->name();
        if (const QByteArray edid = edids.value(name); !edid.isEmpty()) {
            m_idsByName.insert(name, QStringLiteral("edid-") + shortHash(edid));
        } else if (!screen->serialNumber().isEmpty() || !screen->model().isEmpty()) {
            const QString identity = screen->manufacturer() + QLatin1Char('\n') + screen->model() +
                                     QLatin1Char('\n') + screen->serialNumber();
            m_idsByName.insert(name, QStringLiteral("model-") + shortHash(identity.toUtf8()));
        }
    }
    m_idsByName = uniqueIds(m_idsByName);
}

void QtDisplays::listenForSleep() {
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected() ||
        !bus.connect(loginService, loginPath, loginManager, QStringLiteral("PrepareForSleep"), this,
                     SLOT(onPrepareForSleep(bool)))) {
        qCInfo(lcDisplays, "login manager not reachable on the system bus: sleep and wake go "
                           "unreported, display changes are still watched");
    }
}

void QtDisplays::onPrepareForSleep(bool start) {
    if (start) {
        Q_EMIT willSleep();
    } else {
        Q_EMIT didWake();
    }
}

} // namespace tw
