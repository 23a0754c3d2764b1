#include "Platform/linux/PortalShortcut.h"

#include "Platform/ModifierBits.h"
#include "Platform/linux/MacKeyCodes.h"

#include <QDBusMetaType>

#include <array>
#include <memory>

#include <xkbcommon/xkbcommon.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// The symbol of a key in the layout that programs without a display take for granted.
xkb_keysym_t symbolOf(quint32 x11KeyCode)
{
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                             &xkb_context_unref);
    if (!context) {
        return XKB_KEY_NoSymbol;
    }
    const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
        xkb_keymap_new_from_names(context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS), &xkb_keymap_unref);
    const xkb_keysym_t *symbols = nullptr;
    const bool isKnown = keymap && xkb_keymap_key_get_syms_by_level(keymap.get(), x11KeyCode, 0, 0, &symbols) == 1;
    return isKnown ? symbols[0] : xkb_keysym_t{XKB_KEY_NoSymbol};
}

} // namespace

QString PortalShortcut::trigger(quint32 macKeyCode, quint32 carbonModifiers)
{
    const auto keyCode = MacKeyCodes::toX11(macKeyCode);
    const xkb_keysym_t symbol = keyCode ? symbolOf(*keyCode) : xkb_keysym_t{XKB_KEY_NoSymbol};
    std::array<char, 64> name{};
    if (symbol == XKB_KEY_NoSymbol || xkb_keysym_get_name(symbol, name.data(), name.size()) <= 0) {
        return {};
    }
    QString keys;
    for (const auto &[bit, word] :
         {std::pair{CarbonModifier::control, u"CTRL+"_s}, std::pair{CarbonModifier::option, u"ALT+"_s},
          std::pair{CarbonModifier::shift, u"SHIFT+"_s}, std::pair{CarbonModifier::command, u"LOGO+"_s}}) {
        if ((carbonModifiers & bit) != 0) {
            keys += word;
        }
    }
    return keys + QString::fromLatin1(name.data());
}

QList<PortalShortcut> PortalShortcut::listIn(const QVariant &value)
{
    if (!value.canConvert<QDBusArgument>()) {
        return {};
    }
    const auto argument = value.value<QDBusArgument>();
    return argument.currentSignature() == "a(sa{sv})"_L1 ? qdbus_cast<QList<PortalShortcut>>(argument)
                                                         : QList<PortalShortcut>();
}

void PortalShortcut::registerType()
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
}

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

} // namespace orvesa
