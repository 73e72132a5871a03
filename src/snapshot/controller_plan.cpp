#include "snapshot/plan.h"
#include "snapshot/values.h"

namespace tarnwell::snapshot {

namespace {

constexpr Meaning kModes[] = {{"A", "AUTOMATIC"}, {"M", "MANUAL"}};
constexpr Meaning kConfigurations[] = {{"1", "1:1"}, {"2", "1:2"}};
constexpr Meaning kPriorities[] = {{"N", "NONE"}, {"A", "PATH A"}, {"B", "PATH B"}};
constexpr Meaning kOnline1[] = {{"1", "ONLINE"}};
constexpr Meaning kOnline2[] = {{"2", "ONLINE"}};
constexpr Meaning kOnline3[] = {{"3", "ONLINE"}};
constexpr Meaning kPathA[] = {{"1", "SSPA1"}, {"2", "SSPA2"}};
constexpr Meaning kPathB[] = {{"3", "SSPA3"}, {"2", "SSPA2"}};
constexpr std::string_view kOffline = "STANDBY/ALARM";

// A controller's latched alarms have no lines.
const Row kRows[] = {
    {"redundancy controller", &protocol::kModelQuery, Text()},
    {"address", &protocol::kAddressQuery, Address()},
    {"operating mode", &protocol::kStatusQuery, FirstHeld(kModes)},
    {"comms mode", &protocol::kStatusQuery, FirstHeld(kCommsModes, "REM")},
    {"active alarms", &protocol::kAlarmQuery, ActiveAlarms()},
    {"firmware", &protocol::kFirmwareQuery, Text()},
    {"configuration", &protocol::kConfigurationQuery, FirstHeld(kConfigurations)},
    {"priority", &protocol::kPriorityOrDiodeQuery, FirstHeld(kPriorities)},
    {"sspa1 state", &protocol::kOnlineQuery, FirstHeld(kOnline1, kOffline)},
    {"sspa2 state", &protocol::kOnlineQuery, FirstHeld(kOnline2, kOffline)},
    {"sspa3 state", &protocol::kOnlineQuery, FirstHeld(kOnline3, kOffline)},
    {"path a", &protocol::kPathAQuery, FirstHeld(kPathA)},
    {"path b", &protocol::kPathBQuery, FirstHeld(kPathB)},
};

}  // namespace

const Plan& ControllerPlan() {
  static const Plan kPlan{"Error with Save 7316 Snapshot", 3, 5, kRows, {}};
  return kPlan;
}

}  // namespace tarnwell::snapshot
