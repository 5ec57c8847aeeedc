// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PopupKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>

namespace {

// A key press reaches the application first as a shortcut override (delivered to the focused widget and,
// while no one takes it, to its parents), then, unless a shortcut took it, as the press itself, then as its
// release. Whether a popup was open is noted at the first override of a press, which a popup closing at that
// very override does not undo, and forgotten at the release or at the next press.
class KeyPressFollower : public QObject
{
public:
    bool pressedInPopup = false;

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::ShortcutOverride) {
            const auto *key = static_cast<QKeyEvent *>(event);
            if (QApplication::activePopupWidget()) {
                pressedInPopup = true;
                mPressTime = key->timestamp();
            } else if (key->timestamp() != mPressTime) {
                pressedInPopup = false;
            }
        } else if (event->type() == QEvent::KeyRelease && !static_cast<QKeyEvent *>(event)->isAutoRepeat()) {
            pressedInPopup = false;
        }
        return false;
    }

private:
    quint64 mPressTime = 0;
};

QPointer<KeyPressFollower> &follower()
{
    static QPointer<KeyPressFollower> instance;
    return instance;
}

} // namespace

void PopupKeys::follow()
{
    if (follower() || !QCoreApplication::instance())
        return;
    // Owned by the application, and gone with it.
    follower() = new KeyPressFollower;
    follower()->setParent(QCoreApplication::instance());
    QCoreApplication::instance()->installEventFilter(follower());
}

bool PopupKeys::keyIsThePopups()
{
    return QApplication::activePopupWidget() || (follower() && follower()->pressedInPopup);
}
