#include "platform/linux/PortalColorScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QPalette>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcColorScheme, "ColorScheme")

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");

ColorScheme paletteScheme() {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) {
        return ColorScheme::Light;
    }
    const QColor window = QGuiApplication::palette().color(QPalette::Window);
    return window.lightnessF() < 0.5F ? ColorScheme::Dark : ColorScheme::Light;
}

// The first portals wrap the value of Read in a second variant; ReadOne does not.
QVariant unwrapped(QVariant value) {
    if (value.userType() == qMetaTypeId<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

PortalColorScheme::PortalColorScheme(QObject* parent)
    : ColorSchemeWatcher(parent)
    , m_scheme(paletteScheme()) {
    if (qApp != nullptr) {
        qApp->installEventFilter(this);
    }
    // After the first panels: the session bus is not worth a delay of the start.
    QMetaObject::invokeMethod(this, &PortalColorScheme::watchPortal, Qt::QueuedConnection);
}

void PortalColorScheme::watchPortal() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qCInfo(lcColorScheme, "no session bus: the colour scheme follows the palette");
        return;
    }
    bus.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                this, SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    read(QStringLiteral("ReadOne"));
}

ColorScheme PortalColorScheme::colorScheme() const {
    return m_scheme;
}

std::optional<ColorScheme> PortalColorScheme::fromPortalValue(const QVariant& value) {
    bool ok = false;
    const uint number = unwrapped(value).toUInt(&ok);
    if (!ok) {
        return std::nullopt;
    }
    switch (number) {
    case 1:
        return ColorScheme::Dark;
    case 2:
        return ColorScheme::Light;
    default:
        return std::nullopt;
    }
}

bool PortalColorScheme::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        update();
    }
    return ColorSchemeWatcher::eventFilter(watched, event);
}

void PortalColorScheme::onSettingChanged(const QString& group, const QString& key,
                                         const QDBusVariant& value) {
    if (group == appearanceGroup && key == colorSchemeKey) {
        setPortalScheme(fromPortalValue(value.variant()));
    }
}

// ReadOne first; a portal older than it only knows Read.
void PortalColorScheme::read(const QString& method) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, method);
    call << appearanceGroup << colorSchemeKey;
    auto* watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, method](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<QDBusVariant> reply = *finished;
                if (!reply.isError()) {
                    setPortalScheme(fromPortalValue(reply.value().variant()));
                } else if (reply.error().type() == QDBusError::UnknownMethod &&
                           method == QLatin1String("ReadOne")) {
                    read(QStringLiteral("Read"));
                } else {
                    qCInfo(lcColorScheme,
                           "no colour scheme from the portal (%s): it follows "
                           "the palette",
                           qUtf8Printable(reply.error().message()));
                }
            });
}

void PortalColorScheme::setPortalScheme(std::optional<ColorScheme> scheme) {
    m_portal = scheme;
    update();
}

void PortalColorScheme::update() {
    const ColorScheme scheme = m_portal.value_or(paletteScheme());
    if (scheme != m_scheme) {
        m_scheme = scheme;
        Q_EMIT colorSchemeChanged(scheme);
    }
}

} // namespace tw
