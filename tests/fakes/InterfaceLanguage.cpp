#include "fakes/InterfaceLanguage.h"

#include "Core/Localization.h"

namespace orvesa {

InterfaceLanguage::InterfaceLanguage(AppLanguage language) : m_earlier(Localization::current())
{
    Localization::setCurrent(language);
}

InterfaceLanguage::~InterfaceLanguage()
{
    Localization::setCurrent(m_earlier);
}

} // namespace orvesa
