#pragma once

#include <QDBusArgument>

/// Structures on the bus, written and read field by field.
namespace ravlin::DBusStruct {

template <typename... Field>
QDBusArgument& write(QDBusArgument& out, const Field&... fields) {
    out.beginStructure();
    (out << ... << fields);
    out.endStructure();
    return out;
}

template <typename... Field>
const QDBusArgument& read(const QDBusArgument& in, Field&... fields) {
    in.beginStructure();
    (in >> ... >> fields);
    in.endStructure();
    return in;
}

}  // namespace ravlin::DBusStruct
