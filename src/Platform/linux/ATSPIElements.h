#pragma once

// Accessibility elements of other applications, read over the accessibility bus in the macOS vocabulary.
//
// Main thread. A capture begins with a systemWide() element: its questions share the bus's client, with 500 ms of
// waiting time in all. An action has 250 ms of its own. This process is never asked, since it could not answer itself.
// Reading changes nothing on the desktop.

#include "Platform/AccessibilityElementsPort.h"
#include "Platform/WorkspacePort.h"
#include "Platform/linux/ATSPIBus.h"
#include "Platform/linux/ATSPIClient.h"
#include "Platform/linux/ATSPISelection.h"

#include <QElapsedTimer>

#include <chrono>
#include <map>
#include <memory>
#include <vector>

namespace orvesa {

class ATSPIElementHandle;
class X11TerminalSelection;

class ATSPIElements final : public AccessibilityElementsPort {
public:
    /// All must outlive this object. Without terminals, those that are not on the bus have no selection.
    ATSPIElements(ATSPIBus &bus, const WorkspacePort &workspace, X11TerminalSelection *terminals = nullptr);
    ~ATSPIElements() override;

    [[nodiscard]] AccessibilityElement systemWide() override;
    [[nodiscard]] AccessibilityElement application(qint64 processIdentifier) override;
    [[nodiscard]] AccessibilityValue copyAttribute(const AccessibilityElement &element,
                                                   const QString &attribute) override;
    bool performAction(const AccessibilityElement &element, const QString &action) override;

    /// Whether the process' focused element is known, and is no terminal.
    [[nodiscard]] bool isFocusNoTerminal(qint64 processIdentifier);
    /// Connects to the bus ahead of the first read, and learns which applications are there.
    void warmUp();

private:
    using Reader = AccessibilityValue (ATSPIElements::*)(const ATSPIElementHandle &element);

    /// What is known of an application from its last read, so that the next one takes fewer questions.
    struct Application {
        QString busName;
        std::optional<ATSPIReference> window;  ///< the one that was active
        std::optional<ATSPIReference> focused; ///< the one in it that had the focus, where no other claimed it
    };

    [[nodiscard]] static const std::map<QString, Reader> &readers();
    [[nodiscard]] AccessibilityValue focusedElement(const ATSPIElementHandle &element);
    [[nodiscard]] std::optional<ATSPIReference> focusedElement(qint64 processIdentifier, ATSPIClient &client);
    /// By searching for it.
    [[nodiscard]] std::optional<ATSPIReference> find(Application &application, ATSPIClient &client);
    /// The same where it is the element that had the focus at the last read.
    [[nodiscard]] std::optional<ATSPIReference> focusedStill(Application &application, ATSPIClient &client);
    [[nodiscard]] AccessibilityValue selectedText(const ATSPIElementHandle &element);
    [[nodiscard]] AccessibilityValue menuBar(const ATSPIElementHandle &element);
    [[nodiscard]] AccessibilityValue children(const ATSPIElementHandle &element);
    [[nodiscard]] AccessibilityValue identifier(const ATSPIElementHandle &element);
    [[nodiscard]] AccessibilityValue commandCharacter(const ATSPIElementHandle &element);
    [[nodiscard]] AccessibilityValue commandModifiers(const ATSPIElementHandle &element);
    [[nodiscard]] AccessibilityValue isEnabled(const ATSPIElementHandle &element);
    /// Items of a menu or a menu bar.
    [[nodiscard]] static std::vector<AccessibilityElement> items(const ATSPIReference &menu,
                                                                 const std::shared_ptr<ATSPIClient> &client);
    /// The bus names of all applications on the accessibility bus, by process. One has several where it uses several
    /// toolkits: a Qt program loads GTK where the desktop's look is GTK's.
    [[nodiscard]] static std::map<qint64, std::vector<QString>> busNames(ATSPIClient &client);
    /// The first of a process's names that has windows.
    [[nodiscard]] static QString withWindows(const std::vector<QString> &names, ATSPIClient &client);

    ATSPIBus &m_bus;
    const WorkspacePort &m_workspace;
    X11TerminalSelection *m_terminals;
    std::map<qint64, Application> m_applications; ///< by process

    /// What the focused element said of its selection when it was asked whether it is the focused one.
    struct Ahead {
        ATSPIReference element;
        ATSPISelection::Answers answers;
        QElapsedTimer age;
    };
    /// Who has found the focus asks for its selection at once.
    static constexpr std::chrono::milliseconds aheadLife{50};
    std::optional<Ahead> m_ahead;
};

} // namespace orvesa
