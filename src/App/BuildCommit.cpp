#include "App/BuildCommit.h"

#include "App/BuildIdentity.h"

using namespace Qt::StringLiterals;

namespace orvesa {

QString versionText()
{
    const QString version = u"%1 %2"_s.arg(QStringView(BuildIdentity::name), QStringView(BuildIdentity::version));
    const QString commit = buildCommit();
    return commit.isEmpty() ? version : u"%1 (%2)"_s.arg(version, commit);
}

} // namespace orvesa
