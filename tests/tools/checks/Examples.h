#pragma once

#include <QStringList>

#include <vector>

/// What makes a sound network unsound, and what comes near without doing so: SQL statements, written by hand for
/// the network of SoundStore.
struct Example {
    const char *rule;
    QStringList bad;  ///< after them exactly this rule has more to say, and those in `also`
    QStringList good; ///< after them this rule has no more to say than before
    QStringList also = {};
    const char *older = nullptr; ///< what is bad is a new store of this template
};

/// @{ The examples of a group of rules.
std::vector<Example> storeExamples();
std::vector<Example> referenceExamples();
std::vector<Example> jsonExamples();
std::vector<Example> signalExamples();
std::vector<Example> geometryExamples();
std::vector<Example> topologyExamples();
std::vector<Example> demandExamples();
std::vector<Example> transitExamples();
std::vector<Example> deviceExamples();
/// @}
