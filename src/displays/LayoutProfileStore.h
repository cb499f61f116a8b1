// The user's named layouts, which one is active, and "layout-profiles.json". The store keeps the
// captures; putting a profile's layout on the desktop is the caller's business.
#pragma once

#include "displays/LayoutDisplay.h"
#include "displays/LayoutProfile.h"
#include "model/GridLayout.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>

#include <optional>

namespace tw {

class Clock;
class Displays;

class LayoutProfileStore final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<tw::LayoutProfile> profiles READ profiles NOTIFY profilesChanged)
    Q_PROPERTY(QUuid activeProfileID READ activeProfileID NOTIFY activeProfileIDChanged)
public:
    enum class Activate { no, yes };
    enum class Save { no, yes };
    // Every `displays` argument left empty means the displays connected now.
    using DisplaySet = std::optional<QList<LayoutDisplay>>;

    // "layout-profiles.json" in the data directory.
    static QString defaultPath();

    // Loads `filePath` (empty: the default path); without a readable file with a profile, the
    // file is set aside and `initialLayout` becomes the one default profile.
    LayoutProfileStore(const Clock& clock, const Displays& displays,
                       const GridLayout& initialLayout, const QString& filePath = {},
                       QObject* parent = nullptr);

    const QList<LayoutProfile>& profiles() const { return m_profiles; }
    QUuid activeProfileID() const { return m_activeProfileID; }
    std::optional<LayoutProfile> activeProfile() const { return profile(m_activeProfileID); }
    bool activeProfileIsDefault() const;
    std::optional<LayoutProfile> profile(const QUuid& id) const;
    QString fileURL() const { return m_filePath; }

    // Captures `layout` into the active profile first, so that work in progress isn't lost.
    LayoutProfile createProfile(const QString& named, const GridLayout& capturing,
                                const DisplaySet& displays, Activate activate);
    bool renameProfile(const QUuid& id, const QString& name);
    // Named "<source> Copy" when `named` is empty.
    std::optional<LayoutProfile> duplicateProfile(const QUuid& id, const QString& named,
                                                  Activate activate);
    // The default profile is never deleted.
    bool deleteProfile(const QUuid& id);
    // Puts a deleted profile back at `index`, as it was; false when its id is taken.
    bool restoreProfile(const LayoutProfile& profile, qsizetype index);

    // Rebuilds the profile's snapshot from `layout`, keeping unmoved and parked placements.
    // Nothing happens on an unusable display set.
    void capture(const GridLayout& layout, const QUuid& id, const DisplaySet& displays, Save save);
    void captureActive(const GridLayout& layout, const DisplaySet& displays);
    // Makes `id` active and gives its layout on `displays`; `savingCurrentLayout` is captured
    // into the profile that was active. Nothing for an unknown id.
    std::optional<GridLayout> activateProfile(const QUuid& id,
                                              const std::optional<GridLayout>& savingCurrentLayout,
                                              const DisplaySet& displays);
    std::optional<GridLayout> layoutForActiveProfile(const DisplaySet& displays) const;
    std::optional<GridLayout> layoutFor(const QUuid& id, const DisplaySet& displays) const;

    // Trimmed; `fallback` when nothing is left.
    static QString cleanedName(const QString& name, const QString& fallback);
    // `preferred`, or with " 2", " 3", ... until no other profile has it, ignoring case.
    QString uniqueName(const QString& preferred, const std::optional<QUuid>& excluding) const;

    void save();

Q_SIGNALS:
    void profilesChanged();
    void activeProfileIDChanged();

private:
    void load(const GridLayout& initialLayout);
    QList<LayoutDisplay> displaysOr(const DisplaySet& displays) const;
    qsizetype indexOf(const QUuid& id) const;
    void setActive(const QUuid& id);

    const Clock& m_clock;
    const Displays& m_displays;
    QString m_filePath;
    // Something other than a data file sits at the path; it is never written over.
    bool m_fileLeftAlone = false;
    QList<LayoutProfile> m_profiles;
    QUuid m_activeProfileID;
};

} // namespace tw
