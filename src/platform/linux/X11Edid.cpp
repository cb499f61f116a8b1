#include "platform/linux/X11Edid.h"

#include <cstdlib>
#include <memory>
#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace tw {

namespace {

struct FreeDeleter {
    void operator()(void* p) const { std::free(p); }
};
template <typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

// The longest EDID with its extension blocks that anyone ships is well below this.
constexpr uint32_t maxEdidLongs = 256;

xcb_atom_t edidAtom(xcb_connection_t* connection) {
    const auto cookie = xcb_intern_atom(connection, 1, 4, "EDID");
    Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

QByteArray outputEdid(xcb_connection_t* connection, xcb_randr_output_t output, xcb_atom_t atom) {
    const auto cookie = xcb_randr_get_output_property(connection, output, atom, XCB_ATOM_ANY, 0,
                                                      maxEdidLongs, 0, 0);
    Reply<xcb_randr_get_output_property_reply_t> reply(
        xcb_randr_get_output_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 8) {
        return {};
    }
    return {reinterpret_cast<const char*>(xcb_randr_get_output_property_data(reply.get())),
            xcb_randr_get_output_property_data_length(reply.get())};
}

QString atomName(xcb_connection_t* connection, xcb_atom_t atom) {
    Reply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr));
    if (!reply) {
        return {};
    }
    return QString::fromUtf8(xcb_get_atom_name_name(reply.get()),
                             xcb_get_atom_name_name_length(reply.get()));
}

// A monitor takes the EDID of its first output, under the monitor's own name.
void addMonitors(xcb_connection_t* connection, xcb_window_t root,
                 const QHash<xcb_randr_output_t, QByteArray>& byOutput,
                 QHash<QString, QByteArray>& result) {
    Reply<xcb_randr_get_monitors_reply_t> monitors(xcb_randr_get_monitors_reply(
        connection, xcb_randr_get_monitors(connection, root, 1), nullptr));
    if (!monitors) {
        return;
    }
    for (auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get()); it.rem > 0;
         xcb_randr_monitor_info_next(&it)) {
        if (xcb_randr_monitor_info_outputs_length(it.data) < 1) {
            continue;
        }
        const QByteArray edid = byOutput.value(xcb_randr_monitor_info_outputs(it.data)[0]);
        const QString name = atomName(connection, it.data->name);
        if (!edid.isEmpty() && !name.isEmpty() && !result.contains(name)) {
            result.insert(name, edid);
        }
    }
}

} // namespace

QHash<QString, QByteArray> X11Edid::byName(xcb_connection_t* connection) {
    QHash<QString, QByteArray> result;
    if (connection == nullptr) {
        return result;
    }
    const xcb_query_extension_reply_t* extension =
        xcb_get_extension_data(connection, &xcb_randr_id);
    if (extension == nullptr || extension->present == 0) {
        return result;
    }
    Reply<xcb_randr_query_version_reply_t> version(xcb_randr_query_version_reply(
        connection, xcb_randr_query_version(connection, 1, 5), nullptr));
    const xcb_atom_t atom = edidAtom(connection);
    if (!version || atom == XCB_ATOM_NONE) {
        return result;
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;

    Reply<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(
            connection, xcb_randr_get_screen_resources_current(connection, root), nullptr));
    if (!resources) {
        return result;
    }
    QHash<xcb_randr_output_t, QByteArray> byOutput;
    const xcb_randr_output_t* outputs =
        xcb_randr_get_screen_resources_current_outputs(resources.get());
    const int outputCount = xcb_randr_get_screen_resources_current_outputs_length(resources.get());
    for (int i = 0; i < outputCount; ++i) {
        Reply<xcb_randr_get_output_info_reply_t> info(xcb_randr_get_output_info_reply(
            connection,
            xcb_randr_get_output_info(connection, outputs[i], resources->config_timestamp),
            nullptr));
        if (!info) {
            continue;
        }
        const QByteArray edid = outputEdid(connection, outputs[i], atom);
        if (edid.isEmpty()) {
            continue;
        }
        byOutput.insert(outputs[i], edid);
        result.insert(QString::fromUtf8(
                          reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get())),
                          xcb_randr_get_output_info_name_length(info.get())),
                      edid);
    }

    // Qt names a screen after its RandR 1.5 monitor where there is one.
    if (version->major_version > 1 || version->minor_version >= 5) {
        addMonitors(connection, root, byOutput, result);
    }
    return result;
}

} // namespace tw
