// A program as a user of the installed library would write it: the public headers and nothing else.
#include "KelConsumer.h"
#include "KelSetting.h"
#include "KelVersion.h"

#include <string>
#include <vector>

int main()
{
    meridyn::KelConsumer writer("Client");
    writer.setZoneIds(meridyn::KEL_FACE_ZONE, {3, 5});
    std::vector<int> ids;
    writer.getZoneIds(meridyn::KEL_FACE_ZONE, ids);
    const bool sameVersion = meridyn::KelVersion::apiVersionAsString(".") == "25.1";
    return sameVersion && ids == std::vector<int>{3, 5} ? 0 : 1;
}
