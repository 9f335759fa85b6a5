#include "Lane.h"

#include "GuideArrow.h"

#include <algorithm>

void Lane::removeGuideArrow(long guideArrowID) {
    mlGuideArrow.erase(std::remove_if(mlGuideArrow.begin(), mlGuideArrow.end(),
                                      [guideArrowID](const GuideArrow *arrow) {
                                          return arrow->guideArrowID == guideArrowID;
                                      }),
                       mlGuideArrow.end());
}

std::unique_ptr<Lane> Lane::clone() const {
    return std::unique_ptr<Lane>(new Lane(*this));
}
