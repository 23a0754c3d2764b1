#pragma once

// Finding the element that has the keyboard inside an application, the cheapest way that its toolkit offers. Main
// thread.

#include "Platform/linux/ATSPIClient.h"

#include <optional>

namespace orvesa {

class ATSPIFocus final {
public:
    explicit ATSPIFocus(ATSPIClient &client);

    /// The focused element of the application's active window. Of several that claim the focus, one with text.
    /// `window` is the window that was active at an earlier time, if any; it becomes the one that is active now.
    [[nodiscard]] std::optional<ATSPIReference> find(const QString &busName, std::optional<ATSPIReference> &window);

private:
    enum class Way { inactive, unavailable, exhausted };
    struct Result {
        Way way = Way::unavailable;
        std::optional<ATSPIReference> element;
    };

    [[nodiscard]] std::optional<ATSPIReference> activeWindow(const QString &busName);
    /// By the toolkit's own search (GTK 3, LibreOffice): one call.
    [[nodiscard]] Result search(const ATSPIReference &window);
    [[nodiscard]] std::optional<ATSPIReference> searchWithoutMatching(const ATSPIReference &window);
    /// By the list of everything that the application keeps (GTK 4): one call.
    [[nodiscard]] Result lookThroughCache(const ATSPIReference &window);
    /// By walking down the window (Qt and others): two to three calls for each element.
    [[nodiscard]] std::optional<ATSPIReference> walk(const ATSPIReference &window);
    [[nodiscard]] std::optional<ATSPIReference> preferText(const std::vector<ATSPIReference> &candidates);

    ATSPIClient &m_client;
};

} // namespace orvesa
