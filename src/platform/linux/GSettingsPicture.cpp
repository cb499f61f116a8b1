#include "platform/linux/GSettingsPicture.h"

#include "platform/linux/PictureUri.h"

#include <QLoggingCategory>
#include <QUrl>

#include <cstring>
#include <gio/gio.h>

namespace tw {

Q_LOGGING_CATEGORY(lcGSettingsPicture, "Wallpaper")

struct GSettingsPicture::Keys {
    const char* schema;
    // A URI or a path.
    const char* picture;
    // The picture of the dark look; null when the desktop has one picture.
    const char* darkPicture;
    const char* options;
};

namespace {

constexpr const char* appearanceSchema = "org.gnome.desktop.interface";
constexpr const char* colorSchemeKey = "color-scheme";

// Looked up before use: creating settings of a schema that is not installed ends the process.
GSettingsSchema* lookUp(const char* id) {
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    return source == nullptr ? nullptr : g_settings_schema_source_lookup(source, id, TRUE);
}

bool hasKey(GSettings* settings, const char* key) {
    if (settings == nullptr || key == nullptr) {
        return false;
    }
    GSettingsSchema* schema = nullptr;
    g_object_get(settings, "settings-schema", &schema, nullptr);
    const bool has = schema != nullptr && g_settings_schema_has_key(schema, key) != 0;
    if (schema != nullptr) {
        g_settings_schema_unref(schema);
    }
    return has;
}

std::optional<DesktopPicture::Fill> fillOf(const QString& option) {
    using Fill = DesktopPicture::Fill;
    if (option == QLatin1String("none")) {
        return std::nullopt;
    }
    if (option == QLatin1String("wallpaper")) {
        return Fill::tile;
    }
    if (option == QLatin1String("centered")) {
        return Fill::center;
    }
    if (option == QLatin1String("scaled")) {
        return Fill::fit;
    }
    if (option == QLatin1String("stretched")) {
        return Fill::stretch;
    }
    if (option == QLatin1String("spanned")) {
        return Fill::span;
    }
    return Fill::zoom;
}

} // namespace

std::unique_ptr<GSettingsPicture> GSettingsPicture::create(Desktop desktop, QObject* parent) {
    static const Keys gnome{"org.gnome.desktop.background", "picture-uri", "picture-uri-dark",
                            "picture-options"};
    static const Keys cinnamon{"org.cinnamon.desktop.background", "picture-uri", nullptr,
                               "picture-options"};
    static const Keys mate{"org.mate.background", "picture-filename", nullptr, "picture-options"};
    const Keys& keys = desktop == Desktop::gnome      ? gnome
                       : desktop == Desktop::cinnamon ? cinnamon
                                                      : mate;
    GSettingsSchema* schema = lookUp(keys.schema);
    if (schema == nullptr) {
        return nullptr;
    }
    GSettings* background = g_settings_new_full(schema, nullptr, nullptr);
    g_settings_schema_unref(schema);
    GSettings* appearance = nullptr;
    if (keys.darkPicture != nullptr) {
        if (GSettingsSchema* look = lookUp(appearanceSchema)) {
            appearance = g_settings_new_full(look, nullptr, nullptr);
            g_settings_schema_unref(look);
        }
    }
    return std::unique_ptr<GSettingsPicture>(
        new GSettingsPicture(keys, background, appearance, parent));
}

bool GSettingsPicture::show(const QString& file) {
    // MATE keeps a plain path, the others a URI.
    const QByteArray value = std::strcmp(m_keys.picture, "picture-filename") == 0
                                 ? file.toUtf8()
                                 : QUrl::fromLocalFile(file).toEncoded();
    bool ok = g_settings_set_string(m_background, m_keys.picture, value.constData()) != 0;
    if (m_keys.darkPicture != nullptr && hasKey(m_background, m_keys.darkPicture)) {
        ok = g_settings_set_string(m_background, m_keys.darkPicture, value.constData()) != 0 && ok;
    }
    ok = g_settings_set_string(m_background, m_keys.options, "zoom") != 0 && ok;
    // Written before the process ends, which may be at once.
    g_settings_sync();
    return ok;
}

GSettingsPicture::GSettingsPicture(const Keys& keys, GSettings* background, GSettings* appearance,
                                   QObject* parent)
    : QObject(parent)
    , m_keys(keys)
    , m_background(background)
    , m_appearance(appearance) {
    for (GSettings* settings : {m_background, m_appearance}) {
        if (settings != nullptr) {
            g_signal_connect(settings, "changed", G_CALLBACK(onChanged), this);
        }
    }
    // GSettings tells of a change only to a key read since the handler was connected.
    setting();
}

GSettingsPicture::~GSettingsPicture() {
    for (GSettings* settings : {m_background, m_appearance}) {
        if (settings != nullptr) {
            g_signal_handlers_disconnect_by_data(settings, this);
            g_object_unref(settings);
        }
    }
}

void GSettingsPicture::onChanged(GSettings* settings, const char* key, void* self) {
    auto* picture = static_cast<GSettingsPicture*>(self);
    const Keys& keys = picture->m_keys;
    const bool ours =
        settings == picture->m_appearance
            ? std::strcmp(key, colorSchemeKey) == 0
            : (std::strcmp(key, keys.picture) == 0 || std::strcmp(key, keys.options) == 0 ||
               (keys.darkPicture != nullptr && std::strcmp(key, keys.darkPicture) == 0));
    if (ours) {
        Q_EMIT picture->changed();
    }
}

QString GSettingsPicture::read(GSettings* settings, const char* key) const {
    if (!hasKey(settings, key)) {
        return {};
    }
    GVariant* value = g_settings_get_value(settings, key);
    QString text;
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING) != 0) {
        text = QString::fromUtf8(g_variant_get_string(value, nullptr));
    }
    g_variant_unref(value);
    return text;
}

std::optional<DesktopPicture::Setting> GSettingsPicture::setting() const {
    const bool dark = read(m_appearance, colorSchemeKey) == QLatin1String("prefer-dark");
    // Every key is read each time, so that GSettings goes on telling of changes to each.
    const QString darkPicture = read(m_background, m_keys.darkPicture);
    const QString lightPicture = read(m_background, m_keys.picture);
    const QString uri = dark && !darkPicture.isEmpty() ? darkPicture : lightPicture;
    const std::optional<DesktopPicture::Fill> fill = fillOf(read(m_background, m_keys.options));
    const QString file = PictureUri::localFile(uri);
    if (!fill || file.isEmpty()) {
        if (!uri.isEmpty() && file.isEmpty()) {
            qCDebug(lcGSettingsPicture, "%s names no local file: %s", m_keys.schema,
                    qUtf8Printable(uri));
        }
        return std::nullopt;
    }
    return DesktopPicture::Setting{.file = file, .fill = *fill, .identity = {}};
}

} // namespace tw
