#include "tools/sumo/schema/SchemaElements.h"

namespace moratools::schema {

namespace {

constexpr const char *kProgrammes = "Net.otherAttrsJson sumo.programmes";

} // namespace

const std::vector<Element> &programmeElements() {
    static const std::vector<Element> elements{
        {"tlLogic", "SignalGroup",
         "id=SignalGroup.name offset=SignalGroup.startTime programID=SignalGroup.name", "type", kProgrammes},
        {"tlLogic/assignment", "", "", "check id value", kProgrammes},
        {"tlLogic/condition", "", "", "id value", kProgrammes},
        {"tlLogic/function", "", "", "id nArgs", kProgrammes},
        {"tlLogic/function/assignment", "", "", "check id value", kProgrammes},
        {"tlLogic/phase", "SignalColor", "duration=SignalColor.timeLength state=SignalColor.color",
         "earliestEnd earlyTarget finalTarget latestEnd maxDur minDur name next red targetLanes type "
         "vehext yellow",
         kProgrammes},
    };
    return elements;
}

} // namespace moratools::schema
