#include "tools/sumo/export/KeptText.h"

#include <QXmlStreamReader>

#include <utility>

namespace moratools {

std::vector<KeptElement> elementsOf(const QByteArray &text) {
    std::vector<KeptElement> elements;
    std::vector<KeptElement> open;
    QXmlStreamReader xml("<all>" + text + "</all>");
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            KeptElement element{xml.name().toString(), {}, {}};
            for (const QXmlStreamAttribute &attribute : xml.attributes())
                element.attributes.emplace_back(attribute.qualifiedName().toString(),
                                                attribute.value().toString());
            open.push_back(std::move(element));
        } else if (token == QXmlStreamReader::EndElement) {
            KeptElement done = std::move(open.back());
            open.pop_back();
            if (open.size() == 1)
                elements.push_back(std::move(done));
            else if (!open.empty())
                open.back().children.push_back(std::move(done));
        }
    }
    return elements;
}

} // namespace moratools
