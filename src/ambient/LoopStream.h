// The samples a sound device pulls: a mono loop played round and round as stereo (the right
// channel half a loop ahead, so the two ears hear unrelated noise), gliding to each new gain
// and crossfading to a new loop. Used on one thread.
#pragma once

#include <QtGlobal>

#include <memory>
#include <vector>

namespace tw {

class LoopStream {
public:
    using Loop = std::shared_ptr<const std::vector<float>>;

    explicit LoopStream(int sampleRate);

    // Crossfades to `loop` over a third of a second (at once when nothing plays).
    void setLoop(Loop loop);
    // Glides to `gain` over a twentieth of a second.
    void setGain(float gain);
    float gain() const { return m_gain; }
    bool isSilent() const { return m_gain == 0 && m_target == 0; }

    // Fills `frames` frames of `channels` interleaved samples; channels after the second repeat
    // the first two.
    void fill(float* out, qsizetype frames, int channels);

private:
    float sampleOf(const Loop& loop, qsizetype position) const;

    Loop m_loop;
    Loop m_previous;
    qsizetype m_position = 0;
    qsizetype m_previousPosition = 0;
    qsizetype m_crossfadeLeft = 0;
    qsizetype m_crossfadeLength;
    float m_gain = 0;
    float m_target = 0;
    float m_gainStep;
};

} // namespace tw
