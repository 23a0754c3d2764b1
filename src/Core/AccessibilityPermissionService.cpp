#include "Core/AccessibilityPermissionService.h"

namespace orvesa {

using namespace Qt::StringLiterals;

void AccessibilityPermissionService::openSystemSettings(WorkspacePort &workspace)
{
    const QUrl page(u"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"_s);
    if (page.isValid()) {
        workspace.open(page);
    }
}

} // namespace orvesa
