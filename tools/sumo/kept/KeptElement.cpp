#include "tools/sumo/kept/KeptElement.h"

#include <QJsonObject>
#include <QXmlStreamWriter>

#include <algorithm>

namespace moratools {

namespace {

// No file that is read has elements within each other that deep.
constexpr int kDeepest = 400;

KeptElement elementOf(const QJsonArray &json, int depth) {
    KeptElement element;
    element.name = json.at(0).toString();
    const QJsonObject attributes = json.at(1).toObject();
    for (auto it = attributes.begin(); it != attributes.end(); ++it)
        element.attributes.emplace_back(it.key(), it.value().toString());
    const QJsonArray children = depth < kDeepest ? json.at(2).toArray() : QJsonArray();
    for (const QJsonValue &child : children)
        element.children.push_back(elementOf(child.toArray(), depth + 1));
    return element;
}

/// A store may come from anywhere, and the writer takes any text for a name.
bool isName(const QString &text) {
    return !text.isEmpty() && !text[0].isDigit() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('-') ||
               c == QLatin1Char('.') || c == QLatin1Char(':');
    });
}

} // namespace

const QString *KeptElement::attribute(const QString &wanted) const {
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&wanted](const auto &entry) { return entry.first == wanted; });
    return found == attributes.end() ? nullptr : &found->second;
}

void KeptElement::setAttribute(const QString &wanted, const QString &value) {
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&wanted](const auto &entry) { return entry.first == wanted; });
    if (found == attributes.end())
        attributes.emplace_back(wanted, value);
    else
        found->second = value;
}

QJsonArray KeptElement::toJson() const {
    QJsonArray json{name};
    if (!attributes.empty() || !children.empty()) {
        QJsonObject values;
        for (const auto &attribute : attributes)
            values.insert(attribute.first, attribute.second);
        json.append(values);
    }
    if (!children.empty()) {
        QJsonArray within;
        for (const KeptElement &child : children)
            within.append(child.toJson());
        json.append(within);
    }
    return json;
}

KeptElement KeptElement::fromJson(const QJsonArray &json) {
    return elementOf(json, 1);
}

void writeElement(QXmlStreamWriter &writer, const KeptElement &element) {
    if (!isName(element.name))
        return;
    if (element.children.empty())
        writer.writeEmptyElement(element.name);
    else
        writer.writeStartElement(element.name);
    for (const auto &attribute : element.attributes) {
        if (isName(attribute.first))
            writer.writeAttribute(attribute.first, attribute.second);
    }
    for (const KeptElement &child : element.children)
        writeElement(writer, child);
    if (!element.children.empty())
        writer.writeEndElement();
}

} // namespace moratools
