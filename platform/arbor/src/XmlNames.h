#pragma once

/// The words of the XML form, shared by writer and reader.
namespace arbor::xml {

inline constexpr char propertyTag[] = "property";
inline constexpr char itemTag[] = "item";
inline constexpr char versionAttribute[] = "arbor";
inline constexpr char version[] = "1";
inline constexpr char nameAttribute[] = "name";
inline constexpr char secondNameAttribute[] = "secondName";
inline constexpr char kindAttribute[] = "kind";
inline constexpr char typeAttribute[] = "type";
inline constexpr char unitAttribute[] = "unit";
inline constexpr char valueAttribute[] = "value";
inline constexpr const char* kindNames[] = {"", "cell", "face", "node"}; // by TZone::Kind

} // namespace arbor::xml
