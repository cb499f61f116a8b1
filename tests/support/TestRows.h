// A data row written as one call, so that a table reads one row to a line; text literals become
// QString.
#pragma once

#include <QTest>

namespace tw::test {

inline QString cell(const char* text) {
    return QString::fromUtf8(text);
}
template <typename T>
const T& cell(const T& value) {
    return value;
}

template <typename... T>
void row(const char* tag, const T&... values) {
    QTestData& data = QTest::newRow(tag);
    ((data << cell(values)), ...);
}

} // namespace tw::test
