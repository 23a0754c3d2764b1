#include "Core/TextSelectionService.h"

#include "Core/AppMenuItemService.h"
#include "Core/CaptureReport.h"
#include "Core/KeyboardEventSender.h"
#include "Models/AppError.h"
#include "Models/Text.h"

#include <utility>
#include <variant>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// The place of C on an ANSI keyboard.
constexpr quint16 keyCodeOfC = 8;

AppError noSelectedText()
{
    return AppError(AppError::Kind::noSelectedText);
}

} // namespace

TextSelectionService::TextSelectionService(const Ports &ports) : m_state(std::make_shared<State>(ports)) {}

TextSelectionService::~TextSelectionService()
{
    m_state->isOver = true;
    putBackWhenChanged(*m_state);
    m_state->putAside.reset();
}

QCoro::Task<QString> TextSelectionService::currentSelectedText(std::stop_token stop)
{
    return capture(m_state, std::move(stop));
}

QCoro::Task<QString> TextSelectionService::capture(SharedState state, std::stop_token stop)
{
    // The ways to the selection in their order; the first that gives one ends the search. The read comes before the
    // question of trust: it costs little and simply gives nothing when trust is missing.
    CaptureReport report(state->with.clock);
    std::optional<QString> read = selectedTextViaAccessibility(state->with.elements);
    report.ended(u"accessibility"_s);
    if (read && !isBlank(*read)) {
        report.succeeded();
        co_return *read;
    }
    if (!state->with.trust.isTrusted()) {
        throw AppError(AppError::Kind::accessibilityPermissionDenied);
    }

    using Copy = AppMenuItemService;
    const Copy::LookupResult copy = Copy::find(state->with.elements, state->with.workspace, Copy::EditAction::copy);
    const auto *const item = std::get_if<Copy::Found>(&copy);
    const bool isDisabled = std::holds_alternative<Copy::Disabled>(copy);
    report.ended(item != nullptr ? u"menu item found"_s
                 : isDisabled    ? u"menu item disabled"_s
                                 : u"menu item not found"_s);
    if (isDisabled) {
        throw noSelectedText();
    }

    QString text;
    std::exception_ptr failure;
    try {
        if (item != nullptr) {
            // Named: GCC 12 destroys what is made within an awaiting expression twice.
            const Action press = [&elements = state->with.elements, element = item->element] {
                elements.performAction(element, u"AXPress"_s);
            };
            text = co_await readPasteboard(state, press, stop);
        } else {
            text = co_await selectedTextViaClipboard(state, stop);
        }
        if (!text.isEmpty()) {
            report.succeeded();
        }
    } catch (...) {
        failure = std::current_exception();
    }
    report.ended(item != nullptr ? u"copied by the menu item"_s : u"copied by keystroke"_s);
    if (failure) {
        std::rethrow_exception(failure);
    }
    co_return text;
}

std::optional<QString> TextSelectionService::selectedTextViaAccessibility(AccessibilityElementsPort &elements)
{
    const AccessibilityElement desktop = elements.systemWide();
    if (!desktop) {
        return std::nullopt;
    }
    const AccessibilityValue focusedValue = elements.copyAttribute(desktop, u"AXFocusedUIElement"_s);
    const auto *focused = std::get_if<AccessibilityElement>(&focusedValue);
    if (focused == nullptr || *focused == nullptr) {
        return std::nullopt;
    }
    const AccessibilityValue selected = elements.copyAttribute(*focused, u"AXSelectedText"_s);
    if (const auto *text = std::get_if<QString>(&selected)) {
        return *text;
    }
    return std::nullopt;
}

QCoro::Task<QString> TextSelectionService::selectedTextViaClipboard(SharedState state, std::stop_token stop)
{
    const std::chrono::milliseconds deadline = state->with.clock.now() + releaseBound;
    while (state->with.clock.now() < deadline && (state->with.keyboard.modifierFlags() & KeyboardFlags::all) != 0) {
        co_await state->with.clock.sleep(releaseRound);
        if (state->isOver) {
            throw noSelectedText();
        }
    }
    const Action stroke = [&keyboard = state->with.keyboard] {
        KeyboardEventSender::sendCommandKeystroke(keyboard, keyCodeOfC);
    };
    co_return co_await readPasteboard(state, stroke, stop);
}

QCoro::Task<QString> TextSelectionService::readPasteboard(SharedState state, Action action, std::stop_token stop)
{
    const bool hasToWait = state->turn.isTaken();
    co_await state->turn.next();
    const CaptureTurn::Holder turn(state->turn);
    if (hasToWait && stop.stop_requested() && !state->isOver) {
        co_return QString();
    }

    // Contents that cannot be put back are not put at risk.
    std::optional<ClipboardService::Snapshot> snapshot = co_await state->clipboard.snapshot();
    if (!snapshot || state->isOver) {
        throw noSelectedText();
    }
    PasteboardPort &pasteboard = state->clipboard.pasteboard();
    state->putAside = PutAside{*std::move(snapshot), pasteboard.changeCount()};
    action();
    for (int round = 0; round < copyRounds && !state->isOver; ++round) {
        co_await state->with.clock.sleep(copyRound);
        if (!state->putAside || pasteboard.changeCount() == state->putAside->count) {
            continue;
        }
        const std::optional<QString> text = co_await pasteboard.string();
        if (!putBackWhenChanged(*state) || !text || isBlank(*text)) {
            throw noSelectedText();
        }
        co_return *text;
    }
    state->putAside.reset();
    throw noSelectedText();
}

bool TextSelectionService::putBackWhenChanged(State &state)
{
    if (!state.putAside || state.with.pasteboard.changeCount() == state.putAside->count) {
        return false;
    }
    const PutAside putAside = *std::exchange(state.putAside, std::nullopt);
    state.clipboard.restore(putAside.contents);
    return true;
}

} // namespace orvesa
