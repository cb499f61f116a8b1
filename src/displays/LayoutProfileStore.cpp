#include "displays/LayoutProfileStore.h"

#include "displays/LayoutProfileResolver.h"
#include "platform/AppPaths.h"
#include "platform/AtomicFile.h"
#include "platform/Clock.h"
#include "platform/DataFile.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QSet>

namespace tw {

namespace {
Q_LOGGING_CATEGORY(lcProfiles, "LayoutProfiles")
} // namespace

QString LayoutProfileStore::defaultPath() {
    return QDir(AppPaths::appSupportDir()).filePath(QStringLiteral("layout-profiles.json"));
}

LayoutProfileStore::LayoutProfileStore(const Clock& clock, const Displays& displays,
                                       const GridLayout& initialLayout, const QString& filePath,
                                       QObject* parent)
    : QObject(parent)
    , m_clock(clock)
    , m_displays(displays)
    , m_filePath(filePath.isEmpty() ? defaultPath() : filePath) {
    load(initialLayout);
}

void LayoutProfileStore::load(const GridLayout& initialLayout) {
    std::optional<LayoutProfilesDocument> document;
    const DataFile::Outcome outcome =
        DataFile::load(m_filePath, m_clock.now(), [&document](const QByteArray& bytes) {
            document = LayoutProfilesDocument::fromJson(bytes);
            return document.has_value();
        });
    m_fileLeftAlone = outcome == DataFile::Outcome::leftAlone;
    if (outcome == DataFile::Outcome::setAside || m_fileLeftAlone) {
        qCWarning(lcProfiles, "Failed to load layout profiles: %s",
                  qUtf8Printable(QDir::toNativeSeparators(m_filePath)));
    }
    if (document &&
        (outcome == DataFile::Outcome::loaded || outcome == DataFile::Outcome::recovered)) {
        const bool repaired = document->repair();
        m_profiles = document->profiles;
        m_activeProfileID = document->activeProfileID;
        if (repaired) {
            save();
        }
        return;
    }
    const QDateTime now = m_clock.now();
    LayoutProfile fresh{
        .id = LayoutProfile::defaultID(),
        .name = QStringLiteral("Default"),
        .isDefault = true,
        .createdAt = now,
        .updatedAt = now,
        .snapshot =
            LayoutProfileResolver::snapshot(initialLayout, displaysOr(std::nullopt), {}, now),
    };
    m_profiles = {fresh};
    m_activeProfileID = fresh.id;
    save();
}

bool LayoutProfileStore::activeProfileIsDefault() const {
    const auto active = activeProfile();
    return active && active->isDefault;
}

std::optional<LayoutProfile> LayoutProfileStore::profile(const QUuid& id) const {
    const qsizetype index = indexOf(id);
    return index < 0 ? std::nullopt : std::optional(m_profiles[index]);
}

LayoutProfile LayoutProfileStore::createProfile(const QString& named, const GridLayout& capturing,
                                                const DisplaySet& displays, Activate activate) {
    const QList<LayoutDisplay> set = displaysOr(displays);
    capture(capturing, m_activeProfileID, set, Save::no);
    const QDateTime now = m_clock.now();
    LayoutProfile created{
        .id = QUuid::createUuid(),
        .name = uniqueName(cleanedName(named, QStringLiteral("New Profile")), std::nullopt),
        .isDefault = false,
        .createdAt = now,
        .updatedAt = now,
        .snapshot = LayoutProfileResolver::snapshot(capturing, set, {}, now),
    };
    m_profiles.append(created);
    Q_EMIT profilesChanged();
    if (activate == Activate::yes) {
        setActive(created.id);
    }
    save();
    return created;
}

bool LayoutProfileStore::renameProfile(const QUuid& id, const QString& name) {
    const qsizetype index = indexOf(id);
    const QString trimmed = name.trimmed();
    if (index < 0 || trimmed.isEmpty()) {
        return false;
    }
    m_profiles[index].name = uniqueName(trimmed, id);
    m_profiles[index].updatedAt = m_clock.now();
    Q_EMIT profilesChanged();
    save();
    return true;
}

std::optional<LayoutProfile>
LayoutProfileStore::duplicateProfile(const QUuid& id, const QString& named, Activate activate) {
    const auto source = profile(id);
    if (!source) {
        return std::nullopt;
    }
    const QString preferred = named.isEmpty() ? source->name + QStringLiteral(" Copy") : named;
    const QDateTime now = m_clock.now();
    LayoutProfile copy{
        .id = QUuid::createUuid(),
        .name = uniqueName(cleanedName(preferred, QStringLiteral("Profile Copy")), std::nullopt),
        .isDefault = false,
        .createdAt = now,
        .updatedAt = now,
        .snapshot = source->snapshot,
    };
    m_profiles.append(copy);
    Q_EMIT profilesChanged();
    if (activate == Activate::yes) {
        setActive(copy.id);
    }
    save();
    return copy;
}

bool LayoutProfileStore::deleteProfile(const QUuid& id) {
    const auto doomed = profile(id);
    if (!doomed || doomed->isDefault) {
        return false;
    }
    m_profiles.removeIf([&id](const LayoutProfile& profile) { return profile.id == id; });
    Q_EMIT profilesChanged();
    if (m_activeProfileID == id) {
        for (const LayoutProfile& profile : std::as_const(m_profiles)) {
            if (profile.isDefault) {
                setActive(profile.id);
            }
        }
    }
    save();
    return true;
}

bool LayoutProfileStore::restoreProfile(const LayoutProfile& restored, qsizetype index) {
    if (indexOf(restored.id) >= 0) {
        return false;
    }
    LayoutProfile profile = restored;
    // There is one default, and it was never deleted.
    profile.isDefault = false;
    m_profiles.insert(std::clamp<qsizetype>(index, 0, m_profiles.size()), profile);
    Q_EMIT profilesChanged();
    save();
    return true;
}

void LayoutProfileStore::capture(const GridLayout& layout, const QUuid& id,
                                 const DisplaySet& displays, Save save) {
    const qsizetype index = indexOf(id);
    if (index < 0) {
        return;
    }
    const QList<LayoutDisplay> set = displaysOr(displays);
    if (!LayoutProfileResolver::isUsableTopology(set)) {
        qCInfo(lcProfiles, "Skipped profile capture — display topology not usable yet");
        return;
    }
    LayoutProfile& profile = m_profiles[index];
    const QDateTime now = m_clock.now();
    profile.snapshot =
        LayoutProfileResolver::snapshot(layout, set, profile.snapshot.placements, now);
    profile.updatedAt = now;
    Q_EMIT profilesChanged();
    if (save == Save::yes) {
        this->save();
    }
}

void LayoutProfileStore::captureActive(const GridLayout& layout, const DisplaySet& displays) {
    capture(layout, m_activeProfileID, displays, Save::yes);
}

std::optional<GridLayout>
LayoutProfileStore::activateProfile(const QUuid& id,
                                    const std::optional<GridLayout>& savingCurrentLayout,
                                    const DisplaySet& displays) {
    if (indexOf(id) < 0) {
        return std::nullopt;
    }
    const QList<LayoutDisplay> set = displaysOr(displays);
    if (savingCurrentLayout) {
        capture(*savingCurrentLayout, m_activeProfileID, set, Save::no);
    }
    setActive(id);
    save();
    return layoutFor(id, set);
}

std::optional<GridLayout>
LayoutProfileStore::layoutForActiveProfile(const DisplaySet& displays) const {
    return layoutFor(m_activeProfileID, displays);
}

std::optional<GridLayout> LayoutProfileStore::layoutFor(const QUuid& id,
                                                        const DisplaySet& displays) const {
    const qsizetype index = indexOf(id);
    if (index < 0) {
        return std::nullopt;
    }
    return LayoutProfileResolver::resolve(m_profiles[index].snapshot, displaysOr(displays));
}

QString LayoutProfileStore::cleanedName(const QString& name, const QString& fallback) {
    const QString trimmed = name.trimmed();
    return trimmed.isEmpty() ? fallback : trimmed;
}

QString LayoutProfileStore::uniqueName(const QString& preferred,
                                       const std::optional<QUuid>& excluding) const {
    QSet<QString> taken;
    for (const LayoutProfile& profile : m_profiles) {
        if (profile.id != excluding) {
            taken.insert(profile.name.toLower());
        }
    }
    QString candidate = preferred;
    for (int suffix = 2; taken.contains(candidate.toLower()); ++suffix) {
        candidate = preferred + QLatin1Char(' ') + QString::number(suffix);
    }
    return candidate;
}

void LayoutProfileStore::save() {
    if (m_fileLeftAlone) {
        return;
    }
    LayoutProfilesDocument document;
    document.activeProfileID = m_activeProfileID;
    document.profiles = m_profiles;
    QDir().mkpath(QFileInfo(m_filePath).absolutePath());
    const auto result = AtomicFile::write(
        m_filePath, QJsonDocument(document.toJson()).toJson(QJsonDocument::Indented));
    if (!result) {
        qCWarning(lcProfiles, "Failed to save layout profiles: %s", qUtf8Printable(result.error));
    }
}

QList<LayoutDisplay> LayoutProfileStore::displaysOr(const DisplaySet& displays) const {
    return displays ? *displays : LayoutDisplay::currentDisplays(m_displays);
}

qsizetype LayoutProfileStore::indexOf(const QUuid& id) const {
    for (qsizetype i = 0; i < m_profiles.size(); ++i) {
        if (m_profiles[i].id == id) {
            return i;
        }
    }
    return -1;
}

void LayoutProfileStore::setActive(const QUuid& id) {
    if (m_activeProfileID == id) {
        return;
    }
    m_activeProfileID = id;
    Q_EMIT activeProfileIDChanged();
}

} // namespace tw
