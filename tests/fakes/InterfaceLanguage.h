#pragma once

// Sets the interface language while it lives and puts the earlier one back, so that tests do not depend on each other.

#include "Core/AppLanguage.h"

namespace orvesa {

class InterfaceLanguage final {
public:
    explicit InterfaceLanguage(AppLanguage language);
    ~InterfaceLanguage();
    Q_DISABLE_COPY_MOVE(InterfaceLanguage)

private:
    AppLanguage m_earlier;
};

} // namespace orvesa
