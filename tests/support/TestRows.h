// A data row written as one call, so that a table reads one row to a line; text literals become
// QString.
#pragma once

#include <QStringList>
#include <QTest>

#include <initializer_list>

namespace tw::test {

inline QString cell(const char* text) {
    return QString::fromUtf8(text);
}
template <typename T>
const T& cell(const T& value) {
    return value;
}

// A list cell from text literals.
inline QStringList names(std::initializer_list<const char*> texts) {
    QStringList list;
    for (const char* text : texts) {
        list.append(QString::fromUtf8(text));
    }
    return list;
}

template <typename... T>
void row(const char* tag, const T&... values) {
    QTestData& data = QTest::newRow(tag);
    ((data << cell(values)), ...);
}

} // namespace tw::test
