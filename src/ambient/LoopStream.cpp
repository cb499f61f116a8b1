#include "ambient/LoopStream.h"

#include <algorithm>
#include <cmath>

namespace tw {

LoopStream::LoopStream(int sampleRate)
    : m_crossfadeLength(std::max(1, sampleRate / 3))
    , m_gainStep(1.0f / float(std::max(1, sampleRate / 20))) {}

void LoopStream::setLoop(Loop loop) {
    if (loop == m_loop) {
        return;
    }
    if (m_loop && !m_loop->empty() && m_gain > 0) {
        m_previous = m_loop;
        m_previousPosition = m_position;
        m_crossfadeLeft = m_crossfadeLength;
    }
    m_loop = std::move(loop);
    m_position = 0;
}

void LoopStream::setGain(float gain) {
    m_target = std::clamp(gain, 0.0f, 1.0f);
}

float LoopStream::sampleOf(const Loop& loop, qsizetype position) const {
    const auto size = qsizetype(loop->size());
    return (*loop)[std::size_t(position % size)];
}

void LoopStream::fill(float* out, qsizetype frames, int channels) {
    const bool playable = m_loop && !m_loop->empty();
    const qsizetype size = playable ? qsizetype(m_loop->size()) : 0;
    for (qsizetype f = 0; f < frames; ++f) {
        m_gain += std::clamp(m_target - m_gain, -m_gainStep, m_gainStep);
        float left = 0;
        float right = 0;
        if (playable) {
            left = sampleOf(m_loop, m_position);
            right = sampleOf(m_loop, m_position + size / 2);
            m_position = (m_position + 1) % size;
        }
        if (m_crossfadeLeft > 0 && m_previous) {
            const float x = float(m_crossfadeLeft) / float(m_crossfadeLength);
            const auto half = qsizetype(m_previous->size()) / 2;
            left = left * (1 - x) + sampleOf(m_previous, m_previousPosition) * x;
            right = right * (1 - x) + sampleOf(m_previous, m_previousPosition + half) * x;
            ++m_previousPosition;
            if (--m_crossfadeLeft == 0) {
                m_previous.reset();
            }
        }
        float* frame = out + f * channels;
        for (int c = 0; c < channels; ++c) {
            frame[c] = std::clamp((c % 2 == 0 ? left : right) * m_gain, -1.0f, 1.0f);
        }
    }
}

} // namespace tw
