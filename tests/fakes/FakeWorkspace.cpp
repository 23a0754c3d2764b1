#include "fakes/FakeWorkspace.h"

namespace orvesa {

bool FakeWorkspace::open(const QUrl &url)
{
    m_opened.push_back(url);
    return m_acceptsAddresses;
}

} // namespace orvesa
