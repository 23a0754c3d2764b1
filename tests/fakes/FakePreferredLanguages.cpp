#include "fakes/FakePreferredLanguages.h"

#include <utility>

namespace orvesa {

FakePreferredLanguages::FakePreferredLanguages(QStringList languages) : m_languages(std::move(languages)) {}

} // namespace orvesa
