#pragma once

// Finding the element that has the keyboard inside an application, the cheapest way that its toolkit offers. Main
// thread.

#include "Platform/linux/ATSPIClient.h"
#include "Platform/linux/ATSPISelection.h"

#include <optional>

namespace orvesa {

class ATSPIFocus final {
public:
    struct Found {
        ATSPIReference element;
        bool isOnlyClaim = false; ///< nothing else in the window says that it has the focus
    };
    /// How a question about an element that had the focus at an earlier time ended.
    enum class Still { focused, elsewhere, inAnotherWindow };
    struct Confirmation {
        Still still = Still::elsewhere;
        ATSPISelection::Answers selection; ///< of the element that is focused still
    };

    explicit ATSPIFocus(ATSPIClient &client);

    /// Whether the element, which was the window's only one with the focus, has it still. One round of questions, that
    /// for the selection among them.
    [[nodiscard]] Confirmation confirm(const ATSPIReference &window, const ATSPIReference &element);

    /// The focused element of the application's active window. Of several that claim the focus, one with text.
    /// `window` is the window that was active at an earlier time, if any; it becomes the one that is active now.
    [[nodiscard]] std::optional<Found> find(const QString &busName, std::optional<ATSPIReference> &window);

private:
    enum class Way { inactive, unavailable, exhausted };
    struct Result {
        Way way = Way::unavailable;
        std::optional<Found> found;
    };

    [[nodiscard]] std::optional<ATSPIReference> activeWindow(const QString &busName);
    /// By the toolkit's own search (GTK 3, LibreOffice): one call.
    [[nodiscard]] Result search(const ATSPIReference &window);
    [[nodiscard]] std::optional<Found> searchWithoutMatching(const ATSPIReference &window);
    /// By the list of everything that the application keeps (GTK 4): one call.
    [[nodiscard]] Result lookThroughCache(const ATSPIReference &window);
    /// By walking down the window (Qt and others): two to three calls for each element.
    [[nodiscard]] std::optional<Found> walk(const ATSPIReference &window);
    [[nodiscard]] std::optional<Found> preferText(const std::vector<ATSPIReference> &candidates);

    ATSPIClient &m_client;
};

} // namespace orvesa
