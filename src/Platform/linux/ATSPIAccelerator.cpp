#include "Platform/linux/ATSPIAccelerator.h"

#include <QStringList>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 shiftHeld = 1;
constexpr qint64 altHeld = 2;
constexpr qint64 superHeld = 4;
constexpr qint64 noControl = 8;

/// False for something that is no modifier.
bool addModifier(const QString &name, qint64 &bits, bool &hasControl)
{
    const QString lower = name.trimmed().toLower();
    if (lower == "ctrl"_L1 || lower == "control"_L1 || lower == "primary"_L1 || lower == "ctl"_L1) {
        hasControl = true;
    } else if (lower == "shift"_L1) {
        bits |= shiftHeld;
    } else if (lower == "alt"_L1 || lower == "mod1"_L1) {
        bits |= altHeld;
    } else if (lower == "super"_L1 || lower == "meta"_L1 || lower == "hyper"_L1) {
        bits |= superHeld;
    } else {
        return false;
    }
    return true;
}

} // namespace

std::optional<ATSPIAccelerator> ATSPIAccelerator::fromKeyBinding(const QString &binding)
{
    // Of three parts the last is the shortcut; one with a single part is either that or a mnemonic.
    const QStringList parts = binding.split(u';');
    QString rest = (parts.size() >= 3 ? parts.at(2) : parts.constFirst()).trimmed();
    qint64 bits = 0;
    bool hasControl = false;
    while (rest.startsWith(u'<')) {
        const qsizetype end = rest.indexOf(u'>');
        if (end < 0 || !addModifier(rest.sliced(1, end - 1), bits, hasControl)) {
            return std::nullopt;
        }
        rest = rest.sliced(end + 1);
    }
    for (qsizetype plus = rest.indexOf(u'+'); plus > 0 && plus + 1 < rest.size(); plus = rest.indexOf(u'+')) {
        if (!addModifier(rest.first(plus), bits, hasControl)) {
            return std::nullopt;
        }
        rest = rest.sliced(plus + 1);
    }
    rest = rest.trimmed();
    if (rest.isEmpty()) {
        return std::nullopt;
    }
    return ATSPIAccelerator{rest, hasControl ? bits : bits | noControl};
}

} // namespace orvesa
