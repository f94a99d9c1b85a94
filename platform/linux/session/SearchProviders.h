#pragma once

#include "platform/RemoteControl.h"

class QObject;

namespace quillon {

class TaskQueue;

/// Makes an object that is exported on the session bus answer the desktops' own searches: GNOME's
/// overview, by org.gnome.Shell.SearchProvider2, and KRunner, by org.kde.krunner1. Both name an
/// item by its file: URI, since its path may hold any bytes. Nothing is added if the handlers do
/// not search. The object's thread is the main thread, and the queue outlives the object.
void addSearchProviders(QObject &object, TaskQueue &background,
                        const RemoteControl::Handlers &handlers);

} // namespace quillon
