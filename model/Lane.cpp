#include "Lane.h"

#include "GuideArrow.h"
#include "Net.h"

#include <algorithm>

Lane::~Lane() {
    Net::forget(this);
}

void Lane::removeGuideArrow(long guideArrowID) {
    mlGuideArrow.erase(std::remove_if(mlGuideArrow.begin(), mlGuideArrow.end(),
                                      [guideArrowID](const GuideArrow *arrow) {
                                          return arrow->guideArrowID == guideArrowID;
                                      }),
                       mlGuideArrow.end());
}
