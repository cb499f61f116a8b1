// How fast animated scenes may run on a surface: a cap, paused, efficient (8 fps at most) or
// smooth.
#pragma once

namespace tw {

class AnimationPace {
public:
    enum class Kind { Capped, Paused, Efficient, Smooth };

    // The pace a surface has when nobody set one.
    AnimationPace() = default;

    static AnimationPace capped(double cap) { return AnimationPace(Kind::Capped, cap); }
    static AnimationPace paused() { return AnimationPace(Kind::Paused, 0); }
    static AnimationPace efficient() { return AnimationPace(Kind::Efficient, 0); }
    static AnimationPace smooth() { return AnimationPace(Kind::Smooth, 0); }

    static constexpr double efficientFps = 8;

    Kind kind() const { return m_kind; }
    // The frame cap of `capped`; 0 for the other kinds.
    double cap() const { return m_cap; }

    // The frames per second a scene asking for `requested` may run at; 0 means a still frame.
    double fps(double requested) const;

    bool operator==(const AnimationPace&) const = default;

private:
    AnimationPace(Kind kind, double cap)
        : m_kind(kind)
        , m_cap(cap) {}

    Kind m_kind = Kind::Smooth;
    double m_cap = 0;
};

} // namespace tw
