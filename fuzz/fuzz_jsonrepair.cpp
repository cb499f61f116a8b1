// The tolerant second reading of a refused data file: any bytes are mended without harm, a
// document the parser accepts is never altered, what was mended needs no second mending, and the
// faults it mends are gone from what it gives.
#include "Require.h"
#include "platform/JsonRepair.h"

#include <QByteArray>
#include <QJsonDocument>

#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const tw::JsonRepair repair = tw::repairJson(bytes);
    require(repair.changed() || repair.bytes == bytes, "a change that is not counted");

    QJsonParseError error{};
    QJsonDocument::fromJson(bytes, &error);
    if (error.error == QJsonParseError::NoError) {
        require(!repair.changed(), "an accepted document was altered");
    }
    const tw::JsonRepair again = tw::repairJson(repair.bytes);
    require(!again.changed() && again.bytes == repair.bytes, "mending is not stable");

    QJsonDocument::fromJson(repair.bytes, &error);
    require(error.error != QJsonParseError::DeepNesting, "a branch too deep stayed");
    require(error.error != QJsonParseError::IllegalUTF8String, "an invalid sequence stayed");
    return 0;
}
