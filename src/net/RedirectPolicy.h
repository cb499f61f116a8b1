// Which redirects a request may follow, by scheme and by the kind of network a host is on.
#pragma once

#include <QString>
#include <QStringView>

class QUrl;

namespace tw {

enum class AddressClass {
    Public,
    Loopback,  // 127/8, ::1, 0/8, ::, and the name "localhost"
    LinkLocal, // 169.254/16, fe80::/10
    Private,   // 10/8, 172.16/12, 192.168/16, 100.64/10, fc00::/7
};

// Literal addresses (IPv4, IPv6, IPv4-mapped IPv6, bracketed or not) by their range; "localhost"
// and names under ".localhost" are loopback. Any other name counts as public: names are not
// resolved here, so a public name that resolves to a private address is not caught.
AddressClass classifyHost(QStringView host);

// Why the hop from `from` to `to` may not be followed, or empty when it may: only to http or
// https, never from https to http, and from a public first request only to public hosts.
// `firstRequest` is the class of the host the transfer began with, `target` that of `to`.
QString redirectRefusal(const QUrl& from, const QUrl& to, AddressClass firstRequest,
                        AddressClass target);

} // namespace tw
