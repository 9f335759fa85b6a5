#include "tools/sumo/reader/Programme.h"

#include "tools/sumo/reader/XmlInput.h"

namespace moratools {

SumoProgramme readProgramme(XmlInput &input) {
    const Attributes attributes(input);
    SumoProgramme programme;
    programme.id = attributes.text("id");
    programme.programID = attributes.text("programID", QStringLiteral("0"));
    programme.type = attributes.text("type", QStringLiteral("static"));
    programme.offset = attributes.seconds("offset", 0);
    while (input.nextElement()) {
        if (input.name() == QLatin1String("phase")) {
            const Attributes phase(input);
            programme.phases.push_back({phase.seconds("duration", 0), phase.text("state")});
        }
        input.skipElement();
    }
    return programme;
}

} // namespace moratools
