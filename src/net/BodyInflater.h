// Inflates a gzip or deflate body as it arrives, never past a cap of inflated bytes.
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <memory>

namespace tw {

class BodyInflater {
public:
    enum class Status {
        More,     // fine so far; the stream has not ended
        Done,     // the stream ended; later input is ignored
        TooLarge, // inflating would pass the cap
        Corrupt,  // not a gzip or zlib stream
    };

    explicit BodyInflater(qint64 maxBytes);
    ~BodyInflater();
    BodyInflater(const BodyInflater&) = delete;
    BodyInflater& operator=(const BodyInflater&) = delete;

    // Appends what `input` inflates to, at most one byte past the cap, to `output`. After
    // TooLarge or Corrupt every later call returns the same.
    Status feed(QByteArrayView input, QByteArray& output);
    Status status() const { return m_status; }

private:
    struct Stream;
    std::unique_ptr<Stream> m_stream;
    qint64 m_maxBytes;
    qint64 m_produced = 0;
    Status m_status = Status::More;
};

} // namespace tw
