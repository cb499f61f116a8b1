#include "net/RedirectPolicy.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QUrl>

#include <array>
#include <utility>

namespace tw {

namespace {

struct Range {
    const char* subnet;
    AddressClass kind;
};

// 0/8 and :: reach the local machine on Linux, so they count as loopback.
constexpr std::array ranges{
    Range{"127.0.0.0/8", AddressClass::Loopback},     Range{"0.0.0.0/8", AddressClass::Loopback},
    Range{"::1/128", AddressClass::Loopback},         Range{"::/128", AddressClass::Loopback},
    Range{"169.254.0.0/16", AddressClass::LinkLocal}, Range{"fe80::/10", AddressClass::LinkLocal},
    Range{"10.0.0.0/8", AddressClass::Private},       Range{"172.16.0.0/12", AddressClass::Private},
    Range{"192.168.0.0/16", AddressClass::Private},   Range{"100.64.0.0/10", AddressClass::Private},
    Range{"fc00::/7", AddressClass::Private},
};

} // namespace

AddressClass classifyHost(QStringView host) {
    QString name = host.trimmed().toString().toLower();
    if (name.startsWith(QLatin1Char('[')) && name.endsWith(QLatin1Char(']'))) {
        name = name.mid(1, name.size() - 2);
    }
    while (name.endsWith(QLatin1Char('.'))) {
        name.chop(1);
    }
    if (name == QLatin1String("localhost") || name.endsWith(QLatin1String(".localhost"))) {
        return AddressClass::Loopback;
    }
    QHostAddress address;
    if (!address.setAddress(name)) {
        return AddressClass::Public;
    }
    bool mapped = false;
    const quint32 v4 = address.toIPv4Address(&mapped);
    if (mapped && address.protocol() == QAbstractSocket::IPv6Protocol) {
        address = QHostAddress(v4);
    }
    for (const Range& range : ranges) {
        if (address.isInSubnet(QHostAddress::parseSubnet(QLatin1String(range.subnet)))) {
            return range.kind;
        }
    }
    return AddressClass::Public;
}

QString redirectRefusal(const QUrl& from, const QUrl& to, AddressClass firstRequest,
                        AddressClass target) {
    const QString scheme = to.scheme().toLower();
    if (!to.isValid() || to.host().isEmpty() ||
        (scheme != QLatin1String("http") && scheme != QLatin1String("https"))) {
        return QCoreApplication::translate("RedirectPolicy", "not a web address");
    }
    if (from.scheme().toLower() == QLatin1String("https") && scheme != QLatin1String("https")) {
        return QCoreApplication::translate("RedirectPolicy", "it leaves HTTPS");
    }
    if (firstRequest == AddressClass::Public && target != AddressClass::Public) {
        return QCoreApplication::translate("RedirectPolicy", "it leads into a local network");
    }
    return {};
}

} // namespace tw
