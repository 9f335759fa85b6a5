#include "Routing.h"

void Routing::init() {
    *this = Routing();
}
