#include "ambient/QtLoopPlayer.h"

#include "ambient/LoopStream.h"
#include "ambient/Soundscape.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QIODevice>
#include <QLoggingCategory>
#include <QMediaDevices>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <limits>
#include <optional>

namespace tw {

Q_LOGGING_CATEGORY(lcAmbientSound, "tarnwick.ambientsound")

namespace {

// What the sink pulls: the stream's floats in the device's sample format.
class LoopDevice : public QIODevice {
public:
    LoopDevice(LoopStream& stream, QAudioFormat format)
        : m_stream(stream)
        , m_format(format) {}

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return std::numeric_limits<int>::max(); }

protected:
    qint64 readData(char* data, qint64 maxSize) override {
        const int channels = std::max(1, m_format.channelCount());
        const int frameBytes = m_format.bytesPerFrame();
        if (frameBytes <= 0) {
            return 0;
        }
        const qint64 frames = maxSize / frameBytes;
        m_buffer.resize(std::size_t(frames * channels));
        m_stream.fill(m_buffer.data(), frames, channels);
        for (std::size_t i = 0; i < m_buffer.size(); ++i) {
            const float s = m_buffer[i];
            switch (m_format.sampleFormat()) {
            case QAudioFormat::Int16:
                reinterpret_cast<qint16*>(data)[i] = qint16(s * 32767.0f);
                break;
            case QAudioFormat::Int32:
                reinterpret_cast<qint32*>(data)[i] = qint32(double(s) * 2147483647.0);
                break;
            case QAudioFormat::Float:
                reinterpret_cast<float*>(data)[i] = s;
                break;
            case QAudioFormat::UInt8:
                reinterpret_cast<quint8*>(data)[i] = quint8(128 + int(s * 127.0f));
                break;
            case QAudioFormat::Unknown:
            case QAudioFormat::NSampleFormats:
                break;
            }
        }
        return frames * frameBytes;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    LoopStream& m_stream;
    QAudioFormat m_format;
    std::vector<float> m_buffer;
};

} // namespace

struct QtLoopPlayer::Engine {
    QPointer<QtLoopPlayer> owner;
    QObject* context = nullptr;
    std::optional<LoopStream> stream;
    std::unique_ptr<LoopDevice> device;
    std::unique_ptr<QAudioSink> sink;
    std::optional<AmbientSound> loaded;
    int sampleRate = 48000;
    bool stopping = false;

    void report(LoopPlayer::Problem problem) {
        QMetaObject::invokeMethod(owner.data(), [guard = owner, problem] {
            if (guard) {
                Q_EMIT guard->failed(problem);
            }
        });
    }

    bool open() {
        const QAudioDevice output = QMediaDevices::defaultAudioOutput();
        if (output.isNull()) {
            qCInfo(lcAmbientSound) << "No sound output to play on";
            return false;
        }
        QAudioFormat format;
        format.setSampleRate(48000);
        format.setChannelCount(2);
        format.setSampleFormat(QAudioFormat::Int16);
        if (!output.isFormatSupported(format)) {
            format = output.preferredFormat();
        }
        if (!format.isValid()) {
            qCInfo(lcAmbientSound) << "The sound output offers no format to play in";
            return false;
        }
        sampleRate = format.sampleRate();
        stream.emplace(sampleRate);
        loaded.reset();
        device = std::make_unique<LoopDevice>(*stream, format);
        device->open(QIODevice::ReadOnly);
        sink = std::make_unique<QAudioSink>(output, format);
        sink->setBufferSize(format.bytesForDuration(250'000));
        QObject::connect(sink.get(), &QAudioSink::stateChanged, context, [this](QAudio::State) {
            if (sink && sink->error() != QAudio::NoError && !stopping) {
                qCInfo(lcAmbientSound) << "The sound output went away:" << sink->error();
                close();
                report(LoopPlayer::Problem::deviceLost);
            }
        });
        sink->start(device.get());
        if (sink->error() != QAudio::NoError) {
            qCInfo(lcAmbientSound) << "Could not open the sound output:" << sink->error();
            close();
            return false;
        }
        return true;
    }

    void close() {
        if (sink) {
            sink->disconnect(context);
            sink->stop();
        }
        sink.reset();
        device.reset();
        stream.reset();
        loaded.reset();
    }

    void play(AmbientSound sound, float gain) {
        stopping = false;
        if (!sink && !open()) {
            report(LoopPlayer::Problem::noDevice);
            return;
        }
        if (loaded != sound) {
            const auto loop = std::make_shared<const std::vector<float>>(Soundscape::render(
                sound, LoopRecipe{.sampleRate = sampleRate, .seconds = 20, .seed = 1}));
            stream->setLoop(loop);
            loaded = sound;
        }
        stream->setGain(gain);
    }

    void setGain(float gain) {
        if (stream && !stopping) {
            stream->setGain(gain);
        }
    }

    void stop() {
        if (!stream) {
            return;
        }
        stopping = true;
        stream->setGain(0);
        // Let the glide to silence reach the speaker before the device closes.
        QTimer::singleShot(300, context, [this] {
            if (stopping) {
                close();
            }
        });
    }
};

QtLoopPlayer::QtLoopPlayer(QObject* parent)
    : LoopPlayer(parent)
    , m_worker(new QObject)
    , m_engine(std::make_shared<Engine>()) {
    m_engine->owner = this;
    m_engine->context = m_worker;
    m_thread.setObjectName(QStringLiteral("ambient sound"));
    m_worker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start(QThread::HighPriority);
}

QtLoopPlayer::~QtLoopPlayer() {
    QMetaObject::invokeMethod(
        m_worker, [engine = m_engine] { engine->close(); }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

void QtLoopPlayer::play(AmbientSound sound, float gain) {
    QMetaObject::invokeMethod(m_worker,
                              [engine = m_engine, sound, gain] { engine->play(sound, gain); });
}

void QtLoopPlayer::setGain(float gain) {
    QMetaObject::invokeMethod(m_worker, [engine = m_engine, gain] { engine->setGain(gain); });
}

void QtLoopPlayer::stop() {
    QMetaObject::invokeMethod(m_worker, [engine = m_engine] { engine->stop(); });
}

} // namespace tw
