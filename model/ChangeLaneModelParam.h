#pragma once

#include "MoraStoreExport.h"

#include <QList>

#include <memory>

/// A coefficient set of the lane-changing model: for the lead gap ("head") and for the lag gap one constant,
/// four coefficients, a random term and a distance term.
class MORASTORE_EXPORT ChangeLaneModelParam {
public:
    /// The built-in set of ids 1 to 3. Any other id sets nothing: all fields are 0, the id too. A store's
    /// standard sets are calibrated and differ from the built-in ones.
    explicit ChangeLaneModelParam(long id = 0);

    /// The first set of `params` with that id, or the built-in one.
    static ChangeLaneModelParam getParam(const QList<ChangeLaneModelParam> &params, long id);
    /// A copy that the caller owns.
    std::unique_ptr<ChangeLaneModelParam> clone() const {
        return std::make_unique<ChangeLaneModelParam>(*this);
    }

    long modelParamID = 0;
    double headBeit0 = 0;
    double headBeit1Coef = 0;
    double headBeit2Coef = 0;
    double headBeit3Coef = 0;
    double headBeit4Coef = 0;
    double headRandParam = 0;
    double headDistParam = 0;
    double lagBeit0 = 0;
    double lagBeit1Coef = 0;
    double lagBeit2Coef = 0;
    double lagBeit3Coef = 0;
    double lagBeit4Coef = 0;
    double lagRandParam = 0;
    double lagDistParam = 0;
};
