// A tolerant second reading of a JSON data file that the strict parser refused: the small faults
// that make it reject a whole document are mended in place, so one bad member costs that member.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace tw {

struct JsonRepair {
    // The parser refuses containers nested deeper than this.
    static constexpr int maxDepth = 1024;

    QByteArray bytes;
    // Numbers beyond the range of a double, replaced by null.
    int numbersReplaced = 0;
    // Invalid UTF-8 sequences, each replaced by U+FFFD.
    int sequencesReplaced = 0;
    // Containers nested deeper than `maxDepth`, each replaced whole by null.
    int branchesCut = 0;

    bool changed() const { return numbersReplaced + sequencesReplaced + branchesCut > 0; }
    // What was mended, for a log line.
    QString summary() const;
};

// Mends `bytes` and nothing else: the result differs only where one of the faults above was. A
// document with other damage (a missing bracket, garbage) stays as broken as it was.
JsonRepair repairJson(QByteArrayView bytes);

} // namespace tw
