#include "model/SignalGroup.h"
#include "model/SignalLamp.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

SignalPhase *addPhase(SignalGroup &group, const QString &name) {
    auto *phase = new SignalPhase(&group);
    phase->setPhaseName(name);
    group.mlPhase.append(phase);
    return phase;
}

} // namespace

TEST(SignalPhase, ColoursAsTextAndAsListThroughTheInterface) {
    SignalPhase phase;
    EXPECT_EQ(phase.signalColorInStr(), QString());
    ISignalPhase &shown = phase;
    shown.setColorList({{QStringLiteral("灰"), 5}});
    EXPECT_EQ(phase.signalColorInStr(), QStringLiteral("灰5"));
    shown.setColorList({{QStringLiteral("红"), 30}, {QStringLiteral("绿"), 25}, {QStringLiteral("黄"), 3}});
    EXPECT_EQ(phase.signalColorInStr(), QStringLiteral("红30,绿25,黄3"));
    ASSERT_EQ(shown.listColor().size(), 3);
    EXPECT_EQ(shown.listColor().at(1).color, QStringLiteral("绿"));
    EXPECT_EQ(shown.listColor().at(1).interval, 25);
}

TEST(SignalGroup, OwnsItsPhasesAndFindsTheFirstOfAName) {
    SignalGroup group;
    SignalPhase *first = addPhase(group, QStringLiteral("main"));
    SignalPhase *second = addPhase(group, QStringLiteral("main"));
    EXPECT_EQ(group.findPhaseByName(QStringLiteral("main")), first);
    EXPECT_EQ(group.findPhaseByName(QStringLiteral("Main")), nullptr);
    EXPECT_EQ(group.phases(), QList<ISignalPhase *>({first, second}));
}

TEST(SignalLamp, StandsInItsPhasesListOnceUntilEitherDies) {
    SignalLamp lamp;
    {
        SignalPhase phase;
        SignalPhase other;
        lamp.setPhase(&other);
        lamp.setPhase(&phase);
        lamp.setPhase(&phase);
        EXPECT_EQ(phase.signalLamps(), QList<ISignalLamp *>({&lamp}));
        EXPECT_TRUE(other.mlLamp.isEmpty());

        auto shortLived = std::make_unique<SignalLamp>();
        shortLived->setPhase(&phase);
        EXPECT_EQ(phase.mlLamp.size(), 2);
        shortLived.reset();
        EXPECT_EQ(phase.mlLamp, QList<SignalLamp *>({&lamp}));

        auto *child = new SignalLamp(&phase); // dies with its parent
        child->setPhase(&phase);
    }
    EXPECT_TRUE(lamp.mpPhase.isNull());
}
