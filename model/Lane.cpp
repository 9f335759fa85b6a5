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
