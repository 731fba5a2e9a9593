#pragma once

#include "KelConsumer.h"

#include <string>
#include <vector>

namespace meridyn {

/// What happens when a client calls an operation of a writer.
struct ConsumerRow {
    const char* operation;
    void (*call)(KelConsumer&);
    const char* expected;
};

/// A row: operation, its arguments in parentheses, what is expected.
#define KEL_ROW(operation, arguments, expected)                                                                        \
    {                                                                                                                  \
#        operation, [](KelConsumer & c) { c.operation arguments; }, expected                                           \
    }

/// The zones that the rows use: one for each category, and the zone 9, which nobody declares.
inline void declareRowZones(KelConsumer& writer)
{
    const struct {
        KelZoneCategory category;
        int id;
        unsigned64 first;
        unsigned64 last;
    } zones[] = {{KEL_NODE_ZONE, 1, 1, 500},
                 {KEL_EDGE_ZONE, 3, 101, 104},
                 {KEL_FACE_ZONE, 7, 11, 20},
                 {KEL_CELL_ZONE, 5, 4294967297, 4294967304}};
    for (const auto& zone : zones) {
        writer.setZoneIds(zone.category, {zone.id});
        writer.setZoneSizeInfo(zone.id, KEL_ZONE_FIRST_ID, zone.first);
        writer.setZoneSizeInfo(zone.id, KEL_ZONE_LAST_ID, zone.last);
    }
    writer.setMeshSize(KEL_MESH_DIMENSION, 3);
}

/// The public virtual operations that KelConsumer.h declares, in its order, each as often as it has overloads.
std::vector<std::string> declaredConsumerOperations();

} // namespace meridyn
