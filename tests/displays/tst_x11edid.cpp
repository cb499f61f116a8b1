// Runs inside a private X session: gives the server's output an EDID through RandR, as a real
// monitor's would be, and checks that the display's id follows that EDID and not the name.
#include "platform/linux/QtDisplays.h"
#include "platform/linux/X11Edid.h"

#include <QCryptographicHash>
#include <QGuiApplication>
#include <QTest>

#include <cstdlib>
#include <memory>
#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace tw {

namespace {

struct FreeDeleter {
    void operator()(void* p) const { std::free(p); }
};

xcb_connection_t* connection() {
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

// A 128-byte base block: the fixed header, then a serial number that tells twins apart.
QByteArray edidWithSerial(quint8 serial) {
    QByteArray edid(128, '\0');
    const char header[] = {0, '\xff', '\xff', '\xff', '\xff', '\xff', '\xff', 0};
    edid.replace(0, 8, QByteArray(header, 8));
    edid[12] = static_cast<char>(serial);
    return edid;
}

struct Output {
    xcb_randr_output_t id = 0;
    QString name;
};

Output firstOutput(xcb_connection_t* c) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(c)).data->root;
    std::unique_ptr<xcb_randr_get_screen_resources_current_reply_t, FreeDeleter> resources(
        xcb_randr_get_screen_resources_current_reply(
            c, xcb_randr_get_screen_resources_current(c, root), nullptr));
    if (!resources || xcb_randr_get_screen_resources_current_outputs_length(resources.get()) < 1) {
        return {};
    }
    const xcb_randr_output_t output =
        xcb_randr_get_screen_resources_current_outputs(resources.get())[0];
    std::unique_ptr<xcb_randr_get_output_info_reply_t, FreeDeleter> info(
        xcb_randr_get_output_info_reply(
            c, xcb_randr_get_output_info(c, output, resources->config_timestamp), nullptr));
    if (!info) {
        return {};
    }
    return {output, QString::fromUtf8(
                        reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get())),
                        xcb_randr_get_output_info_name_length(info.get()))};
}

bool setEdid(xcb_connection_t* c, xcb_randr_output_t output, const QByteArray& edid) {
    std::unique_ptr<xcb_intern_atom_reply_t, FreeDeleter> atom(
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, 4, "EDID"), nullptr));
    if (!atom) {
        return false;
    }
    const auto cookie = xcb_randr_change_output_property_checked(
        c, output, atom->atom, XCB_ATOM_INTEGER, 8, XCB_PROP_MODE_REPLACE,
        static_cast<uint32_t>(edid.size()), edid.constData());
    std::unique_ptr<xcb_generic_error_t, FreeDeleter> error(xcb_request_check(c, cookie));
    return !error;
}

QString expectedId(const QByteArray& edid) {
    return QStringLiteral("edid-") +
           QString::fromLatin1(
               QCryptographicHash::hash(edid, QCryptographicHash::Sha256).toHex().left(16));
}

} // namespace

class TestX11Edid : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void idFollowsTheEdid() {
        xcb_connection_t* c = connection();
        if (!c) {
            QSKIP("not running on an X server");
        }
        const Output output = firstOutput(c);
        if (output.name.isEmpty()) {
            QSKIP("this X server has no RandR output");
        }
        QtDisplays before;
        const QString nameId = before.screens().first().id;

        const QByteArray first = edidWithSerial(1);
        if (!setEdid(c, output.id, first)) {
            QSKIP("this X server refuses an EDID property on its output");
        }
        QCOMPARE(X11Edid::byName(c).value(output.name), first);
        QtDisplays withEdid;
        const QString id = withEdid.screens().first().id;
        QCOMPARE(id, expectedId(first));
        QVERIFY(id != nameId);

        // Another monitor on the same connector is another display.
        const QByteArray second = edidWithSerial(2);
        QVERIFY(setEdid(c, output.id, second));
        QtDisplays swapped;
        QCOMPARE(swapped.screens().first().id, expectedId(second));
    }
};

} // namespace tw

QTEST_MAIN(tw::TestX11Edid)
#include "tst_x11edid.moc"
