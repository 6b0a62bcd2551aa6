#pragma once

#include <cstdint>
#include <string_view>

namespace lx::store {

// Field types by their classic numbers; the schema code builds files with these.
enum FieldType : int {
    dbBoolean = 1,
    dbByte = 2,
    dbLong = 4,
    dbDate = 8,
    dbText = 10,
    dbMemo = 12,
};

// Recordset types.
enum RecordsetType : int {
    dbOpenTable = 1,
    dbOpenDynaset = 2,
    dbOpenSnapshot = 4,
};

inline constexpr int dbAutoIncrField = 16;
inline constexpr int dbRelationUpdateCascades = 256;
inline constexpr int dbRelationDeleteCascades = 4096;

// Booleans are stored as -1 (True) and 0 (False), so criteria such as "Show = -1" keep working.
inline constexpr std::int64_t kTrue = -1;

// One value as the engine holds it: text stays UTF-8 and is only viewed, never copied.
// Dates are held as text "yyyy-MM-ddTHH:mm:ss"; booleans as -1/0.
struct Cell {
    enum Kind : std::uint8_t { Null, Integer, Real, Text };
    Kind kind = Null;
    std::int64_t integer = 0;
    double real = 0;
    std::string_view text;

    static Cell null() { return {}; }
    static Cell fromInteger(std::int64_t v) { return {Integer, v, 0, {}}; }
    static Cell fromReal(double v) { return {Real, 0, v, {}}; }
    static Cell fromText(std::string_view v) { return {Text, 0, 0, v}; }
};

} // namespace lx::store
