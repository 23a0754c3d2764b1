#include "Platform/linux/SecretLibrary.h"

#include <QtGlobal>
#include <QDebug>

#include <dlfcn.h>

namespace orvesa {

const SecretLibrary *SecretLibrary::load()
{
    static const SecretLibrary *const loaded = []() -> const SecretLibrary * {
        // Never unloaded: the type system below it cannot be.
        static SecretLibrary library;
        void *const handle = ::dlopen("libsecret-1.so.0", RTLD_LAZY | RTLD_LOCAL);
        if (handle == nullptr || !library.resolve(handle)) {
            qWarning("OrvesaTranslate: libsecret is missing; no key store is available");
            return nullptr;
        }
        return &library;
    }();
    return loaded;
}

bool SecretLibrary::resolve(void *handle)
{
    // Looks into the library and everything that it is linked to.
    bool isComplete = true;
    const auto find = [&]<typename Function>(Function &function, const char *name) {
        function = reinterpret_cast<Function>(::dlsym(handle, name));
        isComplete = isComplete && function != nullptr;
    };
    find(objectRef, "g_object_ref");
    find(objectUnref, "g_object_unref");
    find(cancellableNew, "g_cancellable_new");
    find(cancellableCancel, "g_cancellable_cancel");
    find(ioErrorQuark, "g_io_error_quark");
    find(dbusErrorQuark, "g_dbus_error_quark");
    find(busGet, "g_bus_get");
    find(busGetFinish, "g_bus_get_finish");
    find(setExitOnClose, "g_dbus_connection_set_exit_on_close");
    find(busIsClosed, "g_dbus_connection_is_closed");
    find(proxyNameOwner, "g_dbus_proxy_get_name_owner");
    find(busCall, "g_dbus_connection_call");
    find(busCallFinish, "g_dbus_connection_call_finish");
    find(signalSubscribe, "g_dbus_connection_signal_subscribe");
    find(signalUnsubscribe, "g_dbus_connection_signal_unsubscribe");
    find(secretErrorQuark, "secret_error_get_quark");
    find(serviceGet, "secret_service_get");
    find(serviceGetFinish, "secret_service_get_finish");
    find(search, "secret_service_search_for_dbus_paths");
    find(searchFinish, "secret_service_search_for_dbus_paths_finish");
    find(unlock, "secret_service_unlock_dbus_paths");
    find(unlockFinish, "secret_service_unlock_dbus_paths_finish");
    find(getSecret, "secret_service_get_secret_for_dbus_path");
    find(getSecretFinish, "secret_service_get_secret_for_dbus_path_finish");
    find(store, "secret_service_store");
    find(storeFinish, "secret_service_store_finish");
    find(deleteItem, "secret_service_delete_item_dbus_path");
    find(deleteItemFinish, "secret_service_delete_item_dbus_path_finish");
    find(itemNew, "secret_item_new_for_dbus_path");
    find(itemNewFinish, "secret_item_new_for_dbus_path_finish");
    find(setSecret, "secret_item_set_secret");
    find(setSecretFinish, "secret_item_set_secret_finish");
    find(valueNew, "secret_value_new");
    find(valueGet, "secret_value_get");
    find(valueUnref, "secret_value_unref");
    return isComplete;
}

} // namespace orvesa
