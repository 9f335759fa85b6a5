#include "ChangeLaneModelParam.h"

namespace {

struct BuiltIn {
    double ChangeLaneModelParam::*field;
    double byId[3]; // of ids 1, 2 and 3
};

const BuiltIn BUILT_IN[] = {
    {&ChangeLaneModelParam::headBeit0, {1, 1, 0.5}},
    {&ChangeLaneModelParam::headBeit1Coef, {0.2, 0.15, 0.1}},
    {&ChangeLaneModelParam::headBeit2Coef, {0.35, 0.3, 0.25}},
    {&ChangeLaneModelParam::headBeit3Coef, {0.25, 0.2, 0.15}},
    {&ChangeLaneModelParam::headBeit4Coef, {0, 0.1, 0.05}},
    {&ChangeLaneModelParam::headRandParam, {1, 1, 0.5}},
    {&ChangeLaneModelParam::headDistParam, {0.008, 0.008, 0.008}},
    {&ChangeLaneModelParam::lagBeit0, {1.5, 1.5, 1}},
    {&ChangeLaneModelParam::lagBeit1Coef, {0.15, 0.1, 0.5}},
    {&ChangeLaneModelParam::lagBeit2Coef, {0.45, 0.35, 0.3}},
    {&ChangeLaneModelParam::lagBeit3Coef, {0.3, 0.25, 0.2}},
    {&ChangeLaneModelParam::lagBeit4Coef, {0, 0.1, 0.05}},
    {&ChangeLaneModelParam::lagRandParam, {1.5, 1.5, 1}},
    {&ChangeLaneModelParam::lagDistParam, {0.008, 0.008, 0.008}},
};

} // namespace

ChangeLaneModelParam::ChangeLaneModelParam(long id) {
    if (id < 1 || id > 3)
        return;
    modelParamID = id;
    for (const BuiltIn &value : BUILT_IN)
        this->*value.field = value.byId[id - 1];
}

ChangeLaneModelParam ChangeLaneModelParam::getParam(const QList<ChangeLaneModelParam> &params, long id) {
    for (const ChangeLaneModelParam &param : params) {
        if (param.modelParamID == id)
            return param;
    }
    return ChangeLaneModelParam(id);
}
