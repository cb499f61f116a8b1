// The faces by kind: the built-in faces, and the generic face for every kind without its own.
#pragma once

#include "faces/WidgetFace.h"

#include <QString>
#include <QStringList>

#include <map>
#include <memory>

namespace tw {

class FaceRegistry {
public:
    // Registers the built-in faces.
    FaceRegistry();
    ~FaceRegistry();
    FaceRegistry(const FaceRegistry&) = delete;
    FaceRegistry& operator=(const FaceRegistry&) = delete;

    // Replaces any face registered for `kind`.
    void add(const QString& kind, std::unique_ptr<WidgetFace> face);

    // The face of `kind` (a catalogue kind, so "clock" for an old "analogclock"), the custom
    // widgets' face for every "custom." kind, or the generic face when the kind has none.
    const WidgetFace& face(const QString& kind) const;
    // True for every custom kind too.
    bool hasOwnFace(const QString& kind) const;
    // The kinds with a face of their own, sorted.
    QStringList kinds() const;

private:
    std::map<QString, std::unique_ptr<WidgetFace>> m_faces;
    std::unique_ptr<WidgetFace> m_generic;
    std::unique_ptr<WidgetFace> m_custom;
};

} // namespace tw
