// A compressed answer from the network: any bytes end in a status without harm, the output never
// passes the cap by more than one byte, and feeding the same bytes in two slices gives the same
// output and status as feeding them at once.
#include "Require.h"
#include "net/BodyInflater.h"

#include <QByteArray>

#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) {
        return 0;
    }
    // The first byte picks the split and a small cap, so the cap is met often.
    const qint64 cap = 1 + (data[0] % 64) * 1024;
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data) + 1,
                                                     static_cast<qsizetype>(size - 1));
    const qsizetype split = bytes.isEmpty() ? 0 : data[0] % bytes.size();

    tw::BodyInflater whole(cap);
    QByteArray once;
    whole.feed(bytes, once);

    tw::BodyInflater sliced(cap);
    QByteArray twice;
    sliced.feed(QByteArrayView(bytes).first(split), twice);
    sliced.feed(QByteArrayView(bytes).sliced(split), twice);

    require(once.size() <= cap + 1, "output past the cap");
    require(whole.status() == sliced.status(), "slicing changed the status");
    require(once == twice, "slicing changed the output");
    return 0;
}
