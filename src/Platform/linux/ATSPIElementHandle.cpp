#include "Platform/linux/ATSPIElementHandle.h"

#include <utility>

namespace orvesa {

ATSPIElementHandle::ATSPIElementHandle(Target target, std::shared_ptr<ATSPIClient> client)
    : m_target(std::move(target)), m_client(std::move(client))
{
}

} // namespace orvesa
