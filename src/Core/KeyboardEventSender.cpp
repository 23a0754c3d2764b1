#include "Core/KeyboardEventSender.h"

namespace orvesa {

void KeyboardEventSender::sendCommandKeystroke(KeyboardEventPort &keyboard, quint16 keyCode)
{
    (void)keyboard.post(keyCode, KeyTransition::down, KeyboardFlags::command);
    (void)keyboard.post(keyCode, KeyTransition::up, KeyboardFlags::command);
}

} // namespace orvesa
