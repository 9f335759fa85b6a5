#include "model/ChangeLaneModelParam.h"
#include "model/SimulateConfiguration.h"

#include <gtest/gtest.h>

TEST(SimulateConfiguration, AccelerationMultipleIsAtLeastOne) {
    SimulateConfiguration configuration;
    configuration.setAcceMultiples(4);
    EXPECT_EQ(configuration.acceMultiples(), 4);
    for (const int low : {0, -3}) {
        configuration.setAcceMultiples(low);
        EXPECT_EQ(configuration.acceMultiples(), 1);
    }
    configuration.mAcceMultiples = 2.9;
    EXPECT_EQ(configuration.acceMultiples(), 2);
}

TEST(SimulateConfiguration, SimulatedTimeOfARun) {
    SimulateConfiguration configuration;
    configuration.setAcceMultiples(3);
    configuration.setCurrentPeriodTime(2500);
    EXPECT_EQ(configuration.simuTimeIntervalWithAcceMutiples(), 0); // not started
    configuration.setStopTime(500);                                 // of an earlier run
    configuration.setStartTime(1000);
    EXPECT_EQ(configuration.simuTimeIntervalWithAcceMutiples(), 4500);
    SimulateConfiguration::Run run = configuration.run();
    run.pauseLength = 500;
    configuration.setRun(run);
    EXPECT_EQ(configuration.simuTimeIntervalWithAcceMutiples(), 3000);
    configuration.setStopTime(2600);
    EXPECT_EQ(configuration.simuTimeIntervalWithAcceMutiples(), 0);
}

TEST(SimulateConfiguration, CopyTakesStoredFieldsAndRunAndInitalResetsThem) {
    SimulateConfiguration original;
    EXPECT_GE(original.run().threadCount, 1);
    original.simuTimeInterval = 1;
    original.recordTrace = true;
    original.vehiCollectDataInterval = 2;
    original.vehiQueueDataInterval = 3;
    original.vehiTravelDataInterval = 4;
    original.simuAccuracy = 5;
    original.randSeed = 6;
    original.setAcceMultiples(7);
    original.setStartTime(8);
    const auto stored = [](const SimulateConfiguration &from) {
        return QList<double>({double(from.simuTimeInterval), double(from.recordTrace),
                              double(from.vehiCollectDataInterval), double(from.vehiQueueDataInterval),
                              double(from.vehiTravelDataInterval), from.mAcceMultiples,
                              double(from.simuAccuracy), double(from.randSeed)});
    };

    SimulateConfiguration copy = original;
    copy = static_cast<const SimulateConfiguration &>(copy); // takes its own lock only once at a time
    EXPECT_EQ(stored(copy), QList<double>({1, 1, 2, 3, 4, 7, 5, 6}));
    EXPECT_EQ(copy.run().startTime, 8);
    copy.inital();
    EXPECT_EQ(stored(copy), QList<double>({0, 0, 0, 0, 0, 1, 20, 0}));
    EXPECT_EQ(copy.run().startTime, 0);
    EXPECT_EQ(stored(original), QList<double>({1, 1, 2, 3, 4, 7, 5, 6}));
}

TEST(ChangeLaneModelParam, BuiltInSets) {
    EXPECT_EQ(ChangeLaneModelParam(1).headBeit2Coef, 0.35);
    EXPECT_EQ(ChangeLaneModelParam(2).lagBeit3Coef, 0.25);
    EXPECT_EQ(ChangeLaneModelParam(3).lagBeit1Coef, 0.5);
    EXPECT_EQ(ChangeLaneModelParam(3).modelParamID, 3);
    for (const long none : {0L, 4L, 7L, -1L}) {
        EXPECT_EQ(ChangeLaneModelParam(none).modelParamID, 0);
        EXPECT_EQ(ChangeLaneModelParam(none).lagDistParam, 0);
    }
}

TEST(ChangeLaneModelParam, FirstStoredSetWinsOverTheBuiltIn) {
    ChangeLaneModelParam first(1);
    first.headBeit0 = 10;
    ChangeLaneModelParam second(1);
    second.headBeit0 = 20;
    const QList<ChangeLaneModelParam> params = {first, second};
    EXPECT_EQ(ChangeLaneModelParam::getParam(params, 1).headBeit0, 10);
    EXPECT_EQ(ChangeLaneModelParam::getParam(params, 2).headBeit1Coef, 0.15);
    EXPECT_EQ(ChangeLaneModelParam::getParam({}, 2).headBeit1Coef, 0.15);
}
