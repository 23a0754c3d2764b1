#include "Platform/FakePortalSession.h"

#include <iostream>

namespace orvesa::tests {

FakePortalSession::FakePortalSession(QObject *parent) : QObject(parent) {}

FakePortalSession::~FakePortalSession() = default;

void FakePortalSession::Close()
{
    std::cout << "close" << std::endl;
    setDelayedReply(true);
    Q_EMIT closeAsked(message());
}

} // namespace orvesa::tests
