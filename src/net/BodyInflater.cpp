#include "net/BodyInflater.h"

#include <algorithm>
#include <zlib.h>

namespace tw {

struct BodyInflater::Stream {
    z_stream z{};
    bool ready = false;
};

BodyInflater::BodyInflater(qint64 maxBytes)
    : m_stream(std::make_unique<Stream>())
    , m_maxBytes(maxBytes) {
    // 15 + 32: either a gzip or a zlib header, told apart by the stream itself.
    m_stream->ready = inflateInit2(&m_stream->z, 15 + 32) == Z_OK;
    if (!m_stream->ready) {
        m_status = Status::Corrupt;
    }
}

BodyInflater::~BodyInflater() {
    if (m_stream->ready) {
        inflateEnd(&m_stream->z);
    }
}

BodyInflater::Status BodyInflater::feed(QByteArrayView input, QByteArray& output) {
    if (m_status != Status::More) {
        return m_status;
    }
    char buffer[16 * 1024];
    z_stream& z = m_stream->z;
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
    z.avail_in = static_cast<uInt>(input.size());
    // Output comes a buffer at a time, so a tiny input that inflates hugely stops at the cap.
    while (m_status == Status::More && (z.avail_in > 0 || z.avail_out == 0)) {
        z.next_out = reinterpret_cast<Bytef*>(buffer);
        z.avail_out = sizeof buffer;
        const int result = inflate(&z, Z_NO_FLUSH);
        const qint64 made = qint64(sizeof buffer) - z.avail_out;
        const qint64 kept = std::min(made, m_maxBytes + 1 - m_produced);
        output.append(buffer, static_cast<qsizetype>(kept));
        m_produced += made;
        if (m_produced > m_maxBytes) {
            m_status = Status::TooLarge;
        } else if (result == Z_STREAM_END) {
            m_status = Status::Done;
        } else if (result == Z_BUF_ERROR) {
            break; // nothing more to do without more input
        } else if (result != Z_OK) {
            m_status = Status::Corrupt;
        }
    }
    return m_status;
}

} // namespace tw
