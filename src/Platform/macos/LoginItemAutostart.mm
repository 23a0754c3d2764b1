#include "Platform/macos/LoginItemAutostart.h"

#import <ServiceManagement/ServiceManagement.h>

namespace orvesa {

bool LoginItemAutostart::isOn() const
{
    return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
}

bool LoginItemAutostart::turnOn()
{
    return isOn() || [SMAppService.mainAppService registerAndReturnError:nil];
}

bool LoginItemAutostart::turnOff()
{
    return !isOn() || [SMAppService.mainAppService unregisterAndReturnError:nil];
}

} // namespace orvesa
