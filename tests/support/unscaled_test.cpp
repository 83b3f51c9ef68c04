#include "unscaled_test.h"

#include <frame/utils/dpi.h>

void UnscaledTest::init()
{
    Utils::OVDpi::Instance()->OverrideScale(1);
}

void UnscaledTest::cleanup()
{
    Utils::OVDpi::Instance()->OverrideScale(0);
}
